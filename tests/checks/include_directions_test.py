# SPDX-License-Identifier: Apache-2.0
"""The check of include directions finds each kind of fault and passes a clean tree."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).parents[2] / "scripts" / "check-includes"


def run_on(files):
    """Exit status and output of the check on a tree of these files."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            file = pathlib.Path(folder, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr


class IncludeDirections(unittest.TestCase):
    def test_allowed(self):
        status, output = run_on({
            "calculators/CalcLDL.cpp": '#include "controls/NumericEdit.h"\n#include "ui_CalcLDL.h"\n#include <QDialog>\n',
            "support/ui/ChartForm.h": "#include <QDialog>\n",
            "dao/sqlite/SqliteFunctions.cpp": "#include <sqlite3.h>\n",
            "host/Class3.cpp": '#include "calculators/CalcLDL.h"\n',
        })
        self.assertEqual(status, 0, output)

    def test_faults(self):
        cases = [
            ("support/Log.cpp", '#include "data/Connection.h"', "support must not include data"),
            ("data/Identity.cpp", '#include "chart/WorkingState.h"', "must not include chart"),
            ("calculators/CalcLDL.cpp", '#include "problems/Problemi.h"', "calculators must not include problems"),
            ("calculators/CalcLDL.cpp", '#include "host/Class3.h"', "calculators must not include host"),
            ("dao/Session.cpp", '#include "support/Log.h"', "dao must not include support"),
            ("chart/RecordDialog.cpp", '#include "problems/Problemi.h"', "chart must not include problems"),
            ("jetsql/Parser.cpp", '#include "dao/Dao.h"', "jetsql must not include dao"),
            ("dao/native/Dialect.h", '#include "dao/sqlite/SqliteFile.h"', "dao/native must not include dao/sqlite"),
            ("app/window/HostWindow.cpp", '#include "app/scenario/ScenarioPlayer.h"', "app/window must not include app/scenario"),
            ("jetsql/Parser.cpp", "#include <QLabel>", "jetsql has no window"),
            ("regional/SheetForm.cpp", '#include "problems/Problemi.h"', "regional must not include problems"),
            ("support/Prompts.cpp", "#include <QMessageBox>", "support has no window"),
            ("data/Connection.cpp", "#include <QtWidgets>", "data has no window"),
            ("data/Connection.cpp", "#include <sqlite3.h>", "only dao/sqlite includes"),
            ("dao/Session.cpp", "#include <libpq-fe.h>", "only dao/postgres includes"),
            ("dao/Session.cpp", '#include "Dao.h"', "write includes from src"),
            ("elsewhere/Thing.cpp", "", "no known layer"),
        ]
        for name, line, message in cases:
            with self.subTest(name=name, line=line):
                status, output = run_on({name: "// first line\n" + line + "\n"})
                self.assertNotEqual(status, 0)
                self.assertIn(message, output)

    def test_no_sources_is_a_fault(self):
        self.assertNotEqual(run_on({"readme.txt": ""})[0], 0)


if __name__ == "__main__":
    unittest.main()

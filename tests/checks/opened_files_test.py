# SPDX-License-Identifier: Apache-2.0
"""The check of opened files finds each way to open one and passes what opens none."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).parents[2] / "scripts" / "check-files"


def run_on(name, text):
    """Exit status and output of the check on a tree with that file."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, name)
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr


class OpenedFiles(unittest.TestCase):
    def test_faults(self):
        for line in [
            "QFile file(path);",
            "QFile file{path};",
            "QFile m_file;",
            "if (QFile(path).open(QIODevice::ReadOnly))",
            "auto file = std::make_unique<QFile>(path);",
            "auto *file = new QFile(path);",
            "QSaveFile file(path);",
            "QTemporaryFile file(path);",
            "QFile::copy(from, to);",
            "std::ifstream in(path);",
            "std::fstream both(path);",
            'FILE *file = fopen(path, "rb");',
            "const int file = ::open(name, O_RDONLY);",
            "::openat(folder, name, O_RDONLY);",
            "std::filesystem::copy_file(from, to);",
            "QFileDialog::getOpenFileName(this);",
            "QMimeDatabase().mimeTypeForFile(path);",
        ]:
            with self.subTest(line=line):
                status, output = run_on("app/Practice.cpp", f"// first line\n{line}\n")
                self.assertNotEqual(status, 0)
                self.assertIn("Practice.cpp:2: opens a file", output)

    def test_allowed(self):
        for name, line in [
            ("app/Practice.cpp", "auto practice = Practice::open(path);"),
            ("app/Practice.cpp", "practice->open(path);"),
            ("app/Practice.cpp", "QFileInfo info(path);"),
            ("app/Practice.cpp", "QFile::exists(path); QFile::remove(path); QFile::encodeName(path);"),
            ("app/Practice.cpp", "#include <QFile>"),
            ("app/Practice.cpp", "// QFile file(path); would drop the locks"),
            ("app/Practice.cpp", 'say("QFile file(path)");'),
            ("support/Log.cpp", "QFile file(path);"),
        ]:
            with self.subTest(line=line):
                status, output = run_on(name, line + "\n")
                self.assertEqual(status, 0, output)

    def test_what_is_allowed_elsewhere_is_no_excuse(self):
        self.assertNotEqual(run_on("data/Log.cpp", "QFile file(path);\n")[0], 0)

    def test_no_sources_is_a_fault(self):
        self.assertNotEqual(run_on("readme.txt", "")[0], 0)


if __name__ == "__main__":
    unittest.main()

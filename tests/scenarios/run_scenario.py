#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs a scenario on a copy of a practice and compares what it prints with the .jsonl file beside it.

usage: run_scenario.py ORVALE PRACTICE SCENARIO

The run must end with the status 0 and print nothing on standard error.
"""

import difflib
import pathlib
import shutil
import subprocess
import sys
import tempfile


def main():
    orvale, practice, scenario = sys.argv[1:]
    expected = pathlib.Path(scenario).with_suffix(".jsonl").read_text(encoding="utf-8").splitlines()
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / "practice"
        shutil.copytree(practice, copy)
        run = subprocess.run(
            [orvale, "play", "--practice", copy, "--shots", folder, scenario],
            capture_output=True,
            encoding="utf-8",
            timeout=100,
        )
    differences = list(difflib.unified_diff(expected, run.stdout.splitlines(), "expected", "printed", lineterm=""))
    print("\n".join(differences))
    print(run.stderr, end="")
    if differences or run.stderr or run.returncode != 0:
        sys.exit(f"{scenario}: status {run.returncode}")


if __name__ == "__main__":
    main()

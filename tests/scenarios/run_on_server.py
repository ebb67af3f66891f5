#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the scenarios on a practice of a database server: the same expected lines as for a practice in files.

usage: run_on_server.py ORVALE SCENARIOS

The server is the one that tests/server/with-postgres has started. Each scenario has a copy of the practice.
"""

import difflib
import os
import pathlib
import subprocess
import sys
import tempfile


def main():
    program, scenarios = sys.argv[1], pathlib.Path(sys.argv[2])
    address = os.environ["CLIVARA_TEST_SERVER"].rsplit("/", 1)[0]
    practice = f"{address}/practice"  # not there yet: the program makes it
    subprocess.run([program, "demo", practice, "--patients", "5", "--years", "1", "--seed", "7"], check=True)
    subprocess.run([program, "play", "--practice", practice, scenarios / "patients.txt"], check=True)
    subprocess.run([program, "check", practice], check=True)
    failures = 0
    for scenario in sorted(scenarios.glob("*.scenario")):
        name = f"copy_{scenario.stem}"
        subprocess.run(["createdb", "--template", "practice", name], check=True)
        expected = scenario.with_suffix(".jsonl").read_text(encoding="utf-8").splitlines()
        with tempfile.TemporaryDirectory() as folder:
            run = subprocess.run(
                [program, "play", "--practice", f"{address}/{name}", "--shots", folder, scenario],
                capture_output=True,
                encoding="utf-8",
                timeout=100,
            )
        differences = list(
            difflib.unified_diff(expected, run.stdout.splitlines(), "expected", "printed", lineterm="")
        )
        if differences or run.stderr or run.returncode != 0:
            failures += 1
            print(f"{scenario.name}: status {run.returncode}", *differences, run.stderr, sep="\n")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()

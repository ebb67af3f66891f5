#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the practice of the scenarios.

usage: make_practice.py ORVALE PRACTICE PATIENTS
"""

import pathlib
import shutil
import subprocess
import sys


def main():
    orvale, practice, patients = sys.argv[1:]
    shutil.rmtree(practice, ignore_errors=True)
    pathlib.Path(practice).parent.mkdir(parents=True, exist_ok=True)
    subprocess.run([orvale, "demo", practice, "--patients", "5", "--years", "1", "--seed", "7"], check=True)
    subprocess.run([orvale, "play", "--practice", practice, patients], check=True)


if __name__ == "__main__":
    main()

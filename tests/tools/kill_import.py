#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Kills `orvale import` at random moments of its run: what stands in the practice's place must be whole.

Each moment is tried with SIGKILL, SIGINT and SIGTERM in turn, into an empty place and over a practice
(--replace) that holds fewer rows. Afterwards the place is as it was before or holds the new practice with
every row. After a signal that can be caught nothing else is left either, and the status is not 0.
"""

import argparse
import os
import pathlib
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

SIGNALS = (signal.SIGKILL, signal.SIGINT, signal.SIGTERM)
LIMIT = 120


def connect(file):
    """A database of a practice. Its texts are sorted as the program does; nothing here depends on their order."""
    database = sqlite3.connect(file)
    database.create_collation("JET_TEXT", lambda one, other: (one > other) - (one < other))
    return database


def rows(practice):
    """Rows of each table of each database. Reads a copy: opening a database may write beside it."""
    counts = {}
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder, "copy")
        shutil.copytree(practice, copy)
        for file in sorted(copy.glob("*.sqlite")):
            database = connect(file)
            names = [name for (name,) in database.execute("select name from sqlite_master where type = 'table'")]
            for name in names:
                quoted = name.replace('"', '""')
                counts[file.name, name] = database.execute(f'select count(*) from "{quoted}"').fetchone()[0]
            database.close()
    return counts


def thin_out(practice):
    """Takes rows of a table without texts away, so that the practice can be told from the imported one."""
    database = connect(practice / "Orvale.sqlite")
    database.execute("delete from Carta_Rischio where rowid % 2 = 0")
    database.commit()
    database.execute("pragma wal_checkpoint(truncate)")
    database.close()


class Trial:
    def __init__(self, options, environment):
        self.options = options
        self.environment = environment
        self.faults = []

    def command(self, target, old):
        return [self.options.orvale, "import", str(self.options.source), str(target), *(["--replace"] if old else [])]

    def check(self, practice):
        """What is wrong with a practice that `orvale check` cannot read; empty for a readable one."""
        run = subprocess.run([self.options.orvale, "check", str(practice)], capture_output=True, encoding="utf-8",
                             env=self.environment, timeout=LIMIT, check=False)
        text = run.stdout + run.stderr
        return "" if run.returncode in (0, 1) and "danneggiato" not in text else f"check {run.returncode}: {text[:300]}"

    def kill(self, folder, moment, signal_number, old):
        """One import into `folder`, killed after so many seconds; True when it was killed in time."""
        target = folder / "practice"
        if old:
            shutil.copytree(old["path"], target)
        process = subprocess.Popen(self.command(target, old), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   stdin=subprocess.DEVNULL, env=self.environment)
        time.sleep(moment)
        in_time = process.poll() is None
        if in_time:
            process.send_signal(signal_number)
        try:
            status = process.wait(LIMIT)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            self.faults.append(f"{signal_number.name} at {moment:.3f} s: still running after {LIMIT} s")
            return in_time
        where = f"{signal_number.name} at {moment:.3f} s, {'over a practice' if old else 'into an empty place'}"

        counts = rows(target) if target.exists() else None
        if counts is None and old:
            self.faults.append(f"{where}: the practice that was there is gone")
        elif counts is not None and counts != self.new_rows and not (old and counts == old["rows"]):
            self.faults.append(f"{where}: neither the old practice nor the new one")
        elif counts is not None:
            problem = self.check(target)
            if problem:
                self.faults.append(f"{where}: {problem}")
        if in_time and signal_number != signal.SIGKILL:
            left = sorted(entry.name for entry in folder.iterdir() if entry != target and entry.is_dir())
            if left:
                self.faults.append(f"{where}: {', '.join(left)} left")
            # A signal that comes when the practice already stands in its place changes nothing.
            if status == 0 and counts != self.new_rows:
                self.faults.append(f"{where}: status 0")
        return in_time

    def measure(self, folder, old):
        """Seconds of an import that is left alone; the practice stands in the folder afterwards."""
        target = folder / "practice"
        if old:
            shutil.copytree(old["path"], target)
        started = time.monotonic()
        run = subprocess.run(self.command(target, old), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, encoding="utf-8", env=self.environment, timeout=LIMIT,
                             check=False)
        seconds = time.monotonic() - started
        if run.returncode != 0:
            sys.exit(f"the import fails without being killed: status {run.returncode}\n{run.stdout[-4000:]}")
        return seconds

    def run(self, scratch):
        first = scratch / "first"
        first.mkdir()
        seconds = self.measure(first, None)
        self.new_rows = rows(first / "practice")
        thin_out(first / "practice")
        old = {"path": first / "practice", "rows": rows(first / "practice")}
        assert old["rows"] != self.new_rows
        second = scratch / "second"
        second.mkdir()
        seconds_over_old = self.measure(second, old)
        if rows(second / "practice") != self.new_rows:
            sys.exit("the import does not replace the practice")

        chosen = random.Random(self.options.seed)
        killed = 0
        for number in range(self.options.moments):
            # Spread over the whole run: one moment in each equal part of it.
            old_one = old if number // len(SIGNALS) % 2 else None
            length = seconds_over_old if old_one else seconds
            moment = length * (number + chosen.random()) / self.options.moments
            # A run that happens to be faster than the measured ones is tried again, earlier.
            for attempt in range(4):
                folder = scratch / f"run-{number}-{attempt}"
                folder.mkdir()
                in_time = self.kill(folder, moment, SIGNALS[number % len(SIGNALS)], old_one)
                shutil.rmtree(folder)
                killed += in_time
                if in_time:
                    break
                moment *= 0.6
        print(f"{killed} of {self.options.moments} imports of {seconds:.2f} s were killed in time")
        if killed < 0.8 * self.options.moments:
            self.faults.append("too few of them to say anything")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("orvale", help="the program")
    parser.add_argument("source", type=pathlib.Path, help="a folder of Jet files")
    parser.add_argument("--moments", type=int, default=20, metavar="N", help="at which imports are killed (20)")
    parser.add_argument("--seed", type=int, default=1, help="of the moments (1)")
    options = parser.parse_args()
    options.orvale = str(pathlib.Path(options.orvale).resolve())
    with tempfile.TemporaryDirectory(prefix="kill-import-") as scratch:
        environment = dict(os.environ, HOME=scratch, XDG_DATA_HOME=scratch, XDG_CONFIG_HOME=scratch,
                           QT_QPA_PLATFORM="offscreen")
        trial = Trial(options, environment)
        trial.run(pathlib.Path(scratch))
    if trial.faults:
        sys.exit("\n".join(trial.faults))


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Damages copies of Jet files at random and imports them: nothing may crash, hang or leave something half
done.

Each case damages one file of the folder in one to three ways, chosen by the seed and the number of the
case alone, and runs `orvale import`. It must end within the time limit with the status 0 or 1, without a
report of a sanitizer or a warning of a library. A refused file is named by one line on standard error and
leaves neither a practice nor the folder in which it was being built; where a practice stood before
(--replace, every tenth case), that one stays as it was. An imported practice may hold less than the file
did, but `orvale check` must be able to read it (every twentieth case).

Ends with the status 1 and the list of the cases that failed; `--case K --keep FOLDER` makes one of them
again.
"""

import argparse
import collections
import concurrent.futures
import functools
import hashlib
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import jet_damage

# What a library or a sanitizer says when something went wrong inside.
NOISE = re.compile(
    r"AddressSanitizer|UndefinedBehaviorSanitizer|LeakSanitizer|runtime error:|terminate called|Assertion|ASSERT"
    r"|core dumped|Segmentation|QSql|QIODevice|QProcess|QThread|QObject|QFile|qt\.|^[Ww]arning:|mdb_",
    re.MULTILINE,
)
Outcome = collections.namedtuple("Outcome", "case what faults message seconds megabytes")


def run(command, environment, limit):
    """Status (None when it had to be killed), standard output and error, seconds and megabytes of a command."""
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        started = time.monotonic()
        process = subprocess.Popen(command, stdout=output, stderr=errors, stdin=subprocess.DEVNULL, env=environment,
                                   start_new_session=True)
        stuck = threading.Event()

        def end():
            stuck.set()
            os.killpg(process.pid, signal.SIGKILL)

        timer = threading.Timer(limit, end)
        timer.start()
        _, status, usage = os.wait4(process.pid, 0)
        timer.cancel()
        process.returncode = os.waitstatus_to_exitcode(status)
        seconds = time.monotonic() - started
        texts = []
        for file in (output, errors):
            file.seek(0)
            texts.append(file.read().decode("utf-8", "replace"))
        return (None if stuck.is_set() else process.returncode), *texts, seconds, usage.ru_maxrss / 1024


def digest(folder):
    return {file.name: hashlib.sha256(file.read_bytes()).hexdigest() for file in sorted(folder.iterdir())}


def damage(samples, folder, chosen):
    """Copies the samples into the folder and damages one of the files; gives its name and what was done."""
    files = sorted(file for file in samples.iterdir() if file.suffix.lower() == ".mdb")
    # The clinical file holds most and is damaged most.
    largest = max(files, key=lambda file: file.stat().st_size)
    victim = largest if chosen.random() < 0.6 else chosen.choice(files)
    for file in files:
        if file != victim:
            (folder / file.name).symlink_to(file.resolve())
    data = bytearray(victim.read_bytes())
    kinds = [chosen.choice(jet_damage.KINDS) for _ in range(chosen.choice((1, 1, 1, 2, 3)))]
    for kind in kinds:
        if data:
            kind(chosen, data)
    (folder / victim.name).write_bytes(data)
    return victim.name, [kind.__name__ for kind in kinds]


def examine(options, environment, whole, case, folder):
    """Makes one case in the folder, imports it and says what came out."""
    chosen = random.Random(f"{options.seed}/{case}")
    source, target = folder / "source", folder / "target"
    source.mkdir()
    victim, kinds = damage(options.samples, source, chosen)
    replace = case % 10 == 0
    before = None
    if replace:
        shutil.copytree(whole, target)
        before = digest(target)
    command = [options.orvale, "import", str(source), str(target)] + (["--replace"] if replace else [])
    status, output, errors, seconds, megabytes = run(command, environment, options.limit)

    faults = []
    if status is None:
        faults.append(f"still running after {options.limit} s")
    elif status not in (0, 1):
        faults.append(f"status {status}")
    if NOISE.search(errors) or NOISE.search(output):
        faults.append("a library or a sanitizer speaks: " + (errors + output)[:2000])
    if options.memory and megabytes > options.memory:
        faults.append(f"{megabytes:.0f} MB of memory")
    faults += [f"{left.name} is left" for left in folder.iterdir() if ".part" in left.name]

    lines = errors.strip().splitlines()
    refused = status == 1 and (not target.exists() or (replace and digest(target) == before))
    what = "refused" if refused else "whole" if status == 0 else "imported with differences" if status == 1 else "failed"
    if refused:
        if len(lines) != 1:
            faults.append(f"{len(lines)} lines on standard error: {errors[:500]!r}")
        elif victim not in lines[0]:
            faults.append(f"does not name {victim}: {lines[0]!r}")
    elif status in (0, 1) and not target.exists():
        faults.append("no practice, though the status is 0")
    elif status in (0, 1) and case % 20 in (0, 1):
        check, check_output, check_errors, _, _ = run([options.orvale, "check", str(target)], environment, options.limit)
        if check not in (0, 1) or NOISE.search(check_errors + check_output):
            faults.append(f"check: status {check} {check_errors[:500]}")
    message = lines[0].replace(str(source / victim), "FILE") if refused and lines else ""
    message = re.sub(r"\d+", "N", re.sub(r"tabella \S+", "tabella T", message)) # of one kind
    return Outcome(case, f"{what} ({victim}: {', '.join(kinds)})", faults, message or what, seconds, megabytes)


def in_own_folder(options, environment, whole, case):
    folder = pathlib.Path(tempfile.mkdtemp(prefix=f"fuzz-{case}-", dir=options.scratch))
    try:
        return examine(options, environment, whole, case, folder)
    finally:
        if options.keep:
            shutil.copytree(folder, options.keep / f"case-{case}", symlinks=False, dirs_exist_ok=True)
        shutil.rmtree(folder)


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("orvale", help="the program")
    parser.add_argument("samples", type=pathlib.Path, help="a folder of whole Jet files that can be imported")
    parser.add_argument("--cases", type=int, default=2000, metavar="N", help="how many (2000)")
    parser.add_argument("--seed", type=int, default=1, help="of the damage (1)")
    parser.add_argument("--case", type=int, metavar="K", help="only this one")
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER", help="keeps the files of each case there")
    parser.add_argument("--limit", type=float, default=60, metavar="S", help="seconds that a run may take (60)")
    parser.add_argument("--memory", type=float, default=0, metavar="MB", help="that a run may take (any)")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, help="runs at a time (processors)")
    options = parser.parse_args()
    options.orvale = str(pathlib.Path(options.orvale).resolve())
    return options


def main():
    options = arguments()
    with tempfile.TemporaryDirectory(prefix="fuzz-import-") as scratch:
        options.scratch = scratch
        environment = dict(os.environ, HOME=scratch, XDG_DATA_HOME=scratch, XDG_CONFIG_HOME=scratch,
                           QT_QPA_PLATFORM="offscreen")
        whole = pathlib.Path(scratch, "whole")
        status, _, errors, _, _ = run([options.orvale, "import", str(options.samples), str(whole)], environment,
                                      options.limit)
        if status != 0:
            sys.exit(f"the undamaged files cannot be imported: status {status} {errors}")
        cases = range(options.cases) if options.case is None else [options.case]
        work = functools.partial(in_own_folder, options, environment, whole)
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            outcomes = []
            for outcome in pool.map(work, cases):
                outcomes.append(outcome)
                if outcome.faults or options.case is not None:
                    print(f"case {outcome.case}: {outcome.what}")
                    print("".join(f"    {fault}\n" for fault in outcome.faults), end="", flush=True)

    for message, count in collections.Counter(outcome.message for outcome in outcomes).most_common():
        print(f"{count:6}  {message}")
    print(f"{len(outcomes)} cases; slowest {max(o.seconds for o in outcomes):.1f} s,"
          f" largest {max(o.megabytes for o in outcomes):.0f} MB")
    failed = [outcome.case for outcome in outcomes if outcome.faults]
    if failed:
        sys.exit(f"failed: {' '.join(map(str, failed))}")


if __name__ == "__main__":
    main()

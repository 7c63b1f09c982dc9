#!/usr/bin/env python3
"""Checks that `quill-smt2 print` refuses faulty scripts in one clear line.

The environment variable QUILL_CORPUS names a folder with a sub-folder bad, in which the table

    BAD.tsv   file <TAB> class <TAB> line <TAB> what is wrong      (one head line)

says what is wrong with each file and in which line.  Every file must end the command with status 1,
nothing on standard output and one line, FILE:LINE:COLUMN: error: TEXT, on standard error, within the
limits below; the files in READABLE are large but well-formed and must be read.  LINE must be that of the
table.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 nothing to
check because QUILL_CORPUS is unset.
"""

import argparse
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

READABLE = {"deep-well-formed.smt2", "deep-let.smt2"}

TIMEOUT_SECONDS = 20
MEMORY_KIBIBYTES = 1 << 20
STACK_BYTES = 256 << 10
SKIPPED = 77


def limit_stack():
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_BYTES, STACK_BYTES))


def run(command, file):
    """Status, standard output, standard error, seconds and KiB of `command print file`."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        start = time.monotonic()
        # pylint: disable=subprocess-popen-preexec-fn,consider-using-with
        process = subprocess.Popen(
            [command, "print", str(file)], stdout=out, stderr=err, preexec_fn=limit_stack)
        timer_fired = False
        while True:
            done, status, usage = os.wait4(process.pid, os.WNOHANG)
            if done:
                break
            if not timer_fired and time.monotonic() - start > 2 * TIMEOUT_SECONDS:
                os.kill(process.pid, signal.SIGKILL)
                timer_fired = True
            time.sleep(0.005)
        process.returncode = os.waitstatus_to_exitcode(status)
        seconds = time.monotonic() - start
        out.seek(0)
        err.seek(0)
        return process.returncode, out.read(), err.read(), seconds, usage.ru_maxrss


def check(command, file, line):
    """What does not hold, as texts."""
    status, out, err, seconds, kibibytes = run(command, file)
    failures = []
    if seconds > TIMEOUT_SECONDS:
        failures.append(f"took {seconds:.1f} s")
    if kibibytes > MEMORY_KIBIBYTES:
        failures.append(f"took {kibibytes >> 10} MiB")
    if file.name in READABLE:
        if status != 0 or err or not out:
            failures.append(f"was not read: {err[:200]!r}")
        return failures
    if status != 1:
        failures.append(f"exit status {status}")
    if out:
        failures.append("wrote to standard output")
    text = err.decode(errors="replace")
    match = re.fullmatch(re.escape(str(file)) + r":(\d+):\d+: error: [^\n]{1,300}\n", text)
    if match is None:
        failures.append(f"is not told in one line: {text[:300]!r}")
    elif int(match[1]) != line:
        failures.append(f"is reported in line {match[1]}, not {line}: {text.strip()[-150:]}")
    return failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quill-smt2", default="quill-smt2", help="the command to check")
    arguments = parser.parse_args()
    folder = os.environ.get("QUILL_CORPUS")
    if not folder:
        print("bad input: QUILL_CORPUS is unset, nothing is checked")
        return SKIPPED
    root = pathlib.Path(folder) / "bad"
    rows = [row.split("\t") for row in (root / "BAD.tsv").read_text().splitlines()[1:]]
    bad = 0
    for name, _, line, *_ in rows:
        failures = check(arguments.quill_smt2, root / name, int(line))
        for failure in failures:
            print(f"bad input: {name}: {failure}")
        bad += bool(failures)
    print(f"bad input: {len(rows)} files; {len(rows) - bad} right, {bad} wrong")
    return 1 if bad or not rows else 0


if __name__ == "__main__":
    sys.exit(main())

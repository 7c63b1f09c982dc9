#!/usr/bin/env python3
"""Lets z3 and cvc5 read random scripts: each must be accepted in full.

The program random_scripts makes the scripts and checks that they read back to the same terms.  This
program puts them one after the other, with (reset) between them, and gives them to each installed solver.
They ask for no satisfiability: only parsing and type checking count.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 no solver.
"""

import argparse
import concurrent.futures
import re
import shutil
import subprocess
import sys
import tempfile

COMMANDS = {
    "z3": ["z3", "-smt2"],
    "cvc5": ["cvc5", "--lang", "smt2", "--incremental", "--fp-exp"],
}
SCRIPT = re.compile(rb"^; script (\d+)\n", re.MULTILINE)
SKIPPED = 77
TIME_LIMIT = 300  # seconds for one solver process; z3 begins to solve at a push


def make_scripts(program, first, count):
    """The faults that the program tells, and the scripts as (seed, text) in order."""
    done = subprocess.run([program, str(first), str(count)], capture_output=True, check=False)
    pieces = SCRIPT.split(done.stdout)[1:]
    faults = done.stderr.decode(errors="replace").splitlines()
    if done.returncode != 0 and not faults:
        faults = [f"random_scripts ended with status {done.returncode}"]
    return faults, list(zip((int(seed) for seed in pieces[::2]), pieces[1::2]))


def run(command):
    """What a command writes, and how it ended."""
    try:
        done = subprocess.run(command, capture_output=True, check=False, timeout=TIME_LIMIT)
    except subprocess.TimeoutExpired as expired:
        return expired.stdout or b"", f"no end after {TIME_LIMIT} seconds"
    return done.stdout + done.stderr, f"ended with status {done.returncode}"


def read_scripts(solver, scripts):
    """What the solver says against the scripts, at most one message for each."""
    faults = []
    while scripts:
        text = b"".join(b'(echo "@script %d")\n%s(reset)\n' % script for script in scripts)
        with tempfile.NamedTemporaryFile(suffix=".smt2") as file:
            file.write(text)
            file.flush()
            output, end = run([*COMMANDS[solver], file.name])
        current = scripts[0][0]
        refused = {}
        for line in output.decode(errors="replace").splitlines():
            marker = re.search(r"@script (\d+)", line)
            if marker:
                current = int(marker[1])
            elif "error" in line and "unsupported logic" not in line:
                refused.setdefault(current, line)
        faults += [f"{solver}: script {seed}: {line[:300]}" for seed, line in refused.items()]
        # z3 goes on after an error, cvc5 ends.
        rest = [i for i, (seed, _) in enumerate(scripts) if seed == current]
        at_end = current == scripts[-1][0]
        if not at_end and current not in refused:
            faults.append(f"{solver}: script {current}: {end}")
        scripts = [] if at_end else scripts[rest[0] + 1:]
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--random-scripts", required=True, help="the program that makes them")
    parser.add_argument("--first", type=int, default=0, help="the first seed")
    parser.add_argument("--count", type=int, default=20000, help="how many scripts")
    parser.add_argument("--batch", type=int, default=250, help="scripts for one solver process")
    arguments = parser.parse_args()
    solvers = [solver for solver in COMMANDS if shutil.which(solver)]
    if not solvers:
        print("random scripts: no solver is installed")
        return SKIPPED

    faults, scripts = make_scripts(arguments.random_scripts, arguments.first, arguments.count)
    if len(scripts) != arguments.count:
        faults.append(f"{len(scripts)} scripts instead of {arguments.count}")
    batches = [scripts[i:i + arguments.batch] for i in range(0, len(scripts), arguments.batch)]
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = [pool.submit(read_scripts, s, batch) for batch in batches for s in solvers]
        for job in jobs:
            faults += job.result()
    for fault in faults:
        print(f"random scripts: {fault}")
    print(f"random scripts: {len(scripts)} scripts, judges: {', '.join(solvers)}; {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

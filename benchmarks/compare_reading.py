#!/usr/bin/env python3
"""Compares how long whole processes take to read large scripts, and how much memory.

Usage: compare_reading.py --quill-smt2 COMMAND [--mebibytes N] [--rounds N] [--folder FOLDER]

For each kind of script that generate_scripts.py knows, this runs `quill-smt2 stats`, which reads the script
and measures its terms; z3 on the same file, which reads it and finds no check-sat; and `cvc5 --parse-only`,
which keeps nothing.  The programs take turns.  The table shows the medians of user and system time, the
largest resident memory, and the ratios of quill-smt2's figures to those of the others.
"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile

GENERATOR = os.path.join(os.path.dirname(os.path.abspath(__file__)), "generate_scripts.py")
KINDS = ("bit-vectors", "arithmetic", "nesting")


def measure(command):
    """Seconds of processor time and MiB of a run, whose output must be free of errors."""
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, stdout=output, stderr=output)
        # The resources of this child alone.
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        text = output.read().decode(errors="replace")
    if process.returncode != 0 or "error" in text:
        sys.exit(f"{' '.join(command)} failed ({process.returncode}): {text[:1000]}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def compare(file, commands, rounds):
    """The median time and the largest memory of each command."""
    runs = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            runs[name].append(measure([*command, file]))
    return {name: (statistics.median(time for time, _ in results), max(memory for _, memory in results))
            for name, results in runs.items()}


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--quill-smt2", required=True, metavar="COMMAND")
    parser.add_argument("--mebibytes", type=float, default=50, help="the size of each script")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--folder", help="keeps the scripts, and takes those that are there")
    options = parser.parse_args()

    commands = {"quill": [options.quill_smt2, "stats"], "z3": ["z3"], "cvc5": ["cvc5", "--parse-only"]}
    print("| script | quill | z3 | cvc5 | time / z3 | memory / z3 | time / cvc5 |")
    print("|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as scratch:
        folder = options.folder or scratch
        for kind in KINDS:
            file = os.path.join(folder, f"{kind}-{options.mebibytes:g}.smt2")
            if not os.path.exists(file):
                subprocess.run([sys.executable, GENERATOR, kind, file, "--mebibytes",
                                str(options.mebibytes)], check=True)
            results = compare(file, commands, options.rounds)
            cells = [f"{time:.2f} s, {memory:.0f} MiB" for time, memory in results.values()]
            time, memory = results["quill"]
            ratios = [time / results["z3"][0], memory / results["z3"][1], time / results["cvc5"][0]]
            print(f"| {kind} | {' | '.join(cells)} | {' | '.join(f'{r:.2f}' for r in ratios)} |", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())

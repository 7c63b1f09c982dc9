#!/usr/bin/env python3
"""Runs programs that write a journal, again and again, and compares their output byte for byte.

    compare_runs.py [--runs N] [--calls N] [--seed N] PROGRAM...

Run i runs program number i modulo the number of programs. Addresses differ from run to run: the system
places the parts of a process at random, and each run first allocates another amount of memory. If all
runs agree, only a summary is printed, otherwise the first line that differs.
"""

import argparse
import itertools
import pathlib
import subprocess
import sys
import tempfile


def first_difference(reference, lines):
    """The number and the two texts of the first line that differs, or None."""
    for number, (expected, found) in enumerate(itertools.zip_longest(reference, lines), start=1):
        if expected != found:
            return number, expected, found
    return None


def run(command, reference):
    """Compares the output of the command with the lines of the file; ends the program on a difference."""
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        with open(reference, "rb") as expected:
            difference = first_difference(expected, process.stdout)
        if difference is not None:
            process.kill()
            number, expected, found = difference
            sys.exit(f"{' '.join(command)}: line {number} differs:\n  first run: {expected!r}\n"
                     f"  this run:  {found!r}")
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit status {process.returncode}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--runs", type=int, default=20)
    parser.add_argument("--calls", type=int, default=1000000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("programs", nargs="+")
    options = parser.parse_args()

    randomized = pathlib.Path("/proc/sys/kernel/randomize_va_space")
    if randomized.exists() and randomized.read_text().strip() == "0":
        print("the system does not randomize addresses: only the memory taken first differs")

    def command(i):
        program = options.programs[i % len(options.programs)]
        return [program, str(options.seed), str(options.calls), str(1000 * i)]

    with tempfile.TemporaryDirectory() as folder:
        reference = pathlib.Path(folder) / "journal"
        with open(reference, "wb") as first:
            subprocess.run(command(0), stdout=first, check=True)
        with open(reference, "rb") as first:
            last_line = None
            for last_line in first:
                pass
        for i in range(1, options.runs):
            run(command(i), reference)
    print(f"{options.runs} runs of {len(options.programs)} programs agree: "
          f"{last_line.decode().strip()}")


if __name__ == "__main__":
    main()

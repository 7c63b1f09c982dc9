#!/usr/bin/env python3
"""Lets z3 or cvc5 prove that real scripts that the example `simplify` has simplified equal the originals.

The environment variable QUILL_CORPUS names a folder of SMT-LIB scripts.  For each script that the
example reads, `simplify --difference` writes one that is satisfiable only if an assertion and its
simplified form differ.  A judge must never answer sat, and must answer unsat for nearly all: the
proof is mostly easy, but some assertions are hard even when they are compared with themselves.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 nothing to
check because QUILL_CORPUS is unset or no judge is installed.
"""

import argparse
import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys

JUDGES = {
    "z3": ["z3", "-smt2", "-T:{seconds}", "{file}"],
    "cvc5": ["cvc5", "--lang=smt2", "--fp-exp", "--tlimit={milliseconds}", "{file}"],
}
SECONDS = 20
LEAST_PROVED = 0.95
SKIPPED = 77


def answer(judge, file):
    """The first line of a judge's answer to a script."""
    command = [
        part.format(seconds=SECONDS, milliseconds=1000 * SECONDS, file=file)
        for part in JUDGES[judge]
    ]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    lines = done.stdout.split("\n")
    return lines[0] if lines[0] in ("sat", "unsat") else "unknown"


def check(simplify, script, judges, folder):
    """The outcome for one script: refused, unsat, unknown, or a failure in words."""
    done = subprocess.run([simplify, "--difference", script], capture_output=True, check=False)
    if done.returncode != 0:
        return "refused" if done.returncode == 1 else f"simplify ended with {done.returncode}"
    file = pathlib.Path(folder) / (script.parent.name + "-" + script.name)
    file.write_bytes(done.stdout)
    result = "unknown"
    for judge in judges:
        said = answer(judge, file)
        if said == "sat":
            return f"{judge} finds a difference"
        if said == "unsat":
            result = "unsat"
            break
    file.unlink()
    return result


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--simplify", required=True, help="the program of the example")
    parser.add_argument("--folder", required=True, help="where the scripts for the judges go")
    options = parser.parse_args()
    corpus = os.environ.get("QUILL_CORPUS")
    judges = [judge for judge in JUDGES if shutil.which(judge)]
    if not corpus or not judges:
        print("QUILL_CORPUS is unset" if not corpus else "neither z3 nor cvc5 is installed")
        return SKIPPED
    os.makedirs(options.folder, exist_ok=True)
    scripts = [
        script
        for script in sorted(pathlib.Path(corpus).rglob("*.smt2"))
        if script.parent.name != "bad"
    ]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(
            pool.map(lambda s: check(options.simplify, s, judges, options.folder), scripts)
        )
    failures = 0
    for script, result in zip(scripts, results):
        if result not in ("refused", "unsat", "unknown"):
            failures += 1
            print(f"{script}: {result}")
    proved = results.count("unsat")
    open_ones = results.count("unknown")
    print(f"{len(scripts)} scripts: {proved} proved, {open_ones} open, "
          f"{results.count('refused')} refused by the reader, {failures} failures")
    if proved < LEAST_PROVED * (proved + open_ones) or proved == 0:
        print("too few proofs")
        return 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

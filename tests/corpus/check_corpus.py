#!/usr/bin/env python3
"""Checks `quill-smt2 print` on a folder of SMT-LIB benchmarks.

The environment variable QUILL_CORPUS names the folder: one sub-folder for each logic and two tables,

    EXPECTED.tsv   path <TAB> the answers of the file in order, separated by blanks
    FLAGS.tsv      path <TAB> flags separated by commas, "-" if there is none; one head line

A sub-folder names27 with a table EXPECTED.tsv of its own may hold files that use names of operators
which came with SMT-LIB 2.7.

Every file is printed.  The print must be a fixed point: the print of the print has the same bytes.  Each
installed solver, z3 and cvc5, must give the expected answers to the print; cvc5 reads it with its strict
parser, unless the flags say that this refuses the file itself.  What the get- commands produce is ignored.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 nothing to
check because QUILL_CORPUS is unset.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

# The option that each get- command needs.  The files leave their options out.
OPTIONS_OF_COMMANDS = {
    "get-model": ":produce-models",
    "get-value": ":produce-models",
    "get-assignment": ":produce-assignments",
    "get-unsat-core": ":produce-unsat-cores",
    "get-unsat-assumptions": ":produce-unsat-assumptions",
}

JUDGES = ("z3", "cvc5")
# The flag on a file that the strict parser of cvc5 refuses as it stands.
REFUSED_BY_STRICT_PARSER = "cvc5-strict:refused"

# These files convert bit-vectors to integers, by a name that strict readers do not know.
NAMES27 = "names27"
NAMES27_FLAGS = {REFUSED_BY_STRICT_PARSER}

TIMEOUT_SECONDS = 300
SKIPPED = 77


class Failure(Exception):
    """A check of one file that did not hold."""


def read_table(path):
    """The rows of a tab-separated table of two columns, as a dictionary."""
    rows = (line.split("\t") for line in path.read_text().splitlines() if "\t" in line)
    return {row[0]: row[1] for row in rows}


def run(command, stdin=None):
    """Runs a command and returns what it wrote to standard output, its errors, and its status."""
    try:
        done = subprocess.run(
            command, input=stdin, capture_output=True, timeout=TIMEOUT_SECONDS, check=False)
    except subprocess.TimeoutExpired:
        raise Failure(f"{command[0]}: no end after {TIMEOUT_SECONDS} seconds") from None
    return done.stdout, done.stderr.decode(errors="replace"), done.returncode


def print_script(command, script):
    """The print of a script given as bytes."""
    out, err, status = run([command, "print", "-"], script)
    if status != 0:
        raise Failure(f"print: exit status {status}: {err.strip()}")
    if not out:
        raise Failure("print: no output")
    return out


def solver_input(solver, script, flags):
    """The script as the solver needs it: options for get- commands first, and the logic ALL where needed."""
    options = {option for command, option in OPTIONS_OF_COMMANDS.items()
               if f"({command}".encode() in script}
    head = "".join(f"(set-option {option} true)\n" for option in sorted(options))
    if f"{solver}:logic-ALL" in flags:
        script = re.sub(rb"\(set-logic [A-Z_]+\)", b"(set-logic ALL)", script, count=1)
    return head.encode() + script


def solver_command(solver, flags, file):
    if solver == "z3":
        parameters = ["smtlib2_compliant=true"] if "z3:smtlib2_compliant" in flags else []
        return ["z3", *parameters, file]
    parameters = [flag.split(":", 1)[1] for flag in flags if flag.startswith("cvc5:--")]
    if REFUSED_BY_STRICT_PARSER not in flags:
        parameters.append("--strict-parsing")
    return ["cvc5", "--lang", "smt2", "--incremental", *parameters, file]


def check_answers(solver, script, flags, expected):
    with tempfile.NamedTemporaryFile(suffix=".smt2") as file:
        file.write(solver_input(solver, script, flags))
        file.flush()
        out, err, _ = run(solver_command(solver, flags, file.name))
    lines = (out.decode(errors="replace") + err).splitlines()
    errors = [line for line in lines if "(error" in line]
    if errors:
        raise Failure(f"{solver}: {errors[0][:300]}")
    answers = [line.strip() for line in lines if line.strip() in ("sat", "unsat", "unknown")]
    if answers == expected:
        return
    if len(answers) != len(expected):
        raise Failure(f"{solver}: {len(answers)} answers, expected {len(expected)}")
    at = next(i for i, pair in enumerate(zip(answers, expected)) if pair[0] != pair[1])
    raise Failure(f"{solver}: answer {at + 1} is {answers[at]}, expected {expected[at]}")


def check_file(path, expected, flags, arguments, solvers):
    """The failures of one file, each as a text."""
    failures = []
    script = path.read_bytes()
    if not arguments.originals:
        try:
            script = print_script(arguments.quill_smt2, script)
            if print_script(arguments.quill_smt2, script) != script:
                failures.append("print: printing the print gives another text")
        except Failure as failure:
            return [str(failure)]
    for solver in solvers:
        try:
            check_answers(solver, script, flags, expected)
        except Failure as failure:
            failures.append(str(failure))
    return failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quill-smt2", default="quill-smt2", help="the command to check")
    parser.add_argument("--print-only", action="store_true", help="ask no solver")
    parser.add_argument(
        "--originals", action="store_true",
        help="let the solvers answer the files themselves: tells a wrong print from a wrong table")
    arguments = parser.parse_args()

    folder = os.environ.get("QUILL_CORPUS")
    if not folder:
        print("corpus: QUILL_CORPUS is unset, nothing is checked")
        return SKIPPED
    root = pathlib.Path(folder)
    expected = read_table(root / "EXPECTED.tsv")
    flags = {path: set(text.split(",")) for path, text in read_table(root / "FLAGS.tsv").items()}
    if (root / NAMES27).is_dir():
        for path, answers in read_table(root / NAMES27 / "EXPECTED.tsv").items():
            expected[f"{NAMES27}/{path}"] = answers
            flags[f"{NAMES27}/{path}"] = NAMES27_FLAGS
    solvers = [] if arguments.print_only else [judge for judge in JUDGES if shutil.which(judge)]

    if not expected:
        print("corpus: no file in QUILL_CORPUS")
        return 1

    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = [(path, pool.submit(check_file, root / path, expected[path].split(),
                                   flags.get(path, set()), arguments, solvers))
                for path in sorted(expected)]
        results = [(path, job.result()) for path, job in jobs]
    for path, failures in results:
        for failure in failures:
            print(f"corpus: {path}: {failure}")
    bad = sum(1 for _, failures in results if failures)
    judges = ", ".join(solvers) if solvers else "none"
    print(f"corpus: {len(expected)} files, judges: {judges}; "
          f"{len(expected) - bad} right, {bad} wrong")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())

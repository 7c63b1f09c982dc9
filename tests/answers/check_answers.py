#!/usr/bin/env python3
"""Lets z3 and cvc5 answer small scripts after quill-smt2 has written them.

Each script is given to a subcommand of quill-smt2.  The output must be written again with the same bytes,
and each installed solver must give the answers that are listed with the script, and no other line.  The
scripts are those whose prints solvers once refused, or answered differently from the originals.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 no solver.
"""

import argparse
import dataclasses
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
TIME_LIMIT = 60

COMMANDS = {
    "z3": ["z3", "-smt2"],
    "cvc5": ["cvc5", "-q", "--lang", "smt2", "--incremental", "--fp-exp"],
}

DIVISION = "(declare-const x Int)(assert (= (div x 0) 1))"
ARRAY = "(declare-const a (Array Int Real))(assert (= a ((as const (Array Int Real)) {})))" \
        "(assert (= (select a 3) {}))(check-sat)(assert (not (= (select a 4) {})))(check-sat)"


@dataclasses.dataclass
class Case:
    """A script, the subcommand that writes it, and the answers to what it writes."""
    script: str
    answers: str = "sat"
    subcommand: tuple = ("print",)


CASES = [
    # Functions for values that the standard leaves open are declared after the logic.
    Case(f'(echo "a")(set-logic QF_NIA){DIVISION}(check-sat)', "a sat"),
    Case(f"(reset)(set-logic QF_NIA){DIVISION}(check-sat)"),
    Case(f'(echo "a")(reset)(echo "b")(set-info :status sat)(set-logic QF_NIA){DIVISION}(check-sat)',
         "a b sat"),
    Case(f"(set-logic ALL)(push 1){DIVISION}(pop 1)(declare-const y Int)"
         "(assert (not (= (div 5 0) (div y 0))))(check-sat)(assert (= y 5))(check-sat)", "sat unsat"),
    # And so are the symbols that a substitution brings.
    Case("(set-logic QF_LIA)(declare-const x Int)(assert (> x 0))(declare-const y Int)"
         "(assert (< y 1))(check-sat)", "unsat", ("substitute", "--set", "x=y")),
    Case("(set-logic QF_LRA)(declare-const x Real)(declare-const y Real)(assert (> x 0.0))"
         "(assert (< x 1.0))(check-sat)", "sat", ("substitute", "--set", "x=(/ y 0)")),
    Case("(set-logic QF_UFLIA)(declare-const x Int)(push 1)(assert (> x 0))(check-sat)(pop 1)"
         "(declare-sort S 0)(declare-const u S)(declare-fun f (S) Int)(assert (< x 0))(check-sat)"
         "(assert (> (f u) 0))(check-sat)", "sat sat unsat", ("substitute", "--set", "x=(f u)")),
    # As arguments of these functions, all NaNs are equal.
    Case("(set-logic QF_BVFP)(declare-const x Float32)(declare-const y Float32)(assert (fp.isNaN x))"
         "(assert (fp.isNaN y))(assert (distinct ((_ fp.to_ubv 8) RNE x) ((_ fp.to_ubv 8) RNE y)))"
         "(check-sat)", "unsat"),
    # Absolute values in logics of reals.
    Case("(set-logic QF_NRA)(declare-const x Real)(assert (= (ite (<= 0.0 x) x (- x)) 2.0))"
         "(assert (< x 0.0))(check-sat)(assert (> x (- 1.0)))(check-sat)", "sat unsat"),
    # Values of constant arrays.
    *(Case("(set-logic ALL)" + ARRAY.format(value, value, value), "sat unsat")
      for value in ("0.5", "(/ 1.0 2.0)", "(- 0.5)", "(- 2.0)", "(/ 1 3)", "(- (/ 7 3))", "0.0")),
    *(Case("(set-logic ALL)(declare-const a (Array Int (_ FloatingPoint 5 11)))(assert (= a "
           f"((as const (Array Int (_ FloatingPoint 5 11))) {value})))(check-sat)")
      for value in ("(_ +oo 5 11)", "(_ -oo 5 11)", "(_ +zero 5 11)", "(_ -zero 5 11)",
                    "(_ NaN 5 11)")),
    # Symbols that are named like operators with indices.
    *(Case(f"(set-logic {logic})(declare-const {name} Bool)(assert {name})(check-sat)"
           f"(assert (not {name}))(check-sat)", "sat unsat")
      for logic in ("ALL", "QF_BV", "QF_LIA", "QF_FP")
      for name in ("extract", "repeat", "divisible", "to_fp", "NaN", "char", "+oo", "int2bv")),
    Case("\ufeff(set-logic QF_UF)(declare-const p Bool)(assert p)(check-sat)"),
]


def output_of(command, text):
    """What a command writes when the text is its file."""
    with tempfile.NamedTemporaryFile(suffix=".smt2") as file:
        file.write(text.encode())
        file.flush()
        done = subprocess.run([*command, file.name], capture_output=True, check=False,
                              timeout=TIME_LIMIT)
    return (done.stdout + done.stderr).decode()


def faults_of(case, program, solvers):
    """What is wrong with the case, in lines."""
    written = output_of([program, *case.subcommand], case.script)
    if output_of([program, "print"], written) != written:
        yield f"{case.script}\n  is written as\n{written}  and not again with the same bytes"
    for solver in solvers:
        answers = output_of(COMMANDS[solver], written).replace('"', "").split()
        if answers != case.answers.split():
            yield f"{case.script}\n  is written as\n{written}  and {solver} says: {' '.join(answers)}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--quill-smt2", required=True)
    program = parser.parse_args().quill_smt2
    solvers = [name for name in COMMANDS if shutil.which(name)]
    if not solvers:
        print("skipped: neither z3 nor cvc5 is installed")
        return SKIPPED
    faults = [fault for case in CASES for fault in faults_of(case, program, solvers)]
    for fault in faults:
        print(fault)
    print(f"{len(CASES)} scripts, {' and '.join(solvers)}: {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Lets z3 and cvc5 prove that what the writer puts in the place of extensions of the standard means the same.

`quill-smt2 print` prints a script with sbv_to_int, int_to_bv or fp.to_ieee_bv.  To the printed script this
program appends the negation of a fact that the standard, or SMT-LIB 2.7, states about the operator; the
solvers must find that the two contradict each other.  The bits of a NaN are open: any pattern of a NaN must
be possible.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 no solver.
"""

import argparse
import concurrent.futures
import shutil
import subprocess
import sys

COMMANDS = {
    "z3": ["z3", "-in", "-T:{limit}"],
    "cvc5": ["cvc5", "--lang", "smt2", "--fp-exp", "--tlimit={limit}000", "-"],
}
# With more bits than these, z3 does not relate the bits of a number to its remainder in reasonable time.
Z3_BITS_OF_INT = 5
FORMATS = [(2, 3), (3, 4), (5, 11), (8, 24)]
SKIPPED = 77
TIME_LIMIT = 60  # seconds for one question


def cases():
    """Pairs of name and script, the further assertion, the answer, and the solvers to ask."""
    for w in range(1, 9):
        bits = f"(declare-const b (_ BitVec {w}))(declare-const v Int)"
        value = f"(ite (bvslt b (_ bv0 {w})) (- (bv2nat (bvneg b))) (bv2nat b))"
        yield (f"sbv_to_int of width {w}", bits + "(assert (= v (sbv_to_int b)))",
               f"(not (= v {value}))", "unsat", list(COMMANDS))
        yield (f"int_to_bv of width {w}", bits + f"(assert (= b ((_ int_to_bv {w}) v)))",
               f"(not (= (bv2nat b) (mod v {2 ** w})))", "unsat",
               list(COMMANDS) if w <= Z3_BITS_OF_INT else ["cvc5"])
        two = f"(declare-const b (_ BitVec 4))(declare-const c (_ BitVec {w}))"
        for name, value in (("ubv_to_int", "(bv2nat b)"),
                            ("sbv_to_int", "(ite (bvslt b #x0) (- (bv2nat (bvneg b))) (bv2nat b))")):
            yield (f"int_to_bv of width {w} of {name}",
                   two + f"(assert (= c ((_ int_to_bv {w}) ({name} b))))",
                   f"(not (= (bv2nat c) (mod {value} {2 ** w})))", "unsat", list(COMMANDS))
    for e, s in FORMATS:
        floats = f"(declare-const f (_ FloatingPoint {e} {s}))(declare-const g (_ FloatingPoint {e} {s}))"
        width = e + s
        script = (floats + f"(declare-const b (_ BitVec {width}))(declare-const c (_ BitVec {width}))"
                  "(assert (= b (fp.to_ieee_bv f)))(assert (= c (fp.to_ieee_bv g)))")
        name = f"fp.to_ieee_bv of format ({e}, {s})"
        top = width - 1
        for what, assertion, expected in (
                ("reads back", f"(not (= f ((_ to_fp {e} {s}) b)))", "unsat"),
                ("is a function", "(and (= f g) (not (= b c)))", "unsat"),
                ("tells zeros apart", f"(and (= f (_ -zero {e} {s})) (not (= b (concat #b1 (_ bv0 {top})))))",
                 "unsat"),
                ("of NaN may be negative", f"(and (fp.isNaN f) (= ((_ extract {top} {top}) b) #b1))", "sat"),
                ("of NaN may be positive", f"(and (fp.isNaN f) (= ((_ extract {top} {top}) b) #b0))", "sat"),
                ("of NaN may be odd", "(and (fp.isNaN f) (= ((_ extract 0 0) b) #b1))", "sat")):
            yield (f"{name} {what}", script, assertion, expected, list(COMMANDS))


def check(command, case, solvers):
    """What is wrong with a case, as messages."""
    name, script, assertion, expected, judges = case
    done = subprocess.run([command, "print", "-"], input="(set-logic ALL)" + script, capture_output=True,
                          text=True, check=False)
    if done.returncode != 0:
        return [f"{name}: not printed: {done.stderr.strip()}"]
    for extension in ("fp.to_ieee_bv", "sbv_to_int", "int_to_bv", "int2bv"):
        if extension in done.stdout:
            return [f"{name}: {extension} is printed"]
    faults = []
    for solver in judges:
        if solver not in solvers:
            continue
        arguments = [argument.format(limit=TIME_LIMIT) for argument in COMMANDS[solver]]
        question = f"{done.stdout}(assert {assertion})(check-sat)\n"
        answer = subprocess.run(arguments, input=question, capture_output=True, text=True, check=False)
        said = (answer.stdout + answer.stderr).strip()
        if said != expected:
            faults.append(f"{name}: {solver}: {said[:200] or 'no answer'} instead of {expected}")
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quill-smt2", required=True, help="the command to check")
    arguments = parser.parse_args()
    solvers = [solver for solver in COMMANDS if shutil.which(solver)]
    if not solvers:
        print("encoding: no solver is installed")
        return SKIPPED
    every = list(cases())
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = [pool.submit(check, arguments.quill_smt2, case, solvers) for case in every]
        faults = [fault for job in jobs for fault in job.result()]
    for fault in faults:
        print(f"encoding: {fault}")
    print(f"encoding: {len(every)} cases, judges: {', '.join(solvers)}; {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

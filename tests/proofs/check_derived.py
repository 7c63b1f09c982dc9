#!/usr/bin/env python3
"""Lets z3 and cvc5 prove that the expansions of the reader mean what the standard says.

`quill-smt2 print` reads and prints each operator for which the term manager has no symbol within an equation,
(= r (OP x y)).  The print holds the operator's expansion instead of the operator.  The solvers, which are the
judges here, get the assertion that the printed equation and the original one differ, and must answer unsat.
Operators that the judges do not know are replaced by the definition of the standard, written down here
independently of the expansion, in most cases in a wider sort, where nothing overflows.

Where the standard leaves a value open, such as that of a division by zero, the expansion must be a function
and admit any value: for each of these operators an input out of its range may have either of two results
(sat), but not both at once (unsat).

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 no solver.
"""

import argparse
import concurrent.futures
import dataclasses
import re
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77

# Questions that these judges do not answer within a minute; the other judge does.
TOO_SLOW = {
    "(bvsmod x y) of width 16": {"cvc5"},
    "(bvsmod x y) of width 24": {"cvc5"},
    "(bvsmod x y) of width 32": {"cvc5"},
    "(bvsmod x y) of width 64": {"cvc5"},
}

# z3 4.8.12 has uninterpreted functions in this logic, and does not know the name with UF.
LOGICS = {"cvc5": {"QF_BVFP": "QF_UFBVFP"}}


@dataclasses.dataclass
class Case:
    """A term with an expansion, or assertions with an answer."""
    name: str
    logic: str  # for the judges; quill-smt2 reads everything without a logic
    declarations: str
    term: str = ""  # as quill-smt2 reads it
    sort: str = ""  # of the term
    judged: str = ""  # as the judges read it; empty when they know the operator
    assume: str = "true"  # the inputs for which the value is defined
    assertions: tuple = ()  # instead of a term
    expected: str = "unsat"

    def script(self):
        """What quill-smt2 reads."""
        lines = [self.declarations]
        if self.term:
            lines += [f"(declare-const result {self.sort})", f"(assert (= result {self.term}))"]
        else:
            lines += [f"(assert {text})" for text in self.assertions]
        return "\n".join(lines)

    def query(self, printed, judge):
        """What a judge reads, from the printed script."""
        lines = [f"(set-logic {LOGICS.get(judge, {}).get(self.logic, self.logic)})"]
        lines += [line for line in printed if not line.startswith("(assert ")]
        asserted = [line[len("(assert "):-1] for line in printed if line.startswith("(assert ")]
        if self.term:
            original = f"(= result {self.judged or self.term})"
            lines += [f"(assert {self.assume})", f"(assert (distinct {original} {asserted[0]}))"]
        else:
            lines += [f"(assert {text})" for text in asserted]
        return "\n".join(lines + ["(check-sat)"])


# ----- the operators ------------------------------------------------------------------------------

def constants(names, sort):
    return "".join(f"(declare-const {name} {sort})" for name in names)


def core_cases():
    declarations = constants("xyz", "Bool") + constants("ijk", "Int")
    terms = [
        "(xor x y)", "(xor x y z)", "(=> x y)", "(=> x y z)", "(ite x y z)", "(= x y)", "(= x y z)",
        "(distinct x y)", "(distinct x y z)", "(and x y z)", "(or x y z)", "(= i j k)", "(distinct i j k)",
    ]
    for term in terms:
        yield Case(term, "QF_LIA", declarations, term, "Bool")


def arithmetic_cases():
    declarations = constants("ij", "Int") + constants("xyz", "Real")
    for term in ["(< i j)", "(> i j)", "(>= i j)", "(< x y z)", "(> x y z)", "(>= x y z)", "(<= x y z)",
                 "(is_int x)"]:
        yield Case(term, "ALL", declarations, term, "Bool")
    for term in ["(- x)", "(- x y z)", "(+ x y z)", "(/ x 3)", "(/ x (- 3))", "(/ x 2 (/ 1 5))",
                 "(* 2 x)", "(to_real i)", "(to_real (to_int x))"]:
        yield Case(term, "ALL", declarations, term, "Real")
    yield Case("(abs x)", "ALL", declarations, "(abs x)", "Real", "(ite (< x 0.0) (- x) x)")
    for term in ["(- i)", "(- i j)", "(abs i)", "(abs (- i j))", "(to_int x)", "(div i 3 (- 2))"]:
        yield Case(term, "ALL", declarations, term, "Int")
    for divisor in ["1", "2", "3", "7", "8", "1000", "(- 1)", "(- 2)", "(- 3)", "(- 8)"]:
        yield Case(f"(div i {divisor})", "ALL", declarations, f"(div i {divisor})", "Int")
        yield Case(f"(mod i {divisor})", "ALL", declarations, f"(mod i {divisor})", "Int")
    for divisor in [1, 2, 3, 7, 8, 1000]:
        yield Case(f"(_ divisible {divisor})", "ALL", declarations, f"((_ divisible {divisor}) i)", "Bool",
                   f"(= (mod i {divisor}) 0)")


def bits(value, width):
    return f"(_ bv{value % 2 ** width} {width})"


def overflow_terms(width):
    """The predicates of SMT-LIB 2.7 with their definitions: the exact result is beyond the bounds."""
    def unsigned(op, extra):
        x, y = (f"((_ zero_extend {extra}) {name})" for name in "xy")
        return f"(bvugt ({op} {x} {y}) {bits(2 ** width - 1, width + extra)})"

    def signed(result, extra):
        low, high = bits(-2 ** (width - 1), width + extra), bits(2 ** (width - 1) - 1, width + extra)
        return f"(or (bvslt {result} {low}) (bvsgt {result} {high}))"

    def extended(name, extra=1):
        return f"((_ sign_extend {extra}) {name})"

    wide_x, wide_y = extended("x"), extended("y")
    difference = "(bvsub ((_ zero_extend 1) x) ((_ zero_extend 1) y))"
    product = f"(bvmul {extended('x', width)} {extended('y', width)})"
    return {
        "(bvnego x)": signed(f"(bvneg {wide_x})", 1),
        "(bvuaddo x y)": unsigned("bvadd", 1),
        "(bvsaddo x y)": signed(f"(bvadd {wide_x} {wide_y})", 1),
        "(bvusubo x y)": f"(bvslt {difference} {bits(0, width + 1)})",
        "(bvssubo x y)": signed(f"(bvsub {wide_x} {wide_y})", 1),
        "(bvumulo x y)": unsigned("bvmul", width),
        "(bvsmulo x y)": signed(product, width),
        # A quotient by zero is no result that could overflow.
        "(bvsdivo x y)": f"(and (distinct y {bits(0, width)}) {signed(f'(bvsdiv {wide_x} {wide_y})', 1)})",
    }


def bit_vector_cases(width):
    sort = f"(_ BitVec {width})"
    declarations = constants("xyz", sort)

    def case(term, result=sort, judged="", logic="QF_BV"):
        return Case(f"{term} of width {width}", logic, declarations, term, result, judged)

    for op in ["bvnand", "bvnor", "bvxnor", "bvsmod", "bvsub"]:
        yield case(f"({op} x y)")
    for op in ["bvand", "bvor", "bvxor", "bvadd", "bvmul"]:
        yield case(f"({op} x y z)")
    for op in ["bvule", "bvugt", "bvuge", "bvslt", "bvsle", "bvsgt", "bvsge", "distinct"]:
        yield case(f"({op} x y)", "Bool")
    yield case("(= x y z)", "Bool")
    yield case("(bvcomp x y)", "(_ BitVec 1)")
    yield case("(bvredor x)", "(_ BitVec 1)", f"(ite (= x {bits(0, width)}) #b0 #b1)")
    yield case("(bvredand x)", "(_ BitVec 1)", f"(ite (= x {bits(-1, width)}) #b1 #b0)")
    for times in [1, 2, 3, 4, 5, 7]:
        yield case(f"((_ repeat {times}) x)", f"(_ BitVec {times * width})",
                   "(concat" + " x" * times + ")" if times > 1 else "x")
    yield case("(concat x y z)", f"(_ BitVec {3 * width})", "(concat (concat x y) z)")
    for by in [0, 1, width - 1, width, width + 1, 3 * width + 2]:
        left, right = by % width, -by % width
        for op, high in [("rotate_left", left), ("rotate_right", right)]:
            low_part = f"((_ extract {width - high - 1} 0) x)"
            judged = f"(concat {low_part} ((_ extract {width - 1} {width - high}) x))" if high else "x"
            yield case(f"((_ {op} {by}) x)", judged=judged)
    for by in [0, 1, width]:
        for op in ["zero_extend", "sign_extend"]:
            yield case(f"((_ {op} {by}) x)", f"(_ BitVec {width + by})")
    for term, judged in overflow_terms(width).items():
        yield case(term, "Bool", judged)


def integer_cases(width):
    declarations = constants("x", f"(_ BitVec {width})") + constants("i", "Int")
    signed = f"(ite (bvslt x {bits(0, width)}) (- (bv2nat x) {2 ** width}) (bv2nat x))"
    for term, judged in [("(bv2nat x)", ""), ("(ubv_to_int x)", "(bv2nat x)"), ("(sbv_to_int x)", signed)]:
        yield Case(f"{term} of width {width}", "ALL", declarations, term, "Int", judged)
    # Three names of one operator, printed bit by bit, by divisions. Beyond 4 bits the judges need
    # bounds of i.
    bounds = "true" if width <= 4 else f"(and (<= (- {2 ** width}) i) (< i {2 ** width}))"
    for op in ["int2bv", "nat2bv", "int_to_bv"] if width <= 4 else ["int_to_bv"]:
        term = f"((_ {op} {width}) i)"
        yield Case(term, "ALL", declarations, term, f"(_ BitVec {width})", f"((_ int2bv {width}) i)", bounds)


def float_sort(e, m):
    return f"(_ FloatingPoint {e} {m + 1})"


def float_cases(e, m):
    sort = float_sort(e, m)
    declarations = (constants("xyz", sort) + "(declare-const rm RoundingMode)(declare-const s (_ BitVec 1))"
                    f"(declare-const ex (_ BitVec {e}))(declare-const ma (_ BitVec {m}))")

    def case(term, result=sort, judged="", logic="QF_BVFP"):
        return Case(f"{term} of format ({e}, {m})", logic, declarations, term, result, judged)

    for op in ["fp.gt", "fp.geq", "fp.lt", "fp.leq", "fp.eq", "=", "distinct"]:
        yield case(f"({op} x y)", "Bool")
        yield case(f"({op} x y z)", "Bool")
    zero, one = f"#b{'0' * m}", f"#b{'1' * m}"
    for term in ["(fp s ex ma)", f"(fp #b1 ex {zero})", f"(fp s #b{'1' * e} {zero})",
                 f"(fp #b0 #b{'0' * e} ma)", f"(fp #b1 #b{'0' * e} {one})",
                 f"(fp #b0 #b{'1' * e} {one})", f"(_ +oo {e} {m + 1})",
                 f"(_ -oo {e} {m + 1})", f"(_ +zero {e} {m + 1})", f"(_ -zero {e} {m + 1})",
                 f"(_ NaN {e} {m + 1})"]:
        yield case(term)
    for mode in ["RNE", "RTZ", "RTP", "RTN"]:
        yield case(f"(= rm {mode})", "Bool")
        for constant in ["0.1", "(- 0.1)", "(/ 1 3)", "(- (/ 1.0 3.0))", "1.0", "0.0", "1.03125", "12.34375",
                         "0.0000001", "(- 0.0000001)", "123456789012.0", "(- 123456789012.0)"]:
            yield case(f"((_ to_fp {e} {m + 1}) {mode} {constant})", logic="QF_BVFPLRA")


def to_ubv_cases(e, m, width):
    sort = float_sort(e, m)
    # The value is defined where x rounds to 0 .. 2^width - 1. The question uses a format that has 2^width;
    # and z3 4.8.12 gives up on fp.roundToIntegral in (3, 3).
    e_wide, m_wide = max(e, 8), max(m, 23)
    whole = f"(fp.roundToIntegral rm ((_ to_fp {e_wide} {m_wide + 1}) RNE x))"
    power = f"(fp #b0 #b{width + 2 ** (e_wide - 1) - 1:0{e_wide}b} #b{'0' * m_wide})"
    yield Case(f"fp.to_ubv to width {width} of format ({e}, {m})", "QF_BVFP",
               f"(declare-const x {sort})(declare-const rm RoundingMode)", f"((_ fp.to_ubv {width}) rm x)",
               f"(_ BitVec {width})",
               assume=f"(and (fp.leq (_ +zero {e_wide} {m_wide + 1}) {whole}) (fp.lt {whole} {power}))")


def undefined_cases():
    """Two results for one input: each of them, but not both."""
    half = "(declare-const x (_ FloatingPoint 5 11))(declare-const y (_ FloatingPoint 5 11))"
    equal = ["(= x ((_ to_fp 5 11) RNE 256.0))", "(= x y)"]
    rows = [
        ("(div i 0)", "(div j 0)", "Int", constants("ij", "Int"), ["(= i j)"]),
        ("(mod i 0)", "(mod j 0)", "Int", constants("ij", "Int"), ["(= i j)"]),
        ("(/ u 0)", "(/ v 0)", "Int", constants("uv", "Real"), ["(= u v)"]),
        ("((_ fp.to_ubv 8) RNE x)", "((_ fp.to_ubv 8) RNE y)", "bits", half, equal),
        ("((_ fp.to_ubv 8) RTZ x)", "((_ fp.to_ubv 8) RTZ y)", "bits", half,
         ["(= x (_ -oo 5 11))", "(= x y)"]),
        ("((_ fp.to_ubv 8) RTN x)", "((_ fp.to_ubv 8) RTN y)", "bits", half,
         ["(= x ((_ to_fp 5 11) RNE (- 0.5)))", "(= x y)"]),
        ("((_ fp.to_ubv 8) RNE x)", "((_ fp.to_ubv 8) RNE y)", "bits", half,
         ["(= x (_ NaN 5 11))", "(= y (_ NaN 5 11))"]),
        # Of any bits: z3 4.8.12 tells them apart as arguments of functions.
        ("((_ fp.to_ubv 8) RNE x)", "((_ fp.to_ubv 8) RNE y)", "bits", half,
         ["(fp.isNaN x)", "(fp.isNaN y)"]),
    ]
    for one, other, kind, declarations, facts in rows:
        low, high = ("1", "2") if kind == "Int" else ("#x01", "#xfe")
        for name, assertions, expected in [
                ("one result", [f"(= {one} {low})"], "sat"),
                ("another result", [f"(= {one} {high})"], "sat"),
                ("two results", [f"(= {one} {low})", f"(= {other} {high})"], "unsat")]:
            yield Case(f"{name} of {one} for {facts[0]}", "ALL", declarations,
                       assertions=tuple(facts + assertions), expected=expected)


def ieee_bits_cases():
    """What holds of the bits of a float, an operator beyond the standard that is printed as a constant."""
    declarations = constants("xy", "(_ FloatingPoint 5 11)")
    bits_of = "(= (fp.to_ieee_bv x) (fp.to_ieee_bv y))"
    for assertion in ["(distinct x ((_ to_fp 5 11) (fp.to_ieee_bv x)))", f"(distinct (= x y) {bits_of})"]:
        yield Case(assertion, "QF_BVFP", declarations, assertions=(assertion,))


def all_cases(large):
    cases = [*core_cases(), *arithmetic_cases()]
    for width in [*range(1, 9), 32] + ([16, 24, 64] if large else []):
        cases += bit_vector_cases(width)
    for width in range(1, 9):
        cases += integer_cases(width)
    for e, m in [(3, 3), (5, 10), (8, 23)] + ([(2, 2), (4, 11), (11, 52)] if large else []):
        cases += float_cases(e, m)
        for width in [*range(1, 9), 32] + ([16, 24, 64] if large else []):
            cases += to_ubv_cases(e, m, width)
    cases += ieee_bits_cases()
    cases += undefined_cases()
    return cases


# ----- reading and judging ------------------------------------------------------------------------

def printed_scripts(command, cases):
    """The lines that are printed for each case, one command a line."""
    with tempfile.NamedTemporaryFile("w", suffix=".smt2") as file:
        file.write("\n(reset)\n".join(case.script() for case in cases))
        file.flush()
        done = subprocess.run([command, "print", file.name], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise SystemExit(f"derived operators: quill-smt2 refuses them: {done.stderr.strip()[-300:]}")
    scripts = [[]]
    for line in done.stdout.splitlines():
        if line == "(reset)":
            scripts.append([])
        else:
            scripts[-1].append(line)
    return scripts


def command_of(judge, seconds):
    return {
        "z3": ["z3", "-smt2", f"-t:{1000 * seconds}"],
        "cvc5": ["cvc5", "--lang=smt2", "--incremental", "--fp-exp", f"--tlimit-per={1000 * seconds}"],
    }[judge]


def judge_batch(judge, batch, seconds):
    """The failures among (index, case, query)."""
    text = "\n(reset)\n".join(f'(echo "@case {i}")\n{query}' for i, _, query in batch)
    with tempfile.NamedTemporaryFile("w", suffix=".smt2") as file:
        file.write(text)
        file.flush()
        done = subprocess.run([*command_of(judge, seconds), file.name], capture_output=True, text=True,
                              check=False)
    answers = {}
    current = None
    for line in (done.stdout + done.stderr).splitlines():
        marker = re.search(r"@case (\d+)", line)
        if marker:
            current = int(marker[1])
        elif line.strip() and "unsupported" not in line and not line.startswith(";"):
            answers.setdefault(current, line.strip())
    failures = []
    for i, case, _ in batch:
        answer = answers.get(i, "no answer")
        if answer != case.expected:
            failures.append(f"{case.name}: {judge} says {answer[:200]}, not {case.expected}")
    return failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quill-smt2", default="quill-smt2", help="the command to check")
    parser.add_argument("--large", action="store_true", help="larger widths and formats, too; takes long")
    parser.add_argument("--timeout", type=int, default=60, help="seconds for one answer")
    parser.add_argument("--batch", type=int, default=40, help="questions for one solver process")
    parser.add_argument("--only", default="", help="the cases whose name this regular expression finds")
    parser.add_argument("--times", action="store_true", help="one case at a time, with the seconds it takes")
    arguments = parser.parse_args()
    judges = [judge for judge in ["z3", "cvc5"] if shutil.which(judge)]
    if not judges:
        print("derived operators: no solver is installed")
        return SKIPPED

    cases = [case for case in all_cases(arguments.large) if re.search(arguments.only, case.name)]
    scripts = printed_scripts(arguments.quill_smt2, cases)
    failures = []
    count = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = []
        for judge in judges:
            asked = [(i, case, case.query(scripts[i], judge)) for i, case in enumerate(cases)
                     if judge not in TOO_SLOW.get(case.name, ())]
            count += len(asked)
            step = 1 if arguments.times else arguments.batch
            for first in range(0, len(asked), step):
                batch = asked[first:first + step]
                start = time.monotonic()
                jobs.append(pool.submit(judge_batch, judge, batch, arguments.timeout))
                if arguments.times:
                    jobs[-1].result()
                    print(f"{time.monotonic() - start:7.2f} s  {judge:5} {batch[0][1].name}", flush=True)
        for job in jobs:
            failures += job.result()
    for failure in failures:
        print(f"derived operators: {failure}")
    print(f"derived operators: {len(cases)} cases, {count} answers, judges: {', '.join(judges)}; "
          f"{len(failures)} failures")
    return 1 if failures or not cases else 0


if __name__ == "__main__":
    sys.exit(main())

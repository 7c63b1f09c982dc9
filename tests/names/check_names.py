#!/usr/bin/env python3
"""Lets z3 and cvc5 answer scripts full of names, and their prints by `quill-smt2 print`: the answers must agree.

The scripts are the stored ones below, each of which once showed a mistake, and random ones over push, pop,
assert, check-sat, check-sat-assuming, get-value, get-unsat-core, get-assignment, definitions, let, reset,
reset-assertions and echo.  The random scripts assert the value of every variable, so that there is one model
and, because at most one labelled assertion at a time is false, one core that matters.

The program compares answers, messages, values in order, cores, and assignments as sets of names.  z3 lists
defined constants among the assignments; only names that :named gave count.  cvc5 keeps one name for each term;
names of one term count as one.  It keeps names beyond (reset-assertions), with any value, so that its
assignments are not compared in such scripts.  A solver that refuses the original is not asked about the print.

Prints the failures and one closing line.  Exit status: 0 all is well, 1 a check failed, 77 no solver.
"""

import argparse
import concurrent.futures
import random
import re
import shutil
import subprocess
import sys
import tempfile

COMMANDS = {
    "z3": ["z3", "-smt2", "-T:100"],
    "cvc5": ["cvc5", "--lang", "smt2", "--incremental", "--tlimit=100000"],
}
SKIPPED = 77
OPTIONS = ("(set-option :produce-models true)(set-option :produce-unsat-cores true)"
           "(set-option :produce-assignments true)")
HEAD = (OPTIONS + "(set-logic QF_LIA)(declare-const x Int)(declare-const p Bool)(declare-const q Bool)"
        "(define-fun f () Bool (! (> x 0) :named n))")
STORED = [
    HEAD + "(push 1)(assert f)(pop 1)(assert n)(assert (< x 0))(check-sat)",
    HEAD + "(push 1)(assert f)(pop 1)(assert (< x 0))(check-sat-assuming (n))",
    HEAD + "(push 1)(assert f)(pop 1)(assert (= x 1))(check-sat)(get-value (n f))(get-assignment)",
    HEAD + "(push 1)(assert (let ((y (! (> x 5) :named m))) (= x 1)))(check-sat)(get-value (m))(pop 1)",
    HEAD + "(assert (! (> x 0) :named a))(define-fun d () Bool (! (> x 0) :named b))(assert a)(assert b)"
    "(assert (= x 1))(check-sat)(get-value (a b))",
    HEAD + "(assert (and p (not q)))(check-sat-assuming ((! p :named m) (or p q)))(get-assignment)",
    HEAD + "(assert (and p (not q)))(check-sat)(get-value ((! p :named m) (or p q)))(get-value (m))",
    HEAD + "(assert f)(assert (! (< x 0) :named k))(check-sat)(get-unsat-core)",
    HEAD + "(assert (! f :named m))(assert (! (< x 0) :named k))(check-sat)(get-unsat-core)",
]


# ----- random scripts -------------------------------------------------------------------------------------


class Term:
    """A text, the value that it has, and the same without names and definitions."""

    def __init__(self, text, value, plain):
        self.text, self.value, self.plain = text, value, plain


def apply(operator, arguments):
    values = [a.value for a in arguments]
    value = {
        "and": lambda: all(values),
        "or": lambda: any(values),
        "not": lambda: not values[0],
        "xor": lambda: values[0] != values[1],
        "=>": lambda: not values[0] or values[1],
        "ite": lambda: values[1] if values[0] else values[2],
        "<=": lambda: values[0] <= values[1],
        "=": lambda: values[0] == values[1],
        "+": lambda: sum(values),
        "-": lambda: values[0] - values[1],
    }[operator]()
    join = lambda key: "({} {})".format(operator, " ".join(key(a) for a in arguments))
    return Term(join(lambda a: a.text), value, join(lambda a: a.plain))


class Scope:
    def __init__(self):
        self.names = {}    # of terms: name -> Term
        self.defined = {}  # constants
        self.macros = {}   # name -> function from arguments to a Term
        self.labels = []   # of assertions, as pairs of name and value
        self.is_false = False


class RandomScript:
    """After the construction: the text; all names; the plain term of each name, in order of naming."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.lines = []
        self.terms_of_names = {}
        self.count = 0
        # What not all readers have: names within let and definitions with parameters and in get-value.
        self.is_wide = self.chance(3)
        self.is_global = self.chance(5)
        self.begin()
        for _ in range(self.random.randint(5, 25)):
            self.command()
        self.ask()
        self.text = "\n".join(self.lines) + "\n"

    def chance(self, one_in):
        return self.random.randrange(one_in) == 0

    def fresh(self, base):
        self.count += 1
        return f"{base}{self.count}"

    # Most names are new; some were used in a scope that has ended.
    def new_name(self):
        if self.terms_of_names and self.chance(3):
            old = self.random.choice(sorted(self.terms_of_names))
            if not self.is_global and not any(old in s.names for s in self.scopes) and old not in self.pending:
                return old
        return self.fresh("n") if not self.chance(8) else f"|n {self.fresh('')}|"

    def begin(self):
        self.scopes = [Scope()]
        self.pending = []
        options = OPTIONS
        if self.is_global:
            options += "(set-option :global-declarations true)"
        self.lines.append(options + "(set-logic QF_LIA)")
        self.declare()

    def declare(self):
        self.variables = []
        for sort in ("Bool", "Bool", "Bool", "Int", "Int"):
            name = self.fresh("v")
            value = self.chance(2) if sort == "Bool" else self.random.randint(-9, 9)
            self.lines.append(f"(declare-const {name} {sort})")
            self.variables.append((sort, Term(name, value, name)))
        self.pin()

    def pin(self):
        for sort, v in self.variables:
            self.lines.append(f"(assert (= {v.text} {self.literal(v.value)}))")

    @staticmethod
    def literal(value):
        if isinstance(value, bool):
            return "true" if value else "false"
        return str(value) if value >= 0 else f"(- {-value})"

    # ----- terms

    def known(self, table):
        return [(name, value) for scope in self.scopes for name, value in getattr(scope, table).items()]

    def integer(self, depth, local):
        choice = self.random.randrange(5)
        if depth == 0 or choice < 2:
            pool = [t for sort, t in self.variables + local if sort == "Int"]
            if pool and not self.chance(3):
                return self.random.choice(pool)
            number = self.random.randint(10, 9999)
            return Term(str(number), number, str(number))
        if choice == 2:
            condition = self.boolean(depth - 1, local)
            return apply("ite", [condition] + [self.integer(depth - 1, local) for _ in range(2)])
        return apply(self.random.choice("+-"), [self.integer(depth - 1, local) for _ in range(2)])

    def boolean(self, depth, local=(), in_binder=False):
        local = list(local)
        choice = self.random.randrange(12)
        if depth == 0 or choice < 2:
            if self.chance(2):
                return self.random.choice([t for sort, t in self.variables + local if sort == "Bool"])
            n = self.random.randint(10, 99999)
            left = self.random.choice([t for sort, t in self.variables + local if sort == "Int"])
            return apply(self.random.choice(["<=", "="]), [left, Term(str(n), n, str(n))])
        if choice < 5 and (not in_binder or self.is_wide):
            return self.named(depth, local, in_binder)
        if choice == 5:
            names = [(n, t) for n, t in self.known("names") + self.known("defined")
                     if isinstance(t.value, bool)]
            if names:
                name, t = self.random.choice(names)
                return Term(name, t.value, t.plain)
        if choice == 6 and self.known("macros"):
            name, macro = self.random.choice(self.known("macros"))
            arguments = [self.boolean(depth - 1, local, in_binder), self.integer(depth - 1, local)]
            plain = macro(arguments)
            return Term(f"({name} {arguments[0].text} {arguments[1].text})", plain.value, plain.plain)
        if choice == 7:
            return self.let(depth, local)
        operator, count = self.random.choice(
            [("and", 2), ("or", 2), ("and", 3), ("not", 1), ("xor", 2), ("=>", 2), ("ite", 3), ("=", 2)])
        return apply(operator, [self.boolean(depth - 1, local, in_binder) for _ in range(count)])

    def let(self, depth, local):
        bound, inner = [], list(local)
        for _ in range(self.random.randint(1, 2)):
            t = self.boolean(depth - 1, local, in_binder=True)
            name = self.fresh("l")
            bound.append(f"({name} {t.text})")
            inner.append(("Bool", Term(name, t.value, t.plain)))
        # Names within the body would name terms that are not closed.
        body = self.boolean(depth - 1, inner, in_binder=True) if self.is_wide else \
            self.plain_boolean(depth - 1, inner)
        return Term(f"(let ({' '.join(bound)}) {body.text})", body.value, body.plain)

    def plain_boolean(self, depth, local):
        if depth <= 0:
            return self.random.choice([t for sort, t in self.variables + local if sort == "Bool"])
        return apply(self.random.choice(["and", "or", "xor", "="]),
                     [self.plain_boolean(depth - 1, local) for _ in range(2)])

    def named(self, depth, local, in_binder):
        is_integer = self.chance(6)
        t = self.integer(depth - 1, local) if is_integer else self.boolean(depth - 1, local, in_binder)
        name = self.new_name()
        self.name(name, t)
        if is_integer:
            n = self.random.randint(10, 99999)
            return apply("<=", [Term(f"(! {t.text} :named {name})", t.value, t.plain),
                                Term(str(n), n, str(n))])
        return Term(f"(! {t.text} :named {name})", t.value, t.plain)

    # A name is known to the commands that follow.
    def name(self, name, t):
        self.pending.append(name)
        self.scopes[0 if self.is_global else -1].names[name] = Term(name, t.value, t.plain)
        self.terms_of_names.setdefault(name, set()).add(t.plain)

    # ----- commands

    def is_unsat(self):
        return any(scope.is_false for scope in self.scopes)

    def command(self):
        self.pending = []
        choice = self.random.randrange(20)
        top = self.scopes[-1]
        if choice < 6:
            self.assertion(top)
        elif choice < 9:
            self.definition()
        elif choice == 9 and len(self.scopes) < 5:
            levels = self.random.randint(1, 2)
            self.lines.append(f"(push {levels})")
            self.scopes += [Scope() for _ in range(levels)]
        elif choice < 12 and len(self.scopes) > 1:
            levels = self.random.randint(1, len(self.scopes) - 1)
            self.lines.append(f"(pop {levels})")
            del self.scopes[len(self.scopes) - levels:]
        elif choice < 16:
            self.ask()
        elif choice == 16:
            self.lines.append(f'(echo "{self.fresh("message-")}")')
        elif choice == 17 and self.chance(3):
            self.lines.append("(reset)")
            self.begin()
        elif choice == 18 and self.chance(3):
            self.lines.append("(reset-assertions)")
            if self.is_global:
                kept = self.scopes[0]
                self.scopes = [Scope()]
                self.scopes[0].names, self.scopes[0].defined = kept.names, kept.defined
                self.scopes[0].macros = kept.macros
                self.pin()
            else:
                self.scopes = [Scope()]
                self.declare()

    def assertion(self, top):
        t = self.boolean(3)
        # One false assertion at a time, and in a scope that ends.
        if not t.value and (self.is_unsat() or len(self.scopes) == 1):
            t = Term(f"(not {t.text})", True, f"(not {t.plain})")
        label = None
        if self.chance(2):
            label = self.new_name()
            t = Term(f"(! {t.text} :named {label})", t.value, t.plain)
            self.name(label, t)
        elif not t.value and t.text.startswith("(!"):
            t = Term(f"(not (not {t.text}))", t.value, t.plain)
        self.lines.append(f"(assert {t.text})")
        if not t.value:
            top.is_false = True

    def definition(self):
        name = self.fresh("d")
        scope = self.scopes[0 if self.is_global else -1]
        if self.chance(3):
            body = self.macro_body()
            self.lines.append(f"(define-fun {name} ((b Bool) (i Int)) Bool {body[0]})")
            scope.macros[name] = body[1]
            return
        t = self.boolean(3)
        form = self.random.choice(["(define-fun {} () Bool {})", "(define-const {} Bool {})"])
        self.lines.append(form.format(name, t.text))
        scope.defined[name] = t

    # The text of a body over b and i, and the function from arguments to terms.
    def macro_body(self):
        choice = self.random.randrange(4)
        # Not b alone: if an argument is the whole formula, z3 makes its names labels, and cvc5 does not.
        if choice == 0:
            return "(or b b)", lambda a: apply("or", [a[0], a[0]])
        inner = self.boolean(2, in_binder=True)
        number = self.random.randint(10, 9999)
        n = Term(str(number), number, str(number))
        if choice == 1:
            return (f"(and b (or (<= i {number}) {inner.text}))",
                    lambda a: apply("and", [a[0], apply("or", [apply("<=", [a[1], n]), inner])]))
        if choice == 2:
            return f"(xor {inner.text} b)", lambda a: apply("xor", [inner, a[0]])
        return (f"(ite b {inner.text} (= i {number}))",
                lambda a: apply("ite", [a[0], inner, apply("=", [a[1], n])]))

    def ask(self):
        self.pending = []
        if self.chance(3):
            terms = [self.assumption() for _ in range(self.random.randint(1, 3))]
            self.lines.append(f"(check-sat-assuming ({' '.join(t.text for t in terms)}))")
            is_sat = not self.is_unsat() and all(t.value for t in terms)
            if not is_sat:
                return
        else:
            self.lines.append("(check-sat)")
            is_sat = not self.is_unsat()
        if not is_sat:
            self.lines.append("(get-unsat-core)")
            return
        for _ in range(self.random.randint(0, 3)):
            self.pending = []
            if self.chance(3):
                self.lines.append("(get-assignment)")
            else:
                terms = [self.question() for _ in range(self.random.randint(1, 4))]
                self.lines.append(f"(get-value ({' '.join(t.text for t in terms)}))")

    def assumption(self):
        names = [(n, t) for n, t in self.known("names") if isinstance(t.value, bool)]
        if names and not self.chance(3):
            name, t = self.random.choice(names)
            return t if self.chance(2) else Term(f"(not {name})", not t.value, f"(not {t.plain})")
        return self.boolean(2)

    def question(self):
        names = self.known("names") + self.known("defined")
        if names and not self.chance(3):
            name, t = self.random.choice(names)
            return Term(name, t.value, t.plain)
        return self.boolean(2, in_binder=True)


# ----- answers --------------------------------------------------------------------------------------------


def expressions(text):
    """The s-expressions of a text as nested lists of tokens."""
    stack = [[]]
    for token in re.findall(r'\(|\)|"(?:[^"]|"")*"|\|[^|]*\||[^\s()"|]+', text):
        if token == "(":
            stack.append([])
        elif token == ")":
            if len(stack) == 1:
                return None
            done = stack.pop()
            stack[-1].append(done)
        else:
            stack[-1].append(token)
    return stack[0] if len(stack) == 1 else None


def run(command):
    done = subprocess.run(command, capture_output=True, check=False, timeout=300)
    return done.returncode, done.stdout.decode(errors="replace") + done.stderr.decode(errors="replace")


def bare(name):
    return name.strip("|")


def results(solver, output, questions, representatives, keeps_names):
    """One comparable result for each answer, or None when the solver refused something."""
    read = expressions(output)
    if read is None or any(isinstance(e, list) and e and e[0] == "error" for e in read):
        return None
    if len(read) != len(questions) or "timeout" in read:
        return None
    one_name = lambda name: representatives.get(bare(name), bare(name)) if solver == "cvc5" else bare(name)
    found = []
    for question, answer in zip(questions, read):
        if question == "get-value":
            found.append([pair[-1] for pair in answer])
        elif question == "get-unsat-core":
            found.append(sorted({one_name(name) for name in answer}))
        elif question == "get-assignment" and solver == "cvc5" and keeps_names:
            found.append("open")
        elif question == "get-assignment":
            found.append(sorted({(one_name(name), str(value)) for name, value in answer
                                 if bare(name) in representatives}))
        else:
            found.append(answer)
    return found


def representatives_of(text, terms_of_names):
    """For each name, without bars, the first, in their order, of the names that cvc5 does not keep apart."""
    names = [bare(name) for name in re.findall(r":named (\|[^|]*\||[^\s()]+)", text)]
    classes = {name: name for name in sorted(set(names))}
    by_term = {}
    for name, terms in sorted(terms_of_names.items()):
        for term in sorted(terms):
            other = by_term.setdefault(term, bare(name))
            old, new = sorted((classes[bare(name)], classes[other]), reverse=True)
            classes = {n: new if c == old else c for n, c in classes.items()}
    return classes


def check(quill_smt2, solvers, folder, label, text, terms_of_names):
    """The faults of one script, and the solvers that judged it."""
    names = representatives_of(text, terms_of_names)
    original, printed = f"{folder}/{label}.smt2", f"{folder}/{label}.printed.smt2"
    with open(original, "w") as file:
        file.write(text)
    status, output = run([quill_smt2, "print", original])
    if status != 0:
        return [f"{label}: is not read: {output[:300]}"], []
    with open(printed, "w") as file:
        file.write(output)
    _, again = run([quill_smt2, "print", printed])
    faults = [] if again == output else [f"{label}: prints differently the second time"]
    questions = re.findall(r"\((check-sat|check-sat-assuming|get-value|get-unsat-core|get-assignment|echo)\b(?!-)",
                           text)
    keeps_names = "(reset-assertions)" in text
    judged = []
    for solver in solvers:
        before = results(solver, run([*COMMANDS[solver], original])[1], questions, names, keeps_names)
        if before is None:
            continue
        judged.append(solver)
        answer = run([*COMMANDS[solver], printed])[1]
        after = results(solver, answer, questions, names, keeps_names)
        if before != after:
            faults.append(f"{label}: {solver} answers {before} to the original, to the print "
                          f"{after if after is not None else answer}")
    return faults, judged


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quill-smt2", required=True, help="the command")
    parser.add_argument("--first", type=int, default=0, help="the first seed")
    parser.add_argument("--count", type=int, default=3000, help="how many random scripts")
    parser.add_argument("--show", type=int, help="write the random script of this seed and end")
    arguments = parser.parse_args()
    if arguments.show is not None:
        print(RandomScript(arguments.show).text, end="")
        return 0
    solvers = [solver for solver in COMMANDS if shutil.which(solver)]
    if not solvers:
        print("names: no solver is installed")
        return SKIPPED

    scripts = [(f"stored-{i}", text, {}) for i, text in enumerate(STORED)]
    for seed in range(arguments.first, arguments.first + arguments.count):
        made = RandomScript(seed)
        scripts.append((f"random-{seed}", made.text, made.terms_of_names))
    faults, judged = [], []
    with tempfile.TemporaryDirectory() as folder, \
            concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = [pool.submit(check, arguments.quill_smt2, solvers, folder, *script) for script in scripts]
        for job in jobs:
            new_faults, judges = job.result()
            faults += new_faults
            judged += judges
    for fault in faults:
        print(f"names: {fault}")
    faults += [f"{solver} accepted less than half of the scripts" for solver in solvers
               if 2 * judged.count(solver) < len(scripts)]
    counts = ", ".join(f"{solver} answered {judged.count(solver)}" for solver in solvers)
    print(f"names: {len(scripts)} scripts, {counts}; {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Writes large SMT-LIB scripts, which measure how fast scripts are read.

Usage: generate_scripts.py KIND FILE [--mebibytes N] [--seed N]

  bit-vectors  QF_BV: assertions of 200 nested lets each, whose terms share those before them
  arithmetic   QF_LRA: sums of products of a number and a constant, compared and combined
  nesting      QF_BV: assertions of 2000 nested applications each, without let

The same arguments give the same bytes on every machine: all choices come from one seeded generator.
No script has a check-sat, so that a solver only reads it.
"""

import argparse
import random
import sys

WIDTH = 32
CONSTANTS = 1000
BINARY = ("bvadd", "bvmul", "bvand", "bvor", "bvxor", "bvsub", "bvudiv", "bvurem", "bvshl", "bvlshr")
UNARY = ("bvnot", "bvneg")


def bit_vector_declarations():
    yield "(set-logic QF_BV)\n"
    for i in range(CONSTANTS):
        yield f"(declare-const v{i} (_ BitVec {WIDTH}))\n"


def bit_vectors(rng):
    """Assertions over nested lets: each variable stands for a term over the one before it, so that all
    are used, and over others of the ten before it, constants and numbers."""
    yield from bit_vector_declarations()
    lets = 200
    while True:

        def operand(i):
            kind = rng.randrange(10)
            if i > 0 and kind < 6:
                return f"?t{rng.randrange(max(0, i - 10), i)}"
            if kind == 9:
                return f"#x{rng.getrandbits(WIDTH):08x}"
            return f"v{rng.randrange(CONSTANTS)}"

        text = [f"(let ((?t0 (bvadd {operand(0)} {operand(0)})))"]
        for i in range(1, lets):
            before = f"?t{i - 1}"
            kind = rng.randrange(10)
            if kind == 0:
                term = f"({rng.choice(UNARY)} {before})"
            elif kind == 1:
                term = f"(ite (bvult {before} {operand(i)}) {operand(i)} {operand(i)})"
            elif kind == 2:
                low = rng.randrange(WIDTH // 2)
                extract = f"((_ extract {low + WIDTH // 2 - 1} {low}) {before})"
                term = f"((_ zero_extend {WIDTH // 2}) {extract})"
            else:
                term = f"({rng.choice(BINARY)} {before} {operand(i)})"
            text.append(f"(let ((?t{i} {term}))")
        yield f"(assert {' '.join(text)} (= ?t{lets - 1} {operand(lets)}){')' * lets})\n"


def arithmetic(rng):
    """Assertions of one to four comparisons of sums of two to twelve products."""
    yield "(set-logic QF_LRA)\n"
    for i in range(CONSTANTS):
        yield f"(declare-const x{i} Real)\n"

    def product():
        constant = f"x{rng.randrange(CONSTANTS)}"
        kind = rng.randrange(4)
        number = rng.randrange(1, 1000)
        if kind == 0:
            return constant
        if kind == 1:
            return f"(* (- {number}.0) {constant})"
        if kind == 2:
            return f"(* {number}.{rng.randrange(10)} {constant})"
        return f"(* (/ {number} {rng.randrange(2, 100)}) {constant})"

    def comparison():
        products = " ".join(product() for _ in range(rng.randrange(2, 13)))
        bound = f"{rng.randrange(100000)}.{rng.randrange(100)}"
        return f"({rng.choice(('<=', '<', '>=', '>', '='))} (+ {products}) {bound})"

    while True:
        comparisons = [comparison() for _ in range(rng.randrange(1, 5))]
        for i in range(len(comparisons)):
            if rng.randrange(3) == 0:
                comparisons[i] = f"(not {comparisons[i]})"
        if len(comparisons) == 1:
            yield f"(assert {comparisons[0]})\n"
        else:
            yield f"(assert ({rng.choice(('and', 'or'))} {' '.join(comparisons)}))\n"


def nesting(rng):
    """Assertions of applications nested to the left and to the right at random."""
    yield from bit_vector_declarations()
    depth = 2000
    while True:
        before = []
        behind = []
        for _ in range(depth):
            constant = f"v{rng.randrange(CONSTANTS)}"
            if rng.randrange(2) == 0:
                before.append(f"({rng.choice(BINARY)} ")
                behind.append(f" {constant})")
            else:
                before.append(f"({rng.choice(BINARY)} {constant} ")
                behind.append(")")
        yield f"(assert (bvult {''.join(before)}v0{''.join(reversed(behind))} v1))\n"


KINDS = {"bit-vectors": bit_vectors, "arithmetic": arithmetic, "nesting": nesting}


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("file")
    parser.add_argument("--mebibytes", type=float, default=50, help="the size, rounded up to a command")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()

    left = options.mebibytes * 2**20
    with open(options.file, "w", encoding="ascii") as out:
        for piece in KINDS[options.kind](random.Random(options.seed)):
            if left <= 0:
                break
            out.write(piece)
            left -= len(piece)
    return 0


if __name__ == "__main__":
    sys.exit(main())

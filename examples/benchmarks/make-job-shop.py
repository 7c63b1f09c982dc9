#!/usr/bin/env python3
"""Writes job-shop.smt2: the schedule of a furniture workshop as a problem of difference logic.

Usage: make-job-shop.py > job-shop.smt2

Six jobs visit six machines, each in an order of its own; a machine does one operation at a time.  The
durations are those of the classic six by six instance of Fisher and Thompson (1963), whose shortest
schedule is known to take 55 time units: the script asks for a schedule within 55, which exists, and for
one within 54, which does not.
"""

MACHINES = ("glue", "saw", "plane", "drill", "sand", "paint")
JOBS = ("table", "chair", "shelf", "bench", "stool", "chest")

# For each job its operations in order: (machine, duration).
ROUTES = (
    ((2, 1), (0, 3), (1, 6), (3, 7), (5, 3), (4, 6)),
    ((1, 8), (2, 5), (4, 10), (5, 10), (0, 10), (3, 4)),
    ((2, 5), (3, 4), (5, 8), (0, 9), (1, 1), (4, 7)),
    ((1, 5), (0, 5), (2, 5), (3, 3), (4, 8), (5, 9)),
    ((2, 9), (1, 3), (4, 5), (5, 4), (0, 3), (3, 1)),
    ((1, 3), (3, 3), (5, 9), (0, 10), (4, 4), (2, 1)),
)
SHORTEST = 55


def start(job, machine):
    """The constant that holds when the job starts on the machine."""
    return f"{JOBS[job]}_{MACHINES[machine]}"


def apart(first, second, duration):
    """The second operation starts when the first one, which takes the duration, is done, or later."""
    return f"(>= (- {second} {first}) {duration})"


def main():
    print("; Job-shop scheduling: six pieces of furniture on six machines, each machine doing one thing at a")
    print("; time.  X_M is the time at which piece X starts on machine M, counted from the constant begin.")
    print("; The durations are those of the six by six instance of Fisher and Thompson (1963); the shortest")
    print(f"; schedule takes {SHORTEST} time units.  Written by make-job-shop.py.")
    print("(set-info :smt-lib-version 2.6)")
    print("(set-option :produce-models true)")
    print("(set-logic QF_IDL)")

    print("\n; When the work begins, and when each operation starts.")
    print("(declare-fun begin () Int)")
    for job, route in enumerate(ROUTES):
        for machine, _ in route:
            print(f"(declare-fun {start(job, machine)} () Int)")

    for job, route in enumerate(ROUTES):
        print(f"\n; The {JOBS[job]}: " + ", ".join(f"{MACHINES[m]} {d}" for m, d in route) + ".")
        print(f"(assert {apart('begin', start(job, route[0][0]), 0)})")
        for (machine, duration), (successor, _) in zip(route, route[1:]):
            print(f"(assert {apart(start(job, machine), start(job, successor), duration)})")

    for machine, name in enumerate(MACHINES):
        print(f"\n; One piece at a time: {name}.")
        users = [(start(job, machine), dict(route)[machine]) for job, route in enumerate(ROUTES)]
        for i, (first, first_duration) in enumerate(users):
            for second, second_duration in users[i + 1:]:
                print(f"(assert (or {apart(first, second, first_duration)}\n"
                      f"            {apart(second, first, second_duration)}))")

    for makespan, status in ((SHORTEST, "sat"), (SHORTEST - 1, "unsat")):
        print(f"\n; All done within {makespan} time units.")
        print("(push 1)")
        for job, route in enumerate(ROUTES):
            machine, duration = route[-1]
            print(f"(assert (! (<= (- {start(job, machine)} begin) {makespan - duration})"
                  f" :named {JOBS[job]}_by_{makespan}))")
        print(f"(set-info :status {status})")
        print("(check-sat)")
        print("(pop 1)")
    print("(exit)")


if __name__ == "__main__":
    main()

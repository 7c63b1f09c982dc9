#!/usr/bin/env python3
"""Makes a table (markdown) from the files that the benchmarks write with --benchmark_out_format=json.

Usage: write_table.py FILE...

Times are processor time in nanoseconds: for each item or byte where a benchmark counts them, otherwise for
each round. Other values that a benchmark reports follow by name.
"""

import json
import pathlib
import sys

# The fields of every report, whatever is measured.
COMMON = {
    "name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions",
    "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit", "label",
    "items_per_second", "bytes_per_second",
}
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def short(number):
    """A number with three digits, or with all digits before the point if there are more."""
    if abs(number) >= 100:
        return f"{number:,.0f}"
    return f"{number:.3g}"


def main_figure(report):
    for unit in ("items", "bytes"):
        rate = report.get(f"{unit}_per_second")
        if rate:
            return f"{short(1e9 / rate)} for each {unit[:-1]}"
    return f"{short(report['cpu_time'] * NANOSECONDS[report['time_unit']])} for each round"


def row(program, report):
    counters = [key for key in report if key not in COMMON]
    # Stages say more than their sum.
    stages = report["run_name"].endswith("/iterations:1") and counters
    figures = ", ".join(f"{key} {short(report[key])}" for key in counters)
    name = report["name"].removesuffix("/iterations:1")
    label = f" {report['label']}" if "label" in report else ""
    return f"| {program} | {name}{label} | {'' if stages else main_figure(report)} | {figures} |"


def main():
    print("| program | benchmark | ns | figures |\n|---|---|---|---|")
    for file in sys.argv[1:]:
        content = json.loads(pathlib.Path(file).read_text(encoding="utf-8"))
        program = pathlib.Path(content["context"]["executable"]).name.removeprefix("bench_")
        for report in content["benchmarks"]:
            if report.get("error_occurred"):
                sys.exit(f"{program}: {report['name']}: {report['error_message']}")
            print(row(program, report))


main()

#!/usr/bin/env python3
"""Runs the scenarios of faults and tells what became of the promises of the store.

    run.py --driver PROGRAM (--short | --long | --scale PART) [--only NAME] [--table FILE]

Prints a row of figures for each scenario and form; outcomes in capitals break a promise, and the
exit status is 1 then. --table puts the rows between the two markers of a document.
"""
import argparse
import pathlib
import shutil
import sys
import time

sys.dont_write_bytecode = True

import beside
import calls
import damage
import kills
import power
from harness import FORMS, SHORT, Bench

SCENARIOS = {name: scenario for module in (kills, power, calls, beside, damage)
             for name, scenario in module.SCENARIOS.items()}
HEAD = ["Scenario", "Form", "Tried", "What became of it", "Broken"]
BEGIN, END = "<!-- figures begin -->", "<!-- figures end -->"


def run(bench, only):
    for name, scenario in SCENARIOS.items():
        for form in FORMS if only in name else ():
            start = time.monotonic()
            for figures in scenario(bench, form):
                row = figures.row()
                print(" | ".join(map(str, row)), f"({time.monotonic() - start:.0f} s)", flush=True)
                for outcome in figures.broken():
                    for example in figures.examples[outcome][:5]:
                        print(f"    {outcome}: {example[:400]}", flush=True)
                yield row


def put_table(path, rows):
    head, rest = path.read_text(encoding="utf-8").split(BEGIN)
    table = ["| " + " | ".join(map(str, line)) + " |" for line in [HEAD, ["---"] * len(HEAD), *rows]]
    path.write_text("\n".join([head + BEGIN, *table, END + rest.split(END)[1]]), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--driver", required=True)
    length = parser.add_mutually_exclusive_group(required=True)
    length.add_argument("--short", dest="scale", action="store_const", const=SHORT)
    length.add_argument("--long", dest="scale", action="store_const", const=1.0)
    length.add_argument("--scale", type=float, help="a part of the long run")
    parser.add_argument("--only", default="", help="scenarios whose name holds this")
    parser.add_argument("--table", type=pathlib.Path, help="document for the figures")
    options = parser.parse_args()
    bench = Bench(options.driver, options.scale)
    try:
        rows = list(run(bench, options.only))
    finally:
        shutil.rmtree(bench.root, ignore_errors=True)
    if options.table:
        put_table(options.table, rows)
    return 1 if any(row[-1] for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())

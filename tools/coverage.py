#!/usr/bin/env python3
"""Prints gcovr's summary (coverage.py SUMMARY.json) as a table, the least covered first."""
import json
import sys

with open(sys.argv[1]) as summary:
    whole = json.load(summary)


def row(name, of):
    counts = (of["line_covered"], of["line_total"], of["branch_covered"], of["branch_total"])
    parts = [f"{part:5} of {total:5} {100 * part / total if total else 100:6.1f} %"
             for part, total in (counts[:2], counts[2:])]
    print(f"{name:52} {parts[0]}  {parts[1]}")


print(f"{'':52} {'lines':>23}  {'branches':>23}")
for file in sorted(whole["files"], key=lambda of: of["branch_covered"] / max(1, of["branch_total"])):
    row(file["filename"], file)
row("all", whole)

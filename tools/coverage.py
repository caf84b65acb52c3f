#!/usr/bin/env python3
"""Prints gcovr's summary (coverage.py SUMMARY.json) as a table, the least covered first."""
import json
import sys

with open(sys.argv[1]) as summary:
    whole = json.load(summary)


def rate(of, what):
    return 100 * of[what + "_covered"] / of[what + "_total"] if of[what + "_total"] else 100


def row(name, of):
    parts = [f"{of[what + '_covered']:5} of {of[what + '_total']:5} {rate(of, what):6.1f} %" for what in ("line", "branch")]
    print(f"{name:52} {parts[0]}  {parts[1]}")


print(f"{'':52} {'lines':>23}  {'branches':>23}")
for file in sorted(whole["files"], key=lambda of: (rate(of, "branch"), rate(of, "line"))):
    row(file["filename"], file)
row("all", whole)

#!/usr/bin/env python3
"""Runs the targets, one on each processor, and tells what became of each.

  run.py PROGRAMS SECONDS TARGET...

PROGRAMS is the folder with the programs, fuzz_TARGET. What a target finds new it keeps in
build/fuzz/TARGET/corpus for the next time; its log and the inputs that broke it lie beside. The
exit status is 1 when one did.
"""
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile

HOME = pathlib.Path("fuzz")
WORK = pathlib.Path("build/fuzz")
MEMORY = "/dev/shm"  # inputs that become files need no disk
HEAD = ("target", "executions", "executions/s", "edges", "features", "crashes")


def last(pattern, log):
    found = re.findall(pattern, log, re.MULTILINE)
    return found[-1] if found else "-"


def run(program, target, seconds):
    """The target's row, and a text for each input that broke it."""
    work = WORK / target
    inputs = [work / "corpus", HOME / "seeds" / target, HOME / "regressions" / target]
    inputs[0].mkdir(parents=True, exist_ok=True)
    command = [program, f"-max_total_time={seconds}", "-print_final_stats=1", "-timeout=10",
               f"-artifact_prefix={work}/", *(str(folder) for folder in inputs if folder.exists())]
    with open(work / "log", "w", encoding="utf-8") as output, \
            tempfile.TemporaryDirectory(dir=MEMORY if os.access(MEMORY, os.W_OK) else None) as temporary:
        environment = {**os.environ, "TMPDIR": temporary, "UBSAN_OPTIONS": "print_stacktrace=1"}
        status = subprocess.run(command, stdout=output, stderr=output, env=environment, check=False).returncode
    log = (work / "log").read_text(encoding="utf-8", errors="replace")
    row = (target, last(r"^stat::number_of_executed_units: *(\d+)", log),
           last(r"^stat::average_exec_per_sec: *(\d+)", log),
           last(r" cov: (\d+) ", log), last(r" ft: (\d+) ", log), str(int(status != 0)))
    if status == 0:
        return row, ""
    reasons = re.findall(r"^(?:broken promise|SUMMARY|.*runtime error): .*$", log, re.MULTILINE)
    reason = min(reasons, key=lambda line: line.startswith("SUMMARY"), default=f"exit status {status}")
    broken = last(r"Test unit written to (\S+)", log)
    return row, (f"{target}: {reason}\n  log: {work / 'log'}\n  input: {broken}\n"
                 f"  again: {program} {broken}\n  smaller: {program} -minimize_crash=1 -runs=100000 {broken}")


def main():
    programs, seconds, targets = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3:]
    line = "{:<14} {:>12} {:>13} {:>8} {:>9} {:>8}"
    print(line.format(*HEAD), flush=True)
    crashes = []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as runs:
        for row, crash in runs.map(lambda target: run(str(programs / f"fuzz_{target}"), target, seconds), targets):
            print(line.format(*row), flush=True)
            crashes += [crash] if crash else []
    print("\n".join(crashes), end="\n" if crashes else "")
    return 1 if crashes else 0


if __name__ == "__main__":
    sys.exit(main())

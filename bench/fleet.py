#!/usr/bin/env python3
"""What a fleet of clients without anything new asks of the platform: a model of the time gates,
held against a run of the sandbox in which each request is counted.

  fleet.py [--seconds N] [--clients N]

Exit 1 when the run and the model differ.
"""
import argparse
import json
import math
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
XSANDBOX = ROOT / "build/linux/xsandbox"
GATE = 1800  # milliseconds that must have gone by since the last check, of both channels
KELVAR = ("/PacketV2/GetUpgradePacket", "/PacketV2/GetFullPacketDiff", "/PacketV2/GetPacketMeta",
          "/FileV2/GetFileStorageAddr", "/MaterialV2/BatchGetMaterialMeta")
PACKAGE, FILES = "/upgrade/v2/upgrade/check", "/upgrade/v1/file/check"
HEADERS = 250  # bytes of header lines of one request and its answer, in round numbers


def period(interval):
    """Milliseconds between two checks with a tick every `interval`: the gate wants more than it waits."""
    return interval * (math.floor(GATE / interval) + 1)


def checks_in(ticks):
    """How many of these ticks pass the gate."""
    last, count = -math.inf, 0
    for tick in ticks:
        if tick - last > GATE:
            last, count = tick, count + 1
    return count


def watch(interval, seconds):
    """The events of a host that ticks for that long."""
    folder = ROOT / "build/bench/fleet"
    shutil.rmtree(folder, ignore_errors=True)  # the events of a run before would pass for this one's
    host = subprocess.Popen([XSANDBOX, "host", ROOT / "bench/fleet.json", "--folder", folder,
                             "--interval", str(interval)], stdout=subprocess.DEVNULL)
    time.sleep(seconds)
    subprocess.run([XSANDBOX, "stop", "--folder", folder], stdout=subprocess.DEVNULL, check=False)
    if host.wait(timeout=60) != 0:
        sys.exit(f"fleet: the host ended with {host.returncode}")
    lines = (folder / "sandbox/events.jsonl").read_text(encoding="utf-8").splitlines()
    return [json.loads(line) for line in lines]


def questions_of(events):
    """Of each path the times at which it was asked, and the bytes of one request and one answer."""
    asked, size = {}, {}
    for event in events:
        if event["kind"] == "http":
            path = "/" + event["url"].split("/", 3)[3]
            size[path, event["phase"]] = event["size"]
            if event["phase"] == "sent":
                asked.setdefault(path, []).append(event["t"])
    return asked, size


def differs(said, is_so):
    """Prints a line of the comparison; whether it is a disagreement."""
    print(f"  {said}{'' if is_so else '  DIFFERS'}")
    return not is_so


def compare(interval, seconds):
    """Holds the model against a run: how many disagreements, and the bytes of one round of both channels."""
    events = watch(interval, seconds)
    asked, size = questions_of(events)
    checks = checks_in([event["t"] for event in events if event["kind"] == "host" and event["what"] == "tick"])
    wrong = 0
    for path, expected in {**{path: checks for path in (*KELVAR, PACKAGE)}, FILES: 1}.items():
        found = len(asked.get(path, []))
        wrong += differs(f"tick every {interval:5} ms  {path:35} {found:3} in {seconds} s, the model says {expected}; "
                         f"{size.get((path, 'sent'), 0)} bytes out, {size.get((path, 'answered'), 0)} in",
                         found == expected)
    for path in (KELVAR[0], PACKAGE):
        times = asked.get(path, [])
        apart = statistics.median([b - a for a, b in zip(times, times[1:])] or [math.nan])
        # Half a tick tells one number of ticks from the next.
        wrong += differs(f"tick every {interval:5} ms  {path:35} every {apart:g} ms, the model says {period(interval)}",
                         abs(apart - period(interval)) < interval / 2)
    return wrong, sum(bytes_ for (path, _), bytes_ in size.items() if path != FILES)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seconds", type=int, default=12)
    parser.add_argument("--clients", type=int, default=10_000_000)
    options = parser.parse_args()
    compared = [compare(interval, options.seconds) for interval in (500, 3000)]
    bodies = compared[0][1]
    requests = len(KELVAR) + 1
    print(f"\n  {options.clients:,} clients with nothing new, {requests} requests and "
          f"{bodies + requests * HEADERS} bytes a round")
    for interval in (500, 2000, 10_000, 60_000, 300_000, 3_600_000):
        rounds = options.clients / (period(interval) / 1000)
        print(f"  tick every {interval / 1000:7g} s: a round every {period(interval) / 1000:7g} s, "
              f"{requests * rounds:13,.0f} requests a second, "
              f"{rounds * (bodies + requests * HEADERS) * 8 / 1e9:10,.2f} Gbit/s")
    sys.exit(1 if any(wrong for wrong, _ in compared) else 0)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""What a fleet of clients without anything new asks of the platform: a model of the time gates,
held against a run of the sandbox in which each request is counted.

  fleet.py [--seconds N] [--clients N]
"""
import argparse
import json
import math
import pathlib
import subprocess
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
    host = subprocess.Popen([XSANDBOX, "host", ROOT / "bench/fleet.json", "--folder", folder, "--interval", str(interval)],
                            stdout=subprocess.DEVNULL)
    time.sleep(seconds)
    subprocess.run([XSANDBOX, "stop", "--folder", folder], stdout=subprocess.DEVNULL, check=False)
    host.wait(timeout=60)
    lines = (folder / "sandbox/events.jsonl").read_text(encoding="utf-8").splitlines()
    return [json.loads(line) for line in lines]


def count(interval, seconds):
    """Compares the model with a run; the bytes of one round of each channel."""
    events = watch(interval, seconds)
    asked, size = {}, {}
    for event in events:
        if event["kind"] == "http":
            path = "/" + event["url"].split("/", 3)[3]
            asked[path] = asked.get(path, 0) + (event["phase"] == "sent")
            size[path, event["phase"]] = event["size"]
    checks = checks_in([event["t"] for event in events if event["kind"] == "host" and event["what"] == "tick"])
    model = {**{path: checks for path in (*KELVAR, PACKAGE)}, FILES: 1}
    for path, expected in model.items():
        agrees = "as the model says" if asked.get(path, 0) == expected else f"the model says {expected}"
        print(f"  tick every {interval:5} ms  {path:35} {asked.get(path, 0):3} in {seconds} s, {agrees}; "
              f"{size.get((path, 'sent'), 0)} bytes out, {size.get((path, 'answered'), 0)} in")
    return sum(bytes_ for (path, _), bytes_ in size.items() if path != FILES)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seconds", type=int, default=12)
    parser.add_argument("--clients", type=int, default=10_000_000)
    options = parser.parse_args()
    bodies = [count(interval, options.seconds) for interval in (500, 3000)][0]
    requests = len(KELVAR) + 1
    print(f"\n  {options.clients:,} clients with nothing new, {requests} requests and "
          f"{bodies + requests * HEADERS} bytes a round")
    for interval in (500, 2000, 10_000, 60_000, 300_000, 3_600_000):
        rounds = options.clients / (period(interval) / 1000)
        print(f"  tick every {interval / 1000:7g} s: a round every {period(interval) / 1000:7g} s, "
              f"{requests * rounds:13,.0f} requests a second, "
              f"{rounds * (bodies + requests * HEADERS) * 8 / 1e9:10,.2f} Gbit/s")


if __name__ == "__main__":
    main()

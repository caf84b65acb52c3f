#!/usr/bin/env python3
"""Measures a running host of the sandbox from outside, by what the system tells of it.

  measurehost.py idle [--seconds N] [--windows]     a host whose channels wait behind their gates
  measurehost.py package [--turns N] [--windows]    a package of 300 MB, in turns with curl -o
"""
import argparse
import json
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
XSANDBOX = ROOT / "build/linux/xsandbox"
TICKS = os.sysconf("SC_CLK_TCK")


def process_of(run):
    """The number of the run's host: natively its program lies in the run, under Wine its system."""
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if b"trayhost" in (folder / "cmdline").read_bytes() and (
                    str(run) in os.readlink(folder / "exe") or
                    f"WINEPREFIX={run}/wine".encode() in (folder / "environ").read_bytes()):
                return int(folder.name)
        except OSError:
            pass  # it has ended, or is somebody else's
    return None


class Host:
    def __init__(self, name, windows):
        self.run = ROOT / f"build/bench-{name}{'-windows' if windows else ''}"
        options = ["--windows"] if windows else []
        self.xsandbox = subprocess.Popen(
            [XSANDBOX, "host", ROOT / f"bench/{name}.json", "--folder", self.run, *options], stdout=subprocess.DEVNULL)
        self.process = self.wait_for(lambda: process_of(self.run), "a host")

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        subprocess.run([XSANDBOX, "stop", "--folder", self.run], stdout=subprocess.DEVNULL, check=False)
        self.xsandbox.wait(timeout=60)

    def wait_for(self, look, what):
        for _ in range(3000):
            if found := look():
                return found
            if self.xsandbox.poll() is not None:
                break
            time.sleep(0.01)
        sys.exit(f"measurehost: no {what} in {self.run}")

    def events(self, kind):
        file = self.run / "sandbox/events.jsonl"
        lines = file.read_text(encoding="utf-8").splitlines() if file.exists() else []
        return [event for event in map(json.loads, lines) if event["kind"] == kind]

    def ui(self, words):
        subprocess.run([XSANDBOX, "ui", "--folder", self.run, "--do", words], check=True, stdout=subprocess.DEVNULL)

    def status(self, name):
        text = pathlib.Path(f"/proc/{self.process}/status").read_text(encoding="utf-8")
        return int(re.search(rf"^{name}:\s+(\d+)", text, re.MULTILINE)[1])

    def facts(self):
        fields = pathlib.Path(f"/proc/{self.process}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
        return {"CPU s": (int(fields[11]) + int(fields[12])) / TICKS, "threads": self.status("Threads"),
                "handles": len(os.listdir(f"/proc/{self.process}/fd")), "memory KB": self.status("VmRSS"),
                "peak KB": self.status("VmHWM")}


def measure_idle(options):
    with Host("idle", options.windows) as host:
        # The start is over when the file channel has ended and the helper runs.
        host.wait_for(lambda: host.events("process"), "start of the helper")
        time.sleep(2)
        first = host.facts()
        time.sleep(options.seconds)
        last = host.facts()
        for name, value in last.items():
            print(f"{name:10} {first[name]:>10} {value:>10}")
        print(f"CPU share  {100 * (last['CPU s'] - first['CPU s']) / options.seconds:.2f} % of one core, "
              f"{len(host.events('event'))} reports")


def measure_package(options):
    with Host("package", options.windows) as host:
        time.sleep(2)
        idle = host.facts()["peak KB"]
        host.ui("check")
        note = next(e for e in reversed(host.events("log")) if "task check, response:" in e["text"])
        url = re.search(r'"packageURL":"([^"]+)"', note["text"])[1]
        setup, copy = host.run / "client/update/setup.exe", host.run / "copy"
        times = {"plug-in, transfer": [], "plug-in, with its MD5 test": [], "curl -o": []}
        for _ in range(options.turns):
            setup.unlink(missing_ok=True)
            seen = len(host.events("notification"))
            host.ui("download")
            codes = [(e["t"], int.from_bytes(bytes.fromhex(e["hex"][:8]), "little"))
                     for e in host.events("notification")[seen:]]
            begin = next(t for t, code in codes if code == 101)
            times["plug-in, transfer"].append(max(t for t, code in codes if code == 102) - begin)
            times["plug-in, with its MD5 test"].append(next(t for t, code in codes if code == 103) - begin)
            start = time.monotonic()
            subprocess.run(["curl", "-s", "-o", copy, url], check=True)
            times["curl -o"].append(1000 * (time.monotonic() - start))
        for name, values in times.items():
            print(f"{name:28} median {statistics.median(values):7.0f} ms of {options.turns}")
        ratio = statistics.median(times["plug-in, transfer"]) / statistics.median(times["curl -o"])
        print(f"transfer against curl -o     {ratio:.2f}")
        print(f"peak memory                  {(host.facts()['peak KB'] - idle) / 1024:.1f} MB above the idle host")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=["idle", "package"])
    parser.add_argument("--seconds", type=int, default=600)
    parser.add_argument("--turns", type=int, default=5)
    parser.add_argument("--windows", action="store_true")
    options = parser.parse_args()
    (measure_idle if options.what == "idle" else measure_package)(options)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Measures the plug-in beside what one would use instead, in turns, and shows the ratios.

  run.py [--turns N] [--only PART...]     parts: whole, growth, parts, digest, https, start
  run.py --windows [--turns N]            parts and start, under Wine

A bar that is missed is told in the table alone: times of one sitting are no reason to fail.
"""
import argparse
import json
import os
import pathlib
import shutil
import ssl
import statistics
import subprocess
import sys
import threading
import time
from http.server import HTTPServer, SimpleHTTPRequestHandler

import table
from client import ROOT, TURNS, WORK, Build, Client, Server, fresh, words_of

LINUX = Build()
GIB = 1 << 30
SYSTEM_BUNDLE = pathlib.Path("/etc/ssl/certs/ca-certificates.crt")


def seconds_of(command, **options):
    begin = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options)
    return time.monotonic() - begin


def measure_whole(turns):
    """A run of 1,000 materials that has everything to download."""
    client = Client(LINUX)
    with Server("whole", 1000, 1) as server:
        def plugin():
            return client.run(server)[0]

        def bare():
            return seconds_of([*LINUX.program("bare_loop"), server.folder / "list", server.storage, fresh("other")])

        def shell():
            return seconds_of([ROOT / "bench/plainloop.sh", server.folder / "list", server.storage, fresh("other")])

        ours, loop = table.in_turns(2 * turns, plugin, bare)  # these two lie close together
        table.add("run, 1,000 materials", ours, "bare loop", loop, 1.0)
        ours, script = table.in_turns(turns, plugin, shell)
        table.add("run, 1,000 materials", ours, "shell script", script, 0.11)


def measure_growth(turns):
    """Runs that find everything in the update folder."""
    client = Client(LINUX)
    with Server("small1000", 1000, 10) as few, Server("small10000", 10000, 10) as many:
        of_many, of_few = table.in_turns(turns, lambda: client.run(many, is_filled=True),
                                         lambda: client.run(few, is_filled=True))
        table.add("run of 10,000 present rows", [time for time, _ in of_many],
                  "of 1,000", [time for time, _ in of_few], 11)
        table.add("peak memory, 10,000 rows", [peak / 1e6 for _, peak in of_many],
                  "text of the answer", [many.size / 1e6] * turns, 15, "MB")


PAIRS = [("fifth answer, text to messages", "read/10000", "protobuf's own", "readByProtobuf/10000", 0.60),
         ("the same, messages to text", "write/10000", "JsonCpp by hand", "writeByJsonCpp/10000", 1.15),
         ("file list, 1,000 items in 10,000", "updateFileList/1000", "load and save", "loadAndSaveFileList/1000", 2.0),
         ("log line", "logLine", "string by hand", "lineByHand", 2.0),
         ("log line but for the debug output", "logLineToModule", "string by hand", "lineByHand", 2.0),
         ("log line", "logLine", "string, written", "writtenLineByHand", None)]


def parts_of(build, turns, names):
    """CPU times of these measurements, in a process of their own: others would leave it a worn heap."""
    pattern = "^(" + "|".join(names) + ")$"
    output = subprocess.run(
        [*build.program("bench/client/parts_bench"), f"--benchmark_filter={pattern}", "--benchmark_format=json",
         f"--benchmark_repetitions={turns}", "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.2"],
        check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    values = {}
    for found in json.loads(output)["benchmarks"]:
        if found.get("error_occurred"):
            sys.exit(f"bench: {found['name']}: {found['error_message']}")
        if found["run_type"] == "iteration":
            values.setdefault(found["run_name"], []).append((found["cpu_time"], found["time_unit"]))
    return values


def measure_parts(turns, build=LINUX):
    for work, ours, beside, theirs, bar in PAIRS:
        values = parts_of(build, turns, (ours, theirs))
        table.add(work, [time for time, _ in values[ours]], beside, [time for time, _ in values[theirs]],
                  bar, values[ours][0][1])


def measure_digest(turns):
    file = WORK / "gibibyte"
    if not file.exists() or file.stat().st_size != GIB:
        WORK.mkdir(parents=True, exist_ok=True)
        with open(file, "wb") as output:
            for _ in range(GIB >> 20):
                output.write(os.urandom(1 << 20))
    works = ([*LINUX.program("md5_file"), file], ["md5sum", file], ["openssl", "md5", file])
    ours, coreutils, openssl = table.in_turns(turns, *(lambda work=work: seconds_of(work) for work in works))
    table.add("MD5 of 1 GiB", ours, "md5sum", coreutils, 1.0)
    table.add("MD5 of 1 GiB", ours, "openssl md5", openssl, 1.0)


class Quiet(SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


def measure_https(turns, count=20):
    """A small file from a server whose certificate is made for this, and trusted beside all others."""
    folder = fresh("https")
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=bench",
                    "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", folder / "key.pem",
                    "-out", folder / "cert.pem"], check=True, capture_output=True)
    (folder / "bundle.pem").write_bytes((folder / "cert.pem").read_bytes() + SYSTEM_BUNDLE.read_bytes())
    (folder / "small").write_bytes(b"x" * 1000)
    server = HTTPServer(("127.0.0.1", 0), lambda *all_: Quiet(*all_, directory=folder))
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "cert.pem", folder / "key.pem")
    server.socket = context.wrap_socket(server.socket, server_side=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    url, client = f"https://127.0.0.1:{server.server_port}/small", Client(LINUX)

    def medians(said):
        return {word: statistics.median(values) / 1e3 for word, values in said.items()}

    def bare():
        return medians(words_of(subprocess.run([*LINUX.program("tls_bench"), url, folder / "bundle.pem", str(count)],
                                               check=True, stdout=subprocess.PIPE, text=True).stdout.splitlines()))

    ours, loop = table.in_turns(turns, lambda: medians(client.ask("fetch", url, str(count))), bare)
    server.shutdown()
    column = {word: [turn[word] for turn in loop] for word in loop[0]}
    table.add("HTTPS, as materials are fetched", [turn["fetch_us"] for turn in ours],
              "fresh handle", column["fresh_us"], None, "ms")
    table.add("HTTPS, server verified, handle kept", column["kept_verified_us"],
              "fresh handle", column["fresh_verified_us"], None, "ms")


def measure_start(turns, build=LINUX):
    client = Client(build)
    said = [client.ask("load") for _ in range(turns)]
    for word, name in (("load_us", "load of the library"), ("start_us", "start"), ("first_tick_us", "first tick")):
        table.add_value(name, [turn[word][0] / 1e3 for turn in said], "ms")
    ticks = [statistics.median(client.ask("ticks", "200")["tick_us"]) for _ in range(turns)]
    table.add_value("tick with every gate shut", ticks, "µs")


MEASURES = {"whole": measure_whole, "growth": measure_growth, "parts": measure_parts, "digest": measure_digest,
            "https": measure_https, "start": measure_start}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--turns", type=int, default=5)
    parser.add_argument("--only", nargs="+", choices=MEASURES, default=list(MEASURES))
    parser.add_argument("--windows", action="store_true")
    options = parser.parse_args()
    if options.windows:
        measure_parts(options.turns, Build(windows=True))
        measure_start(options.turns, Build(windows=True))
    else:
        for name in options.only:
            MEASURES[name](options.turns)
    table.show()
    shutil.rmtree(TURNS, ignore_errors=True)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Runs the minimal host against a platform on loopback that answers every question with {}, and
looks at what was asked and at what the host printed. Exit 1, with a finding, when not all came.

  test.py HOST XNBASE PLUGIN [EMULATOR]
"""
import http.server
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading

QUESTIONS = ["/PacketV2/GetUpgradePacket", "/PacketV2/GetFullPacketDiff", "/PacketV2/GetPacketMeta",
             "/FileV2/GetFileStorageAddr", "/MaterialV2/BatchGetMaterialMeta"]
# A module without the download service ends the run behind its last answer.
LINES = ["2 XTaskKelvarCondition::check: update plugin, kelvar, task condition, check ...",
         "kelvar http, request: http://127.0.0.1:", '"version":"0.0.0.0"',
         "update plugin, kelvar, task download, check ...", "update plugin, queue, task finished, succ: 0"]


class Platform(http.server.BaseHTTPRequestHandler):
    asked = []

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        self.asked.append((self.path, self.headers["Content-Type"]))
        self.send_response(200)
        self.send_header("Content-Length", "2")
        self.end_headers()
        self.wfile.write(b"{}")

    def log_message(self, *_):
        pass


def run(host, module, plugin, emulator, address):
    with tempfile.TemporaryDirectory() as folder:
        client = pathlib.Path(folder)
        (client / "xnplugins").mkdir()
        shutil.copy(module, client)
        shutil.copy(plugin, client / "xnplugins")
        program = shutil.copy(host, client)
        return subprocess.run([*emulator, program, address], capture_output=True, text=True, timeout=100)


def main():
    host, module, plugin, *emulator = sys.argv[1:]
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Platform) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        done = run(host, module, plugin, emulator, f"http://127.0.0.1:{server.server_port}")
        server.shutdown()
    asked = [path for path, kind in Platform.asked if kind == "application/json" and "V2/" in path]
    findings = [f"not printed: {line}" for line in LINES if line not in done.stdout]
    findings += [f"exit status {done.returncode}"] if done.returncode else []
    findings += [f"asked: {Platform.asked}"] if asked[:len(QUESTIONS)] != QUESTIONS else []
    print("\n".join([*findings, done.stdout, done.stderr] if findings else ["everything came"]))
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())

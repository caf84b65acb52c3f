"""A browser without a window, driven over HTTP; no more of the protocol than the tests need."""
import base64
import json
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.error
import urllib.request


class Missing(Exception):
    """A program that the tests stand on is not installed."""


def program(*names):
    for name in names:
        path = shutil.which(name)
        if path:
            return path
    raise Missing(f"{names[0]} is missing: install the packages chromium and chromium-driver")


class Browser:
    """One session; ends with the `with` block."""

    def __enter__(self):
        binary = program("chromium", "chromium-browser")
        self.folder = tempfile.mkdtemp(prefix="xreport-browser-")
        self.driver = subprocess.Popen([program("chromedriver"), "--port=0"], stdout=subprocess.PIPE,
                                       stderr=subprocess.STDOUT, text=True)
        try:
            self.base = f"http://127.0.0.1:{self._port()}"
            self._open(binary)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if hasattr(self, "session"):
            self._call("DELETE", "")
        self.driver.terminate()
        self.driver.wait()
        self.driver.stdout.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _port(self):
        for line in self.driver.stdout:
            started = re.search(r"started successfully on port (\d+)", line)
            if started:
                return int(started[1])
        raise Missing("chromedriver did not start")

    def _open(self, binary):
        arguments = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--hide-scrollbars", f"--user-data-dir={self.folder}"]
        wanted = {"goog:chromeOptions": {"binary": binary, "args": arguments},
                  "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}
        self.session = None
        answer = self._request("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
        self.session = answer["sessionId"]

    def _request(self, method, path, body):
        data = None if method == "DELETE" else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"},
                                         method=method)
        try:
            with urllib.request.urlopen(request, timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(f"{path}: {error.read().decode(errors='replace')[:500]}") from error

    def _call(self, method, path, body=None):
        if self.session is not None:
            return self._request(method, f"/session/{self.session}{path}", body or {})
        return None

    def devtools(self, command, **parameters):
        return self._call("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def open(self, address):
        self._call("POST", "/url", {"url": address})

    def size(self, width, height, phone=False):
        self.devtools("Emulation.setDeviceMetricsOverride", width=width, height=height,
                      deviceScaleFactor=2 if phone else 1, mobile=phone)

    def appearance(self, media="screen", scheme="light"):
        self.devtools("Emulation.setEmulatedMedia", media=media,
                      features=[{"name": "prefers-color-scheme", "value": scheme}])

    def run(self, script, *arguments):
        return self._call("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def screenshot(self, file):
        image = self.devtools("Page.captureScreenshot", captureBeyondViewport=False)["data"]
        file.write_bytes(base64.b64decode(image))

    def pdf(self):
        return base64.b64decode(self._call("POST", "/print", {"orientation": "landscape",
                                                              "background": True}))

    def log(self, kind):
        return self._call("POST", "/se/log", {"type": kind})


if __name__ == "__main__":
    sys.exit("no program of its own; see browsertest.py")

"""The measured client: its folder, its host, and the platform that it asks."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = pathlib.Path(os.environ.get("BENCH_FOLDER", ROOT / "build/bench"))
TURNS = WORK / "turns"
MODULES = ("xnbase.dll", "XNSetting.dll", "OrvBase.dll", "OrvSecurityver.dll")


class Build:
    """What a preset has built, and how its programs are started."""

    def __init__(self, windows=False):
        self.folder = ROOT / "build" / ("windows" if windows else "linux")
        self.suffix = ".exe" if windows else ""
        self.runner = [ROOT / "tools/wine"] if windows else []

    def program(self, name):
        return [*self.runner, self.folder / (name + self.suffix)]


class Server:
    """The platform with its materials; `size` is that of the answer with all rows."""

    def __init__(self, name, count, divisor):
        self.folder = WORK / name
        self.process = subprocess.Popen([ROOT / "build/linux/bench_server", self.folder, str(count), str(divisor)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.address, size = self.process.stdout.readline().split()
        self.size = int(size)
        self.storage = self.address + "/storage"
        self.materials = [line.split() for line in (self.folder / "list").read_text().splitlines()]

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.process.stdin.close()
        self.process.wait()

    def fill(self, update):
        """Puts what the plug-in would fetch where it looks for it."""
        for name, md5, *_ in self.materials:
            os.link(self.folder / "storage" / name, update / md5)


def fresh(name):
    """A new folder, as dear as one on a machine that has deleted nothing for a while.

    ext4 passes over each inode that was freed less than five seconds ago, or whose freeing is not on the disk yet,
    whenever it looks for a new one: the cabinets that a turn has deleted would be paid for by the next turns."""
    TURNS.mkdir(parents=True, exist_ok=True)
    os.sync()
    time.sleep(6)
    return pathlib.Path(tempfile.mkdtemp(prefix=name + "-", dir=TURNS))


class Client:
    """A client's folder with nothing but the client in it; each run has a new one."""

    def __init__(self, build):
        self.build = build
        self.renew()

    def renew(self):
        self.root = fresh("client")
        source = self.build.folder / "bench/client"
        for name in (*MODULES, "bench_host" + self.build.suffix):
            shutil.copy2(source / name, self.root)
        shutil.copy2(self.build.folder / "xncurl.dll", self.root)
        for folder in ("xnplugins", "update", "home/OrvSecurity/config/uninst"):
            (self.root / folder).mkdir(parents=True)
        shutil.copy2(self.build.folder / "xrefresher.dll", self.root / "xnplugins")
        (self.root / "home/OrvSecurity/config/uninst/filelist.xml").write_text("<Root><FileList/></Root>")

    def start(self, *words):
        return subprocess.Popen([*self.build.runner, self.root / ("bench_host" + self.build.suffix), *words],
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)

    def ask(self, *words):
        """All that the host says: word -> list of numbers."""
        with self.start(*words) as host:
            said = words_of(host.stdout)
        if host.returncode != 0:
            raise SystemExit(f"bench: the host ended with {host.returncode}")
        return said

    def run(self, server, is_filled=False):
        """Seconds from the first request to the notification, and peak memory above idle in bytes."""
        self.renew()
        if is_filled:
            server.fill(self.root / "update")
        with self.start("run", server.address, self.root / "home") as host:
            until(host, "start_us")
            idle = memory(host.pid, "VmRSS")
            host.stdin.write("\n")
            host.stdin.flush()
            seconds = until(host, "run_us") / 1e6
            peak = memory(host.pid, "VmHWM") - idle
            host.stdin.write("\n")
        placed = sum(1 for file in (self.root / "components").rglob("*") if file.is_file())
        if placed != len(server.materials):
            raise SystemExit(f"bench: {placed} of {len(server.materials)} files were placed")
        return seconds, peak


def words_of(lines):
    """Lines of a word and a number: word -> list of numbers."""
    said = {}
    for line in lines:
        word, number = line.split()
        said.setdefault(word, []).append(float(number))
    return said


def until(host, wanted):
    for line in host.stdout:
        word, number = line.split()
        if word == wanted:
            return float(number)
    raise SystemExit(f"bench: the host ended before it said {wanted}")


def memory(process, name):
    text = pathlib.Path(f"/proc/{process}/status").read_text()
    return 1024 * int(re.search(rf"^{name}:\s+(\d+)", text, re.MULTILINE)[1])

#!/usr/bin/env python3
"""Changes the sources where a mistake would cost most, one operator, bound or result at a time,
and runs the tests that concern the file. A change that no test notices is a survivor.

  mutate.py [FILE...]   files of the table below (default: all); builds below build/mutation
  mutate.py --list      the changes, without trying them

Prints the survivors, each with the word that survivors.txt has for it, and the rate. Exit 1 when
the rate is below what is demanded, or when there is no word for a survivor.
"""
import concurrent.futures
import os
import pathlib
import queue
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
KNOWN = ROOT / "tools" / "survivors.txt"
DEMANDED = 85  # per cent
SECONDS = 60  # a changed loop may have no end

BRIDGE = "Bridge*:KelvarFetch.*:FetchTask.*"
MOVE = "MoveTest.*:PaddingTest.*:StorageTest.*"
DOWNLOAD = "DownloadTest.*:StorageTest.*"
TESTS = {
    "src/updatekelvar/data/materialcheck.cpp": "MaterialCheck.*:FetchTask.*",
    "src/updatekelvar/fetch/jsonoutline.cpp": BRIDGE,
    "src/updatekelvar/fetch/jsontext.cpp": BRIDGE,
    "src/updatekelvar/fetch/messages.cpp": BRIDGE,
    "src/updatekelvar/fetch/xpbjsonreader.cpp": BRIDGE,
    "src/updatekelvar/fetch/xpbjsonwriter.cpp": BRIDGE,
    "src/updatekelvar/task/fileplacement.cpp": MOVE,
    "src/updatekelvar/task/filereplace.cpp": MOVE,
    "src/updatekelvar/task/materialfilters.cpp": "FetchTask.*",
    "src/updatekelvar/task/materialnames.cpp": MOVE + ":DownloadTest.*",
    "src/updatekelvar/task/moverecords.cpp": MOVE,
    "src/updatekelvar/task/paddinglist.cpp": MOVE,
    "src/updatekelvar/task/xtaskkelvardownload.cpp": DOWNLOAD,
    "src/updatekelvar/task/xtaskkelvarmove.cpp": MOVE,
    "src/utils/versions.cpp": "VersionTest.*:FileVersionTest.*:MoveTest.*",
}

# Where the unit tests are not all that concerns a file.
MORE = {"src/updatekelvar/task/fileplacement.cpp": [("hostile_tests", "BadCabinets.*")]}

# What is looked for, and what stands there instead. Templates have no blanks around < and >.
CHANGES = [
    (r" == ", " != "), (r" != ", " == "),
    (r" < ", " <= "), (r" < ", " >= "), (r" > ", " >= "), (r" > ", " <= "),
    (r" <= ", " < "), (r" >= ", " > "),
    (r" && ", " || "), (r" \|\| ", " && "),
    (r" \+ ", " - "), (r" - ", " + "), (r"\+\+(?=\w)", "--"),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"(?<=[( ])!(?=[\w(:])", ""), (r"(?<=\()(?=\w+\.empty\(\))", "!"),
    (r"\bcontinue;", "break;"),
    (r"\breturn (?!\{\}|true|false|\d|-1)[^;]+;", "return {};"),
]
NUMBER = re.compile(r"(?<![\w.\"'])\d+(?![\w.\"'])")


def suites(path):
    """Programs with the tests in them that concern the file."""
    return [("unit_tests", TESTS[path]), *MORE.get(path, [])]


def masked(text):
    """The text with blanks for comments, literals, directives and log calls, which are told apart
    from what decides; as long as the text."""
    blank = lambda found: re.sub(r"[^\n]", " ", found.group())
    text = re.sub(r"//[^\n]*|/\*.*?\*/", blank, text, flags=re.S)
    text = re.sub(r"^#[^\n]*", blank, text, flags=re.M)
    text = re.sub(r"XLOG\((?:[^;]|;(?!\n))*\);", blank, text)
    return re.sub(r'"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\]|\\.)\'', lambda f: '"' + " " * (len(f.group()) - 2) + '"', text)


def function_at(lines, line):
    """The name of the function around that line; "-" outside of any. Definitions begin in the first column."""
    for text in reversed(lines[:line + 1]):
        named = re.match(r"[A-Za-z].*?(\w+)\(", text)
        if named:
            return named[1]
        if text.startswith("}"):
            break
    return "-"


def mutants(path):
    """(changed text, number of the line, its function, the line above it, the line before, the line
    after) of each change."""
    text = (ROOT / path).read_text()
    mask = masked(text)
    places = [(found.start(), found.end(), new) for old, new in CHANGES for found in re.finditer(old, mask)]
    places += [(found.start(), found.end(), str(int(found.group()) + 1)) for found in NUMBER.finditer(mask)]
    lines = text.split("\n")
    for start, end, new in sorted(places):
        changed = text[:start] + new + text[end:]
        line = text.count("\n", 0, start)
        above, before = [whole.strip() for whole in ["", *lines][line:line + 2]]
        yield changed, line + 1, function_at(lines, line), above, before, changed.split("\n")[line].strip()


class Tree:
    """A copy of the sources with a build of its own."""

    def __init__(self, number):
        self.sources = WORK / f"tree{number}"
        self.build = WORK / f"build{number}"
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                               capture_output=True, text=True).stdout.split("\n")
        for name in filter(None, names):
            self.take(name)
        with open(WORK / f"build{number}.log", "w") as log:
            def run(*command):
                subprocess.run(command, check=True, stdout=log, stderr=log)
            run("cmake", "-G", "Ninja", "-S", self.sources, "-B", self.build, "-DCMAKE_BUILD_TYPE=None",
                "-DCMAKE_CXX_FLAGS=-O0", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold", "-DXREFRESHER_UNITY=OFF")
            run("ninja", "-C", self.build, "unit_tests")

    def take(self, name):
        source, target = ROOT / name, self.sources / name
        if source.is_file() and not (target.is_file() and target.read_bytes() == source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)

    def fails(self, program, tests):
        # What a changed guard lets out of the tests' folders must not be there for the next change.
        with tempfile.TemporaryDirectory(dir=WORK) as temporary:
            return subprocess.run([self.build / program, "--gtest_brief=1", "--gtest_filter=" + tests],
                                  cwd=self.build, capture_output=True, timeout=SECONDS,
                                  env={**os.environ, "TMPDIR": temporary}).returncode != 0

    def judge(self, path, text=None):
        """What became of the change: killed, refused by the compiler, or alive."""
        if text is not None:
            (self.sources / path).write_text(text)
        try:
            programs = [program for program, _ in suites(path)]
            if subprocess.run(["ninja", "-C", self.build, *programs], capture_output=True).returncode:
                return "refused"
            return "killed" if any(self.fails(*suite) for suite in suites(path)) else "alive"
        except subprocess.TimeoutExpired:
            return "killed"
        finally:
            self.take(path)


def known_survivors():
    words = {}
    for line in KNOWN.read_text().splitlines() if KNOWN.exists() else []:
        if line and not line.startswith("#"):
            *key, word = line.split("\t")
            words[tuple(key)] = word
    return words


def try_all(paths, trees):
    """(path, line, function, above, before, after, what became of it), in the order of the sources."""
    def attempt(path, mutant):
        tree = trees.get()
        try:
            return path, *mutant[1:], tree.judge(path, mutant[0])
        finally:
            trees.put(tree)

    with concurrent.futures.ThreadPoolExecutor(trees.qsize()) as pool:
        attempts = [pool.submit(attempt, path, mutant) for path in paths for mutant in mutants(path)]
        for number, done in enumerate(attempts, 1):
            result = done.result()
            print(f"\r{number}/{len(attempts)}", end="", file=sys.stderr, flush=True)
            yield result
    print(file=sys.stderr)


def report(results):
    words = known_survivors()
    print(f"{'file':45} {'tried':>5} {'killed':>6} {'refused':>7} {'alive':>5}")
    rows = {}
    for path, *_, what in results:
        rows.setdefault(path, []).append(what)
    for path, whats in rows.items():
        print(f"{path:45} {len(whats):5} {whats.count('killed'):6} {whats.count('refused'):7} {whats.count('alive'):5}")
    unknown = 0
    for path, line, *where, before, after, what in results:
        if what == "alive":
            word = words.pop((path, *where, after), None)  # a word is for one change
            unknown += word is None
            print(f"\n{path}:{line}: {word or 'UNKNOWN SURVIVOR'}\n  - {before}\n  + {after}")
    whats = [result[-1] for result in results]
    killed, alive = whats.count("killed"), whats.count("alive")
    rate = 100 * killed / max(1, killed + alive)
    print(f"\nkilled {killed} of {killed + alive} changes that compile: {rate:.1f} % (demanded: {DEMANDED} %), "
          f"{unknown} survivors without a word")
    return rate >= DEMANDED and unknown == 0


def main(arguments):
    paths = [name for name in arguments if not name.startswith("-")] or list(TESTS)
    for path in paths:
        if path not in TESTS:
            sys.exit(f"mutate: no tests are known for {path}; known: {', '.join(TESTS)}")
    if "--list" in arguments:
        for path in paths:
            for _, line, function, _, before, after in mutants(path):
                print(f"{path}:{line}: {function}\n  - {before}\n  + {after}")
        return
    WORK.mkdir(parents=True, exist_ok=True)
    trees = queue.Queue()
    for number in range(os.cpu_count() or 1):
        tree = Tree(number)
        # Unchanged sources have to pass, or every change would seem to be noticed.
        for path in paths:
            if tree.judge(path) != "alive":
                sys.exit(f"mutate: the tests of {path} fail before anything is changed")
        trees.put(tree)
    sys.exit(0 if report(list(try_all(paths, trees))) else 1)


if __name__ == "__main__":
    main(sys.argv[1:])

#!/usr/bin/env python3
"""Checks of the sources that need no compiler. Prints each finding; exit 1 when there is one.

  checks.py [FOLDER]      checks the repository in FOLDER (default: the current one)
  checks.py --self-test   shows that each check finds what it is there for
"""
import json
import pathlib
import re
import sys
import tempfile

# Who may include whom: first folder below src -> the folders it may name.
PLATFORM, HOST, UTILS = {"platform"}, {"host", "platform", "utils/mutex.h"}, {"utils", "host", "platform"}
ENGINE = UTILS | {"xevent.h", "xtaskbase.h", "xtaskqueue.h", "xupdate.h", "xupdatemgr.h"}
CHANNELS = ["updatekelvar", "updatefile", "updatepkg", "updateother", "updatestatistic"]

LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
LOG_CALL = re.compile(r'\bXLOG\(\s*\w+\s*,\s*|\blog\(\s*log\w+\s*,\s*__FILE__\s*,\s*__LINE__\s*,\s*\w+\s*,\s*')


def sources(root, folder):
    return sorted(p for p in (root / folder).rglob("*") if p.suffix in (".h", ".cpp"))


def allowed(area):
    if area == "platform":
        return PLATFORM
    if area == "host":
        return HOST
    if area == "utils":
        return UTILS
    if area in CHANNELS:
        return ENGINE | {area}
    return None  # the frame at the top knows everything


def check_includes(root):
    for path in sources(root, "src"):
        relative = path.relative_to(root / "src")
        may = allowed(relative.parts[0])
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match or match[1].endswith(".pb.h") or ("/" not in match[1] and match[1] not in ENGINE):
                continue
            name = match[1]
            known = may is None or name in may or name.split("/")[0] in may
            if name.startswith(("sandbox/", "tests/", "support/")) or not known:
                yield f"{path.relative_to(root)}:{number}: {relative.parts[0]} may not include {name}"


def check_system(root):
    for folder, home in (("src", "platform"), ("sandbox", "platform"), ("examples", None)):
        for path in sources(root, folder):
            if path.relative_to(root / folder).parts[0] == home:
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                if re.search(r"\b_WIN32\b|<windows\.h>", line):
                    yield f"{path.relative_to(root)}:{number}: the system is named outside its platform folder"


def code(path):
    """The text of a source without its comments that fill a line."""
    return re.sub(r"^\s*//.*$", "", path.read_text(encoding="utf-8"), flags=re.MULTILINE)


def logged_texts(root):
    for path in sources(root, "src"):
        text = code(path)
        for call in LOG_CALL.finditer(text):
            first = LITERAL.match(text, call.end())
            if first:
                yield path, first[1]
    # Lines that stand in a table and are logged from it.
    for path in sources(root, "src"):
        for match in re.finditer(r'"(update plugin, [^"]*)"', code(path)):
            yield path, match[1]


def check_log_reference(root):
    reference = (root / "docs" / "log-reference.md").read_text(encoding="utf-8")
    told = set(re.findall(r"`([^`]+)`", reference))
    seen = set()
    for path, text in logged_texts(root):
        seen.add(text.strip())
        if text.strip() not in told:
            yield f'{path.relative_to(root)}: the log line "{text}" is not in docs/log-reference.md'
    for text in re.findall(r"^\| `([^`]+)`", reference, re.MULTILINE):
        if text.strip() not in seen:
            yield f'docs/log-reference.md: no source writes "{text}"'


# Libraries of the Windows builds: name in tools/windowsdeps -> name in vcpkg.json.
VCPKG_NAMES = {"googletest": "gtest", "nlohmann-json3-dev": "nlohmann-json", "libcli11-dev": "cli11",
               "libz-mingw-w64-dev": "zlib"}


def check_windows_libraries(root):
    script = (root / "tools" / "windowsdeps").read_text(encoding="utf-8")
    built = re.findall(r'^    "([a-z0-9]+) ', script, re.MULTILINE)
    ready = re.search(r"^ready_packages=\((.*)\)", script, re.MULTILINE)[1].split()
    listed = json.loads((root / "vcpkg.json").read_text(encoding="utf-8"))["dependencies"]
    wanted = {VCPKG_NAMES.get(name, name) for name in built + ready}
    named = {entry if isinstance(entry, str) else entry["name"] for entry in listed}
    yield from (f"vcpkg.json: {name} is missing, which tools/windowsdeps has" for name in sorted(wanted - named))
    yield from (f"vcpkg.json: {name} is not in tools/windowsdeps" for name in sorted(named - wanted))


TEST = re.compile(r"\b(?:TEST|TEST_F|TEST_P)\(\s*(\w+)\s*,\s*(\w+)\s*\)")
INSTANCE = re.compile(r"\bINSTANTIATE_TEST_SUITE_P\(\s*(\w+)\s*,\s*(\w+)\s*,")
NAMED_TEST = re.compile(r"`(?:(\w+)/)?([A-Z]\w*)\.([A-Z]\w*)(?:/(\w+))?`")
NAMED_INSTANCE = re.compile(r"`(\w+)/([A-Z]\w*)`")
ADDED_TEST = re.compile(r"\badd_test\(\s*NAME\s+([\w.]+)(\$\{\w+\})?")


def added_tests(root):
    """Names of tests that are no GoogleTest: as they stand, or made of a call's first word."""
    texts = [path.read_text(encoding="utf-8") for folder in ("tests", "fuzz")
             for path in sorted((root / folder).rglob("CMakeLists.txt"))]
    for text in texts:
        for begin, variable in ADDED_TEST.findall(text):
            yield from [begin + word for word in re.findall(r"\(\s*(\w+)", text)] if variable else [begin]


def check_named_tests(root):
    """The tests that docs/security.md rests on: `Suite.Name`, `Prefix/Suite.Name/Row`, `Prefix/Suite`, `suite.part`."""
    texts = [path.read_text(encoding="utf-8") for path in sources(root, "tests")]
    tests = {match for text in texts for match in TEST.findall(text)}
    instances = {match for text in texts for match in INSTANCE.findall(text)}
    told = (root / "docs" / "security.md").read_text(encoding="utf-8").replace("stand as `Suite.Name`", "")
    for match in NAMED_TEST.finditer(told):
        prefix, suite, name, row = match.groups()
        is_there = (suite, name) in tests and (not prefix or (prefix, suite) in instances)
        if not is_there or (row and not any(row in text for text in texts)):
            yield f"docs/security.md: there is no test {match[0]}"
    for match in NAMED_INSTANCE.finditer(told):
        if match.groups() not in instances:
            yield f"docs/security.md: there is no test {match[0]}"
    added = set(added_tests(root))
    yield from (f"docs/security.md: there is no test `{name}`"
                for name in re.findall(r"`((?:fuzz|plugin|e2e|contract)\.\w+)`", told) if name not in added)


CHECKS = (check_includes, check_system, check_log_reference, check_windows_libraries, check_named_tests)


def run(root):
    return [finding for check in CHECKS for finding in check(root)]


def self_test():
    bad = {
        "src/platform/a.h": '#include "host/log.h"\n',
        "src/updatekelvar/b.cpp": '#include "updatepkg/x.h"\n#ifdef _WIN32\n#endif\n',
        "src/utils/c.cpp": '#include "tests/d.h"\nXLOG(logProgress, "update plugin, unheard of");\n',
        "sandbox/cli/e.cpp": "#include <windows.h>\n",
        "examples/host/f.cpp": "#ifdef _WIN32\n",
        "docs/log-reference.md": "| `update plugin, never written` |\n",
        "docs/security.md": "`Suite.Gone`, `Suite.There`, `Other/Suite.There`, `One/Suite.There/Row`, `Two/Suite`, `fuzz.gone`\n",
        "tests/suite.cpp": "TEST_P(Suite, There) {}\nINSTANTIATE_TEST_SUITE_P(One, Suite, 1);\n",
        "tools/windowsdeps": 'libraries=(\n    "googletest googletest"\n)\nready_packages=(libcli11-dev)\n',
        "vcpkg.json": '{"dependencies": ["gtest", "zlib"]}',
    }
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in bad.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        findings = "\n".join(run(root))
    wanted = ["a.h:1: platform may not include host/log.h", "b.cpp:1: updatekelvar may not include updatepkg/x.h",
              "b.cpp:2: the system is named", "c.cpp:1: utils may not include tests/d.h", "e.cpp:1: the system is named",
              "f.cpp:1: the system is named",
              'log line "update plugin, unheard of" is not', 'no source writes "update plugin, never written"',
              "no test `Suite.Gone`", "no test `Other/Suite.There`", "no test `One/Suite.There/Row`", "no test `Two/Suite`", "no test `fuzz.gone`",
              "vcpkg.json: cli11 is missing", "vcpkg.json: zlib is not in"]
    return [f"self-test: not found: {text}" for text in wanted if text not in findings]


def main():
    findings = self_test()
    if "--self-test" not in sys.argv:
        findings += run(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "."))
    print("\n".join(findings), end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Checks a built library: its exports are the given ones and no others. With --image also
what a Windows image that is shipped must be. Prints each finding; exit 1 when there is one.

  checklibrary.py [--image] OBJDUMP LIBRARY EXPORT...
"""
import pathlib
import re
import subprocess
import sys

# What every Windows has. Anything else would have to be shipped along.
SYSTEM_LIBRARIES = {"advapi32.dll", "bcrypt.dll", "kernel32.dll", "msvcrt.dll", "setupapi.dll",
                    "shlwapi.dll", "user32.dll", "version.dll"}
MARKS = {"PE32+": "(PE32+)", "ASLR": "DYNAMIC_BASE", "64-bit ASLR": "HIGH_ENTROPY_VA", "DEP": "NX_COMPAT"}
LARGEST_IMAGE = 4_000_000


def is_windows(library):
    return library.read_bytes()[:2] == b"MZ"


def dump(objdump, flags, library):
    return subprocess.run([objdump, flags, library], check=True, capture_output=True, text=True).stdout


def exports(objdump, library):
    if is_windows(library):
        table = dump(objdump, "-p", library).partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
        return re.findall(r"^\s*\[.*\s(\S+)$", table, re.MULTILINE)
    symbols = re.findall(r"^[0-9a-f]+ (.{7}) (\S+)\s.*\s(\S+)$", dump(objdump, "-T", library), re.MULTILINE)
    return [name for flags, section, name in symbols if section not in ("*UND*", "*ABS*") and flags[0] in "gw"]


def check_exports(objdump, library, wanted):
    found = set(exports(objdump, library))
    for kind, names in (("surplus", found - set(wanted)), ("missing", set(wanted) - found)):
        if names:
            yield f"{kind} exports: {' '.join(sorted(names))}"


def check_image(objdump, library):
    header = dump(objdump, "-p", library)
    imports = {name.lower() for name in re.findall(r"DLL Name: (\S+)", header)}
    yield from (f"imports {name}, which is no library of the system" for name in sorted(imports - SYSTEM_LIBRARIES))
    yield from (f"is not marked for {what}" for what, mark in MARKS.items() if mark not in header)
    symbols = library.with_name(library.name + ".debug")
    if ".debug_info" in dump(objdump, "-h", library) or ".gnu_debuglink" not in dump(objdump, "-h", library):
        yield "is not stripped, or does not name the file of its symbols"
    if not symbols.exists() or ".debug_info" not in dump(objdump, "-h", symbols):
        yield f"its symbols are not in {symbols.name}"
    if library.stat().st_size > LARGEST_IMAGE:
        yield f"has {library.stat().st_size} bytes, more than {LARGEST_IMAGE}"


def main(arguments):
    image = arguments[0] == "--image"
    objdump, library, *wanted = arguments[image:]
    findings = list(check_exports(objdump, pathlib.Path(library), wanted))
    if image:
        findings += check_image(objdump, pathlib.Path(library))
    print("\n".join(findings))
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

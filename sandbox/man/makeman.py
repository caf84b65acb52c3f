#!/usr/bin/env python3
"""Prints the manual page of xsandbox, made of what its --help says.

  makeman.py XSANDBOX > xsandbox.1
"""
import re
import subprocess
import sys

ENVIRONMENT = [
    ("NO_COLOR", "When set to anything, a terminal gets neither colours nor lines that are written over."),
    ("TERM", "The same when it is \"dumb\"."),
    ("LC_ALL, LC_CTYPE, LANG", "Signs beyond ASCII are used on a terminal whose locale is one of UTF-8."),
]
FILES = [
    ("sandbox-run", "The folder of a run where --folder names no other."),
    ("FOLDER/client, FOLDER/home, FOLDER/storage", "The client, its home folder, and what the platform has stored."),
    ("FOLDER/sandbox", "Settings, versions, the plug-in's log (plugin.log) and all that was observed (events.jsonl)."),
]


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text[:1] in (".", "'") else text


def help_of(program, *verb):
    return subprocess.run([program, *verb, "--help"], check=True, capture_output=True, text=True).stdout


def sections(text):
    """The description, and the lines of each titled section."""
    found, title = {"": []}, ""
    for line in text.splitlines():
        if line.startswith("Usage:"):
            found["Usage"] = [line.split(": ", 1)[1]]
            title = "Usage"
        elif match := re.fullmatch(r"(\w[\w ]*):", line):
            title = match[1]
            found[title] = []
        elif line.strip():
            found[title].append(line)
    return found


def entries(lines):
    """(name, words) of lines in two columns; a line that is indented further goes on."""
    found = []
    for line in lines:
        if match := re.match(r"  (\S.*?)(?:(?:  +|: )(\S.*))?$", line if line[2:3] != " " else ""):
            found.append([match[1], match[2] or ""])
        else:
            found[-1][1] = (found[-1][1] + " " + line.strip()).strip()
    return found


def listed(found):
    for name, words in found:
        yield from (".TP", ".B " + escaped(name), escaped(words))


def verb_page(program, verb):
    parts = sections(help_of(program, verb))
    yield from (".SS " + verb, escaped(" ".join(parts.pop(""))), ".PP", ".B " + escaped(parts.pop("Usage")[0]))
    for title, lines in parts.items():
        yield from (".PP", escaped(title) + ":")
        if title.startswith("Example"):
            yield from (".nf", ".RS", *(escaped(line.strip()) for line in lines), ".RE", ".fi")
        else:
            yield from listed(entries(lines))


def page(program):
    version = subprocess.run([program, "--version"], check=True, capture_output=True, text=True).stdout.split()[1]
    parts = sections(help_of(program))
    verbs = [name for name, _ in entries(parts["Verbs"])]
    yield '.\\" Made by makeman.py of what --help says.'
    yield f'.TH XSANDBOX 1 "" "xrefresher {version}" "User Commands"'
    yield from (".SH NAME", "xsandbox \\- sandbox of the update plug\\-in")
    yield from (".SH SYNOPSIS", ".B xsandbox", ".I VERB", "[\\fIoptions\\fR] ...")
    yield from (".SH DESCRIPTION", escaped(" ".join(parts[""])))
    yield from (".SH OPTIONS", *listed(entries(parts["Options"])), ".SH VERBS")
    for verb in verbs:
        yield from verb_page(program, verb)
    yield from (".SH ENVIRONMENT", *listed(ENVIRONMENT), ".SH FILES", *listed(FILES))


if __name__ == "__main__":
    print("\n".join(page(sys.argv[1])))

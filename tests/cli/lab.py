"""xsandbox in a folder of a test's own, and the parts of its help."""
import contextlib
import functools
import json
import os
import pathlib
import pty
import re
import select
import subprocess
import tempfile
import termios
import unittest

XSANDBOX = os.environ["XSANDBOX"]
REPOSITORY = pathlib.Path(os.environ["REPOSITORY"])
SCENARIOS = REPOSITORY / "sandbox" / "scenarios"
LIMIT = 120


def xsandbox(*arguments, folder=None, variables=None):
    return subprocess.run([XSANDBOX, *map(str, arguments)], cwd=folder, text=True, capture_output=True,
                          timeout=LIMIT, check=False, env={**os.environ, **(variables or {})})


@functools.cache
def help_of(*verb):
    return xsandbox(*verb, "--help").stdout


def section(title, text):
    """The lines below a title of the help."""
    match = re.search(rf"^{title}:\n((?:.+\n?)*)", text, re.MULTILINE)
    return match[1].splitlines() if match else []


def names(title, text):
    return [match[1] for line in section(title, text) if (match := re.match(r"  ([^ :,]+)", line))]


def verbs():
    return names("Verbs", help_of())


def options(text):
    return re.findall(r"^  (?:-\w,)?(--[a-z-]+)", text, re.MULTILINE)


def on_terminal(arguments, folder, variables, keys=b"", columns=80):
    """What a terminal of that width gets, and the exit status; the keys are pressed at once."""
    terminal, inside = pty.openpty()
    termios.tcsetwinsize(inside, (25, columns))
    with subprocess.Popen([XSANDBOX, *map(str, arguments)], cwd=folder, env={**os.environ, **variables},
                          stdin=inside, stdout=inside, stderr=inside, start_new_session=True) as process:
        os.close(inside)
        os.write(terminal, keys)
        text = b""
        with contextlib.suppress(OSError):  # the end of a terminal whose last process has ended
            while select.select([terminal], [], [], LIMIT)[0] and (part := os.read(terminal, 65536)):
                text += part
        os.close(terminal)
        return text.decode(), process.wait(LIMIT)


class Lab(unittest.TestCase):
    """Each test class has a folder for its runs, in which the repository's scenarios lie."""

    @classmethod
    def setUpClass(cls):
        keeper = tempfile.TemporaryDirectory(prefix="xsandbox-cli-")
        cls.addClassCleanup(keeper.cleanup)
        cls.folder = pathlib.Path(keeper.name)
        (cls.folder / "sandbox").mkdir()
        (cls.folder / "sandbox" / "scenarios").symlink_to(SCENARIOS)

    @classmethod
    def call(cls, *arguments, **more):
        return xsandbox(*arguments, folder=cls.folder, **more)

    @classmethod
    @contextlib.contextmanager
    def host(cls, *arguments):
        """A host that another call of xsandbox ends; what it has told comes at its end."""
        with subprocess.Popen([XSANDBOX, "host", *arguments], cwd=cls.folder, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT) as process:
            try:
                yield process
                process.told = process.communicate(timeout=LIMIT)[0]
            except BaseException:
                process.kill()
                print("the host has told:", process.communicate()[0])
                raise

    @classmethod
    def scenario(cls, name, change):
        """A scenario of the repository that was changed, as a file of the test's own."""
        content = json.loads((SCENARIOS / name).read_text(encoding="utf-8"))
        change(content)
        file = cls.folder / ("changed-" + name)
        file.write_text(json.dumps(content), encoding="utf-8")
        return file

"""What a run shows on a terminal and in a pipe."""
import re
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor

from lab import Lab, on_terminal

ESCAPE = "\033"
SEQUENCE = re.compile(r"\033\[[0-9;]*[mK]")
USUAL = {"TERM": "xterm", "LC_ALL": "C.UTF-8", "NO_COLOR": ""}
SCENARIO = "sandbox/scenarios/small.json"


class TerminalTest(Lab):
    def shown(self, arguments=(), variables=None, columns=80):
        folder = tempfile.mkdtemp(dir=self.folder)
        text, status = on_terminal(["run", SCENARIO, "--folder", folder, *arguments], self.folder,
                                   {**USUAL, **(variables or {})}, columns=columns)
        self.assertEqual(status, 0, text)
        return text

    def all_shown(self, *lists):
        """One run a row, several at once: they wait more than they work."""
        with ThreadPoolExecutor(4) as pool:
            return list(pool.map(self.shown, *lists))

    def test_has_colours_only_where_a_person_looks(self):
        cases = [
            ([], {}, True),
            ([], {"NO_COLOR": "1"}, False),
            ([], {"TERM": "dumb"}, False),
            (["--color", "never"], {}, False),
            (["--color", "always"], {"NO_COLOR": "1"}, True),
        ]
        texts = self.all_shown(*list(zip(*cases))[:2])
        for (arguments, variables, has_color), text in zip(cases, texts):
            with self.subTest(arguments=arguments, variables=variables):
                self.assertEqual(ESCAPE in text, has_color)
                self.assertEqual("\r" in text.replace("\r\n", ""), has_color)

    def test_is_plain_in_a_pipe(self):
        piped = self.call("run", SCENARIO, variables=USUAL).stdout
        self.assertIn("everything is as the scenario expects", piped)
        self.assertNotRegex(piped, r"[^\x0a\x20-\x7e]")
        colored = self.call("run", SCENARIO, "--color", "always", variables=USUAL).stdout
        self.assertIn(ESCAPE + "[32mok", colored)
        self.assertNotIn("\r", colored)

    def test_fits_a_narrow_terminal(self):
        widths = (40, 80)
        for columns, text in zip(widths, self.all_shown([()] * 2, [None] * 2, widths)):
            lines = SEQUENCE.sub("", text).splitlines()
            for line in (part for line in lines for part in line.split("\r")):
                # A single word, as the name of a folder is, cannot be parted.
                fits = len(line) <= columns or len(line.split()) <= 2
                self.assertTrue(fits, f"{columns} columns: {line}")


if __name__ == "__main__":
    unittest.main()

"""What a run shows on a terminal and in a pipe."""
import re
import unittest

from lab import Lab, on_terminal

ESCAPE = "\033"
SEQUENCE = re.compile(r"\033\[[0-9;]*[mK]")
USUAL = {"TERM": "xterm", "LC_ALL": "C.UTF-8", "NO_COLOR": ""}
SCENARIO = "sandbox/scenarios/small.json"


class TerminalTest(Lab):
    def shown(self, *arguments, columns=80, **variables):
        text, status = on_terminal(["run", SCENARIO, *arguments], self.folder, {**USUAL, **variables},
                                   columns=columns)
        self.assertEqual(status, 0, text)
        return text

    def test_has_colours_only_where_a_person_looks(self):
        for arguments, variables, has_color in [
            ([], {}, True),
            ([], {"NO_COLOR": "1"}, False),
            ([], {"TERM": "dumb"}, False),
            (["--color", "never"], {}, False),
            (["--color", "always"], {"NO_COLOR": "1"}, True),
        ]:
            with self.subTest(arguments=arguments, variables=variables):
                text = self.shown(*arguments, **variables)
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
        for columns in (40, 80):
            lines = SEQUENCE.sub("", self.shown(columns=columns)).splitlines()
            for line in (part for line in lines for part in line.split("\r")):
                # A single word, as the name of a folder is, cannot be parted.
                fits = len(line) <= columns or len(line.split()) <= 2
                self.assertTrue(fits, f"{columns} columns: {line}")


if __name__ == "__main__":
    unittest.main()

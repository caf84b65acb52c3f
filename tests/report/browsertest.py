#!/usr/bin/env python3
"""Opens the timeline of a finished run in a real browser, and looks.

  browsertest.py XSANDBOX RUN OUTPUT    page and screenshots are left in OUTPUT
"""
import json
import pathlib
import re
import subprocess
import sys
import unittest

import webdriver

# The lines that begin a bar, counted without the code that draws them.
STARTS = {
    "request": r"update plugin, kelvar http, request:|task check, request:",
    "transfer": r"update plugin, download task, url:|file, task download, download name:"
                r"|pkg, task download, check \.\.\.",
    "move": r"update plugin, kelvar, task move, move:",
}

# Bars of one row of a lane lie beside each other; [count, overlapping pairs, too thin ones].
GEOMETRY = """
const boxes = [...document.querySelectorAll('.bar rect')].map(r => r.getBoundingClientRect());
let overlaps = 0;
for (let i = 0; i < boxes.length; i++)
  for (let j = i + 1; j < boxes.length; j++)
    if (boxes[i].left < boxes[j].right - 0.5 && boxes[j].left < boxes[i].right - 0.5 &&
        boxes[i].top < boxes[j].bottom - 0.5 && boxes[j].top < boxes[i].bottom - 0.5) overlaps++;
const svg = document.querySelector('.scroll svg').getBoundingClientRect();
const outside = boxes.filter(b => b.left < svg.left || b.right > svg.right + 0.5 ||
                                  b.top < svg.top || b.bottom > svg.bottom + 0.5).length;
return [boxes.length, overlaps, boxes.filter(b => b.width < 1).length, outside];
"""

# What of the page is wider than the screen, but for what scrolls by itself.
TOO_WIDE = """
return [...document.querySelectorAll('body *')].filter(e => !e.closest('.scroll') &&
  !e.closest('thead') && e.getBoundingClientRect().right > innerWidth + 0.5).map(e => e.outerHTML.slice(0, 80));
"""


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = OUTPUT / "timeline.html"
        subprocess.run([XSANDBOX, "timeline", "--folder", RUN, "--html", cls.page], check=True,
                       stdout=subprocess.DEVNULL)
        cls.browser = cls.enterClassContext(webdriver.Browser())
        cls.browser.size(1280, 900)
        cls.browser.open(cls.page.as_uri())

    def setUp(self):
        self.browser.appearance()
        self.browser.size(1280, 900)
        self.browser.run("window.scrollTo(0, 0)")

    def counted(self):
        script = "return document.querySelectorAll('.bar.' + arguments[0]).length"
        return {kind: self.browser.run(script, kind) for kind in STARTS}

    def test_has_a_bar_for_each_line_that_begins_one(self):
        log = (RUN / "sandbox" / "plugin.log").read_text(encoding="utf-8", errors="replace")
        expected = {kind: len(re.findall(start, log)) for kind, start in STARTS.items()}
        self.assertTrue(all(expected.values()), expected)
        self.assertEqual(self.counted(), expected)
        count, overlaps, thin, outside = self.browser.run(GEOMETRY)
        self.assertEqual([count, overlaps, thin, outside], [sum(expected.values()), 0, 0, 0])

    def test_says_the_same_as_the_command(self):
        told = json.loads(subprocess.run([XSANDBOX, "timeline", "--folder", RUN, "--json"], check=True,
                                         capture_output=True, text=True).stdout)
        self.assertEqual(self.counted(), {kind: told[kind + "s"] for kind in STARTS})
        rows = self.browser.run("return document.querySelectorAll('tbody tr').length")
        self.assertEqual(rows, sum(event["kind"] != "tick" for event in told["events"]))

    def test_reads_well_where_it_is_read(self):
        for name, width, phone, scheme in (("desktop", 1280, False, "light"),
                                           ("dark", 1280, False, "dark"), ("phone", 390, True, "light")):
            with self.subTest(name):
                self.browser.appearance(scheme=scheme)
                self.browser.size(width, 844 if phone else 900, phone)
                self.assertEqual(self.browser.run("return innerWidth"), width)
                wide = self.browser.run("return document.documentElement.scrollWidth - innerWidth")
                self.assertLessEqual(wide, 0)
                self.assertEqual(self.browser.run(TOO_WIDE), [])
                self.browser.screenshot(OUTPUT / f"timeline-{name}.png")

    def test_fits_on_paper(self):
        self.browser.appearance(media="print")
        self.browser.size(1040, 720)  # the inside of a sheet at 96 dots per inch
        self.assertEqual(self.browser.run(TOO_WIDE.replace("!e.closest('.scroll') &&", "")), [])
        self.browser.screenshot(OUTPUT / "timeline-paper.png")
        paper = self.browser.pdf()
        self.assertTrue(paper.startswith(b"%PDF"))
        (OUTPUT / "timeline.pdf").write_bytes(paper)

    def test_has_words_for_those_who_do_not_see_it(self):
        picture = self.browser.run("""const svg = document.querySelector('svg[role=img]');
            return svg.getAttribute('aria-labelledby').split(' ')
                      .map(id => document.getElementById(id).textContent).join(': ')""")
        self.assertIn("Timeline of the run", picture)
        untitled = "return [...document.querySelectorAll('.bar, .mark')].filter(" \
                   "e => e.closest('.scroll') && !e.querySelector('title')).length"
        self.assertEqual(self.browser.run(untitled), 0)

    def test_zz_asks_nobody_and_complains_of_nothing(self):
        self.assertEqual(self.browser.log("browser"), [])
        events = [json.loads(entry["message"])["message"] for entry in self.browser.log("performance")]
        # The browser's own first tab has requests of its own.
        asked = [event["params"]["request"]["url"] for event in events
                 if event["method"] == "Network.requestWillBeSent"
                 and event["params"]["documentURL"] == self.page.as_uri()]
        self.assertIn(self.page.as_uri(), asked)
        others = [url for url in asked if url != self.page.as_uri() and not url.startswith("data:")]
        self.assertEqual(others, [])


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    XSANDBOX, RUN, OUTPUT = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    try:
        webdriver.program("chromium", "chromium-browser")
        webdriver.program("chromedriver")
    except webdriver.Missing as missing:
        sys.exit(f"browsertest: {missing}")
    unittest.main(argv=sys.argv[:1], verbosity=2)

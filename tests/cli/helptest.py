"""What --help, the manual, the manual page and the completion tell is the same, and true."""
import shlex
import shutil
import subprocess
import sys
import unittest

from lab import REPOSITORY, XSANDBOX, Lab, help_of, names, on_terminal, options, section, verbs, xsandbox

MANUAL = (REPOSITORY / "docs" / "xsandbox.md").read_text(encoding="utf-8")
PAGE = REPOSITORY / "sandbox" / "man" / "xsandbox.1"
COMPLETION = REPOSITORY / "sandbox" / "completion" / "xsandbox.bash"


def examples(verb):
    text = help_of(verb)
    lines = section("Example", text) + section("Examples", text)
    return [shlex.split(line)[1:] for line in lines]


class HelpTest(Lab):
    def test_is_complete(self):
        for verb in verbs():
            text = help_of(verb)
            with self.subTest(verb):
                self.assertEqual(names("Exit status", text)[0], "0")
                self.assertEqual(names("Exit status", text)[-1], "2")
                self.assertTrue(all(example[0] == verb for example in examples(verb)) and examples(verb))
                self.assertLessEqual(max(map(len, text.splitlines())), 80)
                self.assertIn(f"\n## `{verb}`\n", MANUAL)
                told = MANUAL.split(f"\n## `{verb}`\n", 1)[1].split("\n## ", 1)[0]
                for option in set(options(text)) - {"--help", "--json", "--color"}:
                    self.assertIn(f"`{option}", told)
        self.assertRegex(xsandbox("--version").stdout, r"^xsandbox \d+\.\d+\.\d+\n$")

    def test_examples_work_as_written(self):
        """As one sitting: beside a host, and then in the order of the help."""
        self.lay_demo_out()
        of = {verb: examples(verb) for verb in verbs()}
        with self.host(*of.pop("host")[0][1:]):
            self.await_host()
            self.carry_out(of.pop("set") + of.pop("ui") + of.pop("stop"))
        self.carry_out(of.pop("run"))
        self.carry_out(of.pop("new") + sum(of.values(), []))

    def lay_demo_out(self):
        """What "./dev demo" leaves, but for the report that comes after a quarter of a minute only."""
        def leave_report_out(content):
            content["phases"][0]["ui"].remove({"waitReport": 1})
            del content["phases"][0]["expect"]["reports"]

        demo = self.folder / "build" / "demo"
        demo.parent.mkdir()
        call = self.call("run", self.scenario("five-channels.json", leave_report_out), "--folder", demo)
        self.assertEqual(call.returncode, 0, call.stdout + call.stderr)
        demo.with_name("demo-windows").symlink_to(demo)
        shutil.copy(demo / "sandbox" / "plugin.log", self.folder / "client.log")

    def await_host(self):
        self.assertEqual(self.call("ui", "--do", "check").returncode, 0)

    def carry_out(self, lines):
        for line in lines:
            with self.subTest(shlex.join(line)):
                if line == ["ui"]:
                    text, status = on_terminal(line, self.folder, {}, keys=b"q")
                else:
                    call = self.call(*line)
                    text, status = call.stdout + call.stderr, call.returncode
                self.assertEqual(status, 0, text)


class PageTest(unittest.TestCase):
    def test_is_made_of_the_help(self):
        maker = PAGE.with_name("makeman.py")
        made = subprocess.run([sys.executable, maker, XSANDBOX], check=True, capture_output=True, text=True).stdout
        self.assertEqual(PAGE.read_text(encoding="utf-8"), made, f"make it anew: {maker} XSANDBOX > {PAGE}")
        plain = made.replace("\\-", "-")
        for verb in verbs():
            page = plain.split(f"\n.SS {verb}\n", 1)[1].split("\n.SS ", 1)[0]
            for option in options(help_of(verb)):
                with self.subTest(verb + " " + option):
                    self.assertRegex(page, rf"(?m)^\.B .*{option}\b")

    def test_is_well_formed(self):
        for line in PAGE.read_text(encoding="utf-8").splitlines():
            self.assertRegex(line, r"^(\.(TH|SH|SS|PP|TP|B|I|nf|fi|RS|RE)\b|\.\\\"|[^.'])")
            self.assertNotRegex(line.replace("\\-", ""), r"^[^.].*-", "a hyphen that is none")
        if shutil.which("groff"):
            drawn = subprocess.run(["groff", "-man", "-Tutf8", "-ww", PAGE], check=True, capture_output=True, text=True)
            self.assertEqual(drawn.stderr, "")


class CompletionTest(Lab):
    def complete(self, line, program=XSANDBOX):
        """The replies of bash's own completion for a line that the cursor stands behind."""
        script = """source "$1"; COMP_LINE=$2 COMP_POINT=${#2}; _xsandbox "$3"; printf '%s\\n' "${COMPREPLY[@]}" """
        done = subprocess.run(["bash", "-c", script, "bash", COMPLETION, line, program], cwd=self.folder,
                              check=True, capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return done.stdout.rstrip("\n").splitlines()

    def test_offers_verbs_and_options(self):
        self.assertEqual(set(self.complete("xsandbox ")), {*verbs(), "--help", "--version"})
        for verb in verbs():
            with self.subTest(verb):
                self.assertEqual(set(self.complete(f"xsandbox {verb} --")), set(options(help_of(verb))))

    def test_offers_what_fits(self):
        (self.folder / "mine.json").touch()
        (self.folder / "mine.txt").touch()
        (self.folder / "other").mkdir()
        (self.folder / "two words.json").touch()
        (self.folder / "two words").mkdir()
        for line, wanted in {
            "xsandbox re": ["restart"],
            "xsandbox run m": ["mine.json"],
            "xsandbox run sandbox/scenarios/sm": ["sandbox/scenarios/small.json"],
            "xsandbox run --windows m": ["mine.json"],
            "xsandbox run two\\ wo": ["two words", "two words.json"],
            "xsandbox run 'two w": ["two words", "two words.json"],
            "xsandbox show --folder o": ["other"],
            "xsandbox show --folder=o": ["other"],
            "xsandbox show --folder=two\\ ": ["two words"],
            "xsandbox run --folder \"two words\" m": ["mine.json"],
            "xsandbox run --windows=": [],
            "xsandbox show --folder=sandbox/scenarios --al": ["--all"],
            "xsandbox show --color n": ["never"],
            "xsandbox set mute": ["muteMode="],
            "xsandbox set muteMode=1 settingsWindow=cl": ["closed"],
            "xsandbox ui --do ch": ["check"],
            "xsandbox ui --do check,do": ["check,download"],
            "xsandbox ui --limit ": [],
            "xsandbox new --with condition,gr": ["condition,group"],
            "xsandbox faults silent cu": ["cut"],
            "xsandbox doctor --settings min": ["mine.json", "mine.txt"],
            "xsandbox nonsense --": [],
        }.items():
            with self.subTest(line):
                self.assertEqual(sorted(self.complete(line)), wanted)

    def test_helps_behind_the_entry_of_the_repository(self):
        home = self.folder / "repository"
        (home / "build" / "linux").mkdir(parents=True)
        (home / "build" / "linux" / "xsandbox").symlink_to(XSANDBOX)
        self.assertEqual(self.complete("./dev sandbox sto", f"{home}/dev"), ["stop"])
        self.assertEqual(self.complete("./dev bu", f"{home}/dev"), [])


if __name__ == "__main__":
    unittest.main()

"""--json of every verb: one object, whose members are those that the manual tells."""
import json
import os
import re
import subprocess
import unittest

from lab import REPOSITORY, SCENARIOS, XSANDBOX, Lab, verbs

MANUAL = REPOSITORY / "docs" / "xsandbox.md"
EVERYWHERE = "Every verb"


def documented():
    """By verb: member path -> type, from the manual's tables."""
    found = {}
    title = ""
    for line in MANUAL.read_text(encoding="utf-8").splitlines():
        if match := re.match(r"## `?(\w[\w ]*)`?$", line):
            title = match[1]
        if title and (match := re.match(r"\| `([\w.\[\]]+)` \| (text|number|boolean|list|object|map)\b", line)):
            found.setdefault(title, {})[match[1]] = match[2]
    return found


def members(value, types, path=""):
    """Paths of all members; the members of a map are data."""
    if isinstance(value, dict) and types.get(path) != "map":
        for key, content in value.items():
            name = f"{path}.{key}" if path else key
            yield name
            yield from members(content, types, name)
    elif isinstance(value, list):
        for element in value:
            yield from members(element, types, path + "[]")


class JsonTest(Lab):
    def setUp(self):
        self.types = documented()
        self.seen = {}

    def take(self, text, status):
        told = json.loads(text)  # fails for no object and for two
        self.assertIsInstance(told, dict)
        self.assertEqual(told["status"], status)
        types = {**self.types[EVERYWHERE], **self.types.get(told["verb"], {})}
        self.seen.setdefault(told["verb"], set()).update(members(told, types))
        return told

    def tell(self, *arguments, status=0):
        call = self.call(*arguments, "--json")
        self.assertEqual(call.returncode, status, call.stderr)
        self.assertEqual(status == 2, call.stderr != "")
        return self.take(call.stdout, status)

    def runs(self):
        self.tell("run", "sandbox/scenarios/group-waiting.json", "--steps", "1", "--keep")
        shown = self.tell("show", "--all")
        self.assertEqual({holder["runs"] for holder in shown["holders"]}, {True})
        self.assertTrue(self.tell("restart")["ended"])

        def expect_more(content):
            content["phases"][0]["expect"]["downloads"].append("core")

        differs = self.tell("run", self.scenario("small.json", expect_more), status=1)
        self.assertTrue(differs["steps"][0]["differences"])

    def hosts(self):
        def offer_materials(content):
            content["platform"] = json.loads((SCENARIOS / "small.json").read_text(encoding="utf-8"))["platform"]

        with self.host(self.scenario("package-user.json", offer_materials), "--json") as process:
            done = self.tell("ui", "--do", "check,download,install")
            self.assertEqual([word["fault"] for word in done["words"]], ["", "", ""])
            self.assertEqual(self.tell("set", "muteMode=1", "UPDATE_TYPE=1")["set"],
                             {"muteMode": 1, "UPDATE_TYPE": 1})
            self.assertTrue(self.tell("stop")["ended"])
        self.take(process.told, 0)

    def reports(self):
        self.tell("run", "sandbox/scenarios/group-waiting.json", "--steps", "1", "--keep")
        state = json.loads((self.folder / "sandbox-run" / "sandbox" / "run.json").read_text(encoding="utf-8"))
        self.assertTrue(os.path.isabs(state["scenario"]), "the next call may come from elsewhere")
        self.tell("set", "KEY_UPDATE_UPGRADE=no JSON")
        self.assertTrue(self.tell("doctor", "sandbox-run", status=1)["inUse"])
        self.tell("explain", "--all")
        self.assertEqual(self.tell("explain", "nonsense", status=1)["runs"], [])
        self.tell("timeline", "--html", "page.html")
        self.call("restart")

    def authors(self):
        self.tell("new", "mine.json")
        self.assertEqual(self.tell("check", "mine.json")["mistakes"], [])
        (self.folder / "wrong.json").write_text("{}", encoding="utf-8")
        told = self.tell("check", "wrong.json", "--offer", ".", status=1)
        self.assertTrue(told["mistakes"] and told["offerFailure"])
        self.tell("faults")

    def fails(self):
        self.assertIn("holds no run", self.tell("show", "--folder", "none", status=2)["error"])
        self.assertEqual(self.tell("run", "--nonsense", "x.json", status=2)["verb"], "run")
        self.assertEqual(self.tell("rum", status=2)["verb"], "")
        with open("/dev/full", "w", encoding="utf-8") as full:
            for arguments in (["faults"], ["faults", "--json"], ["--help"]):
                call = subprocess.run([XSANDBOX, *arguments], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
                self.assertEqual((call.returncode, call.stderr), (2, "xsandbox: standard output cannot be written\n"))

    def test_members_are_those_of_the_manual(self):
        self.runs()
        self.hosts()
        self.reports()
        self.authors()
        self.fails()
        self.assertEqual(set(self.seen) - {""}, set(verbs()), "a verb is not tested here")
        self.assertEqual(set(self.types) - {EVERYWHERE}, set(verbs()))
        everywhere = set(self.types[EVERYWHERE])
        for verb in verbs():
            with self.subTest(verb):
                self.assertEqual(self.seen[verb] - everywhere, set(self.types.get(verb, {})))
        self.assertEqual(set().union(*self.seen.values()) & everywhere, everywhere)


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""What the deck shows and says, and the folders it makes, must stand in its guide."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TEXT = re.compile(r'"((?:\\.|[^"\\])*)"')


def source(path):
    return (ROOT / path).read_text(encoding="utf-8")


def page(name):
    """A page with its line ends as blanks, for a sentence may go over several lines."""
    return re.sub(r"\s*\n\s*", " ", source(f"docs/guide/{name}.md"))


def literal(code):
    """The text of literals that stand one behind the other."""
    return "".join(TEXT.findall(code)).replace('\\"', '"')


def box_titles():
    titles = set()
    for path in sorted((ROOT / "src").rglob("*.cpp")):
        titles.update(re.findall(r'"(Tavlo Deck - [A-Z][^"]*)"', path.read_text(encoding="utf-8")))
    return titles


def failures_of_servers():
    table = source("src/platform/curl/ftp_failures.cpp").partition("kWords[] = {")[2]
    rows = re.findall(r'\{[\w:]+,\s*((?:"(?:\\.|[^"\\])*"\s*)+)\}', table.partition("};")[0])
    return [literal(row) for row in rows]


def reasons_of_the_disk():
    return re.findall(r'return "([^"]+)";', source("src/store/disk_words.cpp"))


def spoken_words():
    lines = (line.split(": ", 1) for line in source("assets/prompts/prompts.txt").splitlines())
    return [words for _, words in lines if not words.startswith("~")]


def folders():
    """The folders below the root, each by its own name."""
    code = source("src/store/work_folders.cpp") + source("src/store/work_folders.h")
    made = code.partition("TreeFolders() {")[2].partition("\n}\n")[0]
    paths = re.findall(r'"((?:Files|Place|Reports)[\w/]*)"', made)
    paths += re.findall(r'Below\("([\w/]+)"\)', code)
    return {path.rstrip("/").rsplit("/", 1)[-1] for path in paths}


def settings_of(place):
    """The controls that the printed reference names at a place."""
    text = source("docs/guide/settings.md").partition(f"\n**{place}**\n")[2]
    rows = text.lstrip().partition("\n\n")[0].splitlines()
    return [row.split(" | ")[1] for row in rows if row.startswith("| `")]


class GuideWords(unittest.TestCase):
    def assert_all_in(self, words, text):
        self.assertTrue(words)
        self.assertEqual([word for word in words if word not in text], [])

    def test_each_message_box_is_explained(self):
        titles = box_titles()
        self.assertIn("Tavlo Deck - Exit", titles)
        self.assert_all_in(sorted(f'"{title}"' for title in titles), page("messages"))

    def test_each_failure_of_a_server_is_explained(self):
        failures = failures_of_servers()
        self.assertIn("The server refused user or password. Check both on the Ftp page", failures)
        self.assertGreater(len(failures), 30)
        self.assert_all_in([f'"{failure}"' for failure in failures], page("messages"))

    def test_each_reason_of_the_disk_is_explained(self):
        reasons = reasons_of_the_disk()
        self.assertIn("the disk is full", reasons)
        self.assert_all_in([f"| {reason} |" for reason in reasons], source("docs/guide/messages.md"))

    def test_each_spoken_prompt_is_listed(self):
        words = spoken_words()
        self.assertIn("Welcome to Tavlo Deck.", words)
        self.assert_all_in([f'"{word}"' for word in words], page("spoken"))

    def test_each_folder_is_in_the_tree(self):
        tree = source("docs/guide/files.md").partition("```\n")[2].partition("```")[0]
        found = folders()
        self.assertTrue({"InQueue", "Rescued", "Prompts", "eW2Queue"} <= found, found)
        self.assert_all_in(sorted(f"── {name}" for name in found), tree)

    def test_each_setting_of_the_configuration_is_explained(self):
        configuration = page("configuration")
        for place in ("Settings page", "Mixer page", "Paths page", "Ftp page"):
            with self.subTest(place):
                controls = [control for control in settings_of(place) if "number" not in control]
                self.assert_all_in(
                    [f"**{control.split(', ')[0]}**" for control in controls], configuration
                )

    def test_each_key_of_other_windows_is_explained(self):
        controls = settings_of("Keys page")
        self.assertIn("Play, and stop again", controls)
        for name in ("configuration", "word-processor"):
            with self.subTest(name):
                self.assert_all_in([f"**{control}**" for control in controls], page(name))


if __name__ == "__main__":
    unittest.main()

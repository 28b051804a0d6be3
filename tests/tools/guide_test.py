#!/usr/bin/python3
"""The guide's builder must keep links good in both forms, and its check must find each bad one."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOLS = Path(__file__).resolve().parents[2] / "tools"


class Guide(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = Path(folder.name) / "source"
        self.built = Path(folder.name) / "built"
        self.write("guide.css", "body { margin: 0 }\n")
        self.write("index.md", "# Guide\n\n- [Pedals](pedals.md)\n- [Files](files.md#a-full-disk)\n")
        self.write("pedals.md", "# Pedals\n\n![A pedal](pictures/pedal.png)\n\n[Back](index.md)\n")
        self.write("files.md", "# Files\n\n## A full disk\n\nSee [above](#files).\n")
        self.write("pictures/pedal.png", "no picture, but a file")

    def write(self, path, text):
        target = self.source / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def build(self):
        return subprocess.run(
            [sys.executable, TOOLS / "build_guide", self.source, self.built],
            capture_output=True,
            text=True,
            check=False,
        )

    def built_page(self, name):
        return (self.built / name).read_text(encoding="utf-8")

    def check(self):
        built = self.build()
        self.assertEqual((built.returncode, built.stderr), (0, ""))
        return subprocess.run(
            [sys.executable, TOOLS / "check_guide", self.source, self.built],
            capture_output=True,
            text=True,
            check=False,
        )

    def assert_faults(self, *faults):
        result = self.check()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(sorted(result.stderr.splitlines()), sorted(faults))

    def test_links_that_lead_somewhere_pass(self):
        result = self.check()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_built_pages_link_built_pages_and_their_headings(self):
        self.build()
        self.assertIn('<a href="files.html#a-full-disk">Files</a>', self.built_page("index.html"))
        self.assertIn('<h2 id="a-full-disk">A full disk</h2>', self.built_page("files.html"))
        self.assertIn('src="pictures/pedal.png"', self.built_page("pedals.html"))

    def test_table_moves_in_a_frame_of_its_own(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n| a | b |\n|---|---|\n| 1 | 2 |\n")
        self.build()
        self.assertRegex(
            self.built_page("files.html"), r'(?s)<div class="table"><table>.*</table></div>'
        )

    def test_each_page_names_itself_and_its_neighbours(self):
        self.build()
        page = self.built_page("pedals.html")
        self.assertIn("<title>Pedals</title>", page)
        self.assertIn('<a href="pedals.html" aria-current="page">Pedals</a>', page)
        self.assertIn('<a href="index.html">Before: Guide</a>', page)
        self.assertIn('<a href="files.html">Next: Files</a>', page)

    def test_page_that_has_gone_is_gone_from_the_built_ones(self):
        self.build()
        (self.source / "files.md").unlink()
        self.write("index.md", "# Guide\n\n- [Pedals](pedals.md)\n")
        self.assertEqual(self.check().returncode, 0)
        self.assertFalse((self.built / "files.html").exists())

    def test_page_that_the_first_one_does_not_link_fails_the_build(self):
        self.write("hidden.md", "# Hidden\n")
        result = self.build()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "build_guide: index.md does not link hidden\n")

    def test_page_that_is_linked_and_not_there_fails_the_build(self):
        self.write("index.md", "# Guide\n\n- [Pedals](pedals.md)\n- [Files](files.md)\n- [No](no.md)\n")
        result = self.build()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "build_guide: there is no no\n")

    def test_link_to_a_page_that_is_not_there_is_found_in_both_forms(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n[No](no.md)\n")
        self.assert_faults(
            "files.md: no.md leads to no file", "files.html: no.html leads to no file"
        )

    def test_link_to_a_heading_that_is_not_there_is_found_in_both_forms(self):
        self.write("pedals.md", "# Pedals\n\n![A](pictures/pedal.png)\n\n[No](files.md#empty)\n")
        self.assert_faults(
            "pedals.md: files.md#empty leads to no heading",
            "pedals.html: files.html#empty leads to no heading",
        )

    def test_picture_that_is_not_there_is_found_in_both_forms(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n![A disk](pictures/disk.png)\n")
        self.assert_faults(
            "files.md: pictures/disk.png leads to no file",
            "files.html: pictures/disk.png leads to no file",
        )

    def test_picture_without_words_is_found(self):
        self.write("pedals.md", "# Pedals\n\n![](pictures/pedal.png)\n")
        self.assert_faults(
            "pedals.md: pictures/pedal.png has no words for who can not see it",
            "pedals.html: pictures/pedal.png has no words for who can not see it",
        )

    def test_picture_that_no_page_shows_is_found(self):
        self.write("pictures/old.png", "left over")
        self.assert_faults("old.png: is shown nowhere")

    def test_link_to_the_network_is_found(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n[Far](https://example.com/x)\n")
        self.assert_faults(
            "files.md: https://example.com/x leads out of the guide",
            "files.html: https://example.com/x leads out of the guide",
        )

    def test_heading_that_stands_twice_is_found(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n## A full disk\n")
        self.assert_faults("files.md: the heading a-full-disk stands twice")

    def test_address_in_a_sample_is_no_link(self):
        self.write("files.md", "# Files\n\n## A full disk\n\n```\n[x](y.md)\n```\n\n`[x](y.md)`\n")
        self.assertEqual(self.check().returncode, 0)


if __name__ == "__main__":
    unittest.main()

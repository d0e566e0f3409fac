#!/usr/bin/env python3
"""Writes the pages of all tables and reads them: table_pages_test.py FOLDER DESCRIPTORS

Every link leads to a page and a place on it, nothing is fetched from elsewhere, and every table shows the keys and the
actions that the list of descriptors tells, which the catalogue compiler writes by a way of its own.
"""
# SPDX-License-Identifier: Apache-2.0
import html.parser
import pathlib
import re
import subprocess
import sys

TOOLS = pathlib.Path(__file__).parents[2] / "tools/docs"
GENERATOR = TOOLS / "reference_pages.py"
sys.path.insert(0, str(TOOLS))
from catalogue_rows import Catalogue  # noqa: E402


class Page(html.parser.HTMLParser):
    """Links, places and text of a page; tags have to be closed in order."""

    def __init__(self, path):
        super().__init__()
        self.links, self.places, self.words, self.open = [], set(), "", []
        self.feed(path.read_text())
        if self.open:
            raise SystemExit(f"{path}: '{self.open[-1]}' has no end")

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag not in ("meta", "input"):
            self.open.append(tag)
        self.places.add(attributes.get("id"))
        self.links += [attributes[name] for name in ("href", "src") if name in attributes]

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            raise SystemExit(f"'{tag}' ends what did not begin")

    def handle_data(self, data):
        self.words += data + " "


def expected_of(descriptors):
    """Words that each table's page has to show, by table."""
    tables, words = {}, None
    for line in descriptors.read_text().split("\n"):
        if table := re.match(r"table (\w+): (0x\w+)", line):
            words = tables[table[1]] = [table[2]]
        elif re.match(r"\w", line):
            words = None
        elif words is not None and (field := re.match(r"  field (\w+) \((\w+)\): \w+, \d+ bits, key ([\d-]+)", line)):
            words.append(" ".join((field[3], field[2], field[1])))
        elif words is not None and (action := re.match(r"  action (\w+): (\d+), (0x\w+)", line)):
            words += [f"{action[3]} , number {action[2]} of", action[1]]
    return tables


def main():
    folder, descriptors = map(pathlib.Path, sys.argv[1:])
    subprocess.run([sys.executable, GENERATOR, folder], check=True)
    pages = {path.name: Page(path) for path in folder.glob("*.html")}
    faults = []
    for name, page in pages.items():
        for link in page.links:
            target, _, place = link.partition("#")
            if target not in pages or (place and place not in pages[target].places):
                faults.append(f"{name}: '{link}' leads nowhere")
    expected = expected_of(descriptors)
    for table, wanted in expected.items():
        shown = " ".join(pages[f"{table}.html"].words.split())
        faults += [f"{table}.html does not show '{words}'" for words in wanted if words not in shown]
    catalogue = Catalogue()
    abouts = [(name, row.get("about", "")) for name, row in catalogue.tables.items()] + list(catalogue.about.items())
    faults += [f"{name} has no sentence that says what it is for" for name, about in abouts if not about]
    for table in catalogue.tables.values():
        shown = " ".join(pages[f"{table['name']}.html"].words.split())
        faults += [f"{table['name']}.html does not say what it or an action is for"
                   for about in [table["about"], *(catalogue.about[each["name"]] for each in catalogue.actions_of(table))]
                   if " ".join(about.split()) not in shown]
    print("\n".join(faults))
    print(f"{len(pages)} pages, {len(expected)} tables, faults: {len(faults)}")
    return 1 if faults or len(expected) != 120 else 0


if __name__ == "__main__":
    sys.exit(main())

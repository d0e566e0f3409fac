#!/usr/bin/env python3
"""Checks that no text of a picture leaves its box or runs into another text, drawn with Debian's default font.
usage: picture_text_test.py PICTURE..."""
# SPDX-License-Identifier: Apache-2.0
import pathlib
import re
import struct
import sys
import xml.etree.ElementTree as xml

FONTS = pathlib.Path("/usr/share/fonts/truetype/dejavu")


class Font:
    """Widths of a TrueType font's letters, read from its tables."""

    def __init__(self, name):
        data = (FONTS / name).read_bytes()
        tables = {data[at:at + 4].decode(): struct.unpack(">II", data[at + 8:at + 16])
                  for at in range(12, 12 + 16 * struct.unpack(">H", data[4:6])[0], 16)}
        table = {tag: data[start:start + size] for tag, (start, size) in tables.items()}
        self.units = struct.unpack(">H", table["head"][18:20])[0]
        count = struct.unpack(">H", table["hhea"][34:36])[0]
        self.widths = [struct.unpack(">H", table["hmtx"][4 * i:4 * i + 2])[0] for i in range(count)]
        self.glyphs = self.map_of(table["cmap"])

    @staticmethod
    def map_of(cmap):
        """The letters of the map that has 16-bit letters in segments."""
        starts = [struct.unpack(">I", cmap[at + 4:at + 8])[0]
                  for at in range(4, 4 + 8 * struct.unpack(">H", cmap[2:4])[0], 8)]
        start = next(each for each in starts if cmap[each:each + 2] == b"\0\4")
        length, _, twice = struct.unpack(">HHH", cmap[start + 2:start + 8])
        words = struct.unpack(f">{length // 2}H", cmap[start:start + length // 2 * 2])
        segments, glyphs = twice // 2, {}
        ends, begins = words[7:7 + segments], words[8 + segments:8 + 2 * segments]
        deltas, offsets_at = words[8 + 2 * segments:8 + 3 * segments], 8 + 3 * segments
        for number, (begin, end, delta) in enumerate(zip(begins, ends, deltas)):
            offset = words[offsets_at + number]
            for letter in range(begin, min(end, 0xfffe) + 1):
                glyph = letter if offset == 0 else words[offsets_at + number + offset // 2 + letter - begin]
                glyphs[letter] = (glyph + delta) & 0xffff if offset == 0 or glyph else 0
        return glyphs

    def width(self, text, size):
        advance = sum(self.widths[min(self.glyphs.get(ord(each), 0), len(self.widths) - 1)] for each in text)
        return advance * size / self.units


SANS, BOLD, MONO = (Font(name) for name in ("DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf"))


def shape_of(text):
    """Left, top, right and bottom of a text, after its rotation."""
    look = text.get("class", "")
    size = float(text.get("font-size", 13 if look in ("small", "code") else 15))
    words = "".join(text.itertext())
    font = MONO if look == "code" else BOLD if look == "head" else SANS
    width = font.width(words, size)
    turned = re.match(r"rotate\(-90 ([\d.]+) ([\d.]+)\)", text.get("transform", ""))
    x, y = float(text.get("x")), float(text.get("y"))
    left = {"start": 0, "middle": width / 2, "end": width}[text.get("text-anchor", "start")]
    if turned:
        return x - 0.76 * size, y + left - width, x + 0.24 * size, y + left
    return x - left, y - 0.76 * size, x - left + width, y + 0.24 * size


def inside(shape, box):
    return box[0] <= shape[0] and box[1] <= shape[1] and shape[2] <= box[2] and shape[3] <= box[3]


def faults_of(path):
    tree = xml.parse(path).getroot()
    space = "{http://www.w3.org/2000/svg}"
    boxes = []
    for rect in tree.iter(space + "rect"):
        x, y, width, height = (float(rect.get(name, 0)) for name in ("x", "y", "width", "height"))
        boxes.append((x, y, x + width, y + height))
    texts = [("".join(each.itertext()), shape_of(each)) for each in tree.iter(space + "text")]
    if not texts:
        yield "has no text"
    for words, shape in texts:
        middle = (shape[0] + min(4, (shape[2] - shape[0]) / 2), (shape[1] + shape[3]) / 2)
        # A bar of a plot is no box of a text.
        around = [box for box in boxes if inside((*middle, *middle), box) and box[3] - box[1] > 20]
        if around and not inside(shape, min(around, key=lambda box: (box[2] - box[0]) * (box[3] - box[1]))):
            yield f"'{words}' leaves its box"
        if not around:
            yield f"'{words}' is outside of the picture"
    for at, (words, one) in enumerate(texts):
        for others, two in texts[at + 1:]:
            if one[0] < two[2] and two[0] < one[2] and one[1] + 1 < two[3] and two[1] + 1 < one[3]:
                yield f"'{words}' and '{others}' overlap"


wrong = [f"{path}: {fault}" for path in sys.argv[1:] for fault in faults_of(path)]
print(*wrong, sep="\n", end="\n" if wrong else "")
sys.exit(1 if wrong or len(sys.argv) < 2 else 0)

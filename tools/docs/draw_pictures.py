#!/usr/bin/env python3
"""Draws the pictures of the concepts page: draw_pictures.py FOLDER. Names and numbers in them are the catalogue's."""
# SPDX-License-Identifier: Apache-2.0
import argparse
import html
import pathlib

from catalogue_rows import PREFIX, Catalogue

STYLE = """
  text { font-family: sans-serif; font-size: 15px; fill: #1a1a1a; }
  .head { font-weight: bold; }
  .small { font-size: 13px; }
  .code { font-family: monospace; font-size: 13px; }
  .box { fill: #eef4fb; stroke: #35608f; stroke-width: 1.5; }
  .other { fill: #fdf4e3; stroke: #8f6a20; stroke-width: 1.5; }
  .caller { fill: #eef7ee; stroke: #3c7a45; stroke-width: 1.5; }
  .arrow { stroke: #444; stroke-width: 1.8; fill: none; marker-end: url(#point); }
"""
POINT = ('<marker id="point" viewBox="0 0 10 10" refX="9" refY="5" markerWidth="7" markerHeight="7" orient="auto">'
         '<path d="M0 0 10 5 0 10z" fill="#444"/></marker>')


class Picture:
    """Boxes, lines of text and arrows on a white ground."""

    def __init__(self, width, height, title):
        self.width, self.height, self.title, self.parts = width, height, title, []

    def text(self, x, y, words, look="", anchor="start"):
        self.parts.append(f'<text x="{x}" y="{y}" class="{look}" text-anchor="{anchor}" xml:space="preserve">'
                          f"{html.escape(words)}</text>")

    def box(self, x, y, width, height, lines, look="box"):
        """Lines are pairs of a text and its look."""
        self.parts.append(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" rx="7" class="{look}"/>')
        for number, (words, how) in enumerate(lines):
            self.text(x + 12, y + 24 + 20 * number, words, how)

    def arrow(self, x1, y1, x2, y2):
        self.parts.append(f'<path d="M{x1} {y1} {x2} {y2}" class="arrow"/>')

    def write(self, path):
        path.write_text("\n".join([
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {self.width} {self.height}" '
            f'width="{self.width}" height="{self.height}" role="img">', f"<title>{html.escape(self.title)}</title>",
            f"<style>{STYLE}</style>", f"<defs>{POINT}</defs>",
            f'<rect width="{self.width}" height="{self.height}" fill="#fff"/>', *self.parts, "</svg>", ""]))


def draw_write(catalogue):
    """The road of a write: 10.0.0.1 in VRF 1 to next hop 7."""
    table = catalogue.tables["ipv4Host"]
    action = next(each for each in table["actions"] if each["name"] == "setNextHop")
    values = {"l3Info_vrfId": 1, "ingIpv4_dip": 0x0a000001, "nextHop": 7}

    def record(parts, size, where):
        data = bytearray(size)
        for part in parts:
            first, _, last = part[where].partition("-")
            count = int(last or first) - int(first) + 1
            data[int(first):int(first) + count] = values[part["name"]].to_bytes(count, "big")
        return data.hex(" ")

    key = record(table["fields"], table["key_bytes"], "key")
    data = record(catalogue.parameters["setNextHop"], action["data_bytes"], "data")
    members = ", ".join(f".{each['name']} = {values[each['name']]:#x}" for each in table["fields"])
    picture = Picture(640, 577, "The road of a write: program, library, driver, switch")
    picture.box(20, 20, 600, 110, [
        ("Your program", "head"), ("plain structures in host order", "small"),
        (f"key = {{ {members} }}", "code"),
        ("action = { .action_nextHop = 7 }", "code")], "caller")
    picture.arrow(50, 132, 50, 188)
    picture.text(62, 165, f"{PREFIX}ipv4Host_table_add_with_setNextHop", "code")
    picture.box(20, 190, 600, 145, [
        ("libtv_bf_pd_mpls_baremetal", "head"),
        ("fills the driver's records on its own stack; no lock, no allocation", "small")])
    for number, (what, value) in enumerate([
            ("key", f"{key}   ({table['key_bits']} bits)"),
            ("mask", f"{'ff ' * table['key_bytes']}  (every bit counts)"),
            ("action data", f"{data}   ({action['data_bits']} bits)"),
            ("handles", f"table {table['handle']:#x}, action {action['handle']:#x}")]):
        picture.text(32, 256 + 20 * number, what, "small")
        picture.text(130, 256 + 20 * number, value, "code")
    picture.arrow(50, 337, 50, 393)
    picture.text(62, 370, "pipe_mgr_mat_ent_add", "code")
    picture.box(20, 395, 600, 60, [
        ("Driver", "head"), ("the switch's own, or the stand-in; it makes the handle of the entry", "small")], "other")
    picture.arrow(50, 457, 50, 513)
    picture.box(20, 515, 600, 42, [("Table in the switch", "head")], "other")
    for bottom, top in ((395, 337), (190, 132)):
        picture.arrow(590, bottom, 590, top)
    picture.text(578, 370, "status and entry, unchanged: 0 is success", "small", "end")
    return picture


# Groups in two columns, and the neighbours that a value goes between; each is looked up in the catalogue.
COLUMNS = (("port_mapping", "l3_ingress", "fib", "next_hops", "lag_and_tunnel", "mtu_vlan_stp", "policing_and_drop",
            "multicast"),
           ("halo_transforms", "halo_stages", "qos", "mirroring", "l2", "hash_selection", "egress_rewrite",
            "egress_drop_and_counters"))
VALUES = (("port_mapping", "l3_ingress", ("ingVPort",)), ("l3_ingress", "fib", ("vrfId",)),
          ("fib", "next_hops", ("nextHop", "ecmpGroup")), ("next_hops", "lag_and_tunnel", ("egrL2AintfUnresolved",)),
          ("lag_and_tunnel", "mtu_vlan_stp", ("egrL2AintfUnresolved",)),
          ("mtu_vlan_stp", "policing_and_drop", ("cpuReasonCode",)), ("halo_transforms", "halo_stages", ("crlId",)),
          ("halo_stages", "qos", ("dscp",)), ("qos", "mirroring", ("dscp",)),
          ("l2", "lag_and_tunnel", ("tunnelNextHop",)), ("egress_rewrite", "policing_and_drop", ("cpuReasonCode",)))


def counted(number, what):
    return f"{number} {what}" + ("" if number == 1 else "s")


def lines_of(group, catalogue):
    words, lines = group["title"].split(), [""]
    for word in words:
        if len(lines[-1] + word) > 26:
            lines.append("")
        lines[-1] += (" " if lines[-1] else "") + word
    facts = [counted(len(group["tables"]), "table")]
    profiles = sum("profile" in table for table in group["tables"])
    facts += [counted(profiles, "profile")] if profiles else []
    resources = {each["name"] for table in group["tables"] for each in catalogue.resources_of(table)}
    facts += [counted(len(resources), "resource")] if resources else []
    return [(line, "head") for line in lines] + [(", ".join(facts), "small")]


def draw_groups(catalogue):
    """The groups of tables, with values that an action of one gives and keys of its neighbour look at."""
    width, height, across, down = 270, 76, 120, 46
    picture = Picture(2 * width + across + 40, 8 * (height + down) - down + 40, "The pipeline's groups of tables")
    places = {name: (20 + column * (width + across), 20 + row * (height + down))
              for column, names in enumerate(COLUMNS) for row, name in enumerate(names)}
    if set(places) != set(catalogue.groups):
        raise SystemExit("draw_pictures: the groups of the picture are not those of the catalogue")
    for name, (x, y) in places.items():
        picture.box(x, y, width, height, lines_of(catalogue.groups[name], catalogue))
    for giver, taker, names in VALUES:
        if not set(names) <= catalogue.values_between(giver, taker):
            raise SystemExit(f"draw_pictures: {giver} does not give {names} to {taker}")
        (x1, y1), (x2, y2) = places[giver], places[taker]
        if x1 == x2:
            picture.arrow(x1 + 40, y1 + height + 2, x2 + 40, y2 - 2)
            picture.text(x1 + 52, y1 + height + 28, ", ".join(names), "code")
        else:
            picture.arrow(x1 - 2, y1 + 52, x2 + width + 2, y2 + 52)
            picture.text((x1 + x2 + width) // 2, y1 + 42, ", ".join(names), "code", "middle")
    return picture


def live_bits(table, field):
    """How many bits of a field a table looks at."""
    row = next(each for each in table["fields"] if each["name"] == field)
    return row["bits"] if row.get("live", "all") == "all" else int(row["live"], 0).bit_count()


def draw_prefix(catalogue):
    """The tables that an address goes through, with the prefixes of IPv4 that each holds."""
    tables = catalogue.tables
    short = live_bits(tables["ipv4ShortMaskLpm"], "ingIpv4_dip")
    final = live_bits(tables["ipv4FinalResolve"], "ingIpv4_dip")
    index = live_bits(tables["ipv4FinalResolve"], "ingIpv4_fibPartitionIndex")
    if short + final != live_bits(tables["ipv4Host"], "ingIpv4_dip"):
        raise SystemExit("draw_pictures: a final table does not look at the bits that a block leaves")
    picture = Picture(700, 436, "The tables that hold prefixes of IPv4")
    picture.box(20, 20, 300, 62, [("A packet", "head"), ("to 10.1.2.3 in VRF 1", "small")], "caller")
    picture.box(20, 128, 300, 62, [("ipv4Host", "head"), ("/32: VRF and the whole address", "small")])
    picture.box(20, 236, 300, 62, [("ipv4Partition", "head"), (f"blocks of {short} bits: 10.0.0.0/{short}", "small")])
    picture.box(20, 344, 300, 72, [
        ("ipv4ShortMaskLpm", "head"), (f"/0 to /{short}: VRF, first {short} bits", "small")])
    picture.box(400, 226, 280, 82, [
        ("ipv4FinalResolve", "head"), (f"/{short + 1} to /31: index ({index} bits)", "small"),
        (f"and last {final} bits: 10.1.0.0/16", "small")])
    for y in (84, 192, 300):
        picture.arrow(60, y, 60, y + 42)
    picture.text(72, 219, "no entry", "small")
    picture.text(72, 327, "no block, or nothing that it carries", "small")
    picture.arrow(322, 267, 398, 267)
    picture.text(332, 258, "index 1", "small")
    for x, y, width, to in ((322, 159, 78, "next hop"), (322, 380, 78, "next hop")):
        picture.arrow(x, y, x + width, y)
        picture.text(x + width + 8, y + 5, to, "small")
    picture.arrow(540, 310, 540, 352)
    picture.text(552, 342, "next hop", "small")
    return picture


def main():
    parser = argparse.ArgumentParser(description="Draws the pictures of the concepts page.")
    parser.add_argument("folder", type=pathlib.Path)
    folder = parser.parse_args().folder
    folder.mkdir(parents=True, exist_ok=True)
    catalogue = Catalogue()
    draw_write(catalogue).write(folder / "road_of_a_write.svg")
    draw_groups(catalogue).write(folder / "table_groups.svg")
    draw_prefix(catalogue).write(folder / "prefix_tables.svg")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Writes the reference of all tables as pages that a browser shows from the disk: reference_pages.py FOLDER"""
# SPDX-License-Identifier: Apache-2.0
import argparse
import collections
import html
import json
import pathlib
import xml.etree.ElementTree as xml

from catalogue_rows import NAME, PREFIX, Catalogue, functions

HERE = pathlib.Path(__file__).parent
MEMBER_TYPES = {"u8": "uint8_t", "u16": "uint16_t", "u32": "uint32_t", "u8[16]": "uint8_t[16]"}
KINDS = {
    "exact": "The whole key has to be the same.",
    "ternary": "Fields may have masks; of the entries that match, the one with the smallest priority wins.",
    "lpm": "The longest prefix wins.",
    "keyless": "It has no key, and one entry: the default entry.",
}
SHOWN = {"none": "number", "dec": "decimal number", "mac": "half of a MAC address", "port": "port",
         "v4addr": "IPv4 address", "v6addr": "IPv6 address", "vport": "virtual port"}
COMPANIONS = {"ternary": "_mask", "lpm": "_prefix_length"}


def text(value):
    return html.escape(str(value))


def code(value):
    return f"<code>{text(value)}</code>"


def handle(number):
    return code(f"{number:#09x}" if number < 0x10000000 else f"{number:#010x}")


def link(page, name):
    return f'<a href="{page}.html">{text(name)}</a>'


def rows(heads, lines):
    """A table whose rows become cards on a narrow screen."""
    head = "".join(f"<th>{text(each)}</th>" for each in heads)
    body = "".join("<tr>" + "".join(f'<td data-head="{text(each)}">{cell or "&ndash;"}</td>'
                                    for each, cell in zip(heads, line)) + "</tr>\n" for line in lines)
    return f"<table><thead><tr>{head}</tr></thead><tbody>\n{body}</tbody></table>\n"


def bytes_of(position):
    """Numbers of the bytes that a position such as "1-4" tells; none of a value that travels beside the key."""
    if not position[0].isdigit():
        return []
    first, _, last = position.partition("-")
    return range(int(first), int(last or first) + 1)


def strip(parts):
    """The bytes side by side, each with its number, those of a part in one frame."""
    cells = []
    for number, (name, position) in enumerate(parts):
        numbers = "".join(f"<i>{each}</i>" for each in bytes_of(position))
        if numbers:
            cells.append(f'<span class="part tone{number % 4}"><b>{text(name)}</b><span>{numbers}</span></span>')
    return f'<div class="strip">{"".join(cells)}</div>\n' if cells else ""


def live_bits(field):
    return code(field["live"]) if "live" in field else "all"


def key_of(table):
    if not table["fields"]:
        return "<p>None.</p>\n"
    lines = []
    for field in table["fields"]:
        where = "beside the key" if field["key"] == "partition" else field["key"]
        member = code(field["name"]) + (f" and {code(field['name'] + COMPANIONS[field['match']])}"
                                        if field["match"] in COMPANIONS else "")
        lines.append([text(where), code(field["short"]), member, code(MEMBER_TYPES[field["type"]]),
                      text(field["match"]), text(field["bits"]), live_bits(field), SHOWN[field["display"]]])
    return (f"<p>{table['key_bits']} bits in {table['key_bytes']} bytes, highest byte of a field first.</p>\n"
            + strip([(field["short"], field["key"]) for field in table["fields"]])
            + rows(["bytes", "field", "member", "type", "match", "bits", "live bits", "shown as"], lines))


def uses_of(action, catalogue):
    told = []
    for use in action.get("resources", []):
        resource = catalogue.resources[use["handle"]]
        how = {"indexed": f"cell <code>{text(use.get('param', ''))}</code> of",
               "detached": "takes no cell of",
               "direct register": "the register"}.get(use["form"], "its own cell of")
        told.append(f"{how} {link('resources', resource['name'])}")
    return "; ".join(told)


def action_of(action, catalogue):
    parameters = catalogue.parameters[action["name"]]
    default = ", may be the default action" if action.get("default") else ""
    out = [f'<h3 id="{text(action["name"])}">{text(action["name"])}</h3>\n',
           f"<p>{text(catalogue.about[action['name']])}</p>\n",
           f'<p>{handle(action["handle"])}, number {action["enum"]} of the enumeration{default}. ']
    if parameters:
        out.append(f"{action['data_bits']} bits of data in {action['data_bytes']} bytes. ")
    uses = uses_of(action, catalogue)
    out.append(f"It uses {uses}.</p>\n" if uses else "</p>\n")
    if parameters:
        out.append(strip([(each["name"], each["data"]) for each in parameters]))
        out.append(rows(["bytes", "parameter", "member", "type", "bits", "shown as"],
                        [[text(each["data"]), code(each["name"]), code("action_" + each["name"]),
                          code(MEMBER_TYPES[each["type"]]), text(each["bits"]), SHOWN[each["display"]]]
                         for each in parameters]))
    return "".join(out)


API = {}  # pages of functions, by name


def function(name):
    return f'<a href="../api/{text(API[name])}">{code(name)}</a>' if name in API else code(name)


def read_api(tag_file):
    """Where Doxygen's tag file says that the functions are described."""
    for member in xml.parse(tag_file).iter("member"):
        if member.get("kind") == "function":
            API[member.findtext("name")] = f"{member.findtext('anchorfile')}#{member.findtext('anchor')}"


def function_list(names):
    items = "".join(f"<li>{function(name)}</li>\n" for name in names)
    return f"<details><summary>{len(names)} functions</summary><ul class=\"names\">\n{items}</ul></details>\n"


def functions_by_owner(owners):
    """Functions whose name begins with an owner's, each with the owner of the longest name."""
    found = collections.defaultdict(list)
    for name in functions():
        rest = name.removeprefix(PREFIX)
        fitting = [owner for owner in owners if rest.startswith(owner + "_")]
        if rest != name and fitting:
            found[max(fitting, key=len)].append(name)
    return found


def table_page(table, catalogue, named):
    facts = [f"Table {handle(table['handle'])} of {link('index', catalogue.groups[table['group']]['title'])}, "
             f"{table['kind']}. {KINDS[table['kind']]}"]
    if table.get("idle_time"):
        facts.append("Its entries have an idle time.")
    if table.get("counter_label"):
        facts.append("Its counter has labels.")
    if "profile" in table:
        facts.append(f"Indirect: an entry refers to a member or a group of {link('profiles', table['profile'])}, whose "
                     "actions these are.")
    out = [f"<p>{text(table.get('about', ''))}</p>\n<p>{' '.join(facts)}</p>\n<h2>Key</h2>\n", key_of(table), "<h2>Actions</h2>\n"]
    out += [action_of(action, catalogue) for action in catalogue.actions_of(table)]
    resources = catalogue.resources_of(table)
    if resources:
        out.append("<h2>Resources</h2>\n" + resource_rows(resources))
    out.append("<h2>Functions</h2>\n" + function_list(named[table["name"]]))
    return "".join(out)


def resource_rows(resources):
    return rows(["name", "sort", "handle", "cells", "table"],
                [[link("resources", each["name"]), {"wred": "WRED block"}.get(each["sort"], each["sort"]),
                  handle(each["handle"]), "one an entry" if each["kind"] == "direct" else "by index",
                  link(each["table"], each["table"]) if "table" in each else "none"] for each in resources])


def resources_page(catalogue):
    return ("<p>A direct resource hangs on each entry of its table and is reached by the entry's handle; an indirect "
            "one is reached by an index that entries give.</p>\n" + resource_rows(catalogue.resources.values())
            + "<h2>Functions</h2>\n"
            + function_list([name for name in functions()
                             if any(name.endswith("_" + each["name"]) for each in catalogue.resources.values())]))


def profiles_page(catalogue, named):
    out = []
    for profile in catalogue.profiles.values():
        out.append(f'<h2 id="{text(profile["name"])}">{text(profile["name"])}</h2>\n'
                   f"<p>Members in action data table {handle(profile['action_data_table'])}, groups in selector table "
                   f"{handle(profile['selector_table'])}, for the entries of "
                   f"{link(profile['table'], profile['table'])}.</p>\n")
        out += [action_of(action, catalogue) for action in profile["actions"]]
        out.append(function_list(named[profile["name"]]))
    return "".join(out)


def hashes_page(catalogue):
    return rows(["calculation", "handle", "input fields", "first input", "common numbers"],
                [[code(each["name"]), handle(each["handle"]), text(each["fields"]), handle(each["first_input"]),
                  text(", ".join(map(str, each["common"])))] for each in catalogue.hashes])


def snapshots_page(catalogue):
    return "".join(f"<h2>{text(layout['name'].capitalize())}</h2>\n<p>{layout['bytes']} bytes.</p>\n"
                   + rows(["bytes from", "size", "field"],
                          [[text(each["offset"]), text(each["size"]), code(each["name"])] for each in layout["fields"]])
                   for layout in catalogue.snapshots)


def index_page(catalogue):
    found = [[name, "table", f"{name}.html"] for name in catalogue.tables]
    for table in catalogue.tables.values():
        page = table["name"]
        found += [[action["name"], f"action of {page}", f"{page}.html#{action['name']}"]
                  for action in catalogue.actions_of(table)]
        found += [[field["name"], f"field of {page}", f"{page}.html"] for field in table["fields"]]
    found += [[name, "profile", f"profiles.html#{name}"] for name in catalogue.profiles]
    found += [[each["name"], each["sort"], "resources.html"] for each in catalogue.resources.values()]
    out = ['<p><label>Search by name <input id="wanted" type="search" autocomplete="off"></label></p>\n'
           '<ul id="found" class="names"></ul>\n'
           f"<p>{len(catalogue.tables)} tables in {len(catalogue.groups)} groups; beside them stand "
           f"{link('profiles', 'the action profiles')}, {link('resources', 'counters, meters and registers')}, "
           f"{link('hashes', 'the hash calculations')} and {link('snapshots', 'the fields of snapshots')}.</p>\n"]
    for group in catalogue.groups.values():
        out.append(f"<h2>{text(group['title'])}</h2>\n")
        out.append(rows(["table", "what it is for", "handle", "kind", "key", "actions"],
                        [[link(each["name"], each["name"]), text(each.get("about", "")), handle(each["handle"]),
                          text(each["kind"]), text(", ".join(field["short"] for field in each["fields"])),
                          text(len(catalogue.actions_of(each)))] for each in group["tables"]]))
    script = (HERE / "search.js").read_text().replace("[/* names */]", json.dumps(found, separators=(",", ":")))
    return "".join(out) + f"<script>\n{script}</script>\n"


def write(folder, name, title, body):
    up = "" if name == "index" else f'<nav>{link("index", "All tables")}</nav>\n'
    page = (HERE / "page.html").read_text()
    for mark, value in (("TITLE", text(title)), ("STYLE", (HERE / "page.css").read_text()), ("UP", up),
                        ("BODY", body)):
        page = page.replace(f"@{mark}@", value)
    (folder / f"{name}.html").write_text(page)


def main():
    parser = argparse.ArgumentParser(description="Writes the reference of all tables as HTML pages.")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--api", type=pathlib.Path, help="tag file of Doxygen's pages in ../api, to link functions to")
    arguments = parser.parse_args()
    folder = arguments.folder
    if arguments.api and arguments.api.exists():
        read_api(arguments.api)
    folder.mkdir(parents=True, exist_ok=True)
    catalogue = Catalogue()
    named = functions_by_owner([*catalogue.tables, *catalogue.profiles])
    write(folder, "index", f"Tables of {NAME}", index_page(catalogue))
    write(folder, "profiles", "Action profiles", profiles_page(catalogue, named))
    write(folder, "resources", "Counters, meters, WRED and registers", resources_page(catalogue))
    write(folder, "hashes", "Hash calculations", hashes_page(catalogue))
    write(folder, "snapshots", "Fields of snapshots", snapshots_page(catalogue))
    for table in catalogue.tables.values():
        write(folder, table["name"], table["name"], table_page(table, catalogue, named))


if __name__ == "__main__":
    main()

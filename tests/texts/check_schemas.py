"""Reads every schema text as the literal that it is, and holds each column against the rows of the catalogue.

usage: check_schemas.py SCHEMA_DUMP CATALOGUE_FOLDER
"""
# SPDX-License-Identifier: Apache-2.0
import ast
import pathlib
import re
import subprocess
import sys
import tomllib


def number(live, bits):
    """A live mask of the catalogue as a number; all bits are live where the row does not say."""
    return (1 << bits) - 1 if live is None else int(live, 0)


def key_rows(table):
    """What each row of a table's key must read as."""
    for field in table.get("fields", []):
        short, name, bits = field["short"], field["name"], field["bits"]
        live = number(field.get("live"), bits)
        yield (short, name, bits, live, field.get("display"), None, None)
        if field.get("match") == "ternary":
            yield (short + "Mask", name + "_mask", bits, live, None, None, None)
        elif field.get("match") == "lpm":
            yield (short + "PrefixLength", name + "_prefix_length", 16, 0xFFFF, None, None, None)


def action_rows(uses, parameters):
    """What each action of a table or profile must read as."""
    for name in sorted((use["name"] for use in uses), key=str.encode):
        yield (name, tuple((p["name"], p.get("display"), p["bits"], None) for p in parameters[name]))


def expected_literals(catalogue):
    files = [tomllib.loads(file.read_text()) for file in sorted(catalogue.glob("*.toml"))]
    rows = {kind: [row for file in files for row in file.get(kind, [])] for kind in ("table", "profile", "action")}
    parameters = {action["name"]: action.get("params", []) for action in rows["action"]}
    indirect = {profile["table"] for profile in rows["profile"]}
    pointers = (("setMbrHdl", (("mbrHdl", None, 32, None),)), ("setGrpHdl", (("grpHdl", None, 32, None),)))
    expected = {}
    for table in rows["table"]:
        name = table["name"]
        actions = pointers if name in indirect else tuple(action_rows(table["actions"], parameters))
        expected[table["handle"]] = ((name, "mat", (name in indirect,)), tuple(key_rows(table)), actions)
    for profile in rows["profile"]:
        expected[profile["action_data_table"]] = tuple(action_rows(profile["actions"], parameters))
    return expected


def dumped_texts(program):
    lines = subprocess.run([program], check=True, capture_output=True, text=True).stdout.splitlines()
    return {int(handle, 0): text for handle, text in (line.split(" ", 1) for line in lines)}


def differences(is_, should_be, path=""):
    """Each place where two literals differ, so that a wrong column is named."""
    if isinstance(is_, tuple) and isinstance(should_be, tuple) and len(is_) == len(should_be):
        for place, (a, b) in enumerate(zip(is_, should_be)):
            yield from differences(a, b, f"{path}[{place}]")
    elif type(is_) is not type(should_be) or is_ != should_be:
        yield f"{path} is {is_!r}, should be {should_be!r}"


def main():
    texts = dumped_texts(sys.argv[1])
    expected = expected_literals(pathlib.Path(sys.argv[2]))
    wrong = [f"{handle:#x}: no text" for handle in expected.keys() - texts.keys()]
    wrong += [f"{handle:#x}: a text of nothing in the catalogue" for handle in texts.keys() - expected.keys()]
    for handle in sorted(texts.keys() & expected.keys()):
        text = texts[handle]
        wide = re.findall(r",128,(0x[0-9a-f]+L?),", text)
        if any(not mask.endswith("L") for mask in wide) or text.count("L,") != len(wide):
            wrong.append(f"{handle:#x}: the suffix L stands at other numbers than those of 128 bits")
        try:
            literal = ast.literal_eval(re.sub(r"\b(0x[0-9a-f]+)L\b", r"\1", text))
        except (SyntaxError, ValueError) as error:
            wrong.append(f"{handle:#x}: no literal: {error}")
            continue
        wrong += [f"{handle:#x}{difference}" for difference in differences(literal, expected[handle])]
    for line in wrong[:40]:
        print(line)
    print(f"{len(texts)} texts, {len(wrong)} different")
    return 0 if not wrong and texts else 1


sys.exit(main())

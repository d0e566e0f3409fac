#!/usr/bin/env python3
"""Compares what is exported with what the headers tell of: check_documented.py LIST FOLDER-OR-HEADER...

Told of is a name that is declared right behind a comment that begins with '/**', and whose comment tells each argument
by its name and what a result means.
"""
# SPDX-License-Identifier: Apache-2.0
import pathlib
import re
import sys

DECLARED = re.compile(r"/\*\*((?:[^*]|\*(?!/))*)\*/\s*((?:[^;{}#/\"])+?\b(\w+)(\([^;{}]*\)|\[\w+\])?);")


def faults_of(name, comment, declaration, arguments):
    if arguments is None or not arguments.startswith("("):
        return
    for argument in arguments[1:-1].split(","):
        argument = re.findall(r"\w+", argument)[-1]
        if argument != "void" and not re.search(rf"@param {argument}\b|`{argument}`", comment):
            yield f"{name}: nothing is told of {argument}"
    if not declaration.lstrip().startswith("void ") and "@return" not in comment:
        yield f"{name}: nothing is told of its result"


def main():
    exported = {line for line in pathlib.Path(sys.argv[1]).read_text().split("\n") if line and line[0] != "#"}
    told, faults = set(), []
    for given in map(pathlib.Path, sys.argv[2:]):
        for header in sorted(given.glob("*.h")) if given.is_dir() else [given]:
            for comment, declaration, name, arguments in DECLARED.findall(header.read_text()):
                if name in exported:
                    told.add(name)
                    faults += faults_of(name, comment, declaration, arguments)
    faults += [f"{name}: exported, and no header tells of it" for name in sorted(exported - told)]
    print("\n".join(faults[:40]))
    print(f"{len(told)} of {len(exported)} exported names are documented, faults: {len(faults)}")
    return 1 if faults or not told else 0


if __name__ == "__main__":
    sys.exit(main())

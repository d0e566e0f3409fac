#!/usr/bin/env python3
"""Counts instructions under callgrind, within the calls of one function of a program and for each of its rounds.

With --pairs: those of pairs of functions, what they call included, held to a bar; the status is 1 if a pair is above
it. PROGRAM --list tells the pairs, one a line, between tabs: what is measured, a function, and the one it is measured
against. With --own: those of one library's own code.

SPDX-License-Identifier: Apache-2.0
"""
import argparse
import collections
import json
import re
import subprocess
import sys
import tempfile


class Profile:
    """Costs of functions, from a file that callgrind wrote."""

    def __init__(self, lines):
        self.own = collections.Counter()  # by object
        self.inclusive = collections.Counter()  # by function
        names = {}
        library = function = None
        of_call = False
        for line in lines:
            if match := re.match(r"(c?)(fn|ob)=(?:\((\d+)\))? ?(.*)", line):
                called, what, number, name = match.groups()
                if number and name:
                    names[what, number] = name
                name = name or names.get((what, number), "")
                if called:
                    continue
                if what == "ob":
                    library = name
                else:
                    function = name
            elif line.startswith("calls="):
                of_call = True
            elif match := re.match(r"(?:[+-]?\d+|\*) (\d+)$", line):
                cost = int(match.group(1))
                self.inclusive[function] += cost
                if not of_call:
                    self.own[library] += cost
                of_call = False


def run(valgrind, within, program):
    """Runs a program under callgrind and gives its profile."""
    with tempfile.NamedTemporaryFile(mode="r", prefix="callgrind.") as out:
        command = [valgrind, "--tool=callgrind", f"--callgrind-out-file={out.name}", f"--toggle-collect={within}"]
        done = subprocess.run(command + program, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if done.returncode != 0:
            sys.exit(f"{' '.join(program)} under callgrind ended with {done.returncode}:\n{done.stderr}")
        return Profile(line.rstrip("\n") for line in out)


def compare_pairs(profile, pairs, rounds, at_most):
    """Prints the figures of all pairs, and gives them."""
    figures = []
    for what, ours, theirs in pairs:
        for function in (ours, theirs):
            if not profile.inclusive[function]:
                sys.exit(f"callgrind saw no call of {function}")
        library, other = profile.inclusive[ours] / rounds, profile.inclusive[theirs] / rounds
        ratio = library / other
        verdict = f"  above {at_most}" if ratio > at_most else ""
        print(f"{what:26} {library:9.1f} {other:9.1f} {ratio:7.3f}{verdict}")
        figures.append({"what": what, "library": library, "other": other, "ratio": ratio})
    return figures


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--valgrind", default="valgrind")
    parser.add_argument("--within", default="counted_rounds", help="the function within which instructions count")
    parser.add_argument("--rounds", type=int, required=True, help="rounds that the program makes in it")
    what = parser.add_mutually_exclusive_group(required=True)
    what.add_argument("--pairs", action="store_true", help="compare the functions that PROGRAM --list tells")
    what.add_argument("--own", metavar="LIBRARY", help="count the own instructions of this library")
    parser.add_argument("--at-most", type=float, default=float("inf"), help="greatest ratio that a pair may have")
    parser.add_argument("--json", help="file for the figures")
    parser.add_argument("program", nargs=argparse.REMAINDER)
    asked = parser.parse_args()

    profile = run(asked.valgrind, asked.within, asked.program)
    if asked.own:
        figures = sum(cost for library, cost in profile.own.items() if asked.own in library) / asked.rounds
        if not figures:
            sys.exit(f"callgrind saw nothing of {asked.own}")
        print(f"{figures:.2f}")
    else:
        listed = subprocess.run([asked.program[0], "--list"], stdout=subprocess.PIPE, text=True, check=True).stdout
        pairs = [line.split("\t") for line in listed.splitlines()]
        figures = compare_pairs(profile, pairs, asked.rounds, asked.at_most)
    if asked.json:
        with open(asked.json, "w", encoding="utf-8") as file:
            json.dump(figures, file, indent=1)
    return 1 if asked.pairs and any(f["ratio"] > asked.at_most for f in figures) else 0


if __name__ == "__main__":
    sys.exit(main())

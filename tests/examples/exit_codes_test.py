#!/usr/bin/env python3
"""Compares what programs say of their exit codes with the table of the document that has them all, and sees that each
refuses an option that it does not have and does not lose output silently.
usage: exit_codes_test.py DOCUMENT PROGRAM..."""
# SPDX-License-Identifier: Apache-2.0
import pathlib
import re
import subprocess
import sys

table = dict(re.findall(r"^\| (\d+) \| ([^|]*?) \|", pathlib.Path(sys.argv[1]).read_text(), re.MULTILINE))
wrong = [] if len(table) >= 8 else [f"{sys.argv[1]}: no table of exit codes"]
for program in sys.argv[2:]:
    name = pathlib.Path(program).name
    page = ["--page", "man"] if name == "tvsh" else ["--help"]
    text = subprocess.run([program, *page], capture_output=True, text=True, check=True).stdout
    pattern = r"^[.]TP\n(\d+)\n(.*)$" if name == "tvsh" else r"^  (\d+)  (.*)$"
    said = dict(re.findall(pattern, text[re.search("exit status", text, re.IGNORECASE).start():], re.MULTILINE))
    wrong += [f"{name}: {code} is '{meaning}', in the document '{table.get(code)}'"
              for code, meaning in said.items() if table.get(code) != meaning]
    wrong += [f"{name} --help says nothing of exit code {code}" for code in "014" if code not in said]
    refused = subprocess.run([program, "--bogus"], capture_output=True, text=True, check=False, stdin=subprocess.DEVNULL)
    if refused.returncode != 1 or refused.stdout or not refused.stderr:
        wrong.append(f"{name} --bogus ends with {refused.returncode}: {refused.stdout}{refused.stderr}")
    for option in ("--help", "--version"):
        with open("/dev/full", "w", encoding="utf-8") as full:
            code = subprocess.run([program, option], stdout=full, stderr=subprocess.DEVNULL, check=False).returncode
        if code != 4:
            wrong.append(f"{name} {option} ends with {code} though its output is lost")
print(*wrong, sep="\n", end="\n" if wrong else "")
sys.exit(1 if wrong else 0)

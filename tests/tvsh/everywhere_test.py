#!/usr/bin/env python3
"""Every command does the same from a pipe, at a terminal and over a socket: the examples of the help, and mistakes.

SPDX-License-Identifier: Apache-2.0
"""
import os
import re
import sys

from shell_program import FOLDER, PROMPT, end_input, expect, run, server, spawn

TVSH, SOURCE = sys.argv[1:]
SOCKET = os.path.join(FOLDER, "switch")
PREPARED = """add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5
set-default ipv4Host onMiss
idle ipv4Host enable
member ecmpMemberActionProfile add setEcmpNextHop nextHop=1
audit on
save /tmp/tvsh-state.json
""".replace("/tmp", FOLDER)
ENDLESS = ("monitor", "trace follow")  # until Ctrl-C


def steady(text):
    """Without what differs from run to run: times and threads of traces, the bar of long work."""
    text = re.sub(r"\r[^\r\n]*\[[= ]*\] \d+% *|\r +\r", "", text)
    text = re.sub(r"\d\d:\d\d:\d\d\.\d+|<[\d.]+ ?[mun]?s>", "TIME", text)
    return re.sub(r"\[\d+\]|0x[0-9a-f]{8,}", "N", text)


def names():
    listed = run(TVSH, "-c", "help")[1]
    return re.findall(r"^  (\S+) ", listed, re.MULTILINE)


def examples():
    for name in names():
        found = run(TVSH, "-c", f"help {name}")[1].partition("examples:\n")[2].split("\n")
        expect(f"{name} has two examples", len([each for each in found if each]) == 2)
        for example in found[:2]:
            if not example.strip().startswith(ENDLESS):
                yield example.strip().replace("/tmp", FOLDER)


def at_terminal(device, lines):
    """What the prompt shows between a command and the next prompt."""
    shell = spawn(TVSH, f"--device={device}", term="dumb", cwd=SOURCE)
    shell.setecho(False)
    shell.delaybeforesend = None
    shell.ptyproc.delayafterclose = 0
    shell.expect_exact(PROMPT)
    shown = ""
    for line in lines:
        shell.sendline(line)
        shell.expect_exact(PROMPT)
        shown += shell.before
    end_input(shell)
    return shown


def same_everywhere():
    with server(TVSH, SOCKET):
        for device, example in enumerate(examples(), start=1):
            script = PREPARED + example + "\n"
            alone = run(TVSH, f"--device={device}", "-f", "-", text=script, cwd=SOURCE)
            expect(f"the example works: {example}: {alone}", alone[0] == 0)
            expect(f"a device for {example}", run(TVSH, "--attach", SOCKET, f"sim device add {device}")[0] == 0)
            there = run(TVSH, f"--device={device}", "--attach", SOCKET, "-f", "-", text=script, cwd=SOURCE)
            expect(f"the same over a socket: {example}\n{alone}\n{there}",
                   [alone[0], *map(steady, alone[1:])] == [there[0], *map(steady, there[1:])])
            if not example.startswith(("exit", "quit")):
                piped = run(TVSH, f"--device={device}", "-f", "-", text=script, cwd=SOURCE, merged=True)[1]
                typed = at_terminal(device, script.splitlines()).replace("\r\n", "\n")
                expect(f"the same at a terminal: {example}\n{piped}\n{typed}", steady(typed) == steady(piped))


def mistakes():
    with server(TVSH, SOCKET):
        for name in names():
            for line in (f"{name} no such thing is there at all", f"{name} --bogus"):
                alone = run(TVSH, "-c", line)
                expect(f"{line}: told, with an exit code", alone[0] in (1, 2, 4) and alone[2])
                there = run(TVSH, "--attach", SOCKET, "-c", line)
                expect(f"the same over a socket: {line}\n{alone}\n{there}", alone == there)


same_everywhere()
mistakes()

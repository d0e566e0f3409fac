#!/usr/bin/env python3
"""The program tvsh from a pipe and from a pseudo-terminal.

SPDX-License-Identifier: Apache-2.0
"""
import json
import os
import stat
import sys
import tempfile

import pexpect

import shell_program
from shell_program import FOLDER, expect, interrupt_dump, spawn

TVSH = sys.argv[1]


def run(*arguments, **extra):
    return shell_program.run(TVSH, *arguments, **extra)


def pipes():
    code, out, _ = run("-c", "tables ipv4Host")
    expect("one command", code == 0 and "ipv4Host" in out and "\033" not in out)
    expect("JSON by a program option", json.loads(run("-j", "-c", "tables")[1])["schema_version"] == 1)
    for arguments, wanted in ((["-c", "tabels"], 1), (["-c", "show ipv4Host handle=1"], 2), (["--nonsense"], 1),
                              (["-c", "load-routes /nowhere"], 4), (["-f", "/nowhere/script"], 4),
                              (["-c", "tables", "-f", "x"], 1), (["--color=pink"], 1), (["--help"], 0)):
        expect(f"exit code of {arguments}", run(*arguments)[0] == wanted)
    script = "add ipv4Host vrfId=1 dip=10.0.0.1 onMiss\ndump ipv4Host | count\ndump x\nexit\n"
    for arguments in (["-f", "-"], []):
        code, out, errors = run(*arguments, text=script)
        expect("a script from standard input", code == 1 and out == "entry 1\n1\n" and "-:3: stopped at: dump x" in errors)
    with tempfile.NamedTemporaryFile("w", suffix=".tvsh") as file:
        file.write(script)
        file.flush()
        expect("a script names its file", f"{file.name}:3:" in run("-f", file.name)[2])
    expect("colour when asked for", "\033[1m" in run("--color=always", "-c", "tables")[1])


def start(term="xterm", **extra):
    shell = spawn(TVSH, term=term, **extra)
    shell.expect("tvsh> ")
    return shell


def terminal():
    shell = start()
    shell.sendline("add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5")
    shell.expect("entry 1\r\n")
    shell.send("dump ipv4Ho\t\r")
    shell.expect("10\\.0\\.0\\.1 .*setNextHop +nextHop=5\r\n")
    shell.expect("tvsh> ")
    shell.send("show ipv4Host vrf\t1 di\t10.0.0.1\r")
    shell.expect("nextHop=5\r\n")
    shell.send("s\t\t")
    shell.expect("schema +set-default +show")
    shell.sendintr()  # drops the line that was begun
    shell.expect("tvsh> ")
    shell.sendline("count ipv4Host")
    shell.expect("ipv4Host +1\r\n")
    shell.sendline("dump ipv4Hots")
    shell.expect("did you mean ipv4Host")
    shell.sendline("exit")
    shell.expect(pexpect.EOF)
    shell.close()
    expect("the prompt ends well", shell.exitstatus == 0)
    history = os.path.join(FOLDER, "tvsh", "history")
    expect("the history is the user's alone", stat.S_IMODE(os.stat(history).st_mode) == 0o600)
    again = start()
    again.send("\033[A")  # up: the latest of the earlier session
    again.expect("exit")
    again.sendeof()
    again.close()


def interrupts():
    shell = start()
    with tempfile.NamedTemporaryFile("w") as file:
        for high in range(1, 100):
            for low in range(0, 256):
                file.write(f"{high}.{low}.0.0/24 {high}\n")
        file.flush()
        shell.sendline(f"load-routes {file.name}")
        shell.expect("25344 routes")
    interrupt_dump(shell, 25344)
    shell.sendeof()
    shell.expect(pexpect.EOF)


def dumb_terminal():
    shell = start(term="dumb")
    shell.sendline("tables ipv4Host")
    shell.expect("ipv4Host +0x100000a")
    shell.sendintr()
    shell.expect("tvsh> ")
    shell.sendline("count ipv4Host")
    shell.expect("ipv4Host +0\r\n")
    expect("no escapes on a dumb terminal", "\033" not in shell.before)
    shell.sendeof()
    shell.expect(pexpect.EOF)
    plain = start(NO_COLOR="1")
    plain.sendline("dump x")
    plain.expect("there is no table")
    expect("no colour with NO_COLOR", "\033[31m" not in plain.before)
    plain.close()


for test in (pipes, terminal, interrupts, dumb_terminal):
    test()

#!/usr/bin/env python3
"""The program tvsh from a pipe and from a pseudo-terminal.

SPDX-License-Identifier: Apache-2.0
"""
import io
import json
import os
import re
import resource
import signal
import stat
import subprocess
import sys
import tempfile

import pexpect

import shell_program
from shell_program import FOLDER, PROMPT, drop_line, end_input, expect, interrupt_dump, spawn, typed

TVSH = sys.argv[1]


def run(*arguments, **extra):
    return shell_program.run(TVSH, *arguments, **extra)


def expect_out_of_memory():
    """A command that finds no memory; a sanitizer's program does not start with so little."""
    def little():
        resource.setrlimit(resource.RLIMIT_AS, (60 << 20, 60 << 20))

    def run_with_little(*arguments):
        return subprocess.run([TVSH, *arguments], preexec_fn=little, capture_output=True, text=True, check=False)

    if run_with_little("--version").returncode != 0:
        return
    with tempfile.NamedTemporaryFile("w") as file:
        file.writelines(f"{a}.{b}.{c}.0/24 1\n" for a in range(1, 17) for b in range(256) for c in range(0, 256))
        file.flush()
        lost = run_with_little("-c", f"load-routes {file.name}")
    expect("out of memory", lost.returncode == 7 and lost.stderr.endswith("load-routes: out of memory\n"))


def pipes():
    code, out, _ = run("-c", "tables ipv4Host")
    expect("one command", code == 0 and "ipv4Host" in out and "\033" not in out)
    expect("JSON by a program option", json.loads(run("-j", "-c", "tables")[1])["schema_version"] == 2)
    code, out, errors = run("-j", "--attach", "/nowhere", "-c", "count")
    expect("an error that is no command's", (code, json.loads(out)["error"]["exit_code"], errors) == (4, 4, ""))
    for arguments, wanted in ((["-c", "tabels"], 1), (["-c", "show ipv4Host handle=1"], 2), (["--nonsense"], 1),
                              (["-c", "load-routes /nowhere"], 4), (["-f", "/nowhere/script"], 4), (["-f", "/"], 4),
                              (["-c", "tables", "-f", "x"], 1), (["--color=pink"], 1), (["--help"], 0),
                              (["--version"], 0)):
        expect(f"exit code of {arguments}", run(*arguments)[0] == wanted)
    expect("the version", re.fullmatch(r"tvsh \(tarvex_pd\) \d+\.\d+\.\d+\n", run("--version")[1]))
    for arguments in (["--help"], ["--version"], ["--page", "man"], ["--complete", "dump "], ["-c", "tables ipv4Host"]):
        with open("/dev/full", "w", encoding="utf-8") as full:
            lost = subprocess.run([TVSH, *arguments], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
        expect(f"{arguments} with its output lost", lost.returncode == 4 and "output cannot be written" in lost.stderr)
    expect_out_of_memory()
    for words in (["tables", "ipv4Host"], ["-j", "dump", "ipv4Host", "--raw"], ["help", "dump"], ["dump", "x"]):
        options = words[:words[0] == "-j"]
        expect(f"words are a command: {words}",
               run(*words) == run(*options, "-c", " ".join(words[len(options):])) and run(*words)[1:] != ("", ""))
    for words, hint in ((["-c", "dump", "ipv4Host"], "-c 'dump ipv4Host'"), (["--serve", "/s", "count"], "-c 'count'"),
                        (["-f", "-", "count"], "beside -f"), (["-j", "--nonsense", "count"], "--nonsense")):
        code, out, errors = run(*words)
        expect(f"{words}: {code} {errors}", (code, out) == (1, "") and hint in errors)
    script = "add ipv4Host vrfId=1 dip=10.0.0.1 onMiss\ndump ipv4Host | count\ndump x\nexit\n"
    for arguments in (["-f", "-"], []):
        code, out, errors = run(*arguments, text=script)
        expect("a script from standard input", code == 1 and out == "entry 1\n1\n" and 
               "-:3: stopped at: dump x; 2 of 4 commands done, 2 not\n" in errors)
    with tempfile.NamedTemporaryFile("w", suffix=".tvsh") as file:
        file.write(script)
        file.flush()
        expect("a script names its file", f"{file.name}:3:" in run("-f", file.name)[2])
    expect("colour when asked for", "\033[1m" in run("--color=always", "-c", "tables")[1])


def signals():
    """A script in a pipe of ours is under way when the signal comes; what it did and did not is reported."""
    commands = [f"add ipv4Host vrfId=1 dip=10.{number // 62500}.{number // 250 % 250}.{number % 250} onMiss\n" for number in range(200000)]
    for how, code in (((signal.SIGTERM, False), 143), ((signal.SIGTERM, True), 143), ((signal.SIGINT, False), 130),
                      ((signal.SIGINT, True), 0)):
        number, ignored = how
        with subprocess.Popen([TVSH, "-f", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True, env=shell_program.ENVIRONMENT, restore_signals=False,
                              preexec_fn=lambda: ignored and signal.signal(number, signal.SIG_IGN)) as script:
            script.stdin.write("".join(commands))
            script.stdin.close()
            script.stdout.read(10)  # the first lines are done
            script.send_signal(number)
            out, errors = script.stdout.read(), script.stderr.read()
        expect(f"{how}: {script.returncode} {errors}", script.returncode == code)
        if code == 0:
            continue
        stop = re.fullmatch(r"-:(\d+): interrupted before: .*; (\d+) of 200000 commands done, (\d+) not\n", errors)
        expect(f"{how} is reported: {errors}", stop and int(stop[1]) == int(stop[2]) + 1)
        expect("what is done is done", int(out.split()[-1]) == int(stop[2]) and int(stop[2]) + int(stop[3]) == 200000)


def start(term="xterm", **extra):
    shell = spawn(TVSH, term=term, **extra)
    shell.expect(PROMPT)
    return shell


def terminal():
    shell = start()
    typed(shell, "add ipv4Host vrfId=1 dip=10.0.0.1 setNextHop nextHop=5", "entry 1\r\n")
    typed(shell, "dump ipv4Ho\t", "10\\.0\\.0\\.1 .*setNextHop +nextHop=5\r\n")
    typed(shell, "show ipv4Host vrf\t1 di\t10.0.0.1", "nextHop=5\r\n")
    shell.send("s\t\t")
    shell.expect("schema +set-default +show")
    shell.expect(f"{PROMPT}s")
    drop_line(shell)
    typed(shell, "count ipv4Host", "ipv4Host +1\r\n")
    typed(shell, "dump ipv4Hots", "did you mean ipv4Host")
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
        typed(shell, f"load-routes {file.name}", "25344 routes")
    interrupt_dump(shell, 25344)
    end_input(shell)


def dumb_terminal():
    shell = start(term="dumb")
    shell.logfile_read = shown = io.StringIO()
    typed(shell, "tables ipv4Host", "ipv4Host +0x100000a")
    drop_line(shell)
    typed(shell, "count ipv4Host", "ipv4Host +0\r\n")
    end_input(shell)
    expect("no escapes on a dumb terminal", "\033" not in shown.getvalue())
    plain = start(NO_COLOR="1")
    plain.logfile_read = shown = io.StringIO()
    typed(plain, "dump x", "there is no table")
    expect("no colour with NO_COLOR", "\033[31m" not in shown.getvalue())
    plain.close()


for test in (pipes, signals, terminal, interrupts, dumb_terminal):
    test()

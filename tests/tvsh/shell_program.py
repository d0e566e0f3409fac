"""Runs the program tvsh for the tests.

SPDX-License-Identifier: Apache-2.0
"""
import contextlib
import os
import signal
import subprocess
import sys
import tempfile
import time

import pexpect

FOLDER = tempfile.mkdtemp()
PROMPT = "tvsh> "
ENVIRONMENT = {**os.environ, "XDG_STATE_HOME": FOLDER, "TERM": "xterm"}
ENVIRONMENT.pop("NO_COLOR", None)


def expect(what, condition):
    if not condition:
        sys.exit(f"FAILED: {what}")


def run(*arguments, text="", merged=False, cwd=None, **extra):
    """Exit code, output and errors."""
    done = subprocess.run(arguments, input=text, stdout=subprocess.PIPE, text=True, timeout=120, cwd=cwd, check=False,
                          stderr=subprocess.STDOUT if merged else subprocess.PIPE, env={**ENVIRONMENT, **extra})
    return done.returncode, done.stdout, done.stderr


def spawn(*arguments, term="xterm", cwd=None, **extra):
    # Wide, so that no line is broken by the terminal.
    return pexpect.spawn(arguments[0], list(arguments[1:]), env={**ENVIRONMENT, "TERM": term, **extra}, cwd=cwd,
                         encoding="utf-8", timeout=60, dimensions=(50, 250))


def typed(shell, keys, *answers):
    """Keys at the prompt, what comes of them, and the next prompt: a key ahead of that is not the line editor's."""
    shell.send(keys + "\r")
    for each in (*answers, PROMPT):
        shell.expect(each)


def drop_line(shell):
    """Ctrl-C at the prompt. Who presses between the prompt and the wait for keys presses again."""
    shell.sendintr()
    while shell.expect([PROMPT, pexpect.TIMEOUT], timeout=2) != 0:
        shell.sendintr()


def end_input(shell):
    """Ctrl-D at the prompt."""
    shell.sendeof()
    shell.expect(pexpect.EOF)
    shell.close()
    expect("the prompt ends well", shell.exitstatus == 0)


def interrupt_dump(shell, entries):
    """Ctrl-C ends a command at the prompt, and the session goes on."""
    shell.sendline("dump ipv4FinalResolve")
    shell.expect("setNextHop")
    shell.sendintr()
    shell.expect("interrupted")
    shell.expect(PROMPT)
    typed(shell, "count ipv4FinalResolve", f"ipv4FinalResolve +{entries}")


def eventually(what, condition):
    """Other processes take their time; the limit is for those that hang."""
    for _ in range(1200):
        if condition():
            return
        time.sleep(0.05)
    expect(what, False)


@contextlib.contextmanager
def server(tvsh, path, *arguments, well=True, **extra):
    """tvsh --serve while the block runs; it has to end in order."""
    with subprocess.Popen([tvsh, "--serve", path, *arguments], stderr=subprocess.PIPE, text=True, env=ENVIRONMENT,
                          **extra) as process:
        first = process.stderr.readline()
        expect(f"a server begins: {path}: {first}", "serving" in first)
        try:
            yield process
        finally:
            process.send_signal(signal.SIGTERM)
            errors = process.communicate(timeout=60)[1]
        expect(f"the server ends in order: {process.returncode} {errors}", not well or process.returncode == 0)

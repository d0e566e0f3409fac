#!/usr/bin/env python3
"""Another driver under the shell, and the agent in another program.

SPDX-License-Identifier: Apache-2.0
"""
import os
import signal
import subprocess
import sys

from shell_program import ENVIRONMENT, FOLDER, eventually, expect, run

TVSH, DRIVER, POOR_DRIVER, CONTROL_PLANE = sys.argv[1:]
SOCKET = os.path.join(FOLDER, "switch")
# Sanitizers want their own library to be the first of all, but ahead of the program comes the driver.
UNORDERED = {"ASAN_OPTIONS": ENVIRONMENT.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}


def driven(*arguments, driver=DRIVER, **extra):
    return run(TVSH, "--driver", driver, *arguments, **UNORDERED, **extra)


def another_driver():
    script = "add ipv4Host vrfId=1 dip=10.0.0.1 onMiss\ndump ipv4Host\ndump ipv6Host\ndefault ipv6Host\n"
    for statuses in ([], ["--end-status=86", "--none-status=68"]):
        code, out, errors = driven(*statuses, "-f", "-", text=script)
        expect(f"it drives: {code} {out} {errors}", code == 0 and out.startswith("entry 1\n") and "10.0.0.1" in out)
    expect("another end of walks is a refusal", driven("--end-status=77", "-c", "dump ipv4Host")[0] == 2)
    expect("another word for none is a refusal", driven("--none-status=77", "-c", "default ipv4Host")[0] == 2)
    saved = os.path.join(FOLDER, "saved")
    code, _, errors = driven("-f", "-", text=f"save {saved}\n")
    expect(f"no refusal is taken for the end of the cells: {code} {errors}",
           code == 2 and ", cell " in errors and "--end-of-cells-status=80" in errors and not os.path.exists(saved))
    code, out, errors = driven("--end-of-cells-status=80", "-f", "-", text=f"save {saved}\n")
    expect(f"its end of the cells is known: {code} {out} {errors}", code == 0 and "saved to" in out)
    code, _, errors = driven("-c", "sim age 1")
    expect(f"nothing is simulated: {errors}", code == 1 and "the driver is another one" in errors)
    code, _, errors = driven("-c", "delete ipv4Host handle=5")
    expect(f"its statuses are numbers: {errors}", code == 2 and "status 68 of the driver" in errors)
    traced = driven("-f", "-", text="trace on\ncount ipv4Host\n", merged=True)[1]
    expect(f"it is traced: {traced}", "pipe_mgr_get_entry_count(" in traced)
    code, out, _ = driven("-f", "-", text="count ipv4Host\n", LD_PRELOAD="")
    expect("with a preload of one's own", code == 0)


def drivers_that_cannot_be():
    code, _, errors = driven("-c", "tables", driver=POOR_DRIVER)
    expect(f"what is missing is named: {errors}",
           code == 4 and errors.endswith("it lacks pipe_mgr_mat_ent_add, pipe_mgr_mat_ent_del\n"))
    blank = os.path.join(FOLDER, "a driver.so")
    os.symlink("/nowhere", os.path.join(FOLDER, "dangling"))
    with open(blank, "w", encoding="ascii") as text:
        text.write("no library")
    plain = os.path.join(FOLDER, "text.so")
    os.link(blank, plain)
    for driver, told in ((blank, "blanks"), (plain, "cannot be loaded"), ("/nowhere/driver.so", "No such file"),
                         (os.path.join(FOLDER, "dangling"), "No such file"), (FOLDER, "cannot be loaded")):
        code, _, errors = driven("-c", "tables", driver=driver)
        expect(f"{driver}: {code} {errors}", code == 4 and told in errors)


def traced(file):
    """The program's own calls, as it stands; what cannot be traced to is refused and holds up nothing."""
    pipe = file + ".pipe"
    if not os.path.exists(pipe):
        os.mkfifo(pipe)
    code, _, errors = run(TVSH, "--attach", SOCKET, "trace", pipe)
    expect(f"no trace to a pipe: {code} {errors}", code == 4 and "no plain file" in errors)
    expect("a trace begins", run(TVSH, "--attach", SOCKET, "trace", file)[0] == 0)
    eventually("the program's calls are in the file",
               lambda: "pipe_mgr_mat_ent_set_action_by_match_spec(" in open(file, encoding="utf-8").read())
    expect("it ends", run(TVSH, "--attach", SOCKET, "trace", "off")[0] == 0)


def control_plane():
    for ends in ("input", signal.SIGTERM):
        with subprocess.Popen([CONTROL_PLANE, SOCKET], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                              env=ENVIRONMENT) as program:
            expect("it says where", SOCKET in program.stdout.readline())
            code, out, _ = run(TVSH, "--attach", SOCKET, "dump ipv4Host | include nextHop=10[0-3]$ | count")
            expect(f"its routes: {out}", code == 0 and out == "4\n")
            expect("writes go to its switch", run(TVSH, "--attach", SOCKET, "delete", "ipv4Host", "handle=4")[0] == 0)
            expect("four less one", run(TVSH, "--attach", SOCKET, "count", "ipv4Host")[1].split()[-1] == "3")
            traced(os.path.join(FOLDER, "calls"))
            code, _, errors = run(CONTROL_PLANE, SOCKET)
            expect(f"a second one is refused: {errors}", code == 4 and "another server listens" in errors)
            if ends == "input":
                program.stdin.close()
            else:
                program.send_signal(ends)
            expect("it ends well", program.wait(60) == 0)
        expect("the socket is gone", not os.path.exists(SOCKET))
    expect("wrong use", run(CONTROL_PLANE)[0] == 1 and run(CONTROL_PLANE, "--help")[0] == 0)


another_driver()
drivers_that_cannot_be()
control_plane()

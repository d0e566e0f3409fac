#!/usr/bin/env python3
"""The socket: who gets in, what becomes of clients that go astray, and the file itself.

SPDX-License-Identifier: Apache-2.0
"""
import contextlib
import os
import signal
import socket
import stat
import struct
import subprocess
import sys
import threading

from shell_program import (ENVIRONMENT, FOLDER, drop_line, end_input, eventually, expect, interrupt_dump, run, server,
                           spawn, typed)

TVSH = sys.argv[1]
SOCKET = os.path.join(FOLDER, "switch")
MOST_CLIENTS = 64


def frame(kind, payload=b""):
    return struct.pack(">Ic", len(payload), kind) + payload


HELLO = frame(b"h", b"tvsh 1\n")


def connect(*frames):
    client = socket.socket(socket.AF_UNIX)
    client.settimeout(60)
    client.connect(SOCKET)
    with contextlib.suppress(BrokenPipeError, ConnectionResetError):
        client.sendall(b"".join(frames))
    return client


def exactly(client, size):
    """So many bytes, however they come in; fewer at the end."""
    data = b""
    while len(data) < size and (piece := client.recv(size - len(data))):
        data += piece
    return data


def receive(client):
    """Kind and payload of the next frame; nothing at the end."""
    with contextlib.suppress(ConnectionResetError):
        head = exactly(client, 5)
        if len(head) == 5:
            return head[4:], exactly(client, struct.unpack(">I", head[:4])[0])
    return None, b""


def ask(line):
    """A client that is greeted and has sent a command."""
    client = connect(HELLO)
    expect("a client is greeted", receive(client)[0] == b"h")
    client.sendall(frame(b"r", line.encode()))
    return client


def raw_frames(client):
    """All frames until the server closes."""
    data = b""
    with contextlib.suppress(ConnectionResetError):
        while piece := client.recv(65536):
            data += piece
    found = []
    while len(data) >= 5:
        size = struct.unpack(">I", data[:4])[0]
        found.append((data[4:5], data[5:5 + size]))
        data = data[5 + size:]
    return found


def attached(*arguments, **extra):
    return run(TVSH, "--attach", SOCKET, *arguments, **extra)


def serves():
    code, _, errors = attached("count", "ipv4Host")
    expect(f"the server goes on: {code} {errors}", code == 0)


def fill(entries):
    routes = os.path.join(FOLDER, "routes")
    with open(routes, "w", encoding="ascii") as file:
        for number in range(entries):
            file.write(f"{1 + number // 65536}.{number // 256 % 256}.{number % 256}.0/24 1\n")
    expect("paths begin from the client's folder", attached("load-routes", "routes", cwd=FOLDER)[0] == 0)


def the_file():
    with server(TVSH, SOCKET, umask=0):
        expect("the socket is its owner's", stat.S_IMODE(os.stat(SOCKET).st_mode) == 0o600)
        code, _, errors = run(TVSH, "--serve", SOCKET)
        expect(f"a live socket is refused: {errors}", code == 4 and "another server listens there" in errors)
        serves()
    expect("the socket goes with its server", not os.path.lexists(SOCKET))
    with server(TVSH, SOCKET, well=False) as process:
        process.kill()
    expect("a server that was killed leaves its socket", os.path.exists(SOCKET))
    code, _, errors = attached("count")
    expect(f"nobody serves it: {errors}", code == 4 and SOCKET in errors and "--serve" in errors)
    with server(TVSH, SOCKET):
        serves()
        os.unlink(SOCKET)
        with open(SOCKET, "w", encoding="ascii") as other:
            other.write("precious")
    code, _, errors = run(TVSH, "--serve", SOCKET)
    with open(SOCKET, encoding="ascii") as other:
        expect(f"a file in its place stays: {errors}", (code, other.read()) == (4, "precious") and "no socket" in errors)
    os.unlink(SOCKET)
    for path in (os.path.join(FOLDER, "a" * 108), os.path.join(FOLDER, "nowhere", "switch"), ""):
        for mode in ("--serve", "--attach"):
            code, _, errors = run(TVSH, mode, path, "-c", "count")
            expect(f"{mode} '{path}': {code} {errors}", code == 4 and "tvsh:" in errors)
    for wrong in (["--attach", SOCKET, "--serve", SOCKET], ["--attach", SOCKET, "-c", "count", "count"],
                  ["--attach", SOCKET, "--driver", "x"]):
        expect(f"wrong use: {wrong}", run(TVSH, *wrong)[0] == 1)
    expect("a script runs ahead, and its error ends", run(TVSH, "--serve", SOCKET, "-c", "dump x")[0] == 1)


def two_at_once():
    """Of several that start at a dead socket, one serves."""
    for _ in range(5):
        with server(TVSH, SOCKET, well=False) as process:
            process.kill()
        rivals = [subprocess.Popen([TVSH, "--serve", SOCKET], stderr=subprocess.DEVNULL, env=ENVIRONMENT)
                  for _ in range(4)]
        eventually("three of four give up", lambda: sum(each.poll() is not None for each in rivals) == 3)
        serves()
        for each in rivals:
            each.terminate()
        expect("one served", sorted(each.wait() for each in rivals) == [0, 4, 4, 4])


def sessions():
    attached("add ipv4Host vrfId=1 dip=10.0.0.1 onMiss")
    attached("value-set add value=0x8100")
    expect("what one wrote, another sees", "0x8100" in attached("value-set")[1])
    expect("each has options of his own", attached("-j", "count")[1].startswith("{") and
           not attached("count")[1].startswith("{"))
    expect("colour is the client's", "\033[1m" in attached("--color=always", "count")[1] and
           "\033" not in attached("--color=never", "count")[1])
    code, out, _ = attached("-f", "-", text="count ipv4Host\nexit\nnonsense\n")
    expect("exit ends the session, not the server", code == 0 and out.split() == ["table", "entries", "ipv4Host", "1"])
    expect("a device that is not there", attached("--device=9", "count", "ipv4Host")[0] == 2)
    expect("a line that is too long", attached("-f", "-", text="count " + "x" * 70000)[0] == 1)
    serves()


def turns():
    """Whoever changes the state as a whole waits for the others, and none meets the half-done work of another."""
    with open(os.path.join(FOLDER, "turns"), "w", encoding="ascii") as file:
        for host in range(3000):
            file.write(f"50.{host // 250}.{host % 250}.1/32 7\n")
    attached("save", "turns0.json", cwd=FOLDER)
    attached("load-routes", "turns", cwd=FOLDER)
    attached("save", "turns1.json", cwd=FOLDER)
    for words in (["load", "turns{}.json", "replace"], ["apply", "turns{}.json"]):
        rivals = [subprocess.Popen([TVSH, "--attach", SOCKET, *(word.format(number % 2) for word in words)], cwd=FOLDER,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=ENVIRONMENT)
                  for number in range(5)]
        ended = [(each.communicate(), each.returncode) for each in rivals]
        expect(f"five at once: {words}: {ended}", [code for _, code in ended] == [0] * 5)
        same = [attached("diff", "live", f"turns{number}.json", cwd=FOLDER)[0] for number in range(2)]
        expect(f"one of them was the last: {words}: {same}", sorted(same) == [0, 3])


def at_terminal():
    shell = spawn(TVSH, "--attach", SOCKET)
    shell.expect("attached to process.*tvsh> ")
    shell.send("cou\t")
    shell.expect("nt")
    typed(shell, " ipv4Fin\t", "ipv4FinalResolve +[0-9]+")
    drop_line(shell)  # with no command running
    interrupt_dump(shell, 100000)
    end_input(shell)
    with subprocess.Popen([TVSH, "--attach", SOCKET, "dump", "ipv4FinalResolve"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, env=ENVIRONMENT) as dump:
        dump.stdout.read(1000)
        dump.send_signal(signal.SIGINT)
        dump.stdout.read()
    expect("Ctrl-C of one command", dump.returncode == 130)


def hostile():
    told = {
        "garbage": [b"GET / HTTP/1.1\r\n\r\n"],
        "a giant frame": [HELLO, struct.pack(">Ic", 1 << 31, b"r")],
        "no greeting": [frame(b"r", b"count")],
        "another version": [frame(b"h", b"tvsh 2\n")],
        "another protocol": [frame(b"h", b"hello\n")],
        "a cut greeting": [frame(b"h", b"tvsh 1\ndevice=1")],
        "no such device": [frame(b"h", b"tvsh 1\ndevice=256\n")],
        "a frame of the server's": [HELLO, frame(b"l", b"x")],
        "two greetings": [HELLO, HELLO],
        "two lines": [HELLO, frame(b"r", b"count\ncount")],
    }
    for what, frames in told.items():
        with connect(*frames) as client:
            answers = raw_frames(client)
            expect(f"{what}: {answers}", answers and answers[-1][0] == b"e" and
                   [each[0] for each in answers[:-1]] in ([], [b"h"]))
        serves()
    for line in ("dump ipv4FinalResolve", "monitor"):
        with ask(line) as client:
            client.sendall(frame(b"r", b"count"))
            answers = raw_frames(client)
            expect(f"a command amid {line}: {answers[-2:]}", b"ahead of the answer" in answers[-1][1] and
                   [each[0] for each in answers[-2:]] == [b"x", b"e"])
    for pattern in ("(" * 60000, "((i?){99}){99}", "((i*)*)*b"):
        with ask(f"tables {pattern}") as client:
            kind = b""
            while kind not in (b"x", None):
                kind = receive(client)[0]
            expect(f"a pattern is taken or refused: {pattern[:20]}", kind == b"x")
    for part in range(1, len(HELLO + frame(b"r", b"count")), 3):
        connect((HELLO + frame(b"r", b"count"))[:part]).close()
    slow = [connect((HELLO + frame(b"r", b"count"))[:10]) for _ in range(10)]  # go no further
    serves()
    for client in slow:
        client.close()


def resident(process):
    with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmRSS"))


def dumps_left(process):
    """Clients that leave in the middle of a dump, or do not read on."""
    dump = "dump ipv4FinalResolve -j"
    for _ in range(30):
        client = ask(dump)
        client.recv(2000)
        client.close()
    threads = f"/proc/{process.pid}/task"
    eventually("the threads of those that left end", lambda: len(os.listdir(threads)) <= 4)
    waiting = [ask("monitor") for _ in range(5)]
    for client in waiting:
        client.close()
    eventually("who leaves a monitor ends it", lambda: len(os.listdir(threads)) <= 4)
    before = resident(process)
    stuck = [ask(dump) for _ in range(20)]
    for client in stuck:
        client.recv(10)
    for _ in range(10):
        serves()
    grown = resident(process) - before
    expect(f"what is not read is not kept: {grown} KiB of 20 clients' 220 MB", grown < 100000)
    stuck[0].sendall(frame(b"i"))
    rest = b""
    while not rest.endswith(frame(b"x", b"130")):
        piece = stuck[0].recv(65536)
        expect("an interrupt reaches one who reads late", piece)
        rest = rest[-100:] + piece
    for client in stuck:
        client.close()


def many():
    for client in [ask("dump ipv4FinalResolve") for _ in range(MOST_CLIENTS)]:
        client.close()  # his place is waited for, below
    waiting = [connect(HELLO) for _ in range(MOST_CLIENTS)]
    for client in waiting:
        expect("all are greeted", receive(client)[0] == b"h")
    code, _, errors = attached("count")
    expect(f"one too many is told: {errors}", code == 4 and f"{MOST_CLIENTS} clients already" in errors)
    for client in waiting:
        client.close()
    silent = [connect(HELLO[:number % 3]) for number in range(MOST_CLIENTS)]
    serves()
    told = raw_frames(silent[0])
    expect(f"who never greets gives way: {told}", len(told) == 1 and b"no greeting" in told[0][1])
    for client in silent:
        client.close()
    deaf = [ask("dump ipv4FinalResolve") for _ in range(MOST_CLIENTS)]
    for client in deaf:
        client.sendall(frame(b"r", b"count"))
    eventually("who is sent away and does not read gives way", lambda: attached("count")[0] == 0)
    for client in deaf:
        client.close()
    wrong = []

    def work(number):
        client = connect(HELLO)
        if receive(client)[0] != b"h":
            wrong.append("greeting")
        host = f"vrfId=2 dip=10.1.0.{number}"
        for line in (f"add ipv4Host {host} setNextHop nextHop={number}", f"show ipv4Host {host}", "tables",
                     f"delete ipv4Host {host}"):
            client.sendall(frame(b"r", line.encode()))
            kind, text = receive(client)
            while kind in (b"t", b"l"):
                if line.startswith("show") and kind == b"l" and f"nextHop={number}\n".encode() not in text:
                    wrong.append(text)
                kind, text = receive(client)
            if (kind, text) != (b"x", b"0"):
                wrong.append((line, kind, text))
        client.close()

    workers = [threading.Thread(target=work, args=(number,)) for number in range(50)]
    for each in workers:
        each.start()
    for each in workers:
        each.join()
    expect(f"50 clients at once: {wrong[:3]}", not wrong)


def strangers():
    """Another user, even where the file lets him in. Takes root to try."""
    if os.geteuid() != 0:
        return
    os.chmod(SOCKET, 0o666)
    os.chmod(FOLDER, 0o755)
    child = os.fork()
    if child == 0:
        os.setgroups([])
        os.setgid(65534)
        os.setuid(65534)
        client = socket.socket(socket.AF_UNIX)
        client.connect(SOCKET)
        os._exit(0 if b"65534 may not use" in client.recv(1000) else 1)
    expect("another user is turned away", os.waitpid(child, 0)[1] == 0)
    os.chmod(SOCKET, 0o600)


the_file()
two_at_once()
with server(TVSH, SOCKET) as serving:
    for test in (sessions, turns, lambda: fill(100000), at_terminal, hostile, lambda: dumps_left(serving), many, strangers):
        test()
    lively = ask("dump ipv4FinalResolve")  # the end does not wait for him
    lively.recv(10)

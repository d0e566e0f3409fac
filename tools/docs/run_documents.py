#!/usr/bin/env python3
"""Runs what the documents show, and compares. Fenced blocks say by their first words what they are:

    ```console           a session of a shell: lines behind '$ ' are run, and the lines below are what they print
    ```console bare      the same, on a bare machine only (--bare): it installs packages
    ```c route.c         a file, written into the folder where the sessions run; any language and name will do
    ```tvsh              a session of tvsh: lines behind 'tvsh> ' are its commands, the others what they print
    ```tvsh --attach S   the same, each command by a tvsh with these options
    ```tvsh quotes PAGE  lines that stand in one session of another page so, which runs them
    ```sh                lines for a person to run, of scripts/demo and scripts/test alone

A document's sessions run one after the other in one shell, in an empty folder. In what is printed '[...]' stands for
anything within a line, and on a line of its own for any lines. Every block has to be one of these, and every link to a
file or a heading has to lead somewhere.
"""
# SPDX-License-Identifier: Apache-2.0
import argparse
import contextlib
import difflib
import os
import pathlib
import re
import secrets
import shlex
import signal
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^( *)```+(.*)$")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
PROMPT, SHELL_PROMPT = "$ ", "tvsh> "
ANYTHING = "[...]"
FOR_A_PERSON = re.compile(r"^scripts/(demo|test)\b")


class Wrong(Exception):
    """What a document shows is not so."""


def blocks_of(text):
    """Fenced blocks: line number, words behind the fence, lines. An indented block is told as one without words."""
    inside, previous = None, ""
    for number, line in enumerate(text.split("\n"), 1):
        fence = FENCE.match(line)
        if inside is None and fence:
            inside = (number, fence[2].split(), [], len(fence[1]))
        elif inside is not None and fence and not fence[2].strip():
            yield inside[:3]
            inside = None
        elif inside is not None:
            inside[2].append(line[inside[3]:])
        elif line.startswith("    ") and not previous.strip() and not re.match(r" *([-*]|\d+\.) ", line):
            yield number, [], [line]
        previous = line
    if inside is not None:
        raise Wrong(f"line {inside[0]}: the block has no end")


def pattern_of(expected):
    """The regular expression of what a session prints."""
    parts = []
    for line in expected:
        if line == ANYTHING:
            parts.append(r"(?:.*\n)*?")
        else:
            parts.append(".*".join(re.escape(piece) for piece in line.split(ANYTHING)) + r"\n")
    return "".join(parts)


def compare(number, what, expected, printed):
    lines = printed.split("\n")
    if lines and lines[-1] == "":
        lines.pop()
    if re.fullmatch(pattern_of(expected), "".join(line + "\n" for line in lines)):
        return
    difference = difflib.unified_diff(expected, lines, "in the document", "printed", lineterm="")
    raise Wrong(f"line {number}: '{what}' prints something else\n" + "\n".join(difference))


def sessions_of(number, lines, prompt):
    """Commands of a block with the lines that each prints; a command goes on behind a backslash."""
    found = []
    for at, line in enumerate(lines, number + 1):
        if found and found[-1][1].endswith("\\") and not found[-1][2]:
            found[-1][1] += "\n" + line
        elif line.startswith(prompt):
            found.append([at, line[len(prompt):], []])
        elif found:
            found[-1][2].append(line)
        else:
            raise Wrong(f"line {at}: a session begins with '{prompt}'")
    return found


class Shell:
    """A shell that lives as long as a document."""

    def __init__(self, command, environment, folder):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, env=environment, cwd=folder,
                                        start_new_session=True)

    def run(self, text):
        """What the text prints, and its exit code."""
        mark = secrets.token_hex(8)
        self.process.stdin.write(f"{{ {text}\n}} </dev/null\nprintf '\\n{mark} %d\\n' $?\n")
        self.process.stdin.flush()
        printed = ""
        for line in self.process.stdout:
            if line.startswith(mark):
                # The mark begins on a line of its own, whatever was printed ahead of it.
                return printed.removesuffix("\n"), int(line.split()[1])
            printed += line
        raise Wrong(f"'{text}' ended the shell")

    def write(self, name, lines):
        mark = secrets.token_hex(8)
        self.must("\n".join([f"cat > {shlex.quote(name)} <<'{mark}'", *lines, mark]))

    def must(self, text):
        printed, status = self.run(text)
        if status != 0:
            raise Wrong(f"'{text}': exit code {status}\n{printed}")

    def end(self):
        """Ends it, and what still runs in its background."""
        self.process.stdin.close()
        self.process.wait()
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, signal.SIGTERM)


def run_tvsh(shell, number, options, sessions):
    """Commands of the shell for the switch: one session, or where it is attached to a program, one for each."""
    if options:
        for at, command, expected in sessions:
            printed, _ = shell.run(shlex.join(["tvsh", *options, "-c", command]))
            compare(at, command, expected, printed)
        return
    shell.write(".tvsh_commands", [command for _, command, _ in sessions])
    printed, _ = shell.run("tvsh -f - <.tvsh_commands; rm .tvsh_commands")
    compare(number, "tvsh", [line for _, _, expected in sessions for line in expected], printed)


def check_quotation(number, lines, document):
    """What is quoted has to stand in one block of the document, which is run there."""
    if not document.exists():
        raise Wrong(f"line {number}: '{document.name}' is quoted, and not there")
    for _, words, there in blocks_of(document.read_text()):
        if words[:1] == ["tvsh"] and words[1:2] != ["quotes"]:
            if any(there[at:at + len(lines)] == lines for at in range(len(there))):
                return
    raise Wrong(f"line {number}: no session of {document.name} goes like this")


def run_block(shell, number, words, lines, bare, folder):
    """Runs a block of a document in a folder, and gives how many things were compared."""
    kind = words[0] if words else ""
    if kind == "console":
        if words[1:] not in ([], ["bare"]):
            raise Wrong(f"line {number}: a session is '```console' or '```console bare'")
        if "bare" in words and not bare:
            return 0
        sessions = sessions_of(number, lines, PROMPT)
        for at, command, expected in sessions:
            printed, status = shell.run(command)
            compare(at, command, expected, printed)
            if status != 0 and not expected:
                raise Wrong(f"line {at}: '{command}' has the exit code {status}")
        return len(sessions)
    if kind == "tvsh" and words[1:2] == ["quotes"] and len(words) == 3:
        check_quotation(number, lines, folder / words[2])
        return 1
    if kind == "tvsh":
        sessions = sessions_of(number, lines, SHELL_PROMPT)
        run_tvsh(shell, number, words[1:], sessions)
        return len(sessions)
    if kind == "sh":
        for at, line in enumerate(lines, number + 1):
            if not FOR_A_PERSON.match(line):
                raise Wrong(f"line {at}: only scripts/demo and scripts/test go unproved; make it a '```console'")
        return 0
    if len(words) == 2:
        shell.write(words[1], lines)
        return 1
    raise Wrong(f"line {number}: nobody can tell how to prove this block ({__file__} tells the kinds)")


def anchors_of(path):
    """Names under which the headings of a document are reached."""
    headings = re.findall(r"^#+ +(.*)$", path.read_text(), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def check_links(path, text, counted):
    for number, line in enumerate(text.split("\n"), 1):
        for link in LINK.findall(re.sub(r"`[^`]*`", "", line)):
            if re.match(r"https?://|mailto:", link):
                raise Wrong(f"line {number}: '{link}' leads out of the repository")
            name, _, anchor = link.partition("#")
            target = (path.parent / name).resolve() if name else path
            if not target.exists():
                raise Wrong(f"line {number}: '{link}' leads nowhere")
            if anchor and anchor not in anchors_of(target):
                raise Wrong(f"line {number}: '{name or path.name}' has no heading '{anchor}'")
            counted["links"] += 1


def environment_of(prefix, libraries):
    """As if the prefix were the system's own."""
    environment = dict(os.environ, LC_ALL="C.UTF-8", TERM="dumb")
    if prefix:
        for name, folder in (("PATH", "bin"), ("LD_LIBRARY_PATH", libraries), ("LIBRARY_PATH", libraries),
                             ("PKG_CONFIG_PATH", f"{libraries}/pkgconfig"), ("CMAKE_PREFIX_PATH", ""),
                             ("MANPATH", "share/man"), ("C_INCLUDE_PATH", "include"),
                             ("CPLUS_INCLUDE_PATH", "include")):
            rest = environment.get(name)
            environment[name] = f"{prefix}/{folder}" + (f":{rest}" if rest else "")
    return environment


def run_document(path, arguments, counted):
    text = path.read_text()
    check_links(path, text, counted)
    with tempfile.TemporaryDirectory() as folder:
        if arguments.source:
            (pathlib.Path(folder) / "tarvex_pd").symlink_to(arguments.source.resolve())
        if arguments.build:
            (pathlib.Path(folder) / "build").mkdir()
            (pathlib.Path(folder) / "build" / "release").symlink_to(arguments.build.resolve())
        shell = Shell(shlex.split(arguments.shell), environment_of(arguments.prefix, arguments.libraries), folder)
        try:
            for number, words, lines in blocks_of(text):
                counted["things"] += run_block(shell, number, words, lines, arguments.bare, path.parent)
        finally:
            shell.end()


def main():
    parser = argparse.ArgumentParser(description="Runs what documents show, and compares.")
    parser.add_argument("documents", nargs="+", type=pathlib.Path)
    parser.add_argument("--prefix", help="where the project is installed (default: in the system)")
    parser.add_argument("--libraries", default="lib", help="folder of the libraries within the prefix")
    parser.add_argument("--build", type=pathlib.Path,
                        help="a build folder, which sessions find as build/release where they run")
    parser.add_argument("--source", type=pathlib.Path,
                        help="the sources, which sessions find as tarvex_pd where they run")
    parser.add_argument("--shell", default="bash", help="the shell of the sessions (default: %(default)s)")
    parser.add_argument("--bare", action="store_true", help="this is a bare machine: install the packages, too")
    arguments = parser.parse_args()
    counted, wrong = {"things": 0, "links": 0}, 0
    for document in arguments.documents:
        try:
            run_document(document.resolve(), arguments, counted)
        except Wrong as what:
            wrong += 1
            print(f"{document}: {what}", file=sys.stderr)
    print(f"documents: {len(arguments.documents)}; {counted['things']} commands and files, {counted['links']} links, "
          f"wrong: {wrong}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""zsh_completion_test.py TVSH COMPLETION: types at zsh what the completion for it is to go on with.

SPDX-License-Identifier: Apache-2.0
"""
import os
import pathlib
import re
import shutil
import sys
import tempfile

import pexpect

TVSH, COMPLETION = (os.path.realpath(path) for path in sys.argv[1:])
# What stands in the line is told on a line of its own, and dropped.
SETUP = """PROMPT='> '
fpath=($PWD $fpath)
autoload -Uz compinit && compinit -u -d $PWD/dump
setopt no_beep no_list_ambiguous
KEYTIMEOUT=1
LISTMAX=10000
tell() { print -r "<$BUFFER>"; zle send-break }
zle -N tell
bindkey '^X' tell
bindkey '^I' complete-word
"""
# What is typed ahead of the key, and what the line is then.
GOES_ON = {
    "tvsh --comm": "tvsh --command=",
    "tvsh --comm\t x": "tvsh --command x",
    "tvsh --color al": "tvsh --color always ",
    "tvsh -c 'sche": "tvsh -c 'schema' ",
    "tvsh -c 'dump ipv4H": "tvsh -c 'dump ipv4Host",
    "tvsh -c 'add ipv4Host d": "tvsh -c 'add ipv4Host dip=",
    "tvsh -c 'sim loo": "tvsh -c 'sim lookup",
    "tvsh --device ": "tvsh --device ",
    "tvsh sche": "tvsh schema ",
    "tvsh --attach socket --raw dump ipv4H": "tvsh --attach socket --raw dump ipv4Host ",
    "tvsh add ipv4Host vrfId=1 setNextHop n": "tvsh add ipv4Host vrfId=1 setNextHop nextHop=",
    "tvsh --attach sock": "tvsh --attach socket ",
    "tvsh --attach=sock": "tvsh --attach=socket ",
    "tvsh --color=al": "tvsh --color=always ",
    "tvsh load sock": "tvsh load socket ",
    "tvsh save fol": "tvsh save folder/",
}
OFFERS = {
    "tvsh -c 'me": ["member +-- ", "members +-- ", "meters +-- "],
    "tvsh --": ["--attach +-- ", "--serve +-- ", "--raw +-- "],
}


def main():
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(COMPLETION, pathlib.Path(folder) / "_tvsh")
        (pathlib.Path(folder) / ".zshrc").write_text(SETUP, encoding="ascii")
        (pathlib.Path(folder) / "socket").touch()
        (pathlib.Path(folder) / "folder").mkdir()
        environment = {**os.environ, "ZDOTDIR": folder, "TERM": "dumb",
                       "PATH": f"{os.path.dirname(TVSH)}:{os.environ['PATH']}"}
        shell = pexpect.spawn("zsh", ["-d", "-i"], cwd=folder, env=environment, encoding="utf-8", timeout=60,
                              dimensions=(200, 250))
        shell.expect("> ")
        faults = []
        for begun, wanted in GOES_ON.items():
            shell.send(f"{begun}\t\x18")
            shell.expect("<([^>\r\n]*)>\r\n")
            if shell.match[1] != wanted:
                faults.append(f"{begun}: wanted '{wanted}', found '{shell.match[1]}'")
        for begun, offered in OFFERS.items():
            shell.send(f"{begun}\t\t\x18")
            shell.expect("<[^>\r\n]*>\r\n")
            faults += [f"{begun}: '{each}' is not offered: {shell.before}" for each in offered
                       if not re.search(each, shell.before)]
        shell.close()
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

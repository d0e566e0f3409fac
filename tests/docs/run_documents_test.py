#!/usr/bin/env python3
"""The runner of documents sees what is wrong in one."""
# SPDX-License-Identifier: Apache-2.0
import pathlib
import subprocess
import sys
import tempfile

RUNNER = pathlib.Path(__file__).resolve().parents[2] / "tools" / "docs" / "run_documents.py"

GOOD = """# A good one
[itself](good.md#a-good-one)

```c hello.c
int main(void) { return 3; }
```

```console
$ place=$PWD; echo one; echo two >&2
one
two
$ printf 'took %d s' 7
took [...] s
$ seq 1 9
1
[...]
9
$ cat hello.c | \\
  wc -l
1
$ cd / && test "$place" != "$PWD"
```

```bash tvsh
echo "$*"
```

```console
$ chmod +x tvsh; PATH=$PWD:$PATH; sleep 1000 & cd /
```

```tvsh --attach s
tvsh> count 'a'
--attach s -c count 'a'
tvsh> exit
--attach s -c exit
```

```tvsh quotes good.md
tvsh> exit
--attach s -c exit
```

```sh
scripts/demo     # takes its time
```
"""

BAD = {
    "other output": "```console\n$ echo one\ntwo\n```\n",
    "more output": "```console\n$ seq 1 2\n1\n```\n",
    "less output": "```console\n$ true\n1\n```\n",
    "a failing command": "```console\n$ false\n```\n",
    "no prompt": "```console\necho one\n```\n",
    "a kind of block that nobody knows": "```python\nprint()\n```\n",
    "a block without words": "```\necho\n```\n",
    "an indented block": "Text:\n\n    echo one\n",
    "a line for a person that is none": "```sh\nmake install\n```\n",
    "a block without an end": "```console\n$ true\n",
    "a shell that ends": "```console\n$ exit 0\n```\n",
    "a quotation of nothing": "```tvsh quotes nowhere.md\ntvsh> exit\n```\n",
    "a quotation that is its own source": "```tvsh quotes bad.md\ntvsh> exit\n```\n",
    "a link to no file": "[there](nowhere.md)\n",
    "a link to no heading": "# Here\n[there](#there)\n",
    "a link out of the repository": "[there](https://example.invalid/)\n",
}


def run(name, text):
    with tempfile.TemporaryDirectory() as folder:
        document = pathlib.Path(folder) / name
        document.write_text(text)
        return subprocess.run([sys.executable, RUNNER, document], capture_output=True, text=True, check=False)


def main():
    good = run("good.md", GOOD)
    faults = [] if good.returncode == 0 else [f"the good document: {good.stdout}{good.stderr}"]
    faults += [f"not seen: {what}" for what, text in BAD.items() if run("bad.md", text).returncode != 1]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Measures the shell: its start, and dump, save, load and diff of a full routing table, with the memory that they take.

Each figure is the best of some runs of `tvsh` in a process of its own: seconds on the clock, seconds of the processor,
and the megabytes by which the work raised the largest size of the process. Work on a loaded table is told without the
load: the same script is run with it and without it.

SPDX-License-Identifier: Apache-2.0
"""
import argparse
import json
import os
import pathlib
import sys
import tempfile
import time

TABLES = ("ipv4ShortMaskLpm", "ipv6ShortMaskLpm", "ipv4Partition", "ipv6Partition", "ipv4FinalResolve",
          "ipv6FinalResolve", "ipv6LgMaskFinalResolve", "ipv6LgMaskPartition", "ipv4Host", "ipv6Host")
AIMS = {"tables": 0.02, "dump as text": 2, "dump as JSON": 3, "load": 5}


def run(tvsh, script):
    """Seconds on the clock and of the processor, and megabytes, of one run of a script."""
    with tempfile.TemporaryFile("w+") as given, open(os.devnull, "w", encoding="utf-8") as nowhere:
        given.write(script)
        given.seek(0)
        begin = time.perf_counter()
        child = os.posix_spawn(tvsh, [tvsh, "-f", "-"], os.environ,
                               file_actions=[(os.POSIX_SPAWN_DUP2, given.fileno(), 0),
                                             (os.POSIX_SPAWN_DUP2, nowhere.fileno(), 1)])
        _, status, used = os.wait4(child, 0)
        elapsed = time.perf_counter() - begin
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"shell_speed: a script failed:\n{script}")
    return elapsed, used.ru_utime + used.ru_stime, used.ru_maxrss / 1024


def best(tvsh, script, runs):
    """The best of each figure."""
    return [min(figures) for figures in zip(*(run(tvsh, script) for _ in range(runs)))]


def measure(tvsh, routes, runs):
    """Figures of everything, by name."""
    with tempfile.TemporaryDirectory() as folder:
        saved = pathlib.Path(folder) / "table.json"
        loading = f"load-routes {routes}\n"
        figures = {"tables": best(tvsh, "tables\n", max(runs, 10))}
        routes_alone = best(tvsh, loading, runs)
        figures["load-routes"] = routes_alone
        after = {"dump as text": "".join(f"dump {table}\n" for table in TABLES),
                 "dump as JSON": "".join(f"dump {table} -j\n" for table in TABLES),
                 "save": f"save {saved}\n"}
        for name, script in after.items():
            whole = best(tvsh, loading + script, runs)
            figures[name] = [max(0.0, both - alone) for both, alone in zip(whole, routes_alone)]
        figures["load"] = best(tvsh, f"load {saved}\n", runs)
        loaded = best(tvsh, f"load {saved}\ndiff live {saved}\n", runs)
        figures["diff"] = [max(0.0, both - alone) for both, alone in zip(loaded, figures["load"])]
        return figures, saved.stat().st_size


def main():
    """Measures and tells."""
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("tvsh", type=os.path.realpath)
    parser.add_argument("routes", type=os.path.realpath, help="the file of scripts/fetch_routes, or a smaller one")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--json", type=pathlib.Path, help="write the figures here too")
    chosen = parser.parse_args()
    figures, size = measure(chosen.tvsh, chosen.routes, chosen.runs)
    print(f"{'':14}{'seconds':>10}{'processor':>11}{'aim':>7}{'share':>8}{'MB more':>9}")
    for name, (elapsed, processor, megabytes) in figures.items():
        aim = AIMS.get(name)
        told = f"{aim:7g}{elapsed / aim:8.2f}" if aim else " " * 15
        print(f"{name:14}{elapsed:10.3f}{processor:11.3f}{told}{megabytes:9.1f}")
    print(f"saved file: {size / 1e6:.1f} MB")
    if chosen.json:
        told = {"routes": os.path.basename(chosen.routes), "figures": figures, "aims": AIMS, "file_bytes": size}
        chosen.json.write_text(json.dumps(told, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()

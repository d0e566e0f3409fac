#!/usr/bin/env python3
"""Measures one part of the benchmarks and puts its figures into a file of results.

SPDX-License-Identifier: Apache-2.0
"""
import argparse
import datetime
import json
import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys
import tempfile
import time

REPOSITORY = pathlib.Path(__file__).resolve().parent.parent
LIBRARY = "libtv_bf_pd_mpls_baremetal.so.0"
SWITCH = "TARVEX_HARDENING"  # the whole; each kind has one of its own, of a longer name


def output_of(*command, **options):
    """What a command prints; its failure ends the measurement."""
    return subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, text=True, check=True,
                          **options).stdout


class Measurement:
    """The parts, each a method that gives its figures."""

    def __init__(self, build, quick, routes):
        self.build = build
        self.quick = quick
        self.routes = routes

    def program(self, name):
        """Path of a benchmark program."""
        return next((self.build / "bench").glob(f"*/{name}"))

    def counted(self, name, rounds, *arguments):
        """Figures of pairs of functions of a program."""
        with tempfile.NamedTemporaryFile(mode="r", suffix=".json") as figures:
            output_of(sys.executable, REPOSITORY / "bench/count_instructions.py", "--rounds", rounds, "--json",
                      figures.name, "--pairs", self.program(name), *arguments)
            return json.load(figures)

    def timed(self, name):
        """Nanoseconds of processor time of each benchmark of a program: the best of some repetitions."""
        repetitions, seconds = (1, 0.02) if self.quick else (9, 0.2)
        told = json.loads(output_of(self.program(name), "--benchmark_format=json", f"--benchmark_min_time={seconds}",
                                    f"--benchmark_repetitions={repetitions}",
                                    "--benchmark_enable_random_interleaving=true", stderr=subprocess.DEVNULL))
        times = {}
        for run in told["benchmarks"]:
            if run.get("run_type") != "iteration":
                continue
            each = 1e9 / run["items_per_second"] if "items_per_second" in run else run["cpu_time"]
            times[run["run_name"]] = min(each, times.get(run["run_name"], each))
        return times

    def instructions(self):
        """Instructions of the basket's calls against functions written by hand."""
        return self.counted("basket_rounds", 340)

    def limit(self):
        """Times of the same."""
        times = self.timed("basket_speed")
        calls = dict.fromkeys(name.split("/")[0] for name in times)
        return [{"what": call, "library_ns": times[f"{call}/library"], "other_ns": times[f"{call}/by hand"]}
                for call in calls]

    def yardsticks(self):
        """One route by the library and by what engineers know."""
        return self.timed("yardsticks")

    def texts(self):
        """Texts against formatted output, and the text of an entry against the read in it."""
        with tempfile.NamedTemporaryFile(mode="r", suffix=".json") as figures:
            output_of(self.program("text_speed"), "--json", figures.name)
            speeds = json.load(figures)
        reads = []
        for entries in [1000] if self.quick else [1000, 10_000, 100_000, 1_000_000]:
            read, text = map(float, output_of(self.program("scale"), "read", entries).split())
            reads.append({"entries": entries, "read_ns": read, "entry_value_ns": text})
        return {"speeds": speeds, "entry_value": self.counted("entry_value_rounds", 1000)[0], "reads": reads}

    def stripped(self, folder):
        """The library without what only debuggers read, in a folder."""
        stripped = pathlib.Path(folder) / LIBRARY
        output_of("strip", "-o", stripped, self.build / "src" / LIBRARY)
        return stripped

    def hardening(self):
        """The basket and the library's size with all hardening, with each kind left off, and with none."""
        listed = re.findall(rf"^({SWITCH}\w*):BOOL=", (self.build / "CMakeCache.txt").read_text(encoding="utf-8"), re.M)
        figures = {}
        for off in [None, *sorted(listed)]:
            name = off.lower() if off else "all"
            build = self.build / "hardening" / name
            output_of("cmake", "-S", REPOSITORY, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
                      "-DBUILD_TESTING=OFF", *(f"-D{switch}={'OFF' if switch == off else 'ON'}" for switch in listed))
            output_of("cmake", "--build", build, "-j", os.cpu_count(), "--target", "basket_rounds")
            variant = Measurement(build, self.quick, self.routes)
            with tempfile.TemporaryDirectory() as folder:
                size = variant.stripped(folder).stat().st_size
            figures[off or "all"] = {"calls": {f["what"]: f["library"] for f in variant.instructions()},
                                     "stripped_bytes": size}
        return figures

    def start(self):
        """The library as a file, and the time to load it."""
        library = self.build / "src" / LIBRARY
        with tempfile.TemporaryDirectory() as folder:
            stripped = self.stripped(folder)
            size = stripped.stat().st_size
            milliseconds = float(output_of(self.program("start"), stripped))
        relocations = output_of("readelf", "-rW", library)
        relative = re.search(r"'\.relr\.dyn'.*\n\s*(\d+) offsets", relocations)
        dynamic = output_of("readelf", "-dW", library)
        return {"stripped_bytes": size, "dlopen_ms": milliseconds,
                "symbol_relocations": len(re.findall(r"R_\w+_(?:JUMP_SLOT|GLOB_DAT|64|ABS64)", relocations)),
                "relative_relocations": int(relative.group(1)) if relative else
                                        len(re.findall(r"R_\w+_RELATIV", relocations)),
                "init_array_bytes": int(re.search(r"INIT_ARRAYSZ\)\s+(\d+)", dynamic).group(1)),
                "needed": re.findall(r"NEEDED\).*\[(.*)\]", dynamic)}

    def scale(self):
        """Speed and memory by the number of entries, and two writers against one."""
        sizes = [1000, 10_000] if self.quick else [1000, 10_000, 100_000, 1_000_000, 10_000_000]
        fills = []
        for entries in sizes:
            turns = 1 if self.quick or entries > 1_000_000 else 5
            best = {}
            for way in ("library", "driver"):
                best[way] = min((tuple(map(float, output_of(self.program("scale"), "fill", way, entries).split()))
                                 for _ in range(turns)))
            fills.append({"entries": entries, "seconds": best["library"][0], "bytes_each": best["library"][1],
                          "driver_seconds": best["driver"][0]})
        own = [float(output_of(sys.executable, REPOSITORY / "bench/count_instructions.py", "--rounds", 1000, "--own",
                               LIBRARY, self.program("scale"), "count", entries)) for entries in (sizes[0], sizes[-1])]
        writers = {way: list(map(float, output_of(self.program("scale"), "writers", way,
                                                  10_000 if self.quick else 500_000).split()))
                   for way in ("library", "driver")}
        return {"fills": fills, "own_instructions": own, "writers": writers}

    def shell(self):
        """The start of the shell, and its work on a routing table."""
        with tempfile.NamedTemporaryFile(mode="r", suffix=".json") as figures:
            output_of(sys.executable, REPOSITORY / "bench/tvsh/shell_speed.py", self.build / "tools/tvsh/tvsh",
                      self.routes, "--runs", 1 if self.quick else 5, "--json", figures.name)
            return json.load(figures)

    def build_times(self):
        """A clean build of everything, its tests, and a build after a change of one row, without any cache."""
        figures = {}
        environment = {name: value for name, value in os.environ.items() if "COMPILER_LAUNCHER" not in name}
        with tempfile.TemporaryDirectory() as folder:
            copy = pathlib.Path(folder) / "source"
            shutil.copytree(REPOSITORY, copy, ignore=shutil.ignore_patterns("build", ".git"))

            def timed(what, *command):
                begin, before = time.monotonic(), os.times()
                subprocess.run([str(part) for part in command], check=True, stdout=subprocess.DEVNULL,
                               env=environment, cwd=copy)
                after = os.times()
                figures[what] = {"seconds": time.monotonic() - begin,
                                 "cpu_seconds": after.children_user - before.children_user +
                                                after.children_system - before.children_system}

            made = pathlib.Path(folder) / "made"
            timed("configure", "cmake", "-S", copy, "-B", made, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo")
            timed("clean build", "cmake", "--build", made, "-j", os.cpu_count())
            if not self.quick:
                timed("tests", "ctest", "--test-dir", made, "-j", os.cpu_count())
            rows = copy / "catalogue/tarvex_switch/fib.toml"
            text = rows.read_text(encoding="utf-8")
            changed = text.replace('live = "all"', 'live = "0xf"', 1)
            if changed == text:
                sys.exit("catalogue/tarvex_switch/fib.toml has no row to change")
            rows.write_text(changed, encoding="utf-8")
            timed("after a row", "cmake", "--build", made, "-j", os.cpu_count())
        return figures


def machine():
    """What the figures were measured on."""
    model = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"))
    memory = re.search(r"MemTotal:\s+(\d+)", pathlib.Path("/proc/meminfo").read_text(encoding="utf-8"))
    release = re.search(r'PRETTY_NAME="(.*)"', pathlib.Path("/etc/os-release").read_text(encoding="utf-8"))
    return {"processor": model.group(1) if model else platform.machine(), "cores": os.cpu_count(),
            "memory_gb": round(int(memory.group(1)) / 1e6) if memory else 0,
            "system": release.group(1) if release else platform.system(),
            "compiler": output_of("c++", "--version").splitlines()[0], "load": os.getloadavg()[0]}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--results", type=pathlib.Path, required=True)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--routes", type=pathlib.Path, required=True, help="a routing table for the shell")
    parser.add_argument("part", choices=["instructions", "hardening", "limit", "yardsticks", "texts", "start",
                                         "scale", "shell", "build"])
    asked = parser.parse_args()

    measurement = Measurement(asked.build.resolve(), asked.quick, asked.routes.resolve())
    on = machine()
    figures = measurement.build_times() if asked.part == "build" else getattr(measurement, asked.part)()
    results = json.loads(asked.results.read_text(encoding="utf-8")) if asked.results.exists() else {}
    results[asked.part] = {"date": datetime.date.today().isoformat(), "machine": on, "figures": figures}
    asked.results.write_text(json.dumps(results, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()

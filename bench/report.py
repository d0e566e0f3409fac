#!/usr/bin/env python3
"""Writes the page and the plots of a folder of benchmark results, and says whether all bars held: the status is 1 if not.

usage: report.py FOLDER   (with results.json)

SPDX-License-Identifier: Apache-2.0
"""
import json
import pathlib
import sys

import charts

COMMAND = "scripts/bench"


class Report:
    """The page as it grows, with the bars that were held or missed."""

    def __init__(self, folder):
        self.folder = folder
        self.lines = []
        self.held = 0
        self.missed = []

    def add(self, *lines):
        """Lines of the page."""
        self.lines += [*lines, ""]

    def table(self, head, rows):
        """A table; a number is told with what digits it needs."""
        def cell(value):
            return f"{value:.4g}" if isinstance(value, float) else str(value)
        self.add("| " + " | ".join(head) + " |", "|" + " --- |" * len(head),
                 *("| " + " | ".join(map(cell, row)) + " |" for row in rows))

    def plot(self, name, what, svg):
        """A plot beside the page."""
        (self.folder / f"{name}.svg").write_text(svg, encoding="utf-8")
        self.add(f"![{what}]({name}.svg)")

    def bar(self, what, good, told):
        """A bar that was set, and whether it held."""
        self.add(f"{'Held' if good else '**Missed**'}: {what} ({told}).")
        if good:
            self.held += 1
        else:
            self.missed.append(f"{what} ({told})")


def instructions(report, figures):
    report.add("## Against the limit: instructions", "Twelve calls, each beside a function written by hand for that "
               "table and action alone, which fills the same records over the same driver that does nothing. "
               "Instructions of one call with all that it calls, counted by callgrind; compared records and results "
               "are the same byte for byte.")
    report.table(["call", "library", "by hand", "ratio"],
                 [(f["what"], f["library"], f["other"], f"{f['ratio']:.3f}") for f in figures])
    report.plot("instructions", "instructions of each call",
                charts.bars("Instructions", "one call", ["library", "by hand"],
                            [(f["what"], (f["library"], f["other"])) for f in figures]))
    worst = max(figures, key=lambda f: f["ratio"])
    report.bar("at most 1.05 times the instructions of hand-written code", worst["ratio"] <= 1.05,
               f"{worst['what']}: {worst['ratio']:.3f}")


def hardening(report, figures):
    kinds = {"TARVEX_HARDENING_FORTIFY": "`_FORTIFY_SOURCE`", "TARVEX_HARDENING_STACK_PROTECTOR": "stack protector",
             "TARVEX_HARDENING_STACK_CLASH": "stack clash", "TARVEX_HARDENING_CONTROL_FLOW": "control flow",
             "TARVEX_HARDENING_LINK": "link"}
    columns = {**kinds, **{switch: switch for switch in sorted(figures) if switch not in kinds and switch != "all"},
               "TARVEX_HARDENING": "all of it"}
    columns = {switch: column for switch, column in columns.items() if switch in figures}
    whole = figures["all"]
    report.add("## What hardening costs", "The same calls in builds that leave one kind of hardening off: what a kind "
               "costs is all of it minus all but this one. `link` is read-only relocations with all bound at start: the "
               "basket is called once before the count, so that names looked up late would not show.")
    report.table(["call", "hardened", *columns.values()],
                 [(call, f"{count:.1f}", *(f"{count - figures[switch]['calls'][call]:+.1f}" for switch in columns))
                  for call, count in whole["calls"].items()] +
                 [("stripped library, bytes", whole["stripped_bytes"],
                   *(f"{whole['stripped_bytes'] - figures[switch]['stripped_bytes']:+d}" for switch in columns))])


def limit(report, figures):
    report.add("## Against the limit: time", "The same calls by Google Benchmark, processor time, the best of nine "
               "runs in mixed order.")
    report.table(["call", "library, ns", "by hand, ns", "ratio"],
                 [(f["what"], f"{f['library_ns']:.1f}", f"{f['other_ns']:.1f}",
                   f"{f['library_ns'] / f['other_ns']:.2f}") for f in figures])
    report.plot("limit", "time of each call", charts.bars("Time", "ns", ["library", "by hand"], [
        (f["what"], (f["library_ns"], f["other_ns"])) for f in figures]))


def yardsticks(report, figures):
    names = {"library_add": "the library's add", "libmnl_route": "netlink route message, libmnl",
             "protobuf_arena": "protobuf message, arena", "protobuf_plain": "protobuf message, plain"}
    ours = figures["library_add"]
    report.add("## Beside yardsticks", "The same route as an entry of `ipv4Partition` in the driver's records, as a "
               "netlink message built by libmnl, and as a protobuf message of table, key and action "
               "(`bench/yardsticks/entry.proto`) built and serialised.")
    report.table(["message", "ns", "times the library"],
                 [(name, f"{figures[key]:.1f}", f"{figures[key] / ours:.1f}") for key, name in names.items()])
    report.plot("yardsticks", "time of one message", charts.bars("One message", "ns", ["time"], [
        (name, (figures[key],)) for key, name in names.items()]))
    nearest = min(value for key, value in figures.items() if key != "library_add")
    report.bar("ahead of every yardstick", ours < nearest, f"the nearest takes {nearest / ours:.2f} times as long")


def texts(report, figures):
    report.add("## Text", "Texts of the library against the same text by formatted output of the C library, and "
               "schemas against a copy of their bytes.")
    speeds = figures["speeds"]
    report.table(["text", "library, ns", "against", "ns", "times as fast"],
                 [(f["what"], f"{f['library_ns']:.1f}", f["other"], f"{f['other_ns']:.1f}",
                   f"{f['other_ns'] / f['library_ns']:.2f}") for f in speeds])
    by_printf = [f for f in speeds if "printf" in f["other"]]
    report.plot("texts", "time of one text", charts.bars("One text against formatted output", "times as fast",
                ["times as fast"], [(f["what"], (f["other_ns"] / f["library_ns"],)) for f in by_printf]))
    slowest = min(by_printf, key=lambda f: f["other_ns"] / f["library_ns"])
    report.bar("every text ahead of formatted output", slowest["library_ns"] < slowest["other_ns"],
               f"{slowest['what']}: {slowest['other_ns'] / slowest['library_ns']:.2f} times as fast")
    value = figures["entry_value"]
    report.add(f"`entry_value` makes one read: {value['library']:.0f} instructions over the stand-in where `get_entry` "
               f"takes {value['other']:.0f}. The stand-in answers from memory, the quicker the smaller the table is; a "
               "driver that asks its switch takes far longer. Entries at random, each read when the one before it has "
               "answered:")
    reads = figures["reads"]
    report.table(["entries", "`get_entry`, ns", "`entry_value`, ns", "times the read"],
                 [(f"{r['entries']:,}", f"{r['read_ns']:.1f}", f"{r['entry_value_ns']:.1f}",
                   f"{r['entry_value_ns'] / r['read_ns']:.2f}") for r in reads])
    over = [f"{r['entries']:,}" for r in reads if r["entry_value_ns"] > 1.1 * r["read_ns"]]
    report.bar("`entry_value` at the cost of its read and a tenth", not over,
               f"over it with {'; '.join(over)} entries" if over else "in tables of each size")


def start(report, figures):
    report.add("## Size and start")
    report.table(["what", "figure"], [
        ("stripped, bytes", figures["stripped_bytes"]),
        ("`dlopen` with all bound, ms", f"{figures['dlopen_ms']:.3f}"),
        ("relocations of symbols", figures["symbol_relocations"]),
        ("relative relocations, packed", figures["relative_relocations"]),
        ("needs", ", ".join(figures["needed"]))])
    report.bar("at most 1.5 MB stripped", figures["stripped_bytes"] <= 1_500_000, f"{figures['stripped_bytes']} bytes")
    report.bar("no static constructors", figures["init_array_bytes"] == 8, "one entry, of the compiler's start file")
    report.bar("needs the C library and cJSON alone",
               sorted(figures["needed"]) == ["libc.so.6", "libcjson.so.1"], ", ".join(figures["needed"]))


def scale(report, figures):
    report.add("## Scale", "Hosts added to the stand-in switch through the library, and by the driver's function alone "
               "with records that are ready but for the address.")
    fills = figures["fills"]
    report.table(["entries", "library, entries/s", "driver alone, entries/s", "bytes each"],
                 [(f["entries"], f"{f['entries'] / f['seconds']:.0f}", f"{f['entries'] / f['driver_seconds']:.0f}",
                   f"{f['bytes_each']:.0f}") for f in fills])
    report.plot("scale_speed", "entries a second by number of entries", charts.lines(
        "Entries a second", "entries", "million a second",
        [("library", [(f["entries"], f["entries"] / f["seconds"] / 1e6) for f in fills]),
         ("driver alone", [(f["entries"], f["entries"] / f["driver_seconds"] / 1e6) for f in fills])]))
    report.plot("scale_memory", "memory of each entry by number of entries", charts.lines(
        "Memory of the stand-in", "entries", "bytes each",
        [("bytes each", [(f["entries"], f["bytes_each"]) for f in fills])]))
    small, large = figures["own_instructions"]
    report.bar(f"the library's own instructions for an add the same at {fills[0]['entries']:,} and "
               f"{fills[-1]['entries']:,} entries", small == large,
               f"{small:.2f} and {large:.2f}")
    ratios = {way: two / one for way, (one, two) in figures["writers"].items()}
    beside = ratios["library"] / ratios["driver"]
    report.bar("two writers on two devices at most 1.15 times one, beside the same loop without the library",
               beside <= 1.15, f"{ratios['library']:.2f} with, {ratios['driver']:.2f} without: {beside:.2f}")


def shell(report, figures):
    report.add("## Shell", f"`tvsh` in a process of its own, with the routes of `{figures['routes']}`: the best of some "
               "runs. Of what works on a table that another command has loaded, the figures are those without the load. "
               f"The saved file has {figures['file_bytes'] / 1e6:.1f} MB.")
    report.table(["command", "seconds", "processor seconds", "MB of memory"],
                 [(name, f"{elapsed:.3f}", f"{processor:.3f}", f"{megabytes:.1f}")
                  for name, (elapsed, processor, megabytes) in figures["figures"].items()])
    for name, most in figures["aims"].items():
        elapsed = figures["figures"][name][0]
        report.bar(f"{name} in {most:g} s", elapsed <= most, f"{elapsed:.3f} s")
    largest = max(figures["figures"][f"dump as {form}"][2] for form in ("text", "JSON"))
    report.bar("memory does not grow with what is dumped", largest < 5, f"{largest:.1f} MB")


def build(report, figures):
    report.add("## Build", "Everything, without a compiler cache.")
    report.table(["step", "seconds", "processor seconds"],
                 [(step, f"{f['seconds']:.0f}", f"{f['cpu_seconds']:.0f}") for step, f in figures.items()])
    for step, most in (("clean build", 120), ("tests", 120), ("after a row", 30)):
        if step in figures:
            report.bar(f"{step} under {most} s", figures[step]["seconds"] < most, f"{figures[step]['seconds']:.0f} s")


PARTS = [instructions, hardening, limit, yardsticks, texts, start, scale, shell, build]


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: report.py FOLDER")
    folder = pathlib.Path(sys.argv[1])
    results = json.loads((folder / "results.json").read_text(encoding="utf-8"))
    report = Report(folder)
    report.add("# Benchmarks", f"Written by `{COMMAND}`, which makes figures and plots of all parts but `build` "
               f"anew; `{COMMAND} PART` makes those of one: " + ", ".join(f"`{part.__name__}`" for part in PARTS) + ".")
    report.table(["part", "date", "machine", "load before"], [
        (part.__name__, results[part.__name__]["date"],
         "{cores} cores of {processor}, {memory_gb} GB, {system}, {compiler}".format(
             **results[part.__name__]["machine"]), f"{results[part.__name__]['machine']['load']:.1f}")
        for part in PARTS if part.__name__ in results])
    for part in PARTS:
        if part.__name__ in results:
            part(report, results[part.__name__]["figures"])
    (folder / "README.md").write_text("\n".join(report.lines).rstrip("\n") + "\n", encoding="utf-8")
    for missed in report.missed:
        print(f"missed: {missed}")
    print(f"benchmarks: {report.held} bars held, {len(report.missed)} missed; figures in {folder / 'README.md'}")
    return 1 if report.missed else 0


if __name__ == "__main__":
    sys.exit(main())

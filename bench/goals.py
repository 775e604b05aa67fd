#!/usr/bin/env python3
"""goals.py BIN_DIR [--quick] [--huge] [--json]

Measures what the toolkit is meant to reach and prints a table with the goal beside each figure, as Markdown. All but the
build is measured in several rounds: the figure is their median, and beside it stands the best of them, as a machine
shared with others is slow for a while at a time. How fast it was is told by the row about tokens: whatever reads such a
file does at least that.
--quick leaves out what the module costs to build, some minutes; --huge adds joined files of 250 and 1000 MB, for
which some 5 GB of memory and 1.3 GB of disk are needed. Files are the samples beside the checkout, else the example.
"""

import argparse
import gzip
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT.parent / "shared" / "samples"
EXAMPLE = ROOT / "examples" / "small_house.ifc"
ROUNDS = 5


def output(*command):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, text=True).stdout


class Bench:
    def __init__(self, bin_dir, folder):
        self.bin, self.folder = pathlib.Path(bin_dir).resolve(), pathlib.Path(folder)

    def joined(self, megabytes):
        path = self.folder / f"joined_{megabytes}.ifc"
        output(self.bin / "kpifc_bench_join", megabytes, path)
        return path

    def sixteen(self):
        """The sample of 16 MB, or as much of the example."""
        path = self.folder / "dormitory.ifc"
        packed = next(iter(SAMPLES.glob("dormitory*.ifc.gz")), None)
        if not packed:
            return self.joined(16)
        with gzip.open(packed) as source, open(path, "wb") as target:
            shutil.copyfileobj(source, target)
        return path

    def files(self, paths, *options):
        return json.loads(output(self.bin / "kpifc_bench", "--json", *options, *paths))["files"]

    def module(self):
        return json.loads(output(self.bin / "kpifc_bench", "--json", "--only", "module"))["module"]

    def access(self, path):
        return json.loads(output(self.bin / "kpifc_bench_access", "--json", path))

    def counts(self, workload):
        return json.loads(output(self.bin / "kpifc_bench_counts", workload))

    def process(self, path):
        """Median CPU seconds of a whole run of kpifc."""
        seconds = []
        for _ in range(20):
            child = subprocess.Popen([self.bin / "kpifc", "info", path], stdout=subprocess.DEVNULL)
            usage = os.wait4(child.pid, 0)[2]
            seconds.append(usage.ru_utime + usage.ru_stime)
        return statistics.median(seconds)


def per_second(file):
    return file["bytes"] / file["open"]["cpuSeconds"] / 1e6


def per_second_by_the_clock(file):
    return file["bytes"] / file["openWallSeconds"] / 1e6


class Row:
    """What is measured again and again; of it, the median counts. `best` is max where much is wanted, else min."""

    def __init__(self, what, unit, best, goal=None):
        self.what, self.unit, self.best, self.goal = what, unit, best, goal
        self.figures = []

    def is_reached(self, figure):
        return None if self.goal is None else self.best(figure, self.goal) == figure

    def result(self):
        figure, best = statistics.median(self.figures), self.best(self.figures)
        return {"what": self.what, "unit": self.unit, "figure": figure, "best": best, "goal": self.goal,
                "reached": self.is_reached(figure), "reachedAtBest": self.is_reached(best)}


class Table:
    """Figures with their goals; the least that is wanted, or the most that is allowed."""

    def __init__(self):
        self.rows = {}

    def add(self, row, figure):
        self.rows.setdefault((row.what, row.unit), row).figures.append(figure)

    def least(self, what, figure, goal, unit):
        self.add(Row(what, unit, max, goal), figure)

    def most(self, what, figure, goal, unit):
        self.add(Row(what, unit, min, goal), figure)

    def results(self):
        return [row.result() for row in self.rows.values()]

    def markdown(self):
        lines = ["| | figure | best | goal | |", "|---|---:|---:|---:|---|"]
        for row in self.results():
            decimals = 0 if row["figure"] >= 100 else 1 if row["figure"] >= 10 else 2
            figure, best = (f"{row[key]:.{decimals}f}" for key in ("figure", "best"))
            goal = "" if row["goal"] is None else f"{row['goal']:g}"
            verdict = "" if row["reached"] is None else "reached" if row["reached"] else \
                "at best" if row["reachedAtBest"] else "not reached"
            lines.append(f"| {row['what']}, {row['unit']} | {figure} | {best} | {goal} | {verdict} |")
        return "\n".join(lines) + "\n"


def measure_files(bench, table, files):
    one = bench.files(files, "--threads", 1, "--only", "tokens,open,write,close,memory")
    two = bench.files(files, "--threads", 2, "--only", "open,memory")
    for file, other, size, peak, peak_two in zip(one, two, (16, 65), (2.1, 1.8), (2.3, 2.0)):
        table.least(f"tokens and numbers alone, one thread: {size} MB", file["tokens"]["megabytesPerSecond"], None, "MB/s")
        table.least(f"open, one thread: {size} MB", per_second(file), 350, "MB/s")
        table.most(f"peak memory / file size, one thread: {size} MB", file["memory"]["peakPerFile"], peak, "times")
        table.least(f"open, two threads, by the clock: {size} MB", per_second_by_the_clock(other), 450, "MB/s")
        table.most(f"peak memory / file size, two threads: {size} MB", other["memory"]["peakPerFile"], peak_two, "times")
        table.least(f"write, normalised: {size} MB", file["write"]["megabytesPerSecond"], 500, "MB/s")
        share = 100 * file["close"]["cpuSeconds"] / file["open"]["cpuSeconds"]
        table.most(f"close / open: {size} MB", share, 5, "%")


def measure_samples(bench, speeds):
    """Adds to the speeds by file."""
    samples = [path for path in SAMPLES.glob("*.ifc") if path.stat().st_size > 2e6]
    for file in bench.files(samples, "--threads", 1, "--only", "open") if samples else []:
        speeds.setdefault(file["file"], []).append(per_second(file))


def measure_lazily(bench, table, large):
    for file in bench.files([large], "--threads", 1, "--only", "lazy"):
        for what, name in (("findGlobalId", "one GlobalId"), ("countTypes", "instances by type")):
            figures = file["lazy"][what]
            table.most(f"opened lazily, {name}: 65 MB, time / that of opening", figures["timePerOpen"], 0.25, "times")
            table.most(f"opened lazily, {name}: 65 MB, memory / that of opening", figures["memoryPerOpen"], 1 / 6, "times")


def measure_access(bench, table, path):
    access = bench.access(path)
    single = access["nanoseconds"]
    table.least("all attributes by name: 16 MB", access["byName"][0]["perSecond"] / 1e6, 45, "million/s")
    table.most("typed get", single["typed getter, text"], 2, "ns")
    table.most("getAttr, own attribute", single["getAttr, aggregate, own"], 15, "ns")
    table.most("getAttr, six supertypes up", single["getAttr, text, 6 levels up"], 15, "ns")
    table.most("create a point with coordinates", single["create a point with coordinates"], 60, "ns")
    created = bench.counts("create")
    table.most("create a point with coordinates", created["bytes"] / created["count"], 100, "bytes")


def measure_module(bench, table):
    table.most("module: load and initialise", bench.module()["initialiseSeconds"] * 1e3, 3, "ms")
    tiny = SAMPLES / "tiny_rebro2022.ifc"
    table.most("whole process on a tiny file", bench.process(tiny if tiny.exists() else EXAMPLE) * 1e3, 15, "ms")


def measure_build(table):
    built = json.loads(output(ROOT / "bench" / "build_cost.sh", "--json"))
    table.most("module: compile at -O2", built["moduleCpuSeconds"], 60, "CPU s")
    table.most("module: stripped size", built["strippedBytes"] / 1e6, 4, "MB")


def measure_huge(bench, table, first):
    for size, path in [(65, first)] + [(size, bench.joined(size)) for size in (250, 1000)]:
        file = bench.files([path], "--threads", 1, "--only", "open,close,memory", "--runs", 3)[0]
        table.most(f"open, one thread: {size} MB joined", file["open"]["cpuSeconds"], None, "CPU s")
        table.least(f"open, one thread: {size} MB joined", per_second(file), None, "MB/s")
        table.most(f"peak memory / file size, one thread: {size} MB joined", file["memory"]["peakPerFile"], 1.8, "times")
        path.unlink()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bin_dir")
    for option in ("--quick", "--huge", "--json"):
        parser.add_argument(option, action="store_true")
    arguments = parser.parse_args()
    table, speeds = Table(), {}
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(arguments.bin_dir, folder)
        sixteen, large = bench.sixteen(), bench.joined(65)
        for _ in range(ROUNDS):
            measure_samples(bench, speeds)
            measure_files(bench, table, [sixteen, large])
            measure_lazily(bench, table, large)
            measure_access(bench, table, sixteen)
            measure_module(bench, table)
        for name, speed in sorted(speeds.items(), key=lambda item: statistics.median(item[1]))[:1]:
            for figure in speed:
                table.least(f"open, one thread: slowest sample above 2 MB ({name})", figure, 250, "MB/s")
        if not arguments.quick:
            measure_build(table)
        if arguments.huge:
            measure_huge(bench, table, large)
    print(json.dumps(table.results(), indent=2) if arguments.json else table.markdown(), end="")


sys.exit(main())

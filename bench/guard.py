#!/usr/bin/env python3
"""guard.py PROGRAM LIBRARY COUNTS [--update]

Compares what kpifc_bench_counts (PROGRAM) needs for its workloads, and the size of the stripped module (LIBRARY), with
the figures in the JSON file COUNTS: instructions under callgrind, requests for memory and bytes in use, per instance or
value. None of them depends on the speed of the machine or its load; compilers differ, so figures hold for one of them.
Fails where a figure is higher than recorded, and where it is lower by so much that it should be recorded.
--update records the figures of today. Exit code 77 where there is nothing to compare: no valgrind, other compiler.
"""

import json
import os
import platform
import re
import shutil
import subprocess
import sys
import tempfile

WORKLOADS = ("open", "write", "close", "byName", "create")
HIGHER, LOWER = 1.03, 0.90
SMALL = 0.005  # differences that mean nothing, whatever their ratio


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True)


def instructions(program, workload):
    command = ("valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", "--toggle-collect=kpMeasured")
    return int(re.search(r"Collected : (\d+)", run(*command, program, workload).stderr)[1])


def stripped_size(library):
    with tempfile.TemporaryDirectory() as folder:
        stripped = os.path.join(folder, "stripped")
        run("strip", "-o", stripped, library)
        return os.path.getsize(stripped)


def measure(program, library):
    figures = {"module, stripped MB": stripped_size(library) / 1e6}
    for workload in WORKLOADS:
        counted = json.loads(run(program, workload).stdout)
        figures[f"{workload}, instructions"] = instructions(program, workload) / counted["count"]
        figures[f"{workload}, allocations"] = counted["allocations"] / counted["count"]
        if counted["bytes"] > 0:
            figures[f"{workload}, bytes"] = counted["bytes"] / counted["count"]
    return figures


def main():
    program, library, counts, *options = sys.argv[1:]
    compiler = f"{os.environ.get('KP_COMPILER', '')} {platform.machine()}"
    if not shutil.which("valgrind"):
        print("skipped: valgrind is not installed")
        return 77
    if "--update" not in options:
        with open(counts, encoding="utf-8") as file:
            recorded = json.load(file)
        if recorded["compiler"] != compiler:
            print(f"skipped: figures are recorded for {recorded['compiler']}, this is {compiler}")
            return 77
    figures = measure(program, library)
    if "--update" in options:
        with open(counts, "w", encoding="utf-8") as file:
            json.dump({"compiler": compiler, "figures": {n: round(f, 4) for n, f in figures.items()}}, file, indent=2)
            file.write("\n")
        return 0
    failed = recorded["figures"].keys() != figures.keys()
    for name, figure in figures.items():
        before = recorded["figures"].get(name, 0)
        verdict = ""
        if abs(figure - before) > SMALL:
            verdict = "HIGHER" if figure > before * HIGHER else "lower: record it" if figure < before * LOWER else ""
        failed = failed or verdict != ""
        print(f"{name:28} {before:12.4f} -> {figure:12.4f} {verdict}")
    if failed:
        print("where that is meant: ./dev bench record")
    return 1 if failed else 0


sys.exit(main())

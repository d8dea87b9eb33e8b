#!/usr/bin/env python3
"""Counts the instructions of a step of each case and compares them with the budget.

    budget.py check|update BIN_DIRECTORY BUDGET_FILE

Uses valgrind's callgrind. The count of a build is the same on every run and every machine of the same
architecture, because processor-dependent code paths of the C library and Qt are turned off.
"""
import os
import platform
import re
import subprocess
import sys
import tempfile
from pathlib import Path

MOST_GROWTH = 0.05
PROGRAMS = ("bench_instructions", "bench_gateway_instructions")

HEADER = """\
# Instructions of one step of each case of bench/instructions.cpp, and of one value of each case of
# bench/gateway/instructions.cpp, counted on {machine}.
# script/bench --check-budget checks them, script/bench --update-budget rewrites this file.
"""


def environment():
    """The environment: nothing of the caller's but PATH, and the same code paths on all processors."""
    return {
        "PATH": os.environ["PATH"],
        "LC_ALL": "C",
        "QT_HASH_SEED": "0",
        "QT_NO_CPU_FEATURE": "sse3 ssse3 sse4.1 sse4.2 avx avx2 f16c fma bmi bmi2",
        "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-SSSE3,-SSE4_1,-SSE4_2,-AVX,-AVX2,-AVX512F,-AVX512VL,"
                          "-AVX512BW,-ERMS,-FSRM,-BMI1,-BMI2,-LZCNT,-MOVBE,-RTM,-POPCNT,"
                          "-Fast_Unaligned_Copy,-Fast_Copy_Backward,-AVX_Fast_Unaligned_Load",
    }


def counted(program):
    """Returns the instructions per step of each case of a program, by name."""
    with tempfile.TemporaryDirectory() as work:
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", "--collect-atstart=no",
             f"--callgrind-out-file={work}/out", str(program)],
            env=environment(), text=True, capture_output=True)
        if run.returncode != 0:
            sys.exit(run.stderr)
        times = {name: int(count) for name, count in (line.split() for line in run.stdout.splitlines())}
        steps = {}
        for dump in Path(work).iterdir():
            text = dump.read_text()
            case = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            total = re.search(r"^(?:summary|totals): (\d+)", text, re.MULTILINE)
            if case and total:
                steps[case.group(1)] = int(total.group(1)) // times[case.group(1)]
        return {name: steps[name] for name in times}


def read_budget(path):
    lines = [line.split() for line in Path(path).read_text().splitlines() if not line.startswith("#")]
    return {name: int(instructions) for name, instructions in lines}


def check(steps, budget):
    """Prints one line per case. Returns False if a case has grown too much or is missing on one side."""
    fine = True
    print(f"{'case':24} {'now':>10} {'budget':>10}")
    for name in sorted(steps.keys() | budget.keys()):
        if name not in steps or name not in budget:
            print(f"{name:24} is in {'the budget' if name in budget else 'the program'} only")
            fine = False
            continue
        growth = steps[name] / budget[name] - 1
        verdict = "TOO MUCH" if growth > MOST_GROWTH else "ok"
        print(f"{name:24} {steps[name]:>10} {budget[name]:>10} {100 * growth:+6.1f} %  {verdict}")
        fine = fine and growth <= MOST_GROWTH
    return fine


def main(order, directory, path):
    steps = {}
    for program in PROGRAMS:
        steps.update(counted(Path(directory) / program))
    if order == "update":
        rows = "".join(f"{name:24} {count:>8}\n" for name, count in steps.items())
        Path(path).write_text(HEADER.format(machine=platform.machine()) + rows)
        print(f"{path} written")
        return 0
    if check(steps, read_budget(path)):
        return 0
    print("bench: more than 5 % over the budget. If this is intended, run "
          "script/bench --update-budget", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

#!/usr/bin/env python3
"""Counts the instructions of an exchange on 32-bit ARM, under emulation.

    arm.py BUILD_DIRECTORY ROOT

ROOT has the libraries for ARM. Prints the instructions per step of each case, computed from the
difference between two runs, and the size of the stripped library, as JSON.
"""
import json
import subprocess
import sys
import tempfile
from pathlib import Path

CASES = ("exchange-60-unchanged", "exchange-60-words", "exchange-60-bits",
         "exchange-60-one-bit")
STEPS = 10


def run_length(program, root, case, steps):
    """Counts the instructions of a whole run: the emulator logs one line for each."""
    emulator = subprocess.Popen(
        ["qemu-arm", "-L", root, "-E", "QT_HASH_SEED=0", "-singlestep", "-d", "exec,nochain",
         "-D", "/dev/stdout", program, case, str(steps)],
        stdout=subprocess.PIPE)
    count = sum(line.startswith(b"Trace") for line in emulator.stdout)
    if emulator.wait() != 0:
        sys.exit(f"arm: {case} failed")
    return count


def stripped_size(library):
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run(["arm-linux-gnueabihf-strip", "-o", stripped.name, library], check=True)
        return Path(stripped.name).stat().st_size


def main(build, root):
    program = f"{build}/bin/bench_instructions"
    instructions = {
        case: (run_length(program, root, case, STEPS) - run_length(program, root, case, 0)) // STEPS
        for case in CASES
    }
    size = stripped_size(f"{build}/lib/libls_master_k_cnet.so")
    json.dump({"instructions": instructions, "stripped": size}, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main(*sys.argv[1:])

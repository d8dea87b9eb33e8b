#!/usr/bin/env python3
"""Measures the polling clients, each with a matching server, several times in turn.

First, client and server share one core, as on a small panel; then each has its own. In the second case
the cost of a client depends on how deeply its core sleeps until the answer arrives. The cores are fixed:
otherwise both might share one now and then, and a client's best run would be one of those. libmodbus is
also run with Qt SerialBus's server, which takes as long for an answer as cnet-plc.

    polls.py BIN_DIRECTORY POLLS RUNS

Prints the runs as a JSON list: client, cores, polls, wall and processor seconds of the client.
"""
import json
import os
import re
import subprocess
import sys
import tempfile
from contextlib import ExitStack, contextmanager
from pathlib import Path

SERVERS = {
    "plc": ["cnet-plc", "--tcp", "127.0.0.1:0"],
    "libmodbus": ["serve_libmodbus"],
    "serialbus": ["serve_serialbus"],
}

# For each measured client, its program, its server and further arguments.
PAIRS = {
    "panel": ("poll_panel", "plc"),
    "panel-captured": ("poll_panel", "plc", "captured.pcapng"),
    "libmodbus": ("poll_libmodbus", "libmodbus"),
    "libmodbus-late": ("poll_libmodbus", "serialbus"),
    "serialbus": ("poll_serialbus", "serialbus"),
}


@contextmanager
def serving(command):
    """Runs a server for the duration of the block, and yields the port that it prints."""
    server = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
    try:
        port = re.search(r"(\d+)$", server.stdout.readline().strip())
        if port is None:
            sys.exit(f"polls: {command[0]} prints no port")
        yield port.group(1)
    finally:
        server.terminate()
        server.wait()


def poll(directory, polls, runs, client_core, server_core):
    program = lambda name: str((Path(directory) / name).resolve())
    results = []
    with ExitStack() as stack:
        os.sched_setaffinity(0, {server_core})  # inherited by the programs
        ports = {
            server: stack.enter_context(serving([program(command[0]), *command[1:]]))
            for server, command in SERVERS.items()
        }
        os.sched_setaffinity(0, {client_core})
        files = stack.enter_context(tempfile.TemporaryDirectory())
        for _ in range(runs):
            for client, (name, server, *more) in PAIRS.items():
                run = subprocess.run([program(name), ports[server], str(polls), *more], cwd=files,
                                     stdout=subprocess.PIPE, text=True, timeout=300, check=True)
                results.append({"client": client, **json.loads(run.stdout)})
    return results


def main(directory, polls, runs):
    first, last = min(os.sched_getaffinity(0)), max(os.sched_getaffinity(0))
    results = []
    for cores, server_core in (("one", last), ("each", first)):
        results += [{"cores": cores, **run} for run in poll(directory, polls, runs, last, server_core)]
    json.dump(results, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))

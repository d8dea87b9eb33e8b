#!/usr/bin/env python3
"""Runs the polling clients in turn, several times, each with a server of its own kind.

Client and server share one core, as on a small panel, and then have a core each: what a client costs
there depends on how deep its core sleeps until the answer comes. Left to the system, now and then both
would run on one core after all, and the best run of a client would tell of that. libmodbus is also run with Qt SerialBus's
server, which takes as long for an answer as cnet-plc does.

    polls.py BIN_DIRECTORY POLLS RUNS

Prints a list of runs as JSON: client, cores, polls, wall and processor seconds of the client.
"""
import json
import os
import re
import subprocess
import sys
from contextlib import ExitStack, contextmanager
from pathlib import Path

SERVERS = {
    "plc": ["cnet-plc", "--tcp", "127.0.0.1:0"],
    "libmodbus": ["serve_libmodbus"],
    "serialbus": ["serve_serialbus"],
}

# What is measured: the client's program and its server.
PAIRS = {
    "panel": ("poll_panel", "plc"),
    "libmodbus": ("poll_libmodbus", "libmodbus"),
    "libmodbus-late": ("poll_libmodbus", "serialbus"),
    "serialbus": ("poll_serialbus", "serialbus"),
}


@contextmanager
def serving(command):
    """Runs a server, which prints its port, for as long as the block lasts."""
    server = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
    try:
        port = re.search(r"(\d+)$", server.stdout.readline().strip())
        if port is None:
            sys.exit(f"polls: {command[0]} tells no port")
        yield port.group(1)
    finally:
        server.terminate()
        server.wait()


def poll(directory, polls, runs, client_core, server_core):
    program = lambda name: str(Path(directory) / name)
    results = []
    with ExitStack() as stack:
        os.sched_setaffinity(0, {server_core})  # the programs inherit it
        ports = {
            server: stack.enter_context(serving([program(command[0]), *command[1:]]))
            for server, command in SERVERS.items()
        }
        os.sched_setaffinity(0, {client_core})
        for _ in range(runs):
            for client, (name, server) in PAIRS.items():
                run = subprocess.run([program(name), ports[server], str(polls)],
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

#!/usr/bin/env python3
"""A plant of simulated PLCs on lines of 38400 baud, cnet-gateway, mosquitto and a subscriber.

    plant.py BIN [--lines 25] [--tags 500] [--dead 0] [--topic grouped|each] [--age 1s]
             [--warm 10] [--seconds 60] [--folder /tmp]

All registers count milliseconds, so that everything changes all the time and each value says when it was
read. --dead adds stations to each line that never answer. Prints one JSON object.
"""
import argparse
import contextlib
import json
import os
import re
import signal
import socket
import subprocess
import tempfile
import time
from pathlib import Path

BAUD = 38400
# A read of 60 words: 21 characters there, 253 back, ten bits each. No request carries more.
WORDS_PER_SECOND = 60 / ((21 + 253) * 10 / BAUD)
TOPICS = {"grouped": "{site}/{line}/{station}", "each": "{site}/{line}/{station}/{tag}"}
TICKS = os.sysconf("SC_CLK_TCK")


def options():
    parser = argparse.ArgumentParser()
    parser.add_argument("bin", type=Path)
    parser.add_argument("--lines", type=int, default=25)
    parser.add_argument("--tags", type=int, default=500)
    parser.add_argument("--dead", type=int, default=0)
    parser.add_argument("--topic", choices=TOPICS, default="grouped")
    parser.add_argument("--age", default="1s")
    parser.add_argument("--warm", type=float, default=10)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--folder", default="/tmp")
    return parser.parse_args()


def free_port():
    with socket.socket() as own:
        own.bind(("127.0.0.1", 0))
        return own.getsockname()[1]


def wait_for(condition, what):
    end = time.monotonic() + 20
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"plant: {what} does not come up")
        time.sleep(0.05)


def listens(port):
    with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", port), 1):
        return True
    return False


class Plant:
    """The processes, each with its log in the folder."""

    def __init__(self, folder):
        self.folder = folder
        self.running = {}

    def start(self, name, *command, **variables):
        log = open(self.folder / f"{name}.log", "w")
        self.running[name] = subprocess.Popen(
            [str(word) for word in command], stdin=subprocess.DEVNULL, stdout=log, stderr=log,
            env={**os.environ, **variables})

    def stop(self):
        for process in reversed(list(self.running.values())):
            process.send_signal(signal.SIGTERM)
            process.wait()

    def complain_of_dead(self):
        for name, process in self.running.items():
            if process.poll() is not None:
                raise SystemExit(f"plant: {name} ended:\n" + (self.folder / f"{name}.log").read_text())

    def cpu_seconds(self):
        """User and system time of each process until now."""
        used = {}
        for name, process in self.running.items():
            fields = Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
            used[name] = (int(fields[11]) + int(fields[12])) / TICKS
        return used

    def memory(self, name):
        """Bytes in memory that are this process's own."""
        text = Path(f"/proc/{self.running[name].pid}/smaps_rollup").read_text()
        return 1024 * sum(int(line.split()[1]) for line in text.splitlines()
                          if line.startswith("Private_"))


def start_plc(plant, own):
    """One program with a line at each port, all with the same registers."""
    plant.start("plc", own.bin / "cnet-plc", *["--tcp", "127.0.0.1:0"] * own.lines, "--baud", BAUD,
                "--station", 1, "--ramp", f"D_W:0-{own.tags - 1}=0..65535@1",
                "--control", plant.folder / "control")

    def ports():
        return re.findall(r"listening on 127\.0\.0\.1:(\d+)", (plant.folder / "plc.log").read_text())

    wait_for(lambda: len(ports()) == own.lines, "cnet-plc")
    return ports()


def zero_of_plc(plant):
    """When the PLC's clock was 0, in milliseconds of CLOCK_MONOTONIC, and how sure that is."""
    low, high = float("-inf"), float("inf")
    with socket.socket(socket.AF_UNIX) as control:
        control.connect(str(plant.folder / "control"))
        lines = control.makefile()
        for _ in range(300):
            before = time.monotonic() * 1000
            control.sendall(b"show D_W:0\n")
            count = int(lines.readline().split()[-1])
            after = time.monotonic() * 1000
            # The clock stood between count and count + 1 at some moment between both.
            low, high = max(low, before - count - 1), min(high, after - count)
            time.sleep(0.003)
    return (low + high) / 2, (high - low) / 2


def start_broker(plant):
    port = free_port()
    (plant.folder / "mosquitto.conf").write_text(
        f"user root\nlistener {port} 127.0.0.1\nallow_anonymous true\nset_tcp_nodelay true\n"
        "max_queued_messages 0\n")
    path = os.environ["PATH"] + ":/usr/sbin"
    os.environ["PATH"] = path
    plant.start("broker", "mosquitto", "-c", plant.folder / "mosquitto.conf")
    wait_for(lambda: listens(port), "mosquitto")
    return port


def write_configuration(plant, own, ports, broker):
    rows = ["name,register,address,station,type"]
    rows += [f"t{number},D_W,{number},1,u16" for number in range(own.tags)]
    rows += [f"t{10000 + number},D_W,0,{number},u16" for number in range(2, 2 + own.dead)]
    (plant.folder / "tags.csv").write_text("\n".join(rows) + "\n")
    text = [f'[batch]\nage = "{own.age}"\n',
            f'[sink.broker]\nkind = "mqtt"\nsite = "plant"\nbrokers = "tcp:127.0.0.1:{broker}"\n'
            f'topic = "{TOPICS[own.topic]}"\n']
    text += [f'[line.l{number:02}]\nlink = "tcp:127.0.0.1:{port}"\nserial = "{BAUD},8,NONE,1"\n'
             'tags = "tags.csv"\n' for number, port in enumerate(ports)]
    (plant.folder / "gateway.toml").write_text("\n".join(text))


def measured(plant, own, broker, zero):
    before, began = plant.cpu_seconds(), time.monotonic()
    run = subprocess.run([str(own.bin / "plant_subscriber"), str(broker), str(zero), str(own.seconds)],
                         stdout=subprocess.PIPE, check=True, text=True)
    seconds = time.monotonic() - began
    used = {name: now - before[name] for name, now in plant.cpu_seconds().items()}
    result = json.loads(run.stdout)
    rate = result["values"] / result["seconds"]
    result["values_per_second"] = round(rate)
    result["share_of_lines"] = round(rate / (own.lines * WORDS_PER_SECOND), 4)
    result["cpu"] = {name: round(used[name] / seconds, 4) for name in used}
    result["cpu_us_per_value"] = round(used["gateway"] / max(result["values"], 1) * 1e6, 2)
    result["gateway_bytes"] = plant.memory("gateway")
    return result


def main():
    own = options()
    with tempfile.TemporaryDirectory(dir=own.folder) as folder:
        plant = Plant(Path(folder))
        try:
            ports = start_plc(plant, own)
            broker = start_broker(plant)
            write_configuration(plant, own, ports, broker)
            zero, unsure = zero_of_plc(plant)
            plant.start("gateway", own.bin / "cnet-gateway", "run", plant.folder / "gateway.toml",
                        STATE_DIRECTORY=folder)
            time.sleep(own.warm)
            plant.complain_of_dead()
            result = measured(plant, own, broker, zero)
            result["unsure_ms"] = round(unsure, 2)
            print(json.dumps(result))
        finally:
            plant.stop()


if __name__ == "__main__":
    main()

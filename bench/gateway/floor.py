#!/usr/bin/python3
"""How fast other publishers bring the same messages to the same broker, and nothing else: no ledger, no
tags, no promise. (The system's Python is the one that has Debian's paho.)

    floor.py paho|mosquitto_pub PORT FILE VALUES

FILE has a message a line, topic and payload with a blank between; VALUES is how many values they tell.
"""
import os
import subprocess
import sys
import time


# mosquitto_pub -l ends when the last identifier is confirmed, and they begin anew after 65535.
MOST_OF_MOSQUITTO_PUB = 60000


def with_mosquitto_pub(port, lines):
    """One topic for all: it knows no other way to read messages."""
    text = b"\n".join(line.split(b" ", 1)[1] for line in lines) + b"\n"
    subprocess.run(["mosquitto_pub", "-h", "127.0.0.1", "-p", port, "-q", "1", "-t", "plant/floor", "-l"],
                   input=text, check=True)


def with_paho(port, lines):
    import paho.mqtt.client as mqtt

    client = mqtt.Client()
    client.max_inflight_messages_set(500)
    client.max_queued_messages_set(0)
    confirmed = 0

    def count(*_):
        nonlocal confirmed
        confirmed += 1

    client.on_publish = count
    client.connect("127.0.0.1", int(port))
    client.loop_start()
    for sent, line in enumerate(lines):
        topic, payload = line.split(b" ", 1)
        client.publish(topic.decode(), payload, qos=1)
        while sent - confirmed > 2000:
            time.sleep(0.001)
    while confirmed < len(lines):
        time.sleep(0.001)
    client.disconnect()
    client.loop_stop()


def main(kind, port, file, values):
    with open(file, "rb") as messages:
        lines = messages.read().splitlines()
    values = int(values)
    if kind == "mosquitto_pub":
        values = values * len(lines[:MOST_OF_MOSQUITTO_PUB]) // len(lines)
        lines = lines[:MOST_OF_MOSQUITTO_PUB]
    before, began = os.times(), time.monotonic()
    {"paho": with_paho, "mosquitto_pub": with_mosquitto_pub}[kind](port, lines)
    seconds, after = time.monotonic() - began, os.times()
    cpu = sum(after[:4]) - sum(before[:4])
    print(f"{kind:16} {values / seconds:9.0f} values/s  {cpu / values * 1e6:6.2f} us of CPU a value")


if __name__ == "__main__":
    main(*sys.argv[1:])

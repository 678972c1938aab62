#!/usr/bin/env python3
"""Prints a table in Markdown: how many entries of LifTable `vorn` takes per second of processor time
on one core, and how much less time it takes on two, beside a program that only reads the files.

    bench/vorn/rates.py VORN [ENTRIES]

Run it where nothing else runs, or with `chrt -f 50`.
"""
import json
import os
import random
import subprocess
import sys
import tempfile
import time

vorn = sys.argv[1]
entries = int(sys.argv[2]) if len(sys.argv) > 2 else 1000000
repetitions = 5
pair = ["LifTable", "--chip", "10", "--variant", "0"]
widths = {
    "vsi": 15, "qosProfile": 8, "lifGenericData1": 16, "vlanEditVid1": 12, "vlanEditVid2": 12,
    "statObjectId": 12, "destination": 21, "eei": 24,
}


def write_files(folder):
    """The records of entries one after another, and their images as lines and in binary: blocks of
    the same values again and again."""
    some = 20000
    draw = random.Random(1)
    values = [json.dumps({name: draw.getrandbits(width) for name, width in widths.items()})
              for _ in range(some)]

    def records(first):
        return "".join(
            f'{{"table": "LifTable", "chip": "BCM88690_B0", "entry": {entry}, "fields": {fields}}}\n'
            for entry, fields in enumerate(values, first)
        ).encode()

    images = subprocess.run([vorn, "program", "--output=bytes", "-"], input=records(0),
                            stdout=subprocess.PIPE, check=True).stdout
    binary = bytes.fromhex(images.decode())
    count = some * max(1, entries // some)
    with (open(os.path.join(folder, "records.jsonl"), "wb") as record_file,
          open(os.path.join(folder, "images.txt"), "wb") as line_file,
          open(os.path.join(folder, "images.bin"), "wb") as binary_file):
        for first in range(0, count, some):
            record_file.write(records(first))
            line_file.write(images)
            binary_file.write(binary)
    return count


def measured(command, cores):
    """The least processor time and the least elapsed time of some runs on these cores."""
    best = [float("inf"), float("inf")]
    for _ in range(repetitions):
        begin = time.monotonic()
        child = os.fork()
        if child == 0:
            os.sched_setaffinity(0, sorted(os.sched_getaffinity(0))[:cores])
            with open(os.devnull, "wb") as null:
                os.dup2(null.fileno(), 1)
            os.execvp(command[0], command)
        _, status, usage = os.wait4(child, 0)
        if status != 0:
            sys.exit(f"{command} failed")
        used = usage.ru_utime + usage.ru_stime
        best = [min(best[0], used), min(best[1], time.monotonic() - begin)]
    return best


def main():
    with tempfile.TemporaryDirectory() as folder:
        count = write_files(folder)
        path = {name: os.path.join(folder, name)
                for name in ("records.jsonl", "images.txt", "images.bin")}
        decode = [vorn, "decode", *pair]
        eight = ["--fields", ",".join(widths)]
        lines = ["--file", path["images.txt"]]
        binary = ["--file", path["images.bin"]]
        rows = [
            ("`program`, 8 fields", 2, [vorn, "program", path["records.jsonl"]]),
            ("`decode --csv`, lines, 8 fields", 5, [*decode, "--csv", *eight, *lines]),
            ("`decode --csv`, lines, 23 fields", 5, [*decode, "--csv", *lines]),
            ("`decode --json`, lines, 8 fields", 4, [*decode, "--json", *eight, *lines]),
            ("`decode --json`, lines, 23 fields", 4, [*decode, "--json", *lines]),
            ("`decode --csv`, binary, 23 fields", 5, [*decode, "--csv", *binary]),
            ("`decode --where 'vsi in 1..33'`, binary", 20,
             [*decode, "--csv", "--where", "vsi in 1..33", *binary]),
            ("`cat`, records", "", ["cat", path["records.jsonl"]]),
            ("`wc -l`, records", "", ["wc", "-l", path["records.jsonl"]]),
            ("`cat`, lines", "", ["cat", path["images.txt"]]),
            ("`wc -l`, lines", "", ["wc", "-l", path["images.txt"]]),
            ("`cat`, binary", "", ["cat", path["images.bin"]]),
        ]
        print("| what | goal | millions a second | two cores |")
        print("|---|---|---|---|")
        for name, goal, command in rows:
            used, one = measured(command, 1)
            both = ""
            if command[0] == vorn and len(os.sched_getaffinity(0)) > 1:
                both = f"{one / measured(command, 2)[1]:.2f}"
            print(f"| {name} | {goal} | {count / used / 1e6:.1f} | {both} |", flush=True)


main()

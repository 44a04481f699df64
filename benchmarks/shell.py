#!/usr/bin/env python3
"""Measures the tool beside xmlstarlet and xmllint in the jobs of every day.

    shell.py NUXML [REPETITIONS]

Prints processor time (user and system, the start of the program included) and the largest
resident memory of each, as medians of interleaved repetitions, and how many times as much the
other tool takes: above 1 ours is better. The inputs are made in a temporary folder: a document of
1 kB, one of 5 MB and one of 100 MB of records.
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile

# Job, input, our arguments, the other tool and its arguments; {} is the input.
JOBS = [
    ("start, 1 kB", "small", "check --quiet {}", "xmllint --noout {}"),
    ("select, 1 kB", "small", "select --count //title {}", "xmllint --xpath count(//title) {}"),
    ("format, 1 kB", "small", "format {}", "xmllint --format {}"),
    ("list", "medium", "select --value //title {}", "xmlstarlet sel -t -v //title -n {}"),
    ("count", "medium", "select --count //record {}", "xmlstarlet sel -t -v count(//record) {}"),
    ("columns", "medium", "select -c @id,title,price //record {}",
     "xmlstarlet sel -t -m //record -v @id -o , -v title -o , -v price -n {}"),
    ("edit", "medium", "edit -s //price=1 {}", "xmlstarlet ed -u //price -v 1 {}"),
    ("rename", "medium", "edit -r //price=cost {}", "xmlstarlet ed -r //price -v cost {}"),
    ("move", "medium", "edit -m //record[1]/price=//record[2] {}",
     "xmlstarlet ed -m /records/record[1]/price /records/record[2] {}"),
    ("delete", "medium", "edit -d //title {}", "xmlstarlet ed -d //title {}"),
    ("check", "medium", "check --quiet {}", "xmlstarlet val -q {}"),
    ("format", "medium", "format {}", "xmlstarlet fo {}"),
    ("outline", "medium", "tree {}", "xmlstarlet el -u {}"),
    ("select, 100 MB", "large", "select --count //title {}", "xmllint --xpath count(//title) {}"),
    ("format, 100 MB", "large", "format {}", "xmllint --format {}"),
]


def write_records(path, count):
    with open(path, "w", encoding="utf-8") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<records>\n')
        for index in range(count):
            file.write(f'  <record id="r{index}" kind="{"abc"[index % 3]}">\n'
                       f"    <title>Title of record {index} &amp; more</title>\n"
                       f"    <price>{index % 1000}.50</price>\n  </record>\n")
        file.write("</records>\n")
    return path


def measure(command):
    """Seconds of processor time and bytes of memory."""
    with open(os.devnull, "wb") as nowhere:
        process = subprocess.Popen(command, stdout=nowhere, stderr=nowhere)
        _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} ended with {process.returncode}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    tool = sys.argv[1]
    repetitions = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    print(f"{'job':16} {'ours, ms':>9} {'other, ms':>9} {'x':>6} {'ours, MB':>9} {'other, MB':>9} "
          f"{'x':>6}  other")
    with tempfile.TemporaryDirectory() as folder:
        inputs = {name: write_records(os.path.join(folder, name + ".xml"), count)
                  for name, count in [("small", 8), ("medium", 40_000), ("large", 800_000)]}
        for job, subject, ours, other in JOBS:
            commands = [[word.replace("{}", inputs[subject]) for word in line.split()]
                        for line in (f"{tool} {ours}", other)]
            if not shutil.which(commands[1][0]):
                print(f"{job:16} {commands[1][0]} is not installed")
                continue
            # The start of a program is short, so it takes more runs.
            runs = repetitions * {"small": 40, "medium": 1, "large": 1}[subject]
            results = [[], []]
            for _ in range(runs):
                for side, command in enumerate(commands):
                    results[side].append(measure(command))
            (time, memory), (other_time, other_memory) = (
                [statistics.median(values) for values in zip(*side)] for side in results)
            line = f"{job:16} {time * 1e3:9.2f} {other_time * 1e3:9.2f} {other_time / time:6.2f} "
            # What this program had when it started the other counts as well, so little tells nothing.
            if min(memory, other_memory) > 24e6:
                line += (f"{memory / 1e6:9.1f} {other_memory / 1e6:9.1f} "
                         f"{other_memory / memory:6.2f}")
            print(f"{line:62}  {commands[1][0]}", flush=True)


if __name__ == "__main__":
    main()

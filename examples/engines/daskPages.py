#!/usr/bin/env python3
"""Counts the pages of a document and adds up their sizes by language, on a cluster of dask.

usage: daskPages.py [--nuxml PROGRAM] [--parts N] [--kill] FILE

A scheduler and two workers are started on the loopback addresses; a real cluster only needs another
address for the client, and the file and its index where all workers see them. Each task is one call
of "nuxml records --part I/N"; a task whose worker is lost is given to another one. With --kill one
worker is ended in the middle, which changes nothing in the result.

The result is printed as JSON. Exit code 77: dask.distributed is not installed.
"""

import argparse
import csv
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

try:
    from distributed import Client, as_completed
except ImportError:
    print("dask.distributed is not installed (Debian: python3-distributed)", file=sys.stderr)
    sys.exit(77)


def sum_part(program, path, part, parts):
    """What one part of the document adds to the result."""
    command = [program, "records", "--columns", "@language,size", "--csv"]
    command += ["--part", f"{part}/{parts}", "dump/page", path]
    pages, sizes = 0, {}
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as records:
        for language, size in csv.reader(records.stdout):
            pages += 1
            sizes[language] = sizes.get(language, 0) + int(size)
    if records.returncode != 0:
        raise RuntimeError(f"part {part} of {parts} ended with {records.returncode}")
    return {"pages": pages, "sizes": sizes, "process": os.getpid()}


def start(folder, *command):
    """A process of the cluster, which keeps its files in that folder."""
    return subprocess.Popen(
        [sys.executable, "-m", *command], cwd=folder, stderr=subprocess.DEVNULL
    )


def wait_for(what, seconds=60):
    end = time.monotonic() + seconds
    while not (found := what()):
        if time.monotonic() > end:
            raise TimeoutError("the cluster did not start")
        time.sleep(0.05)
    return found


def address_of(file):
    """The address that a scheduler wrote down; none while it is not there."""
    try:
        with open(file, encoding="utf-8") as text:
            return json.load(text)["address"]
    except (OSError, ValueError):
        return None


def collect(client, options):
    tasks = [
        client.submit(sum_part, options.nuxml, options.file, part, options.parts, pure=False)
        for part in range(1, options.parts + 1)
    ]
    total = {"pages": 0, "sizes": {}}
    left_to_end = options.kill
    for task in as_completed(tasks):
        result = task.result()
        if left_to_end:
            left_to_end = False
            os.kill(result["process"], signal.SIGKILL)
        total["pages"] += result["pages"]
        for language, size in result["sizes"].items():
            total["sizes"][language] = total["sizes"].get(language, 0) + size
    total["workersLeft"] = len(client.scheduler_info()["workers"])
    return total


def main(options):
    # Workers stand in a folder of their own.
    options.file = os.path.abspath(options.file)
    options.nuxml = os.path.abspath(shutil.which(options.nuxml) or options.nuxml)
    subprocess.run([options.nuxml, "records", "--index", options.file], check=True)
    processes = []
    with tempfile.TemporaryDirectory() as folder:
        try:
            note = os.path.join(folder, "scheduler.json")
            scheduler = ["distributed.cli.dask_scheduler", "--host", "127.0.0.1", "--port", "0"]
            scheduler += ["--no-dashboard", "--scheduler-file", note]
            processes.append(start(folder, *scheduler))
            address = wait_for(lambda: address_of(note))
            worker = ["distributed.cli.dask_worker", address, "--host", "127.0.0.1"]
            worker += ["--no-nanny", "--no-dashboard", "--nthreads", "1"]
            processes += [start(folder, *worker), start(folder, *worker)]
            with Client(address) as client:
                client.wait_for_workers(2)
                print(json.dumps(collect(client, options), sort_keys=True))
        finally:
            for process in reversed(processes):
                process.terminate()
            for process in processes:
                process.wait()


if __name__ == "__main__":
    reader = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    reader.add_argument("--nuxml", default="nuxml", help="the program, if it is not in the path")
    reader.add_argument("--parts", type=int, default=16, help="tasks that the work is cut into")
    reader.add_argument("--kill", action="store_true", help="end a worker in the middle")
    reader.add_argument("file")
    main(reader.parse_args())

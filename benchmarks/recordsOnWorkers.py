#!/usr/bin/env python3
"""Where the time goes when many workers read the records of one large document: a simulation.

usage: recordsOnWorkers.py [--size BYTES] [--workers N] [--index-rate R] [--record-rate R] ...

Rates are bytes a second of one processor, measured on the machine at hand ("nuxml records" and
"nuxml records --index" under time). Everything else is what the cluster is assumed to be. Tasks are
handed to workers as they become free; every worker reads from storage at what its own connection and
its share of the storage allow, whichever is less. Prints one line for each number of tasks.
"""

import argparse
import heapq
import random

GB = 1e9


def simulate(options, tasks, slow_workers, failures):
    """Seconds until the last task is done, and the worker-seconds that were spent on it."""
    chance = random.Random(1)
    share = options.size / tasks
    rate = min(options.record_rate, options.network, options.storage / options.workers)
    pace = [0.5 if number < slow_workers else 1.0 for number in range(options.workers)]
    free = [(0.0, number) for number in range(options.workers)]
    heapq.heapify(free)
    waiting = list(range(tasks))
    failing = set(chance.sample(range(tasks), min(failures, tasks)))
    end = busy = 0.0
    while waiting:
        now, worker = heapq.heappop(free)
        task = waiting.pop(0)
        seconds = options.start + share / (rate * pace[worker])
        if task in failing:
            failing.remove(task)
            seconds *= chance.random()  # lost in the middle, done again by somebody
            waiting.append(task)
        else:
            end = max(end, now + seconds)
        busy += seconds
        heapq.heappush(free, (now + seconds, worker))
    return end, busy


def main(options):
    index_rate = min(options.index_rate, options.network, options.storage)
    index = options.size / index_rate
    ideal = options.size / (options.record_rate * options.workers)
    needed = options.record_rate * options.workers
    print(f"{options.size / GB:.0f} GB, {options.workers} workers; processors alone: {ideal:.0f} s")
    print(f"storage that keeps all of them busy: {needed / GB:.1f} GB/s")
    print(f"index, once, by one worker: {index:.0f} s at {index_rate / GB:.2f} GB/s")
    print("tasks   all well   a worker at half speed   3 tasks lost   spent twice")
    for factor in (1, 2, 4, 8, 32, 256):
        tasks = factor * options.workers
        well, busy = simulate(options, tasks, 0, 0)
        slow, _ = simulate(options, tasks, 1, 0)
        lost, spent = simulate(options, tasks, 0, 3)
        print(f"{tasks:5}   {well:6.0f} s   {slow:20.0f} s   {lost:10.0f} s   {spent - busy:9.0f} s")


if __name__ == "__main__":
    reader = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    reader.add_argument("--size", type=float, default=1000 * GB)
    reader.add_argument("--workers", type=int, default=64)
    reader.add_argument("--index-rate", type=float, default=2.4 * GB)
    reader.add_argument("--record-rate", type=float, default=0.76 * GB, help="as lines of JSON")
    reader.add_argument("--network", type=float, default=1.25 * GB, help="of each worker")
    reader.add_argument("--storage", type=float, default=20 * GB, help="of all together")
    reader.add_argument("--start", type=float, default=0.05, help="of a task, seconds")
    main(reader.parse_args())

# SPDX-License-Identifier: Apache-2.0
"""Runs commands with subprocess.run and says how long they took. A line asks: times, program, arguments; by tabs."""

import subprocess
import sys
import time

for line in sys.stdin:
    times, *command = line.rstrip("\n").split("\t")
    start = time.perf_counter()
    for _ in range(int(times)):
        subprocess.run(command, capture_output=True, check=True)
    print(time.perf_counter() - start, flush=True)

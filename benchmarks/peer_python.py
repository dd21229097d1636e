# SPDX-License-Identifier: Apache-2.0
"""Runs commands with subprocess.run and prints the seconds. Input lines: count, program, arguments; tab-separated."""

import subprocess
import sys
import time

for line in sys.stdin:
    times, *command = line.rstrip("\n").split("\t")
    start = time.perf_counter()
    for _ in range(int(times)):
        subprocess.run(command, capture_output=True, check=True)
    print(time.perf_counter() - start, flush=True)

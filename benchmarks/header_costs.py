#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures what including each public header alone costs a source in compile time.

    header_costs.py COMPILER INCLUDE_DIRECTORY...

Prints the processor time in user mode, the fastest of five rounds, and the ratio to a header of another library that was
measured in the same rounds.
"""

import os
import pathlib
import resource
import subprocess
import sys
import tempfile

ROUNDS = 5
PEER = "nlohmann/json.hpp"


def user_seconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
    subprocess.run(command, check=True)
    return resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    compiler, directories = sys.argv[1], sys.argv[2:]
    public = sorted(pathlib.Path(directories[0], "kinovane").glob("*.hpp"))
    headers = [f"kinovane/{header.name}" for header in public] + [PEER]
    options = ["-std=c++20", "-O2", "-c", "-o", os.devnull] + [f"-I{directory}" for directory in directories]

    seconds = {header: [] for header in headers}
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "source.cpp")
        for _ in range(ROUNDS):
            for header in headers:
                source.write_text(f"#include <{header}>\n", encoding="utf-8")
                seconds[header].append(user_seconds([compiler, *options, str(source)]))

    peer = min(seconds[PEER])
    print(f"{'header':<30} {'seconds':>7}  ratio to <{PEER}>")
    for header in headers:
        cost = min(seconds[header])
        print(f"{header:<30} {cost:>7.2f}  {cost / peer:.2f}")


try:
    main()
except subprocess.CalledProcessError as failure:
    sys.exit(f"header_costs.py: the compiler failed: {' '.join(failure.cmd)}")
except OSError as failure:
    sys.exit(f"header_costs.py: {failure}")

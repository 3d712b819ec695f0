#!/usr/bin/env python3
"""include_budget.py COMPILER INCLUDE_DIR: limits what the most used headers include.

Counts preprocessed lines. They correspond closely to compile time and do not depend on the load of
the machine. attribute_value.h may have at most twice the lines of <string>, the forward declarations
at most a third. Neither may include one of the heavy standard headers.
"""
import re
import subprocess
import sys

HEAVY = ("functional", "memory", "algorithm", "ranges", "variant", "iostream", "sstream")


def preprocess(compiler, include_dir, header):
    command = [compiler, "-std=c++20", "-E", "-x", "c++", "-I", include_dir, "-"]
    text = subprocess.run(command, input=f"#include {header}\n", capture_output=True, text=True,
                          check=True).stdout
    lines = [line for line in text.splitlines() if line.strip() and not line.startswith("#")]
    files = set(re.findall(r'^# \d+ "([^"]+)"', text, re.MULTILINE))
    return len(lines), files


def main():
    compiler, include_dir = sys.argv[1:]
    string_lines, _ = preprocess(compiler, include_dir, "<string>")
    failed = False
    for header, limit in (('"vxattribute/attribute_value.h"', 2.0), ('"vxattribute/fwd.h"', 1 / 3)):
        lines, files = preprocess(compiler, include_dir, header)
        ratio = lines / string_lines
        print(f"{header}: {lines} lines, {ratio:.2f} of <string> (limit {limit:.2f})")
        failed |= ratio > limit
        for name in HEAVY:
            if any(file.endswith(f"/{name}") for file in files):
                print(f"{header}: includes <{name}>")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

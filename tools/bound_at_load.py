#!/usr/bin/env python3
"""bound_at_load.py FILE...: fails when a library or program binds calls at their first use, or when
the table of their targets is writable.

For a call bound late, the loader saves the vector registers on the stack, with parts of keys in
them.
"""
import re
import subprocess
import sys


def listing(option, file):
    return subprocess.run(["readelf", "--wide", option, file], capture_output=True, text=True,
                          check=True).stdout


def main():
    failed = False
    for file in sys.argv[1:]:
        if not re.search(r"\(FLAGS\) .*BIND_NOW|\(FLAGS_1\) .*\bNOW\b|\(BIND_NOW\)",
                         listing("--dynamic", file)):
            print(f"{file}: binds calls late (link with -z now)")
            failed = True
        if not re.search(r"\bGNU_RELRO\b", listing("--program-headers", file)):
            print(f"{file}: has a writable table of calls (link with -z relro)")
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

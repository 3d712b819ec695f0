#!/usr/bin/env python3
"""exported_symbols.py LIBRARY...: fails when a library exports a symbol that is not of the family.

A stray export ties users to what was never meant for them and lets two libraries of one process
resolve to one another's code.
"""
import re
import subprocess
import sys

# Names of the family anywhere in a symbol, and instantiations of the standard library's templates,
# which that library exports by its own attributes.
KNOWN = re.compile(r"(^|[ *&<(])(vx[a-z]+|std)::")


def main():
    failed = False
    for library in sys.argv[1:]:
        listing = subprocess.run(["nm", "-DC", "--defined-only", library], capture_output=True,
                                 text=True, check=True).stdout
        for line in listing.splitlines():
            name = line.split(maxsplit=2)[2]
            if not KNOWN.search(name):
                print(f"{library}: {name}")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

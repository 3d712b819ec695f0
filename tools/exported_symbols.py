#!/usr/bin/env python3
"""exported_symbols.py LIBRARY...: fails when a library exports a symbol outside its namespace.

Users could come to depend on a stray export. Another library of the process could resolve to it, and
would then keep this one in memory.
"""
import pathlib
import re
import subprocess
import sys


def main():
    failed = False
    for library in sys.argv[1:]:
        namespace = re.match("lib([a-z]+)[.]so", pathlib.Path(library).name).group(1)
        # Functions and objects; tables and type information; thunks.
        own = re.compile(rf"_Z(T[VTIS]|T[hv][n0-9_]+)?N[KRO]*{len(namespace)}{namespace}")
        listing = subprocess.run(["nm", "-D", "--defined-only", library], capture_output=True,
                                 text=True, check=True).stdout
        names = [line.split(maxsplit=2)[2] for line in listing.splitlines()]
        failed |= not names
        for name in names:
            if not own.match(name):
                print(f"{library}: {name}")
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

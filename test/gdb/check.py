#!/usr/bin/env python3
"""check.py MODE PROGRAM PRINTED SCRIPTS [LIBDIR]: prints objects of the program in gdb, and compares.

process     Stops the program at `objects::stop`, and writes a core file in the end.
core        Prints from this core file.
installed   As `process`, with the libraries in LIBDIR and without a core file.

PRINTED has lines `expression = what gdb prints`. Lines that begin with "set " are commands; those
with "set variable " break an object, and the core file has it broken. gdb finds the printers in the
folder SCRIPTS, or beside the libraries if they are in it. The exit code 77 means that gdb is missing
or may not run programs.
"""

import pathlib
import re
import shutil
import subprocess
import sys

SKIPPED = 77
REFUSED = ("ptrace: Operation not permitted", "Could not trace the inferior process")


def skip(why):
    print("skipped:", why)
    sys.exit(SKIPPED)


def commands(mode, program, lines, libdir):
    """The commands for gdb. A mark comes before each result."""
    if mode == "core":
        yield "core-file %s.core" % program
        yield "frame function objects::stop"
    else:
        if libdir:
            yield "set environment LD_LIBRARY_PATH " + libdir[0]
        yield "break objects::stop"
        yield "run"
    for line in lines:
        if not line.startswith("set "):
            yield "echo @@\\n"
            yield "print " + line.split(" = ")[0]
        elif mode != "core" or not line.startswith("set variable "):
            yield line
    yield "echo @@\\n"
    if mode == "process":
        yield "generate-core-file %s.core" % program


def main():
    mode, program, printed, scripts, *libdir = sys.argv[1:]
    gdb = shutil.which("gdb") or skip("gdb is not installed")
    lines = [line for line in pathlib.Path(printed).read_text("utf-8").splitlines() if line]
    call = [gdb, "-nx", "-batch"]
    for command in ("auto-load scripts-directory", "auto-load safe-path"):
        call += ["-iex", "set %s %s" % (command, scripts)]
    for command in ("set debuginfod enabled off", "set width 0", "set host-charset UTF-8"):
        call += ["-iex", command]
    for command in commands(mode, program, lines, libdir):
        call += ["-ex", command]
    run = subprocess.run(call + [program], capture_output=True, encoding="utf-8", timeout=100)
    if any(text in run.stderr for text in REFUSED):
        skip("gdb may not run programs here")

    wanted = [line for line in lines if not line.startswith("set ")]
    results = [text.rstrip("\n") for text in run.stdout.split("@@\n")[1:-1]]
    found = [w.split(" = ")[0] + re.sub(r"^\$\d+", "", r) for w, r in zip(wanted, results)]
    if found != wanted or "Python Exception" in run.stderr:
        for line in found:
            print("  " if line in wanted else "! ", line)
        print(run.stderr)
        sys.exit(1)


main()

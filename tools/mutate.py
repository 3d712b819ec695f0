#!/usr/bin/env python3
"""Breaks the sources in one place at a time and shows the breaks that no test notices.

Works in a copy of the tree under build/mutate. The mutants are a sample of all possible ones; the
same seed, sources and count give the same sample.
"""

import argparse
import difflib
import glob
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import time

from mutants import mutants_of

SOURCES = [
    "int/src/vxcore/error_*.cpp", "int/src/vxcore/hash.h", "int/src/vxcrypto/*.cpp",
    "int/src/vxserialize/*reader*.cpp", "int/src/vxjson/reader*.cpp",
    "int/src/vxjson/tokenizer*.cpp", "int/src/vxattribute/*_elements.cpp",
    "int/src/vxattribute/module/error_codes.cpp", "int/src/vxattribute/json/read_value.cpp",
    "int/src/vxattribute/sealed/key_marshaler.cpp", "int/src/vxattribute/sealed/memory_wipe.cpp",
    "int/src/vxattribute/stream/read_value.cpp", "int/src/vxattribute/sealed/secured_value*.cpp",
]

# The test programs of a library and of those that depend on it, its own first.
PROGRAMS = {
    "vxcore": ["vxcore", "vxuri", "vxserialize", "vxjson", "vxcrypto", "vxattribute"],
    "vxmoduleregistry": ["vxmoduleregistry", "vxmoduleregistry_linked", "vxattribute"],
    "vxuri": ["vxuri", "vxserialize", "vxjson", "vxattribute"],
    "vxcrypto": ["vxcrypto", "vxcrypto_portable", "vxattribute"],
    "vxserialize": ["vxserialize", "vxjson", "vxattribute"],
    "vxjson": ["vxjson", "vxattribute"],
    "vxattribute": ["vxattribute", "vxfile"],
    "vxfile": ["vxfile"],
}

TREE = "build/mutate/tree"
BUILD = "build/mutate/build"
SURVIVORS = "build/mutate/survivors.txt"
BUILD_SECONDS = 900
TEST_MEMORY = 4 << 30  # bytes


def source_file(path):
    """Checks that an argument names a source of a library; returns its path from the root."""
    path = os.path.relpath(path)
    folders = [f"int/src/{library}/" for library in PROGRAMS]
    if not os.path.isfile(path) or not path.startswith(tuple(folders)):
        raise argparse.ArgumentTypeError(f"{path} is no source of a library in int/src")
    return path


def programs_of(path):
    return PROGRAMS[path.split("/")[2]]


def copy_tree():
    """Updates the copy. Unchanged files keep their times, so they are not compiled again."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True, text=True).stdout
    wanted = {name for name in listed.split("\0") if os.path.isfile(name)}
    for folder, _, names in os.walk(TREE):
        for name in names:
            path = os.path.join(folder, name)
            if os.path.relpath(path, TREE) not in wanted:
                os.remove(path)
    for name in wanted:
        target = os.path.join(TREE, name)
        if os.path.isfile(target) and open(target, "rb").read() == open(name, "rb").read():
            continue
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copy(name, target)


def configure():
    subprocess.run(
        ["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
         "-DCMAKE_CXX_FLAGS=-O0", "-DVX_WERROR=OFF", "-DVX_BLOCK_CACHE=OFF", "-DVX_BUILD_TOOLS=OFF",
         "-DVX_BUILD_EXAMPLES=OFF", "-DVX_BUILD_FUZZ=OFF", "-DVX_INSTALL=OFF",
         # A changed library needs no new link of the programs. Tests are not discovered at build time.
         "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
         "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"],
        check=True, stdout=subprocess.DEVNULL)


def call(command, seconds, **options):
    """Returns exit code and output, or None after a timeout. Leaves no process behind."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               errors="replace", start_new_session=True, **options)
    try:
        output, _ = process.communicate(timeout=seconds)
        return process.returncode, output
    except subprocess.TimeoutExpired:
        return None
    finally:
        if process.returncode is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()


def build(program):
    """Returns the messages of a build that fails, or an empty text."""
    command = ["cmake", "--build", BUILD, "--target", f"{program}_test"]
    if "JOBS" in os.environ:
        command += ["-j", os.environ["JOBS"]]
    done = call(command, BUILD_SECONDS)
    return "out of time" if done is None else done[1] if done[0] != 0 else ""


def limit():
    resource.setrlimit(resource.RLIMIT_AS, (TEST_MEMORY, TEST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def test(program, seconds):
    """Runs a test program up to its first failure; 'passed', 'failed' or 'timed out'."""
    path = glob.glob(f"{BUILD}/test/*/{program}_test")[0]
    done = call([os.path.abspath(path), "--gtest_fail_fast", "--gtest_brief=1"], seconds,
                cwd=os.path.dirname(path), preexec_fn=limit)
    return "timed out" if done is None else "failed" if done[0] != 0 else "passed"


def measure(programs):
    """The seconds that each program takes without a mutant. Ends the run when a test fails."""
    seconds = {}
    for program in programs:
        complaint = build(program)
        if complaint:
            sys.exit(f"{program}_test does not build:\n{complaint}")
        start = time.monotonic()
        if test(program, 600) != "passed":
            sys.exit(f"{program}_test fails without any mutant")
        seconds[program] = time.monotonic() - start
    return seconds


def verdict(programs, seconds):
    for program in programs:
        if build(program):
            return "did not build"
        result = test(program, 10 + 5 * seconds[program])
        if result != "passed":
            return f"{result} in {program}_test"
    return "survived"


def description(path, source, mutant):
    changed = mutant.applied(source)
    line = source.count("\n", 0, mutant.start) + 1
    diff = difflib.unified_diff(source.splitlines(), changed.splitlines(), lineterm="", n=1)
    body = [text for text in list(diff)[2:] if not text.startswith("@@")]
    return f"{path}:{line}: {mutant.operator}", "\n".join(body)


def sample(paths, count, seed):
    """The sources, `count` of their mutants in the order of the files, and the number of all."""
    sources = {path: open(path, encoding="ascii").read() for path in paths}
    everything = [(path, mutant) for path in sources for mutant in mutants_of(sources[path])]
    chosen = random.Random(seed).sample(range(len(everything)), min(count, len(everything)))
    return sources, [everything[index] for index in sorted(chosen)], len(everything)


def run(sources, chosen, seconds):
    counts = {}
    with open(SURVIVORS, "w", encoding="ascii") as survivors:
        for number, (path, mutant) in enumerate(chosen, 1):
            target = os.path.join(TREE, path)
            with open(target, "w", encoding="ascii") as file:
                file.write(mutant.applied(sources[path]))
            try:
                result = verdict(programs_of(path), seconds)
            finally:
                with open(target, "w", encoding="ascii") as file:
                    file.write(sources[path])
            place, diff = description(path, sources[path], mutant)
            print(f"[{number}/{len(chosen)}] {place}: {result}", file=sys.stderr, flush=True)
            kind = result.split(" in ")[0]
            counts[kind] = counts.get(kind, 0) + 1
            if kind == "survived":
                print(f"{place}\n{diff}\n", flush=True)
                print(f"{place}\n{diff}\n", file=survivors, flush=True)
    return counts


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate", description=__doc__.splitlines()[0])
    parser.add_argument("count", nargs="?", type=int, default=50, help="how many mutants (50)")
    parser.add_argument("file", nargs="*", type=source_file,
                        help="sources, from the root; by default a list of delicate ones")
    parser.add_argument("--seed", type=int, default=1, help="of the sample (1)")
    parser.add_argument("--list", action="store_true", help="show the mutants and run none")
    options = parser.parse_args()
    if options.count < 1:
        parser.error("COUNT is 1 or more")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # runs the finally blocks
    paths = options.file or sorted(path for pattern in SOURCES for path in glob.glob(pattern))
    sources, chosen, total = sample(paths, options.count, options.seed)
    print(f"{len(chosen)} of {total} mutants of {len(paths)} files", file=sys.stderr)
    if options.list:
        for path, mutant in chosen:
            print("\n".join(description(path, sources[path], mutant)) + "\n")
        return
    copy_tree()
    configure()
    wanted = {program: None for path, _ in chosen for program in programs_of(path)}
    counts = run(sources, chosen, measure(wanted))
    killed = counts.get("failed", 0) + counts.get("timed out", 0)
    print(f"killed {killed} (of these timed out {counts.get('timed out', 0)}), "
          f"survived {counts.get('survived', 0)}, did not build {counts.get('did not build', 0)}")


if __name__ == "__main__":
    main()

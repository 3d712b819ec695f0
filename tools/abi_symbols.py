#!/usr/bin/env python3
"""abi_symbols.py [--update] [LIBRARY...]: compares what libraries export with tools/abi/NAME.symbols.

Fails on a symbol that is lost, since programs built earlier need it, and on a new one, so that the
lists stay complete. --update writes the lists. Without LIBRARY it takes all of build/gcc-release.

A list holds demangled names in byte order. Several symbols may share a name, such as the
constructors for whole objects and for bases: the name is repeated then. Left out are:

- Kinds and addresses: whether a symbol is weak depends on the compiler.
- Names in a namespace `impl`: users do not write them, and most are members of template
  instantiations. But inline functions of installed headers call some of them: to remove one of
  those needs a new VX_ABI_VERSION too, and nothing checks that.

The lists are those of an optimized build by g++. clang and debug builds export a few more: tables
of interfaces, constants, and private templates that g++ inlines.
"""
import collections
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Functions and objects; tables and type information; thunks.
INTERNAL = re.compile(r"_Z(T[VTIS]|T[hv][n0-9_]+)?N[KRO]*\d+[a-z]+4impl")


def exported(library):
    listing = subprocess.run(["nm", "-D", "--defined-only", library], capture_output=True, text=True,
                             check=True).stdout
    names = [line.split(maxsplit=2)[2] for line in listing.splitlines()]
    public = "\n".join(name for name in names if not INTERNAL.match(name))
    return sorted(subprocess.run(["c++filt"], input=public, capture_output=True, text=True,
                                 check=True).stdout.splitlines())


def compare(library, listed, symbols):
    """Prints what differs; true when something does."""
    lost = collections.Counter(listed) - collections.Counter(symbols)
    new = collections.Counter(symbols) - collections.Counter(listed)
    for what, names in (("lost", lost), ("new", new)):
        for name in names.elements():
            print(f"{library}: {what}: {name}")
    if lost:
        print("Bring back what is lost, or raise VX_ABI_VERSION in CMakeLists.txt.")
    return bool(lost or new)


def main():
    update = sys.argv[1:2] == ["--update"]
    libraries = sys.argv[1 + update:] or sorted(
        map(str, ROOT.glob("build/gcc-release/int/src/*/lib*.so")))
    if not libraries:
        sys.exit("no libraries: build the preset gcc-release first")
    failed = False
    for library in libraries:
        name = re.match("lib([a-z]+)[.]so", pathlib.Path(library).name).group(1)
        path = ROOT / "tools" / "abi" / f"{name}.symbols"
        listed = path.read_text().splitlines() if path.exists() else []
        symbols = exported(library)
        failed |= compare(library, listed, symbols)
        if update:
            path.parent.mkdir(exist_ok=True)
            path.write_text("".join(symbol + "\n" for symbol in symbols))
    if failed and not update:
        print("If the change is meant, run tools/abi_symbols.py --update and commit tools/abi.")
    return 1 if failed and not update else 0


if __name__ == "__main__":
    sys.exit(main())

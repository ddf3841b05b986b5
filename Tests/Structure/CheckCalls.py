#!/usr/bin/env python3
"""Compares what the library uses of the platform with the checked-in list of operations.

    CheckCalls.py NM LIBRARY LIST OBJECT...

What the library calls is undefined in it. An operation that is inline in its header leaves no trace there: it stands in
the objects, which are the library's sources compiled without optimisation, so that the compiler makes every inline
operation that is used. Making, copying and ending of a record are no operations.

The list has one operation a line, qualified and without arguments; "#" begins a comment. An operation that is used and
not listed and one that is listed and not used are both reported.
"""

import pathlib
import re
import subprocess
import sys

# What a C++ runtime brings is no operation of the platform, nor is what the compiler makes for the platform's types.
FOREIGN = re.compile(r"@|^(std::|__|_ITM|_Unwind|operator |typeinfo |vtable |non-virtual thunk)")

# The mangled names of the platform's inline operations: plain ones by their prefix, others by their namespace.
INLINE = re.compile(r"_Z(\d+x?(z|Tv|Tp)[A-Z]|N[KVRO]*(2Ta|8TaCommon|6TaPipe|2Mu6Vision)[\dILSC])")


def table(nm, *arguments):
    return subprocess.run([nm, *arguments], stdout=subprocess.PIPE, text=True, check=True).stdout.splitlines()


def undefined(nm, library):
    names = [line.split(maxsplit=1)[1] for line in table(nm, "-DC", "--undefined-only", library)]
    return {bare(name) for name in names if not FOREIGN.search(name)}


def inline(nm, objects):
    """The inline operations of the platform that stand in objects."""
    used = set()
    for path in objects:
        mangled = table(nm, "-p", "--defined-only", path)
        readable = table(nm, "-pC", "--defined-only", path)
        for symbol, name in zip(mangled, readable, strict=True):
            _, kind, symbol = symbol.split(maxsplit=2)
            if kind in "WVu" and INLINE.match(symbol):
                used.add(bare(name.split(maxsplit=2)[2]))
    return {name for name in used if not re.search(r"(\w+)::(~?\1|operator=)$", name)}


def bare(name):
    """A name without arguments, template arguments, result, constness and the compiler's tags."""
    name = re.sub(r"\[abi:\w+\]", "", name)
    while (shorter := re.sub(r"(?<!operator)<[^<>]*>", "", name)) != name:
        name = shorter
    return re.search(r"(\S*operator .*|\S+)$", name.split("(")[0]).group(1)


def listed(path):
    lines = (line.split("#")[0].strip() for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines())
    return {line for line in lines if line}


def main():
    nm, library, path, *objects = sys.argv[1:]
    called, included, known = undefined(nm, library), inline(nm, objects), listed(path)
    faults = [f"{name} is called and not listed in {path}" for name in sorted(called - known)]
    faults += [f"{name} is inline, used and not listed in {path}" for name in sorted(included - called - known)]
    faults += [f"{name} is listed in {path} and not used" for name in sorted(known - called - included)]
    if not called or not included:
        faults.append(f"{library} calls nothing, or its objects include nothing. Are they those of the library?")
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(called | included)} operations are used, all of them listed.")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Compares what the library calls of the platform with the checked-in list of operations.

    CheckCalls.py NM LIBRARY LIST

The list has one operation a line, qualified and without arguments; "#" begins a comment. A call that is not listed and
a listed operation that is not called are both reported.
"""

import pathlib
import re
import subprocess
import sys

# What a C++ runtime brings is no operation of the platform, nor is what the compiler makes for the platform's types.
FOREIGN = re.compile(r"@|^(std::|__|_ITM|_Unwind|operator |typeinfo |vtable |non-virtual thunk)")


def undefined(nm, library):
    table = subprocess.run([nm, "-DC", "--undefined-only", library], stdout=subprocess.PIPE, text=True, check=True)
    names = re.findall(r"^\s*[A-Za-z] (.+)$", table.stdout, re.MULTILINE)
    return {bare(name) for name in names if not FOREIGN.search(name)}


def bare(name):
    """A name without its arguments, its constness and the compiler's tags."""
    return re.sub(r"\[abi:\w+\]", "", name).split("(")[0]


def listed(path):
    lines = (line.split("#")[0].strip() for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines())
    return {line for line in lines if line}


def main():
    nm, library, path = sys.argv[1:]
    called, known = undefined(nm, library), listed(path)
    faults = [f"{name} is called and not listed in {path}" for name in sorted(called - known)]
    faults += [f"{name} is listed in {path} and not called" for name in sorted(known - called)]
    if faults or not called:
        sys.exit("\n".join(faults) or f"{library}: calls nothing. Is it the library?")
    print(f"{len(called)} operations are called, all of them listed.")


if __name__ == "__main__":
    main()

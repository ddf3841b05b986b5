#!/usr/bin/env python3
"""Proves that shared libraries name all that they need, and leave to the loader what their names mean.

    CheckBinding.py READELF LDD LIBRARY...

A library that lacks a name fails only where it is loaded. One that binds its own names at once would have type objects
and handlers of its own beside those of the process.
"""

import re
import subprocess
import sys


def printed(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=True).stdout


def main():
    readelf, ldd, *libraries = sys.argv[1:]
    faults = []
    for library in libraries:
        entries = printed(readelf, "-dW", library)
        if "(SONAME)" not in entries:
            sys.exit(f"{library}: this is no shared library. Name the library's file.")
        if re.search(r"\(SYMBOLIC\)|\(FLAGS\).*\bSYMBOLIC\b", entries):
            faults.append(f"{library}: binds its own names at once. Link it without -Bsymbolic.")
        for name in re.findall(r"undefined symbol: (\S+)", printed(ldd, "-r", library)):
            faults.append(f"{library}: {name} is in none of the libraries that it names. Link it with -z defs.")
    if faults or not libraries:
        sys.exit("\n".join(faults) or "No library was named.")
    print(f"{len(libraries)} libraries name all that they need.")


if __name__ == "__main__":
    main()

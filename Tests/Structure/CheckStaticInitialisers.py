#!/usr/bin/env python3
"""Proves from the section tables that libraries run no code of their own when they are loaded.

    CheckStaticInitialisers.py READELF EMPTY_LIBRARY [COUNT@]LIBRARY...

The empty library is built from no code at all: the one thing that it starts is the compiler's own. A library may start
up to COUNT things besides.
"""

import re
import subprocess
import sys

# What a loader calls: each section is an array of addresses.
SECTION = re.compile(r"\]\s+\.(preinit_array|init_array|ctors)\S*\s+\S+\s+[0-9a-f]+\s+[0-9a-f]+\s+([0-9a-f]+)\s")


def started_bytes(readelf, library):
    table = subprocess.run([readelf, "-SW", library], stdout=subprocess.PIPE, text=True, check=True).stdout
    if ".dynsym" not in table:
        sys.exit(f"{library}: this is no shared library. Name the library's file.")
    return sum(int(size, 16) for _, size in SECTION.findall(table))


def entries(readelf, empty, library):
    """How many things a library starts besides the compiler's own."""
    entry = started_bytes(readelf, empty)
    if entry == 0:
        sys.exit(f"{empty}: no initialiser found, though the compiler always brings one. Is the table read rightly?")
    return started_bytes(readelf, library) // entry - 1


def main():
    readelf, empty, *libraries = sys.argv[1:]
    faults = []
    for argument in libraries:
        count, _, library = argument.rpartition("@")
        found = entries(readelf, empty, library)
        if found > int(count or 0):
            faults.append(f"{library}: starts {found} things when it is loaded, allowed {count or 0}. "
                          "Make its constants constinit.")
    if faults or not libraries:
        sys.exit("\n".join(faults) or "No library was named.")
    print(f"{len(libraries)} libraries start nothing unexpected.")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Proves that every type object that a platform header declares is exported by the library of that header's folder.

    CheckTypeObjects.py NM PLATFORM_FOLDER LIBRARY...
"""

import pathlib
import re
import subprocess
import sys

DECLARATION = re.compile(r"^zDECLARE_TYPE\((\w+)\)", re.MULTILINE)


def exported_names(nm, library):
    table = subprocess.run([nm, "-D", "--defined-only", library], stdout=subprocess.PIPE, text=True, check=True).stdout
    return {line.split()[2] for line in table.splitlines()}


def library_name(path):
    """libzApi.so.0.1.0 is zApi."""
    return pathlib.PurePath(path).name.split(".")[0].removeprefix("lib")


def main():
    nm, platform, *libraries = sys.argv[1:]
    exports = {library_name(path): exported_names(nm, path) for path in libraries}
    declared = 0
    faults = []
    for header in sorted(pathlib.Path(platform).glob("*/*/*.h")):
        for name in DECLARATION.findall(header.read_text(encoding="utf-8")):
            declared += 1
            if f"{name}_TypeInfo" not in exports.get(header.parent.name, set()):
                faults.append(f"{header}: {name} is declared, but {header.parent.name} does not export it")
    if faults or declared == 0:
        sys.exit("\n".join(faults) or f"{platform}: no type object found. Name the platform's folder.")
    print(f"{declared} type objects are exported.")


if __name__ == "__main__":
    main()

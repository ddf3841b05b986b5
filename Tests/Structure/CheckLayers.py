#!/usr/bin/env python3
"""Proves that includes run down only.

    CheckLayers.py ROOT

A folder includes itself and folders of lower rank, and of foreign libraries those that are named here.
"""

import pathlib
import re
import sys

# Folder: its rank, and the foreign libraries it may include.
PLATFORM = ["nlohmann", "asio", "Eigen"]
LAYERS = {
    "Platform/zApi": (0, PLATFORM),
    "Platform/zRelay": (1, PLATFORM),
    "Platform/zVision": (1, PLATFORM),
    "Platform/TaApi": (2, PLATFORM),
    "Platform/TaCommon": (3, PLATFORM),
    "Platform/TaVision": (3, PLATFORM),
    "Platform/MuVision": (4, PLATFORM),
    "Platform/TaPipe": (4, PLATFORM),
    "Libs/MuTlkHelper": (5, ["nlohmann"]),
    "Host": (6, None),
    "Tools": (6, None),
}
SYSTEM = ["sys", "sanitizer"]
RANKS = {pathlib.PurePath(folder).name: rank for folder, (rank, _) in LAYERS.items()}
# Folders that nothing above may include.
USERS = ["Tests", "Support", "Bench", "Fuzz"]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def fault(folder, kind, path):
    """Why a file of `folder` must not include `path`, or None."""
    own = pathlib.PurePath(folder).name
    rank, foreign = LAYERS[folder]
    first = path.split("/")[0] if "/" in path else None
    if kind == '"' or ".." in path:
        return "write it as <Folder/Header.h>"
    if first is None or first == own or first in SYSTEM:
        return None
    if first in USERS:
        return f"{own} must not know {first}"
    if first in RANKS:
        return None if RANKS[first] < rank else f"{own} must not know {first}, which is not below it"
    if foreign is not None and first not in foreign:
        return f"{own} may use of foreign libraries only: {', '.join(foreign)}"
    return None


def faults(root):
    for folder in LAYERS:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix not in (".h", ".cpp"):
                continue
            for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), start=1):
                include = INCLUDE.match(line)
                why = include and fault(folder, *include.groups())
                if why:
                    yield f"{file.relative_to(root)}:{number}: {include.group(2)}: {why}"


def unknown_folders(root):
    """Libraries that have no rank yet."""
    for parent in ("Platform", "Libs"):
        for folder in sorted((root / parent).glob("*")):
            if folder.is_dir() and f"{parent}/{folder.name}" not in LAYERS:
                yield f"{parent}/{folder.name}: has no rank. Add it to LAYERS."


def main():
    root = pathlib.Path(sys.argv[1])
    found = [*unknown_folders(root), *faults(root)]
    if found:
        sys.exit("\n".join(found))
    files = sum(1 for folder in LAYERS for file in (root / folder).rglob("*.h"))
    if files == 0:
        sys.exit(f"{root}: no header found. Name the root of the repository.")
    print(f"{files} headers and their sources include downwards only.")


if __name__ == "__main__":
    main()

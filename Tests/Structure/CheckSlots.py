#!/usr/bin/env python3
"""Compares the tables of virtual operations that g++ lays out with a table written by hand (see slots.txt).

    CheckSlots.py TABLE SOURCE COMPILER [OPTION...]
"""

import pathlib
import re
import subprocess
import sys
import tempfile

SECTION = re.compile(r"\[(.+)\]$")
DESTRUCTOR = re.compile(r"~\w+$")
THUNK = re.compile(r"_ZThn\d+_N(\w+)$")


def read_expected(path):
    """Per class its tables, each a list of slots as text."""
    tables = {}
    classes = []
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        line = line.split("#")[0].strip()
        section = SECTION.match(line)
        if section:
            classes = section.group(1).split()
            for name in classes:
                tables.setdefault(name, []).append([])
        elif line:
            operation, *numbers = line.split()
            add_expected(tables, classes, operation, [int(number) for number in numbers])
    if not tables:
        sys.exit(f"{path}: no table. Name its classes in a line in brackets.")
    return tables


def add_expected(tables, classes, operation, numbers):
    for place, name in enumerate(classes, start=1):
        bodies = [number for number in numbers if number <= place]
        if not bodies:
            continue
        owner = classes[max(bodies) - 1]
        text = f"{owner}::{operation}"
        if place == 1 and 0 not in numbers:
            text = "destructor" if operation == "destructor" else "pure"
        tables[name][-1] += [text] * (2 if operation == "destructor" else 1)


def dump_classes(source, compiler):
    """The text in which g++ tells the layout of every class of a source."""
    with tempfile.TemporaryDirectory() as folder:
        command = [*compiler, "-fdump-lang-class", "-c", str(pathlib.Path(source).resolve()), "-o", "unit.o"]
        subprocess.run(command, cwd=folder, check=True)
        (dump,) = pathlib.Path(folder).glob("*.class")
        return dump.read_text(encoding="utf-8")


def read_tables(dump, name):
    """The tables of one class as the compiler has them."""
    found = re.search(rf"^Vtable for {re.escape(name)}\n(.*?)\n\n", dump, re.MULTILINE | re.DOTALL)
    if not found:
        sys.exit(f"{name}: the compiler tells of no virtual operations. Is the class in the source?")
    tables = []
    for line in found.group(1).splitlines()[1:]:
        value = re.sub(r"^\d+\s+(\(int \(\*\)\(\.\.\.\)\))?", "", line)
        if value.startswith("(& _ZTI"):
            tables.append([])
        elif re.match(r"-?\d+$", value) and "(int" in line:
            continue  # the place of the table's part within the object
        else:
            tables[-1].append(slot_text(value))
    return tables


def slot_text(value):
    if value == "__cxa_pure_virtual":
        return "pure"
    if value == "0":
        return "destructor"  # an abstract class has none that could be called through its table
    return DESTRUCTOR.sub("destructor", THUNK.sub(thunk_operation, value))


def thunk_operation(thunk):
    """The operation that an entry of a second table leads to: the last of the names in its symbol, which stand one
    after the other, each behind its length."""
    rest = thunk.group(1)
    operation = ""
    while length := re.match(r"\d+", rest):
        end = length.end() + int(length.group())
        operation, rest = rest[length.end() : end], rest[end:]
    return "destructor" if rest.startswith(("D0", "D1")) else operation


def differences(name, expected, actual):
    if len(expected) != len(actual):
        yield f"{name}: expected {len(expected)} tables, found {len(actual)}"
    for table, (wanted, found) in enumerate(zip(expected, actual)):
        for slot in range(max(len(wanted), len(found))):
            want = wanted[slot] if slot < len(wanted) else "nothing"
            have = found[slot] if slot < len(found) else "nothing"
            if want != have:
                yield f"{name}: table {table}, slot {slot}: expected {want}, found {have}"


def main():
    expected = read_expected(sys.argv[1])
    dump = dump_classes(sys.argv[2], sys.argv[3:])
    found = [line for name in expected for line in differences(name, expected[name], read_tables(dump, name))]
    if found:
        sys.exit("\n".join(found))
    print(f"{len(expected)} classes have their slots in order.")


if __name__ == "__main__":
    main()

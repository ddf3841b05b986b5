#!/usr/bin/env python3
"""Proves that the library exports what is its own, and nothing else.

    CheckExports.py NM LIBRARY NAMESPACE [PLAIN_NAME...]

Its own are the names in its namespace and the plain names, each of which must be there. Weak symbols of namespaces
below are let through: a template of theirs, or a class without a virtual operation of its own in a source, is made in
every library that uses it, and the loader joins the copies, so that a type is one type in all of them.
"""

import re
import subprocess
import sys

BELOW = ["std", "__gnu_cxx", "nlohmann", "Ta", "TaCommon", "TaPipe"]

# A type's description, name or table, a static's guard, or an entry that corrects `this` comes before the name itself.
SPECIAL = r"_Z(?:T[ISV]|GV|Th?n?\d+_|Tv\d+_n\d+_)?"


def mangled_in(namespace):
    """Matches the mangled names of a namespace; `std` has its own abbreviations."""
    if namespace == "std":
        return re.compile(SPECIAL + r"N?[KVRO]*S[tabsiod]")
    return re.compile(f"{SPECIAL}N[KVRO]*{len(namespace)}{namespace}")


def exported_symbols(nm, library):
    """Pairs of kind and name."""
    table = subprocess.run([nm, "-D", "--defined-only", library], stdout=subprocess.PIPE, text=True, check=True).stdout
    return [tuple(line.split()[1:3]) for line in table.splitlines()]


def main():
    nm, library, namespace, *plain = sys.argv[1:]
    own = mangled_in(namespace)
    below = [mangled_in(name) for name in BELOW]
    symbols = exported_symbols(nm, library)
    names = {name for _, name in symbols}
    if not any(own.match(name) for name in names):
        sys.exit(f"{library}: exports nothing of {namespace}.")
    faults = [f"{library}: {name} is not exported" for name in plain if name not in names]
    for kind, name in symbols:
        shared = kind in "WV" and any(pattern.match(name) for pattern in below)
        if not (own.match(name) or name in plain or shared):
            faults.append(f"{library}: exports {name} ({kind}), which is not its own. Hide it.")
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(names)} symbols, all the library's own.")


if __name__ == "__main__":
    main()

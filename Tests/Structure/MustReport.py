#!/usr/bin/env python3
"""Runs a check on a twin that breaks its rule and passes only if the check fails and reports the breach.

    MustReport.py PATTERN... -- COMMAND...

Every pattern (a regular expression) must be found in what the command prints.
"""

import re
import subprocess
import sys


def main():
    border = sys.argv.index("--")
    patterns, command = sys.argv[1:border], sys.argv[border + 1:]
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    print(run.stdout)
    if run.returncode == 0:
        sys.exit("The check passed on a twin that breaks its rule.")
    missing = [pattern for pattern in patterns if not re.search(pattern, run.stdout)]
    if missing or not patterns:
        sys.exit(f"The check failed, but did not report: {missing}")


if __name__ == "__main__":
    main()

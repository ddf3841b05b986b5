#!/usr/bin/env python3
"""Installs a build into a folder of its own, then builds and runs a project outside the tree that uses the package.

    CheckPackage.py CMAKE BUILD_FOLDER PROJECT_FOLDER GENERATOR COMPILER EXPECTED_OUTPUT

Nothing is left behind.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile


def run(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False)
    if done.returncode != 0:
        print(done.stdout)
        sys.exit(f"Failed with {done.returncode}: {' '.join(str(part) for part in command)}")
    return done.stdout


def installed_faults(prefix, build):
    """Files that name the tree they were built from: they would break as soon as that is gone."""
    for file in sorted(prefix.rglob("*.cmake")):
        if str(build) in file.read_text(encoding="utf-8"):
            yield f"{file.relative_to(prefix)} names the build folder {build}."


def main():
    cmake, build, project, generator, compiler, expected = sys.argv[1:]
    with tempfile.TemporaryDirectory(prefix="a package with blanks ") as folder:
        outside = pathlib.Path(folder)
        os.environ.pop("LD_LIBRARY_PATH", None)
        run(cmake, "--install", build, "--prefix", outside / "first")
        shutil.move(outside / "first", outside / "moved")  # a package may be moved
        shutil.copytree(project, outside / "source")
        run(cmake, "-S", outside / "source", "-B", outside / "build", "-G", generator,
            f"-DCMAKE_CXX_COMPILER={compiler}", f"-DCMAKE_PREFIX_PATH={outside / 'moved'}")
        run(cmake, "--build", outside / "build")
        faults = list(installed_faults(outside / "moved", build))
        output = run(outside / "build" / "Consumer").strip()
        if output != expected:
            faults.append(f"The consumer printed '{output}' instead of '{expected}'.")
        if faults:
            sys.exit("\n".join(faults))
    print("A project outside the tree builds and runs with the installed package.")


if __name__ == "__main__":
    main()

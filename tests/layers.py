#!/usr/bin/env python3
"""Holds the order of the house.

    layers.py SOURCE_FOLDER

Fails where a folder includes one that stands behind it in cmake/floors.txt, where a folder without
Qt includes Qt, and where a source lies in a folder that the table does not name.
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^#include (?:"([^"]+)"|<(Q[A-Z]\w*)>)', re.MULTILINE)


def read_floors(root):
    floors = {}
    for line in (root / "cmake/floors.txt").read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            folder, library = line.split()
            floors[folder] = (len(floors), library)
    return floors


def sources_of(root):
    for top in ("apps", "assembly", "database", "dialogs", "editor", "forms", "platform", "processors",
                "registry", "vertical"):
        for path in sorted((root / top).rglob("*")):
            if path.suffix in (".h", ".cpp", ".inc"):
                yield path.relative_to(root).as_posix(), path.read_text(encoding="utf-8")


def folder_of(path):
    return path.rpartition("/")[0]


def climbs(path, text, floors):
    """Includes that go up, or to Qt from where there is none."""
    floor, library = floors[folder_of(path)]
    for name, qt in INCLUDE.findall(text):
        if qt and library not in ("refframe_editor", "programs"):
            yield f"{path} includes {qt}"
        elif qt and path.startswith("apps/cli/"):
            yield f"{path} includes {qt}"
        elif name and folder_of(name) in floors and floors[folder_of(name)][0] > floor:
            yield f"{path} includes {name}, which stands above it"


def main():
    root = pathlib.Path(sys.argv[1])
    floors = read_floors(root)
    faults, checked = [], 0
    for path, text in sources_of(root):
        if folder_of(path) in floors:
            checked += len(INCLUDE.findall(text))
            faults += climbs(path, text, floors)
        else:
            faults.append(f"{path} lies in a folder that cmake/floors.txt does not name")
    if checked < 100:
        faults.append(f"only {checked} includes were found below {root}")
    print("\n".join(faults) or f"{checked} includes keep to their floors")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())

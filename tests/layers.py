#!/usr/bin/env python3
"""Holds the order of the house.

    layers.py SOURCE_FOLDER

Fails where a folder includes one that stands behind it in cmake/floors.txt, where a folder without
Qt includes Qt, where a source lies in a folder that the table does not name, where more than two
rooms (a header with its source) include each other in a round, and where code names a member of a
tree by a number of its own instead of by platform/data/tree_ids.h.
"""
import collections
import pathlib
import re
import sys

INCLUDE = re.compile(r'^#include (?:"([^"]+)"|<(Q[A-Z]\w*)>)', re.MULTILINE)

IDS = "platform/data/tree_ids.h"
ID = re.compile(r"\bItem k\w+\{(\d{4,6})\b")
# What only looks like a number in code: comments and texts.
ASIDE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
NUMBER = re.compile(r"(?<![\w.'])(\d{4,6})(?![\w.'])")
# Numbers that happen to be ids as well.
NO_IDS = {
    "platform/data/string_tree_values.cpp": {"1400"},  # the size of a buffer
    "platform/geocore/projection_methods.cpp": {"1111"},  # a method of EPSG
    "platform/geocore/projjson.cpp": {"1111"},  # the same
    "registry/exchange_codes.cpp": {"1020", "1021", "1025", "1201"},  # datums and units
    "registry/registry_units.cpp": {"1025"},  # a unit of EPSG
}


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


def bare_ids(path, text, ids):
    """Integer literals of code that equal the id of a tree's member."""
    if path == IDS or path.endswith(".inc"):
        return
    for line, code in enumerate(ASIDE.sub(without_text, text).splitlines(), 1):
        for number in NUMBER.findall(code):
            if number in ids and number not in NO_IDS.get(path, ()):
                yield f"{path}:{line} names the member {number} of a tree by a bare number"


def without_text(match):
    return "\n" * match.group().count("\n")


def rounds(graph):
    """The strongly connected parts of more than two nodes."""
    order, low, stack, found = {}, {}, [], []

    def visit(node):
        order[node] = low[node] = len(order)
        stack.append(node)
        for other in graph[node]:
            if other not in order:
                visit(other)
            if other in stack:
                low[node] = min(low[node], low[other])
        if low[node] == order[node]:
            part = stack[stack.index(node):]
            del stack[-len(part):]
            if len(part) > 2:
                found.append(sorted(part))

    for node in sorted(graph):
        if node not in order:
            visit(node)
    return found


def room_of(path):
    """A header with its source."""
    return path.rpartition(".")[0]


def main():
    root = pathlib.Path(sys.argv[1])
    floors = read_floors(root)
    ids = set(ID.findall((root / IDS).read_text(encoding="utf-8")))
    faults, checked, rooms = [], 0, collections.defaultdict(set)
    for path, text in sources_of(root):
        if folder_of(path) in floors:
            others = [room_of(name) for name, _ in INCLUDE.findall(text) if folder_of(name) in floors]
            rooms[room_of(path)].update(others)
            for other in others:
                rooms.setdefault(other, set())
            checked += len(INCLUDE.findall(text))
            faults += climbs(path, text, floors)
            faults += bare_ids(path, text, ids)
        else:
            faults.append(f"{path} lies in a folder that cmake/floors.txt does not name")
    faults += ["rooms include each other in a round: " + ", ".join(part) for part in rounds(rooms)]
    if len(ids) < 100:
        faults.append(f"only {len(ids)} ids were found in {IDS}")
    if checked < 100:
        faults.append(f"only {checked} includes were found below {root}")
    print("\n".join(faults) or f"{checked} includes keep to their floors")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Makes world_land.inc from a TopoJSON file of Natural Earth's land at 1:110m.

    make_world_land.py land-110m.json > world_land.inc
"""
import json
import sys

TOLERANCE = 0.12  # degrees; what a coastline may be off in the drawing


def simplify(points):
    """Leaves out the points that lie closer than the tolerance to the line without them."""
    keep = [False] * len(points)
    keep[0] = keep[-1] = True
    spans = [(0, len(points) - 1)]
    while spans:
        first, last = spans.pop()
        (ax, ay), (bx, by) = points[first], points[last]
        dx, dy = bx - ax, by - ay
        length = (dx * dx + dy * dy) ** 0.5
        worst, at = 0.0, None
        for i in range(first + 1, last):
            px, py = points[i][0] - ax, points[i][1] - ay
            off = abs(px * dy - py * dx) / length if length else (px * px + py * py) ** 0.5
            if off > worst:
                worst, at = off, i
        if worst > TOLERANCE:
            keep[at] = True
            spans += [(first, at), (at, last)]
    return [p for p, k in zip(points, keep) if k]


def rings(topology):
    scale, translate = topology["transform"]["scale"], topology["transform"]["translate"]
    arcs = []
    for arc in topology["arcs"]:
        x = y = 0
        points = []
        for dx, dy in arc:
            x, y = x + dx, y + dy
            points.append((x * scale[0] + translate[0], y * scale[1] + translate[1]))
        arcs.append(simplify(points))
    for geometry in topology["objects"]["land"]["geometries"]:
        for polygon in geometry["arcs"]:
            for indices in polygon:
                ring = []
                for i in indices:
                    points = arcs[i] if i >= 0 else arcs[~i][::-1]
                    ring += points if not ring else points[1:]
                yield unwrapped(ring)


def unwrapped(ring):
    """The source joins what the antimeridian cuts: longitudes go on past it, and a ring round the
    pole goes down to it."""
    turn, result = 0, [ring[0]]
    for (before, _), (x, y) in zip(ring, ring[1:]):
        if abs(x - before) > 180:
            turn += 360 if x < before else -360
        result.append((x + turn, y))
    if turn:
        result += [(result[-1][0], -90), (result[0][0], -90)]
    longitudes = [x for x, _ in result]
    shift = 360 * round((min(longitudes) + max(longitudes)) / 720)
    return [(x - shift, y) for x, y in result]


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        topology = json.load(file)
    print("// Made by make_world_land.py; README.md beside it names the source.")
    print("// clang-format off")
    for ring in rings(topology):
        tenths = []
        for x, y in ring:
            point = (round(x * 10), round(y * 10))
            if not tenths or tenths[-1] != point:
                tenths.append(point)
        if tenths[0] == tenths[-1]:
            tenths.pop()
        if len(tenths) < 3:
            continue
        line = f"{len(tenths)},"
        for x, y in tenths:
            item = f"{x},{y},"
            if len(line) + len(item) > 100:
                print(line)
                line = ""
            line += item
        print(line)


main()

"""Power cuts: what a program wrote is replayed, and the disk is looked at after every step.

A disk keeps what was synced, and of all else any part, in pieces of 512 bytes. Of names it keeps,
as the model says, "in order": those up to a moment, as file systems with a journal do; "each alone":
any of those that no sync of their folder has settled.
"""
import collections
import os
import pathlib
import random
import shutil

from harness import FORMS, SHORT, Figures, renew, state

LENGTH = 30
Entry = collections.namedtuple("Entry", "kind inode path offset data")


def read_log(path):
    raw, entries, at = path.read_bytes(), [], 0
    while at < len(raw):
        line = raw.index(b"\n", at)
        kind, inode, name, offset, size = raw[at:line].decode().split("\t")
        at = line + 1 + int(size)
        entries.append(Entry(kind, int(inode), name.removesuffix(" (deleted)"), int(offset),
                             raw[line + 1:at]))
    return entries


class File:
    def __init__(self, content=b""):
        self.settled, self.pending = bytearray(content), []

    def sync(self):
        for change in self.pending:
            put(self.settled, change)
        self.pending = []


def put(content, change):
    kind, offset, data = change
    content.extend(bytes(max(0, offset - len(content))))
    if kind == "T":
        del content[offset:]
    else:
        content[offset:offset + len(data)] = data


class Disk:
    """What stands on a disk: settled for good, and pending."""

    def __init__(self, base, work, model, lot):
        self.model, self.lot, self.work = model, lot, str(work)
        self.now, self.open = {}, {}  # path to file; inode to file
        for path in base.rglob("*"):
            if path.is_file():
                self.now[str(work / path.relative_to(base))] = File(path.read_bytes())
        self.names = dict(self.now)  # as they are settled
        self.folders = {str(work / path.relative_to(base)) for path in base.rglob("*")
                        if path.is_dir()} | {self.work}
        self.changes = []  # of names, not settled yet: path, its file or None, its partner or ""

    def file(self, entry):
        found = self.open.get(entry.inode)
        return found if found in self.now.values() or entry.path not in self.now \
            else self.now[entry.path]

    def take(self, entry):
        kind, path, other = entry.kind, entry.path, ""
        if kind == "C":
            self.now[path] = self.open[entry.inode] = File()
            self.changes.append(([(path, self.now[path])], self.now[path]))
        elif kind in "WT":
            if found := self.file(entry):
                found.pending.append((kind, entry.offset, entry.data))
        elif kind == "S":
            if found := self.file(entry):
                found.sync()
                self.settle(lambda change: change[1] is found)
        elif kind == "D":
            self.settle(lambda change: any(os.path.dirname(name) == path for name, _ in change[0]))
        elif kind == "U":
            self.changes.append(([(path, None)], self.now.pop(path, None)))
        elif kind == "M":
            self.changes.append(([(path, "folder")], None))
        elif kind in "RL":
            other = entry.data.decode()
            moved = self.now.pop(path, None) if kind == "R" else self.now.get(path)
            self.now[other] = moved
            self.changes.append(([(other, moved)] + [(path, None)] * (kind == "R"), moved))

    def settle(self, fits):
        places = [i for i, change in enumerate(self.changes) if fits(change)]
        if not places:
            return
        if self.model == "in order":
            places = range(places[-1] + 1)
        self.apply([self.changes[i] for i in places], self.names, self.folders)
        said = {name for i in places for name, _ in self.changes[i][0]}
        # What was done to a name before the change that is settled now has no say any more.
        self.changes = [change for i, change in enumerate(self.changes) if i not in places and
                        not (i < places[-1] and said & {name for name, _ in change[0]})]

    @staticmethod
    def apply(changes, names, folders):
        for parts, _ in changes:
            for name, file in parts:
                if file == "folder":
                    folders.add(name)
                elif file is None:
                    names.pop(name, None)
                    folders.discard(name)
                else:
                    names[name] = file

    def cut(self):
        """Puts into the folder what a disk may hold if the power fails now."""
        names, folders = dict(self.names), set(self.folders)
        kept = self.changes[:self.lot.randint(0, len(self.changes))] \
            if self.model == "in order" else [c for c in self.changes if self.lot.random() < 0.5]
        self.apply(kept, names, folders)
        share = self.lot.choice((0, 0.3, 0.6, 1))
        shutil.rmtree(self.work, ignore_errors=True)
        for folder in sorted(folders):
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
        for name, file in names.items():
            if os.path.dirname(name) in folders:
                pathlib.Path(name).write_bytes(self.torn(file, share))

    def torn(self, file, share):
        content = bytearray(file.settled)
        for kind, offset, data in file.pending:
            if kind == "T" and self.lot.random() < 0.5:
                put(content, (kind, offset, data))
            for piece in range(0, len(data), 512):
                if self.lot.random() < share:
                    put(content, (kind, offset + piece, data[piece:piece + 512]))
        return content


def cut_power(bench, form, model, seed, states, figures):
    """A sequence of operations whose log is cut at every entry, some times each."""
    driver, base, work = bench.driver, bench.database(form), bench.folder()
    renew(base, work)
    database, log = work / FORMS[form], bench.folder() / "log"
    digests = driver.digests(database, seed, 0, LENGTH)
    renew(base, work)
    driver.run("work", database, seed, 0, LENGTH, fault={"prefix": str(work), "log": str(log)})
    entries, lot = read_log(log), random.Random(seed)
    disk, done = Disk(base, work, model, lot), 0
    for number, entry in enumerate(entries):
        if entry.kind == "A":
            done += entry.data.startswith(b"A ")
        disk.take(entry)
        for _ in range(int((number + 1) * states / len(entries)) -
                       int(number * states / len(entries))):
            disk.cut()
            verdict = driver.judge(database)
            known = dict.fromkeys(digests, "LOST") | dict.fromkeys(digests[done:done + 2], "whole")
            figures.add(state(verdict, known), f"{model}, seed {seed}, entry {number} of "
                        f"{len(entries)}, done {done}: {verdict}")


def power_cuts(bench, form):
    rows = []
    # The second model holds more states, and has to do for the short run.
    for model in ("in order", "each alone")[bench.scale <= SHORT:]:
        figures, share = Figures(f"power cuts, names {model}", form), bench.many(5000, 20)
        bench.side_by_side(
            lambda seed: cut_power(bench, form, model, seed, share // bench.workers, figures),
            range(1, bench.workers + 1))
        rows.append(figures)
    return rows


SCENARIOS = {"power-cuts": power_cuts}

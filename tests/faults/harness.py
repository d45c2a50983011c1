"""What the scenarios of faults share: the driver, folders to work in, and the figures."""
import collections
import concurrent.futures
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import threading

FORMS = {"folder": "refs", "container": "refs.qvdb"}
SHORT = 0.0015  # the part of the long run that the short one does
HANG = -14  # the signal by which a command ends that lasts longer than its limit

Verdict = collections.namedtuple("Verdict", "refused digest findings errors integrity strays")


class Driver:
    """A process that does what it is told, each time in a child of its own."""

    def __init__(self, program):
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True, errors="replace")

    def start(self, *words, fault=None, **more):
        request = {"do": [str(word) for word in words], "fault": fault or {}, **more}
        self.process.stdin.write(json.dumps(request) + "\n")
        self.process.stdin.flush()

    def finish(self):
        answer = json.loads(self.process.stdout.readline())
        if "Sanitizer" in answer["err"] or "runtime error:" in answer["err"]:
            answer["exit"] = -6  # as an abort is told
        return answer

    def run(self, *words, **more):
        """The answer to a command: exit (less than 0: a signal), calls, out, err."""
        self.start(*words, **more)
        return self.finish()

    def must(self, *words):
        """What a command prints that has to succeed."""
        answer = self.run(*words)
        if answer["exit"] != 0:
            raise RuntimeError(f"{' '.join(map(str, words))}: {answer}")
        return answer["out"]

    def judge(self, database):
        answer = self.run("judge", database, limit=20)
        if answer["exit"] != 0:
            return Verdict(f"CRASH {answer}", "", [], True, "ok", [])
        return Verdict(**json.loads(answer["out"]))

    def digests(self, database, seed, first, last):
        """The digests of a database before and after each of these operations."""
        result = [self.judge(database).digest]
        for number in range(first, last):
            self.must("work", database, seed, number, number + 1)
            result.append(self.judge(database).digest)
        return result


class Figures:
    """How often a scenario came to each outcome. One in capitals breaks a promise."""

    def __init__(self, scenario, form):
        self.scenario, self.form = scenario, form
        self.outcomes, self.examples = collections.Counter(), collections.defaultdict(list)
        self.notes, self.tried = [], 0
        self.lock = threading.Lock()

    def add(self, outcome, example="", count=1, tried=1):
        with self.lock:
            self.outcomes[outcome] += count
            self.tried += tried
            self.examples[outcome].append(str(example))

    def broken(self):
        return {name: count for name, count in self.outcomes.items() if name.isupper()}

    def row(self):
        told = [f"{name} {count:,}" for name, count in sorted(self.outcomes.items())] + self.notes
        return [self.scenario, self.form, f"{self.tried:,}", ", ".join(told),
                sum(self.broken().values())]


class Bench:
    """Drivers and folders for a run. `scale` is how much of the long run is done, from 0 to 1."""

    def __init__(self, program, scale):
        self.program, self.scale, self.workers = program, scale, os.cpu_count() or 1
        memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="refframe-faults-", dir=memory))
        self.local, self.numbers = threading.local(), itertools.count()

    def many(self, long, least):
        """How often something is done that the long run does so often; half of the least in the
        short run."""
        return max(least if self.scale > SHORT else (least + 1) // 2, int(long * self.scale))

    @property
    def driver(self):
        """The driver of this thread."""
        if not hasattr(self.local, "driver"):
            self.local.driver = Driver(self.program)
        return self.local.driver

    def folder(self):
        path = self.root / str(next(self.numbers))
        path.mkdir()
        return path

    def database(self, form, operations=0, seed=1):
        """The folder of a small database, after some operations."""
        folder = self.folder()
        self.driver.must("make", folder / FORMS[form])
        self.driver.must("work", folder / FORMS[form], seed, 0, operations)
        return folder

    def side_by_side(self, work, items):
        """work(item) for all items, as many at once as there are processors."""
        with concurrent.futures.ThreadPoolExecutor(self.workers) as pool:
            list(pool.map(work, items))


def renew(source, target):
    """Puts a copy of the folder in the place of another."""
    shutil.rmtree(target, ignore_errors=True)
    shutil.copytree(source, target)


def state(verdict, known):
    """How the content is called: by the name of the known digest, or as a fault."""
    if verdict.refused:
        return "CRASH" if verdict.refused.startswith("CRASH") else "REFUSED"
    return known.get(verdict.digest, "HALF") if verdict.integrity == "ok" else "CORRUPT"


def lines(output, kind):
    """What stands behind the letter in those lines of an output that begin with it."""
    return [line[2:] for line in output.splitlines() if line.startswith(kind + " ")]

"""Eight processes that write one database at once, and a host that opens and closes its files."""
import collections

from harness import Driver, FORMS, Figures, lines

PROCESSES = 8


def expected(outputs):
    """Names that have to be there, with their descriptions, after what was acknowledged; and those
    of which nobody can tell, since one process deleted what another may have imported again."""
    names, open_names = {}, set()
    for line in "".join(outputs).splitlines():
        kind, _, name = line.partition(" ")
        if kind == "I":
            names.setdefault(name, "A system")
        elif kind == "E":
            names[name] = "edited"
        elif kind == "D":
            names.pop(name, None)
            open_names |= {name} if name.startswith("shared") else set()
    return {name: text for name, text in names.items() if name not in open_names}, open_names


def listed(driver, database):
    rows = driver.must("refframe", "list", database, "reference-system").splitlines()
    return [tuple(row.split("\t")[1:3]) for row in rows]


def write_at_once(bench, form, how, means, count, figures, processes=PROCESSES, fault=None):
    folder = bench.database(form)
    database = folder / FORMS[form]
    if fault:
        fault = {**fault, "prefix": str(folder)}
    drivers = [Driver(bench.program) for _ in range(processes)]
    for number, driver in enumerate(drivers):
        driver.start("beside", database, number + 1, count, how, means, fault=fault, limit=1800)
    answers = [driver.finish() for driver in drivers]
    outputs = [answer["out"] for answer in answers]
    label = f"{how}, {means}"
    for answer in answers:
        if answer["exit"] != 0:
            figures.add("CRASH", f"{label}: exit {answer['exit']}: {answer['err'][-200:]}")
        for line in lines(answer["out"], "X"):
            figures.add("ERROR", f"{label}: {line}", tried=0)
    (names, open_names), found = expected(outputs), listed(bench.driver, database)
    # Besides those that were asked for there are the systems from which they are derived.
    counted = collections.Counter(name for name, _ in found)
    there = dict(found)
    done = sum(line[:2] in ("I ", "E ", "D ", "U ") for output in outputs for line in output.splitlines())
    figures.add("done", count=done, tried=done)
    for name, description in names.items():
        if there.get(name) != description:
            figures.add("LOST", f"{label}: {name} is {there.get(name)}", tried=0)
    for name, times in counted.items():
        if times > 1:
            figures.add("DOUBLED", f"{label}: {name} {times} times", times - 1, 0)
        if "_" in name and name not in names and name not in open_names:
            figures.add("NOT DELETED", f"{label}: {name}", tried=0)
    verdict = bench.driver.judge(database)
    if verdict.refused or verdict.integrity != "ok":
        figures.add("CORRUPT", f"{label}: {verdict}", tried=0)
    for finding in verdict.findings if verdict.errors else ():
        if not finding.startswith(("note: ", "refframe: ")):
            figures.add("FINDING", f"{label}: {finding}", tried=0)
    waits = [float(line) for output in outputs for line in lines(output, "W")]
    figures.notes.append(f"{label}: longest wait {max(waits, default=0):.1f} s")


def eight_processes(bench, form):
    figures = Figures(f"{PROCESSES} processes at once", form)
    for how in ("same", "mixed"):
        for means in ("open", "command"):
            write_at_once(bench, form, how, means, bench.many(500, 10), figures)
    return [figures]


def host_beside(bench, form):
    """Each file is opened and closed in the process before every lock, read, write and sync."""
    figures = Figures("files opened and closed in the process", form)
    fault = {"families": "lock,read,write,sync", "effect": "meddle", "at": 1, "for_good": True}
    write_at_once(bench, form, "mixed", "open", bench.many(1000, 12), figures, 2, fault)
    return [figures]


def at_once(bench, form, words, name, base, figures):
    """The same command by all processes on one database that it makes or brings up to date."""
    folder = bench.folder()
    database = folder / FORMS[form]
    if base:
        bench.driver.must("old", database, 40)
    drivers = [Driver(bench.program) for _ in range(PROCESSES)]
    for driver in drivers:
        driver.start("refframe", *(str(database) if word == "DB" else word for word in words))
    answers = [driver.finish() for driver in drivers]
    done = sum(answer["exit"] == 0 for answer in answers)
    verdict = bench.driver.judge(database)
    is_good = done == (PROCESSES if base else 1) and not verdict.refused \
        and verdict.integrity == "ok" and [path.name for path in folder.iterdir()] == [FORMS[form]]
    figures.add(name if is_good else f"{name} FAILS".upper(),
                f"{done} succeed, {verdict}, {[answer['err'][-100:] for answer in answers]}")


def made_at_once(bench, form):
    figures = Figures(f"{PROCESSES} processes make or convert one database", form)
    for _ in range(bench.many(50, 2)):
        at_once(bench, form, ("init", "--empty", "DB"), "made once", False, figures)
        at_once(bench, form, ("list", "DB", "reference-system"), "converted once", True, figures)
    return [figures]


SCENARIOS = {"made-at-once": made_at_once, "eight-processes": eight_processes, "host-beside": host_beside}

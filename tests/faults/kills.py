"""Processes killed at any moment, and what people then do with the files that they left."""
import random
import shutil

from commands import Stage
from harness import FORMS, Figures, lines, renew, state

CALLS = "open,write,sync,truncate,rename,unlink,mkdir"
LENGTH, AT_ONCE = 60, 12  # operations of a sequence, and of a process that is killed


def judge_moved(driver, folder, elsewhere, form):
    """The database after its folder took another name; what is refused is mended by the command
    for that. Also tells whether it had to be."""
    folder.rename(elsewhere)
    verdict = driver.judge(elsewhere / FORMS[form])
    is_refused = bool(verdict.refused)
    if is_refused:
        driver.run("refframe", "recover", elsewhere / FORMS[form])
        verdict = driver.judge(elsewhere / FORMS[form])
    elsewhere.rename(folder)
    return verdict, is_refused


def kill_operations(bench, form, seed, kills, figures):
    """A sequence of operations by processes that are killed; the next goes on where one ended."""
    driver, lot, work = bench.driver, random.Random(seed), bench.folder()
    base, database, at = bench.database(form), work / FORMS[form], 0
    fault = {"families": CALLS, "prefix": str(work)}
    renew(base, work)
    digests = driver.digests(database, seed, 0, LENGTH)
    renew(base, work)
    calls = driver.run("work", database, seed, 0, AT_ONCE, fault=fault)["calls"]
    renew(base, work)
    for number in range(kills):
        how = {"kill_after": lot.randint(1000, 30000)} if lot.random() < 0.4 else \
            {"fault": {**fault, "effect": "kill", "at": lot.randint(1, calls)}}
        answer = driver.run("work", database, seed, at, at + AT_ONCE, **how)
        last = at + len(lines(answer["out"], "A"))
        known = dict.fromkeys(digests, "LOST") | dict.fromkeys(digests[last:last + 2], "whole")
        moved = number % 3 == 0
        verdict, recovered = judge_moved(driver, work, bench.root / f"{work.name}-moved", form) \
            if moved else (driver.judge(database), False)
        found = state(verdict, known) if answer["exit"] <= 0 else "REFUSED WORK"
        figures.add("whole after recover" if found == "whole" and recovered else found,
                    f"seed {seed} at {at}, {how}, moved {moved}: {answer} {verdict}")
        at = digests.index(verdict.digest, last) if found == "whole" else LENGTH
        if at + AT_ONCE > LENGTH:
            renew(base, work)
            at = 0


def killed_operations(bench, form):
    figures, kills = Figures("kills of operations, a third moved", form), bench.many(1500, 20)
    bench.side_by_side(
        lambda seed: kill_operations(bench, form, seed, kills // bench.workers, figures),
        range(1, bench.workers + 1))
    return [figures]


def kill_command(bench, stage, command, most, figures):
    """The command killed at its calls; what it leaves, and whether it then can be done again."""
    folder = bench.folder()
    if not (states := stage.states(command, figures)):
        return
    fault = {"families": CALLS, "prefix": str(folder), "effect": "kill"}
    total = stage.run(command, folder, fault=fault)["calls"]
    points = range(1, total + 1)
    for point in points if total <= most else random.Random(total).sample(points, most):
        stage.run(command, folder, fault={**fault, "at": point})
        seen = stage.look(command, folder)
        faults = [place for place in seen if place.isupper()]
        found = faults[0] if faults else "whole" if seen in states else "HALF"
        if not faults and "nothing" in seen:
            answer = stage.again(command, folder)
            if answer["exit"] != 0 or stage.look(command, folder) != states[-1]:
                found = "NOT DONE AGAIN"
        figures.add(found, f"{command.name} killed at call {point} of {total}: {seen}")


def killed_commands(bench, form):
    figures, stage = Figures("kills of commands", form), Stage(bench, form)
    most = bench.many(200, 3)
    bench.side_by_side(lambda command: kill_command(bench, stage, command, most, figures),
                       stage.commands.values())
    return [figures]


def is_log(_, names):
    return [name for name in names if "journal" in name or "-mj" in name or "-wal" in name]


def moved(bench, form, folder, _):
    """The folder gets another name."""
    return judge_moved(bench.driver, folder, bench.root / f"{folder.name}-moved", form)[0]


def copied(bench, form, folder, _):
    """A copy of the bare files: what was going on is gone, and is noticed."""
    copy = bench.folder()
    shutil.rmtree(copy)
    shutil.copytree(folder, copy, ignore=is_log)
    return bench.driver.judge(copy / FORMS[form])


def replaced(bench, form, folder, other):
    """Another database is copied over the killed one; what it had left beside stays."""
    shutil.copytree(other, folder, dirs_exist_ok=True)
    return bench.driver.judge(folder / FORMS[form])


def made_anew(bench, form, folder, _):
    """The database is removed but for what lies beside it, and another is made."""
    database = folder / FORMS[form]
    for path in [database] if database.is_file() else database.glob("*.dat"):
        path.unlink()
    bench.driver.run("refframe", "init", "--empty", database)
    return bench.driver.judge(database)


# What may stand there after each; else it has to be noticed, and what was moved has to be mended.
WAYS = {moved: ("before", "after"), copied: ("before", "after"), replaced: ("the other",), made_anew: ("the new one",)}


def meddled(bench, form):
    """An import is killed at its calls, and then people do what they do with files."""
    stage, other, folder = Stage(bench, form), bench.database(form, 25, 9), bench.folder()
    importing, empty, known = stage.commands["import"], bench.folder(), {}
    bench.driver.run("refframe", "init", "--empty", empty / FORMS[form])
    stage.run(importing, folder)
    for name, place in (("before", stage.base), ("after", folder), ("the other", other),
                        ("the new one", empty)):
        known[bench.driver.judge(place / FORMS[form]).digest] = name
    fault = {"families": CALLS, "prefix": str(folder), "effect": "kill"}
    total = stage.run(importing, folder, fault=fault)["calls"]
    for way, may_be in WAYS.items():
        figures = Figures(f"killed, then {way.__name__.replace('_', ' ')}", form)
        for point in range(1, total + 1, max(1, int(0.1 / bench.scale))):
            stage.run(importing, folder, fault={**fault, "at": point})
            verdict = way(bench, form, folder, other)
            found = state(verdict, known)
            if way is not moved and (found == "REFUSED" or found.isupper() and verdict.errors):
                found = "noticed"
            elif found.islower() and found not in may_be:
                found = found.upper()
            figures.add(found, f"killed at call {point} of {total}: {verdict}")
        yield figures


SCENARIOS = {"killed-operations": killed_operations, "killed-commands": killed_commands,
             "meddled": meddled}

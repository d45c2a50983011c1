"""Damaged files of every kind: refused or found, never a wrong object unseen; and their salvage."""
import random
import shutil

from harness import FORMS, Figures, renew

PAGE = 4096


def flip(content, lot, _):
    content[lot.randrange(len(content))] ^= 1 << lot.randrange(8)


def overwrite(content, lot, _):
    at = lot.randrange(len(content))
    content[at:at + 64] = lot.randbytes(len(content[at:at + 64]))


def blank(content, lot, _):
    at = lot.randrange((len(content) + PAGE - 1) // PAGE) * PAGE
    content[at:at + PAGE] = bytes(len(content[at:at + PAGE]))


def cut(content, lot, _):
    del content[lot.randrange(len(content)):]


def swap_pages(content, lot, _):
    """Two pages change places; in a file of one page two halves of it."""
    size = min(PAGE, len(content) // 2)
    one, two = (size * page for page in lot.sample(range(len(content) // size), 2))
    content[one:one + size], content[two:two + size] = \
        content[two:two + size], content[one:one + size]


def swap_files(content, _, other):
    """What another file of the same kind holds."""
    content[:] = other


WAYS = {"flipped bit": flip, "overwritten": overwrite, "blank page": blank, "cut": cut,
        "pages swapped": swap_pages, "files swapped": swap_files}


def kinds(database):
    """The files of each kind in a database."""
    if database.is_file():
        return {"container": [database]}
    return {"table file": sorted(database.glob("*.dat")),
            "height file": sorted((database / "Heights").iterdir())}


def rows_of(driver, database):
    """A line for each record with all that it holds; None for a database that does not open."""
    answer = driver.run("records", database)
    return set(answer["out"].splitlines()) if answer["exit"] == 0 else None


def leaf_rows(page, number, places):
    """How many rows of a leaf of a table are hit where these places of it are."""
    head = 100 if number == 0 else 0
    count = int.from_bytes(page[head + 3:head + 5], "big")
    first = head + 8 + 2 * count
    starts = [int.from_bytes(page[at:at + 2], "big") for at in range(head + 8, first, 2)]
    if any(place < first for place in places):
        return count
    return len({max((start for start in starts if start <= place), default=0) for place in places})


def rows_at_risk(before, after):
    """How many rows the damage can have cost: those that it touches."""
    risk = 0
    for number, at in enumerate(range(0, len(before), PAGE)):
        old, new = before[at:at + PAGE], after[at:at + PAGE].ljust(PAGE, b"\0")
        places = [place for place, byte in enumerate(old) if byte != new[place]]
        if not places:
            continue
        kind = old[100 if number == 0 else 0]
        risk += leaf_rows(old, number, places) if kind == 13 else kind not in (2, 5, 10)
    return risk


def judge_damage(driver, database, good):
    """What becomes of a damaged database, and whether something is wrong unseen."""
    verdict = driver.judge(database)
    if verdict.refused:
        return "CRASH" if verdict.refused.startswith("CRASH") else "refused", verdict
    if verdict.errors:
        return "found", verdict
    if verdict.digest != good.digest:
        return "WRONG UNSEEN", verdict
    return "harmless", verdict


def salvage(driver, work, form, whole, risk, figures, label):
    """Every record that the damage does not touch has to come back, and none that is wrong."""
    target = work / ("saved-" + FORMS[form])
    answer = driver.run("refframe", "salvage", work / FORMS[form], target)
    rows = rows_of(driver, target) if answer["exit"] >= 0 else None
    # Heights go with their records.
    lost = sum(not row.startswith("heights|") for row in whole - (rows or set()))
    if lost > risk:
        outcome = "NOT SALVAGED" if rows is None else "LOST"
        return figures.add(outcome, f"{label}: {lost} records, {risk} touched: {answer['err']}")
    if rows is None:
        return figures.add("nothing left, told" if answer["err"] else "SILENT", f"{label}: {answer}")
    figures.lost += lost
    wrong = sorted(rows - whole)
    if wrong and (wrong[0] < "heights|" or not driver.judge(target).errors):
        return figures.add("SALVAGED WRONG", f"{label}: {wrong[:2]}")
    return figures.add("salvaged with damaged heights, told" if wrong else "salvaged")


def damage_kind(bench, form, kind, count):
    figures = Figures(f"damage of a {kind}", form)
    salvaged = Figures(f"salvage of a damaged {kind}", form)
    salvaged.lost = 0
    base = bench.database(form, 60, 3)
    good = bench.driver.judge(base / FORMS[form])
    whole = rows_of(bench.driver, base / FORMS[form])

    def damage(number):
        work, lot = bench.folder(), random.Random(number)
        renew(base, work)
        way = list(WAYS)[number % len(WAYS)]
        files = kinds(work / FORMS[form])[kind]
        path = lot.choice(files)
        before = path.read_bytes()
        content = bytearray(before)
        WAYS[way](content, lot, lot.choice(files).read_bytes())
        path.write_bytes(content)
        label = f"{way} in {path.name}, number {number}"
        outcome, verdict = judge_damage(bench.driver, work / FORMS[form], good)
        figures.add(outcome, f"{label}: {verdict}")
        if outcome != "harmless" and way != "files swapped":
            risk = 1 if kind == "height file" else rows_at_risk(before, content)
            salvage(bench.driver, work, form, whole, risk, salvaged, label)
        shutil.rmtree(work)

    bench.side_by_side(damage, range(count))
    tried = sum(salvaged.outcomes.values())
    salvaged.notes.append(f"{salvaged.lost / max(1, tried):.1f} of {len(whole)} records lost each")
    return [figures, salvaged]


def damaged(bench, form):
    base = bench.database(form, 60, 3)
    return [row for kind in kinds(base / FORMS[form])
            for row in damage_kind(bench, form, kind, bench.many(1000, 12))]


SCENARIOS = {"damage": damaged}

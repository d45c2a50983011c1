"""Every call of the system that fails, once and for good; every allocation that does."""
import errno
import random
import re

from commands import Stage
from harness import HANG, Figures

# Families of calls with the errors that they meet.
PLAN = {"open": ["EIO", "EINTR", "EMFILE", "EACCES"], "read": ["EIO", "EINTR"],
        "write": ["ENOSPC", "EIO", "EINTR", "short"], "sync": ["EIO"], "truncate": ["EIO"],
        "lock": ["ENOLCK", "EIO"], "rename": ["EIO", "ENOSPC"], "unlink": ["EIO"],
        "mkdir": ["ENOSPC"], "stat": ["EACCES"], "map": ["ENOMEM"]}
# A reason that says why, and a name of what is concerned.
REASON = re.compile(r"Input/output|I/O|No space|full|Too many|Interrupted|Permission|[Ll]ock|"
                    r"read-?only|ermitted|memory")
PLACE = re.compile(r"refs|\.dat|\.qvdb|\.txt|Heights|backup|many|memory")


def outcome(answer, seen, states, fault):
    """What became of a command. `states` are those that it may leave, the last one its success."""
    faults = [place for place in seen if place.isupper()]
    done = sum(line.startswith("A ") for line in answer["out"].splitlines())
    if faults or seen not in states[done:]:
        return faults[0] if faults else "LOST" if seen in states else "OTHER STATE"
    if answer["exit"] < 0:
        # Without memory libraries may give up by themselves.
        gives_up = fault["families"] == "malloc"
        return "HANGS" if answer["exit"] == HANG else "ended, nothing lost" if gives_up else "CRASH"
    if answer["exit"] == 0:
        return "went on" if seen == states[-1] else "SILENT"
    if seen == states[-1] and states[0] != states[-1]:
        return "told, yet done"
    isClear = REASON.search(answer["err"]) and PLACE.search(answer["err"])
    return "told" if isClear else "told vaguely"


def fault_for(family, error, for_good):
    return {"families": family, "for_good": for_good,
            "effect": "short" if error == "short" else "fail",
            "error": errno.ENOSPC if error == "short" else getattr(errno, error)}


def try_points(bench, stage, command, states, fault, most, figures):
    """The command with the fault at each of its calls, or at so many of them."""
    folder = bench.folder()
    fault = {**fault, "prefix": str(folder)}
    total = stage.run(command, folder, fault=fault)["calls"]
    points = range(1, total + 1)
    for point in points if total <= most else random.Random(total).sample(points, most):
        answer = stage.run(command, folder, limit=20, fault={**fault, "at": point})
        result = outcome(answer, stage.look(command, folder), states, fault)
        # What cannot be read is not salvaged, and its exit status says that something is lost.
        if command.name == "salvage" and result == "OTHER STATE" and answer["exit"] == 1:
            result = "told"
        figures.add(result, f"{command.name}, {fault}, call {point} of {total}: "
                    f"exit {answer['exit']}: {answer['err'].strip()[-160:]}")


def failing(bench, form, scenario, faults, most):
    figures, stage, jobs = Figures(scenario, form), Stage(bench, form), []
    for command in stage.commands.values():
        if states := stage.states(command, figures):
            jobs += [(command, states, fault) for fault in faults]
    jobs = jobs[::max(1, int(0.05 / bench.scale))]
    bench.side_by_side(lambda job: try_points(bench, stage, *job, most, figures), jobs)
    return [figures]


def failing_calls(bench, form):
    # No system interrupts for good, and who is interrupted tries again.
    faults = [fault_for(family, error, for_good) for family, errors in PLAN.items()
              for error in errors for for_good in (False, True)
              if not (for_good and error == "EINTR")]
    return failing(bench, form, "failing calls", faults, bench.many(400, 1))


def failing_allocations(bench, form):
    faults = [fault_for("malloc", "ENOMEM", for_good) for for_good in (False, True)]
    return failing(bench, form, "failing allocations", faults, bench.many(250, 3))


SCENARIOS = {"failing-calls": failing_calls, "failing-allocations": failing_allocations}

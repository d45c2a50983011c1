"""The commands that faults come into, and the states that each may leave behind."""
import collections
import hashlib

from harness import FORMS, renew, state

SEED, OPERATIONS = 3, 14

# `words` are those of the driver, with {0} for the folder. `judged` names what may be changed or
# made there: databases and files.
Command = collections.namedtuple("Command", "name words judged")

OF_DATABASE = {
    "import": "refframe import DB reference-system {0}/new.txt",
    "import of what is there": "refframe import DB reference-system {0}/known.txt",
    "import of a folder": "refframe import DB reference-system {0}/many",
    "delete": "refframe delete DB reference-system name:known_7 --yes",
    "operations": f"work DB {SEED} {OPERATIONS} {OPERATIONS + 16}",
    "list": "refframe list DB reference-system",
    "check": "refframe check DB",
    "repair": "refframe check DB --repair",
    "conversion": "refframe list OLD reference-system",
    "export": "refframe export DB reference-system name:known_7 -o {0}/out.txt",
    "init": "refframe init --empty {0}/new-DB",
    "backup": "refframe backup DB {0}/backup.qvdb",
    "restore": "refframe restore {0}/older-backup.qvdb DB",
    "copy": "refframe copy DB {0}/new-OTHER",
    "salvage": "refframe salvage DB {0}/new-OTHER",
}
JUDGED = {"conversion": ["OLD"], "export": ["DB", "out.txt"], "init": ["new-DB"],
          "backup": ["DB", "backup.qvdb"], "copy": ["DB", "new-OTHER"], "salvage": ["DB", "new-OTHER"]}


class Stage:
    """A folder from which each command starts."""

    def __init__(self, bench, form):
        self.bench, self.base = bench, bench.database(form, OPERATIONS, SEED)
        driver, database = bench.driver, self.base / FORMS[form]
        (self.base / "many").mkdir()
        for name, number in (("known", 7), ("new", 9), ("many/one", 1), ("many/two", 2)):
            (self.base / f"{name}.txt").write_text(driver.must("tree", name[:5] + "_", number, 5))
        driver.run("refframe", "backup", database, self.base / "older-backup.qvdb")
        driver.must("refframe", "import", database, "reference-system", self.base / "known.txt")
        (self.base / "out.txt").write_text("what stood there")
        driver.must("old", self.base / f"old-{FORMS[form]}", 40)
        other = FORMS["container" if form == "folder" else "folder"]
        names = {"DB": FORMS[form], "OTHER": other, "OLD": f"old-{FORMS[form]}"}

        def filled(text, folder):
            for word, name in names.items():
                text = text.replace(f" {word}", f" {folder}{name}").replace(word, name)
            return text

        self.commands = {
            name: Command(name, filled(words, "{0}/").split(),
                          [filled(place, "") for place in JUDGED.get(name, ["DB"])])
            for name, words in OF_DATABASE.items()}

    def run(self, command, folder, **more):
        """The command on a fresh copy in the folder."""
        renew(self.base, folder)
        return self.again(command, folder, **more)

    def again(self, command, folder, **more):
        return self.bench.driver.run(*(word.format(folder) for word in command.words), **more)

    def look(self, command, folder):
        """What stands in each judged place: a digest, or a fault in capitals."""
        return [self.look_at(folder / name) for name in command.judged]

    def look_at(self, path):
        if not path.exists() or (path.is_dir() and not any(path.iterdir())):
            return "nothing"
        if path.suffix == ".txt":
            return hashlib.md5(path.read_bytes()).hexdigest()
        verdict = self.bench.driver.judge(path)
        return state(verdict, {verdict.digest: verdict.digest})

    def states(self, command, figures):
        """What the judged places may hold: before the command, after each of its steps, and at
        last. Nothing for a command that does not work without faults."""
        folder = self.bench.folder()
        renew(self.base, folder)
        if command.name == "operations":
            numbers = [int(word) for word in command.words[2:]]
            return [[digest] for digest in
                    self.bench.driver.digests(folder / command.judged[0], *numbers)]
        # Looking at an older database already converts it.
        before = None if command.name == "conversion" else self.look(command, folder)
        answer = self.run(command, folder)
        if answer["exit"] != 0:
            figures.add("DOES NOT WORK", f"{command.name}: {answer['err']}")
            return []
        after = self.look(command, folder)
        return [before or after, after]

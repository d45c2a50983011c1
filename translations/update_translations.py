#!/usr/bin/env python3
"""Brings the translations up to date with the texts in the sources, or checks that they are.

    update_translations.py SOURCE_FOLDER [--check]

The texts are those in quotes within Translated("...") and Translatable("..."), the rows of the
catalogue in platform/ui/texts.cpp, and what the descriptions of edit dialogs show: there every text
is one that begins with a capital letter (a box's with a blank ahead of it) and is neither a column
of a table nor a numbered control. New ones are added to each refframe_*.ts as unfinished, and
those that are gone are taken out. The check changes nothing, and fails on a text without a finished
translation, on one too many, and on a translation that lost a part of its text: a placeholder, the
mark of a key, the dots of a command that asks further, a mask of files.
"""
import pathlib
import re
import sys
import xml.etree.ElementTree as xml
from xml.sax.saxutils import escape

FOLDERS = ("apps/host", "database", "dialogs", "editor", "platform/widgets", "vertical")
LITERAL = r'"(?:[^"\\]|\\.)*"'
LITERALS = rf"((?:{LITERAL}\s*)+)"
CALL = re.compile(rf"\bTranslat(?:ed|able)\(\s*{LITERALS}")
ROW = re.compile(rf"TextRow\{{\s*TextId::\w+,\s*{LITERALS}")
FORMS = ("forms/*.h", "forms/*.cpp")
CAPTION = re.compile(r'"(?!(?:Edit|Button)\d+")( ?[A-Z][^"\\]*[a-z][^"\\]*)"')
ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\"}


def text_of(literals):
    parts = re.findall(LITERAL, literals)
    return re.sub(r"\\(.)", lambda m: ESCAPES[m.group(1)], "".join(p[1:-1] for p in parts))


def gather(root):
    texts = set()
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*.cpp")):
            texts |= {text_of(m) for m in CALL.findall(path.read_text(encoding="utf-8"))}
    for pattern in FORMS:
        for path in sorted(root.glob(pattern)):
            texts |= set(CAPTION.findall(path.read_text(encoding="utf-8")))
    catalogue = (root / "platform/ui/texts.cpp").read_text(encoding="utf-8")
    texts |= {text_of(m) for m in ROW.findall(catalogue)}
    return texts


def read(path):
    """Source texts with their translations; None for one that is not finished."""
    tree = xml.parse(path).getroot()
    found = {}
    for message in tree.iter("message"):
        translation = message.find("translation")
        finished = translation.get("type") is None and translation.text
        found[message.find("source").text] = translation.text if finished else None
    return tree.get("language"), found


def write(path, language, translations):
    lines = [
        '<?xml version="1.0" encoding="utf-8"?>',
        "<!DOCTYPE TS>",
        f'<TS version="2.1" language="{language}" sourcelanguage="en">',
        "<context>",
        "    <name>refframe</name>",
    ]
    for source in sorted(translations):
        text = translations[source]
        mark = "" if text else ' type="unfinished"'
        lines += [
            "    <message>",
            f"        <source>{escape(source)}</source>",
            f"        <translation{mark}>{escape(text or '')}</translation>",
            "    </message>",
        ]
    lines += ["</context>", "</TS>", ""]
    path.write_text("\n".join(lines), encoding="utf-8")


def parts(text):
    """What a translation must keep."""
    return {
        "placeholders": sorted(re.findall(r"%\d|%s|%n", text)),
        "mark of a key": len(re.findall(r"&(?=\S)", text)),
        "dots at its end": text.endswith("..."),
        "colon at its end": text.endswith(":"),
        "masks of files": sorted(re.findall(r"\*\.[^|)]*", text)),
        "bars": text.count("|"),
    }


def faults(texts, translations):
    for source in sorted(texts - translations.keys()):
        yield f"not there: {source!r}"
    for source in sorted(translations.keys() - texts):
        yield f"in no source any more: {source!r}"
    for source, text in sorted(translations.items()):
        if source not in texts:
            continue
        if not text:
            yield f"not translated: {source!r}"
            continue
        wanted, there = parts(source), parts(text)
        # Captions are put together with a blank; a colon may stand for an English verb's order.
        if not wanted["colon at its end"]:
            there["colon at its end"] = False
        yield from (
            f"{name} of {source!r} differ in {text!r}"
            for name, part in wanted.items()
            if part != there[name]
        )


def main():
    root = pathlib.Path(sys.argv[1])
    check = "--check" in sys.argv[2:]
    texts = gather(root)
    files = sorted((root / "translations").glob("refframe_*.ts"))
    failed = not files or len(texts) < 100
    for path in files:
        language, translations = read(path)
        if check:
            for fault in faults(texts, translations):
                print(f"{path.name}: {fault}")
                failed = True
        else:
            write(path, language, {text: translations.get(text) for text in texts})
    print(f"{len(texts)} texts, {len(files)} languages")
    return 1 if check and failed else 0


if __name__ == "__main__":
    sys.exit(main())

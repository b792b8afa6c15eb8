#!/usr/bin/env python3
"""Reads the texts of the sources into a copy of the .ts files and looks at every translation.

What is malformed is an error: a text that cannot be found at run time, a placeholder, a tag, a mnemonic or a plural
form that got lost, a mnemonic that two controls of a dialog share, and the typography of the language. What is not
translated yet is counted and named, and stays English until somebody does; --complete makes it an error, too.
"""
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from collections import Counter
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
PLURAL_FORMS = 2  # of each of our languages

PLACEHOLDER = re.compile(r"%L?(?:\d{1,2}|n)")
TAG = re.compile(r"</?\w[^>]*>")
MNEMONIC = re.compile(r"&(\w)(?!\w*;)")

TYPOGRAPHY = {
    "de": [(re.compile(r"[\"»«”]|\.\.\."), "quotes are „…“, an ellipsis is one sign")],
    "fr": [
        (re.compile(r"[\"„“]|\.\.\.|'"), "quotes are « … », an ellipsis is one sign, the apostrophe is ’"),
        (re.compile(r"[^\u202f\u00a0][:;!?»](?!\w|//)|«[^\u202f]"), "a no-break space stands before : ; ! ? and within « »"),
    ],
}


def forms(message):
    translation = message.find("translation")
    if message.get("numerus") == "yes":
        return [form.text or "" for form in translation.findall("numerusform")]
    return [translation.text or ""]


def faults(language, message):
    """What does not hold about a translation."""
    source = message.find("source").text
    texts = forms(message)
    if message.get("numerus") == "yes" and len(texts) != PLURAL_FORMS:
        yield f"{len(texts)} plural forms"
    for text in texts:
        for name, pattern in (("placeholders", PLACEHOLDER), ("tags", TAG)):
            if Counter(pattern.findall(source)) != Counter(pattern.findall(text)):
                yield f"{name} differ"
        if len(MNEMONIC.findall(source)) != len(MNEMONIC.findall(text)):
            yield "a mnemonic too few or too many"
        if re.match(r"\s*", source).group() != re.match(r"\s*", text).group() or \
                re.search(r"\s*$", source).group() != re.search(r"\s*$", text).group():
            yield "white space at an end differs"
        bare = PLACEHOLDER.sub("0", TAG.sub("", text))
        for pattern, rule in TYPOGRAPHY.get(language, []):
            if pattern.search(bare):
                yield rule


def shared_mnemonics(messages):
    """Keys that two texts of one dialog have, where the sources give each its own."""
    sources = {m.find("source").text: forms(m)[0] for m in messages}
    keys = Counter(key.lower() for text in sources.values() for key in MNEMONIC.findall(text))
    own = Counter(key.lower() for text in sources for key in MNEMONIC.findall(text))
    if max(own.values(), default=0) > 1:
        return
    yield from (key for key, count in keys.items() if count > 1)


def look(path):
    """The malformed entries of a file, and those without a translation."""
    language = path.stem.split("_")[1]
    malformed, missing = [], []
    for context in ElementTree.parse(path).getroot().findall("context"):
        name = context.findtext("name")
        messages = context.findall("message")
        for message in messages:
            source = message.find("source").text.replace("\n", "\\n")
            if message.find("translation").get("type") or not all(forms(message)):
                missing.append(f"{path.name}: {name}: {source}")
            else:
                malformed += [f"{path.name}: {name}: {source}: {fault}" for fault in faults(language, message)]
        malformed += [f"{path.name}: {name}: the key {key} twice" for key in shared_mnemonics(messages)]
    return malformed, missing


def main():
    with tempfile.TemporaryDirectory() as folder:
        for path in (TOP / "translations").glob("*.ts"):
            shutil.copy(path, folder)
        update = subprocess.run([TOP / "scripts/translations.sh", folder], capture_output=True, text=True)
        malformed = (update.stdout + update.stderr).splitlines()
        if update.returncode != 0:
            malformed.append("the texts could not be read")
        missing = []
        for path in sorted(Path(folder).glob("*.ts")):
            found = look(path)
            malformed += found[0]
            missing += found[1]
    for title, lines in (("not translated", missing), ("malformed", malformed)):
        print(*lines, f"{len(lines)} {title}", sep="\n")
    sys.exit(1 if malformed or (missing and "--complete" in sys.argv) else 0)


main()

#!/usr/bin/env python3
"""Finds words of tools/words.txt in the project's own texts.

    tools/check_words.py [file...]      without arguments: all tracked files that are revised

A line that needs such a word, because a contract or another program spells it so, has the remark
"word-ok".
"""

import re
import subprocess
import sys
from pathlib import Path

ENDINGS = {".cpp", ".h", ".md", ".py", ".sh", ".txt", ".cmake", ".ui", ".qrc", ".xml", ".in", ".nsi",
           ".1", ".desktop", ".json", ""}
SKIPPED = (
    "tools/words.txt", "tools/test_check_words.py",  # the list itself, and its examples
    "docs/glossary.md",  # names the words not to use
    "tests/fuzz/corpus/",  # inputs of the fuzzer
    "LICENSE",
    # Not revised yet; this list only gets shorter.
    "app/", "bench/", "entry/", "exchange/", "figures/", "help/", "lookup/", "platform/", "report/", "session/",
    "store/", "summary/", "tests/",
)


def words_of(path):
    words = []
    for line in path.read_text(encoding="utf-8").splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        pattern, _, instead = line.partition("  ")
        words.append((re.compile(rf"(?<![\w]){pattern}(?![\w])", re.I), instead.strip()))
    return words


def tracked(root):
    names = subprocess.run(["git", "ls-files"], cwd=root, check=True, capture_output=True,
                           text=True).stdout.splitlines()
    return [name for name in names if Path(name).suffix in ENDINGS
            and not name.startswith(SKIPPED)]


def faults_in(text, words):
    for number, line in enumerate(text.splitlines(), 1):
        if "word-ok" in line:
            continue
        for pattern, instead in words:
            if found := pattern.search(line):
                yield number, found.group(), instead


def main():
    root = Path(__file__).resolve().parent.parent
    words = words_of(root / "tools/words.txt")
    names = sys.argv[1:] or tracked(root)
    faults = 0
    for name in names:
        path = root / name
        if not path.is_file():
            continue
        try:
            text = path.read_text(encoding="utf-8")
        except UnicodeDecodeError:
            continue
        for number, word, instead in faults_in(text, words):
            print(f"{name}:{number}: {word}: write {instead}")
            faults += 1
    print(f"{len(names)} files, {faults} words")
    return 1 if faults or not names else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Follows the links between the project's documents.

Fails on one that leads to no file, or to a heading that its file does not have. Links to the web
are left alone.
"""

import re
import sys
from pathlib import Path

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"```.*?```|`[^`\n]*`", re.S)
HEADING = re.compile(r"^#+ (.+)$", re.M)


def documents(root):
    skipped = {"build", ".git", "demo", "tour"}
    return [path for path in sorted(root.rglob("*.md"))
            if not skipped & set(path.relative_to(root).parts)]


def anchor(heading):
    """As the code hosting services build it."""
    text = re.sub(r"[^\w\- ]", "", heading.strip().lower())
    return text.replace(" ", "-")


def anchors(path):
    return {anchor(heading) for heading in HEADING.findall(path.read_text(encoding="utf-8"))}


def faults_of(root):
    count = 0
    faults = []
    for path in documents(root):
        text = CODE.sub("", path.read_text(encoding="utf-8"))
        for target in LINK.findall(text):
            if re.match(r"[a-z]+:", target):
                continue
            count += 1
            name, _, heading = target.partition("#")
            file = (path.parent / name).resolve() if name else path
            place = path.relative_to(root)
            if not file.exists():
                faults.append(f"{place}: {target} leads to no file")
            elif heading and heading not in anchors(file):
                faults.append(f"{place}: {target} leads to no heading")
    return count, faults


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()
    count, faults = faults_of(root)
    for fault in faults:
        print(fault)
    print(f"{count} links, {len(faults)} faults")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())

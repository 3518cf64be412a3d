#!/usr/bin/env python3
"""Checks the project's includes against the dependencies of its modules.

Fails on an include that points upwards or sideways, on one that is not written from the project's
root, and on a Qt Widgets header in a companion module (mod*), which never sees a widget.
"""

import re
import sys
from pathlib import Path

# Each module and the others that it may include.
MODULES = {
    "platform": set(),
    "store": {"platform"},
    "session": {"store", "platform"},
    "figures": {"session", "store", "platform"},
    "lookup": {"figures", "session", "store", "platform"},
    "summary": {"figures", "session", "store", "platform"},
    "sync": {"session", "store", "platform"},
    "help": {"platform"},
    "entry": {"lookup", "summary", "sync", "figures", "session", "store", "platform"},
    "app": {"entry", "lookup", "summary", "sync", "help", "figures", "session", "store",
            "platform"},
    "exchange": {"store", "platform"},
    "report": {"figures", "session", "store", "platform"},
}
OURS = re.compile(r'^\s*#\s*include\s+"([^"]+)"')
SYSTEM = re.compile(r"^\s*#\s*include\s+<([^>]+)>")
GENERATED = re.compile(r"(^|/)ui_\w+\.h$|\.moc$")
# What a companion module must not include, by its headers' names.
WIDGETS_FOLDER = Path("/usr/include/x86_64-linux-gnu/qt6/QtWidgets")


def widget_headers():
    if not WIDGETS_FOLDER.is_dir():
        sys.exit(f"{WIDGETS_FOLDER} is missing, so companion modules cannot be checked")
    return {path.name for path in WIDGETS_FOLDER.iterdir()}


def is_companion_module(path):
    return path.name.startswith("mod")


def widget_files(root, files, widgets):
    """The files of ours that include a Qt Widgets header, themselves or through another of ours."""
    direct = {}
    for path in files:
        names = set()
        tainted = False
        for line in path.read_text(encoding="utf-8").splitlines():
            system = SYSTEM.match(line)
            if system and system.group(1).split("/")[-1] in widgets:
                tainted = True
            ours = OURS.match(line)
            if ours:
                names.add(ours.group(1))
        direct[path.relative_to(root).as_posix()] = (tainted, names)

    def reaches(name, seen):
        if name in seen or name not in direct:
            return False
        seen.add(name)
        tainted, names = direct[name]
        return tainted or any(reaches(other, seen) for other in names)

    return {name for name in direct if reaches(name, set())}


def faults_of(root):
    files = [path for module in MODULES for path in sorted((root / module).rglob("*"))
             if path.suffix in (".h", ".cpp")]
    if not files:
        sys.exit("no source files found")
    see_widgets = widget_files(root, files, widget_headers())
    faults = []
    for path in files:
        module = path.relative_to(root).parts[0]
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            place = f"{path.relative_to(root)}:{number}"
            ours = OURS.match(line)
            if not ours or GENERATED.search(ours.group(1)):
                continue
            target = ours.group(1).split("/")[0]
            if target not in MODULES:
                faults.append(f"{place}: {ours.group(1)} is not written from the project's root")
            elif target != module and target not in MODULES[module]:
                faults.append(f"{place}: {module} must not include {target}")
        name = path.relative_to(root).as_posix()
        if is_companion_module(path) and name in see_widgets:
            faults.append(f"{name}: a companion module that includes widgets")
    return len(files), faults


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()
    count, faults = faults_of(root)
    for fault in faults:
        print(fault)
    print(f"{count} files, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Plants faults in the product's code, one at a time, and looks whether the tests notice them.

    tools/mutate.py                     every fault of tools/faults
    tools/mutate.py store report        those of two modules
    tools/mutate.py help/open-menu-stays   one
    tools/mutate.py --check             plants nothing: does each fault still fit its file?

It works in a copy of the project in build/mutate, with one job, and never touches the project's own
files. The copy is built once; clang then compiles each faulted file, for which it needs a second as
it reads the file's headers once for all its faults. That a fault was noticed holds until the file or
the fault is changed; survivors without a reason are tried again.

A list is tools/faults/<module>.txt; a fault in it is a section:

    [its name]
    file = store/Schema.cpp
    text = what stands there exactly once; blanks and line ends are alike
    fault = what is planted in its place
    tests = store_tests SchemaText.*     a test program and, if need be, its filter; one a line
    survives = for a fault without a visible effect: why it has none

[DEFAULT] says what holds for every fault of its list that does not say otherwise.
"""

import argparse
import configparser
import hashlib
import json
import os
import re
import shlex
import signal
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

KEYS = {"file", "text", "fault", "tests", "survives"}
MOST_SURVIVORS = 0.05
SOUND = ".sound"  # behind the name of a program without a fault
MOST_SECONDS = 90  # of a run; what a fault keeps busy for longer is noticed
FAILED_TEST = re.compile(r"^\[  FAILED  \] (\S+?)[,.]?(?: |$)", re.M)


@dataclass
class Fault:
    name: str
    file: str
    text: str
    fault: str
    tests: list  # of (program, filter)
    survives: str = ""

    @property
    def module(self):
        return self.name.split("/")[0]


class BadList(Exception):
    pass


def faults_in(path):
    parser = configparser.ConfigParser(
        interpolation=None, delimiters=("=",), comment_prefixes=("#",), default_section="DEFAULT")
    try:
        parser.read_string(path.read_text(encoding="utf-8"), path.name)
    except configparser.Error as error:
        raise BadList(str(error)) from error
    faults = []
    for section in parser.sections():
        values = parser[section]
        name = f"{path.stem}/{section}"
        if unknown := set(values) - KEYS:
            raise BadList(f"{name}: what is {', '.join(sorted(unknown))}?")
        for key in ("file", "text", "fault", "tests"):
            if key not in values or (not values[key].strip() and key != "fault"):
                raise BadList(f"{name}: {key} is missing")
        tests = []
        for line in values["tests"].split("\n"):
            program, _, test_filter = line.strip().partition(" ")
            tests.append((program, test_filter.strip() or "*"))
        faults.append(Fault(name, values["file"], values["text"], values["fault"], tests,
                            values.get("survives", "")))
    return faults


def places(text, source):
    """Where the text stands, however its lines are broken."""
    pattern = r"\s+".join(re.escape(word) for word in text.split())
    return [match.span() for match in re.finditer(pattern, source)]


def planted(fault, source):
    (begin, end), = places(fault.text, source)
    return source[:begin] + fault.fault + source[end:]


def end_of_includes(source):
    """The position after the last include at the beginning of a file, before any other code."""
    beginning = re.match(r"(?:\s*(?://[^\n]*|#[^\n]*)?\n)*", source).group()
    last = beginning.rfind("#include")
    return beginning.find("\n", last) + 1 if last >= 0 else 0


def test_programs(root):
    return {name for path in (root / "tests").rglob("CMakeLists.txt")
            for name in re.findall(r"worklog_test\((\w+)", path.read_text(encoding="utf-8"))}


def problems_of(root, faults):
    programs = test_programs(root)
    problems = []
    for fault in faults:
        path = root / fault.file
        if not path.is_file() or path.suffix != ".cpp":
            problems.append(f"{fault.name}: there is no source file {fault.file}")
            continue
        count = len(places(fault.text, path.read_text(encoding="utf-8")))
        if count != 1:
            problems.append(f"{fault.name}: its text stands {count} times in {fault.file}")
        if fault.text.split() == fault.fault.split():
            problems.append(f"{fault.name}: nothing would be changed")
        problems.extend(f"{fault.name}: there is no test program {program}"
                        for program, _ in fault.tests if program not in programs)
    return problems


class Copy:
    """A copy of the project, built once; a faulted file is compiled beside it and linked over it."""

    def __init__(self, root):
        self.root = root
        self.folder = root / "build/mutate"
        self.tree = self.folder / "tree"
        self.build = self.tree / "build/release"
        self.sound_tests = {}  # (program, filter): whether it passes without a fault
        self.compile_commands = {}  # by file
        self.links = {}  # program: the commands that link it and the programs that it starts
        self.head = ""  # of the file whose includes are compiled already
        self.runtime = tempfile.TemporaryDirectory()

    def refresh(self):
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=self.root,
                               check=True, capture_output=True, text=True).stdout.splitlines()
        for name in names:
            source, copy = self.root / name, self.tree / name
            if not source.is_file() or (copy.is_file()
                                        and copy.read_bytes() == source.read_bytes()):
                continue
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes(source.read_bytes())
            copy.chmod(source.stat().st_mode)
        for kept in self.build.glob(f"*/*{SOUND}"):  # of a run that was ended in between
            kept.replace(kept.with_name(kept.name.removesuffix(SOUND)))
        result = self.call(["cmake", "--preset", "release"], self.tree)
        if result.returncode != 0:
            sys.exit(result.stdout + result.stderr)
        for command in json.loads((self.build / "compile_commands.json").read_text()):
            file = Path(command["file"]).relative_to(self.tree)
            if f"-o {file.parts[0]}/" in command["command"]:  # not as a test builds it again
                self.compile_commands[file.as_posix()] = shlex.split(command["command"])

    def call(self, command, folder):
        return subprocess.run(["nice", "-n", "10", *map(str, command)], cwd=folder,
                              capture_output=True, text=True)

    def make(self, program):
        """What the compiler says when it fails, else nothing."""
        result = self.call(["cmake", "--build", ".", "-j1", "--target", program], self.build)
        if result.returncode != 0:
            return result.stdout + result.stderr
        lines = self.call(["ninja", "-t", "commands", program], self.build).stdout.splitlines()
        commands = [shlex.split(part) for line in lines for part in line.split(" && ")
                    if " -o " in part and " -c " not in part]
        self.links[program] = commands
        return ""

    def run(self, program, test_filter):
        """What noticed something: a failed test, the way it ended, or nothing."""
        process = subprocess.Popen(
            ["nice", "-n", "10", str(self.build / "tests" / program), "--gtest_fail_fast",
             f"--gtest_filter={test_filter}"],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, cwd=self.runtime.name,
            start_new_session=True,
            env=dict(os.environ, QT_QPA_PLATFORM="offscreen", XDG_RUNTIME_DIR=self.runtime.name))
        try:
            output = process.communicate(timeout=MOST_SECONDS)[0].decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return "it goes on without an end"
        if process.returncode == 0:
            return "" if re.search(r"\[  PASSED  \] [1-9]", output) else "no test ran"
        failed = FAILED_TEST.search(output)
        return failed.group(1) if failed else f"it ended with {process.returncode}"

    def passes_without_fault(self, program, test_filter):
        test = (program, test_filter)
        if test not in self.sound_tests:
            self.sound_tests[test] = self.run(program, test_filter) == ""
        return self.sound_tests[test]

    def compile(self, fault):
        """What the compiler says about the faulted file when it fails, else nothing."""
        text = (self.tree / fault.file).read_text(encoding="utf-8")
        end = end_of_includes(text)
        command = self.compile_commands[fault.file]
        flags = ["clang++", *command[command.index("/usr/bin/c++") + 1:command.index("-o")],
                 "-O0", "-g0", "-w"]
        if text[:end] != self.head:
            self.head = text[:end]
            head = self.folder / "head.h"
            head.write_text(self.head, encoding="utf-8")
            result = self.call([*flags, "-fpch-instantiate-templates", "-x", "c++-header", head,
                                "-o", self.folder / "head.pch"], self.build)
            if result.returncode != 0:
                sys.exit(f"{fault.file}: its includes cannot be compiled: {result.stderr}")
        source = self.folder / "faulted.cpp"
        source.write_text(planted(fault, text)[end:], encoding="utf-8")
        return self.call([*flags, "-include-pch", self.folder / "head.pch", "-c", source, "-o",
                          self.folder / "faulted.o"], self.build).stderr

    def link(self, fault, programs):
        """Links the faulted file over all that has it; the sound programs, and what went wrong."""
        command = self.compile_commands[fault.file]
        part = command[command.index("-o") + 1]  # store/CMakeFiles/store.dir/Schema.cpp.o
        folder, _, target = part.partition("/CMakeFiles/")
        library = f"{folder}/lib{target.split('.dir/')[0]}.a"
        faulted = str(self.folder / "faulted.o")
        sound = {}
        for program in programs:
            for link in self.links[program]:
                output = self.build / link[link.index("-o") + 1]
                if output in sound or not {part, library} & set(link):
                    continue
                sound[output] = output.with_name(output.name + SOUND)
                output.rename(sound[output])
                changed = [faulted if word == part else word for word in link]
                if part not in link:
                    changed.insert(1, faulted)  # before its library, which then leaves it out
                result = self.call([*changed, "-fuse-ld=lld"], self.build)
                if result.returncode != 0:
                    return sound, result.stdout + result.stderr
        return sound, "" if sound else f"{library} is in none of its test programs"

    def judge(self, fault):
        """The verdict, and what gave it."""
        for program, _ in fault.tests:
            if program not in self.links and (complaint := self.make(program)):
                return "not run", f"{program} cannot be built: {complaint[-300:]}"
        noticed = self.plant(fault)
        if isinstance(noticed, str):
            return "invalid", noticed
        if not noticed:
            return "survived", ""
        program, test_filter, failed = noticed
        # By a test that only this fault fails.
        only = failed if re.fullmatch(r"[\w/]+\.[\w/]+", failed) else test_filter
        if not self.passes_without_fault(program, only):
            return "not run", f"{program} fails without it: {only}"
        return "noticed", f"{program} {failed}"

    def plant(self, fault):
        """The program, its filter and what noticed the fault; nothing; or why it is no program."""
        complaint = self.compile(fault)
        sound = {}
        try:
            if not complaint:
                sound, complaint = self.link(fault, [program for program, _ in fault.tests])
            if complaint:
                errors = [line for line in complaint.splitlines() if "error" in line]
                return (errors or complaint.splitlines()[-1:])[0]
            for program, test_filter in fault.tests:
                if failed := self.run(program, test_filter):
                    return program, test_filter, failed
            return ()
        finally:
            for output, kept in sound.items():
                kept.replace(output)


def key_of(root, fault):
    parts = [(root / fault.file).read_text(encoding="utf-8"), fault.text, fault.fault]
    return hashlib.sha256("\0".join(parts).encode()).hexdigest()


def holds(fault, result, key):
    """Whether an earlier verdict still holds: only new tests change these."""
    return result is not None and result["key"] == key and (
        result["verdict"] == "noticed" or (result["verdict"] == "survived" and fault.survives))


def table(faults, verdicts):
    columns = ["noticed", "survived", "invalid", "not run"]
    rows = [["module", "planted", *columns]]
    for module in [*sorted({fault.module for fault in faults}), "all"]:
        of_module = [verdicts.get(fault.name, "not run") for fault in faults
                     if module in (fault.module, "all")]
        rows.append([module, len(of_module), *map(of_module.count, columns)])
    return "\n".join(f"{row[0]:10}" + "".join(f"{cell:>10}" for cell in row[1:]) for row in rows)


def judge_all(root, faults):
    """Verdicts by the faults' names; each is kept on the disk as soon as it is known."""
    file = root / "build/mutate/results.json"
    results = json.loads(file.read_text(encoding="utf-8")) if file.is_file() else {}
    copy = Copy(root)
    fresh = False
    for number, fault in enumerate(faults, 1):
        key = key_of(root, fault)
        if holds(fault, results.get(fault.name), key):
            continue
        if not fresh:
            copy.refresh()
            fresh = True
        verdict, by = copy.judge(fault)
        results[fault.name] = {"key": key, "verdict": verdict, "by": by}
        file.write_text(json.dumps(results, indent=1, sort_keys=True), encoding="utf-8")
        print(f"{number}/{len(faults)} {fault.name}: {verdict} {by}", flush=True)
    return {fault.name: results[fault.name]["verdict"] for fault in faults}


def report(faults, verdicts):
    print(table(faults, verdicts))
    survivors = [fault for fault in faults if verdicts[fault.name] == "survived"]
    for fault in survivors:
        print(f"survived: {fault.name} ({fault.file}): {fault.survives or 'NO REASON IS KNOWN'}")
    bad = [fault.name for fault in faults if verdicts[fault.name] in ("invalid", "not run")
           or (fault.survives and verdicts[fault.name] == "noticed")]
    for name in bad:
        print(f"look at: {name}")
    return not bad and all(fault.survives for fault in survivors) \
        and len(survivors) <= MOST_SURVIVORS * len(faults)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("names", nargs="*", help="modules or faults; all without any")
    parser.add_argument("--check", action="store_true", help="only compare the lists with the code")
    arguments = parser.parse_args()
    root = Path(__file__).resolve().parent.parent
    try:
        faults = [fault for path in sorted((root / "tools/faults").glob("*.txt"))
                  for fault in faults_in(path)]
    except BadList as error:
        sys.exit(str(error))
    unknown = set(arguments.names) - {name for fault in faults
                                      for name in (fault.name, fault.module)}
    if unknown:
        sys.exit(f"no such module or fault: {', '.join(sorted(unknown))}")
    if arguments.names:
        faults = [fault for fault in faults
                  if fault.name in arguments.names or fault.module in arguments.names]
    problems = problems_of(root, faults)
    for problem in problems:
        print(problem)
    if arguments.check or problems:
        print(f"{len(faults)} faults, {len(problems)} that do not fit")
        return 1 if problems else 0
    return 0 if report(faults, judge_all(root, faults)) else 1


if __name__ == "__main__":
    sys.exit(main())

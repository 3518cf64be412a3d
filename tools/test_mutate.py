#!/usr/bin/env python3
"""mutate.py reads its lists, and plants what they say."""

import contextlib
import io
import tempfile
import unittest
from pathlib import Path

import mutate

LIST = """
[DEFAULT]
tests = store_tests

[wrong-sign]
file = store/a.cpp
text = return a + b;
fault = return a - b;
tests = store_tests Sum.*
    report_tests

[never-called]
file = store/a.cpp
text = Call();
fault =
survives = it does nothing
"""

SOURCE = "int Sum(int a, int b)\n{\n    Call();\n    return a\n        + b;\n}\n"


class Lists(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def read(self, text):
        path = self.root / "store.txt"
        path.write_text(text, encoding="utf-8")
        return mutate.faults_in(path)

    def project(self, source):
        for name, text in {"store/a.cpp": source, "tests/CMakeLists.txt":
                           "worklog_test(store_tests X)\nworklog_test(report_tests X)"}.items():
            path = self.root / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text, encoding="utf-8")
        return self.root

    def test_a_fault_has_its_list_and_its_name(self):
        faults = self.read(LIST)
        self.assertEqual([fault.name for fault in faults],
                         ["store/wrong-sign", "store/never-called"])
        self.assertEqual([fault.module for fault in faults], ["store", "store"])

    def test_tests_are_programs_with_filters(self):
        first, second = self.read(LIST)
        self.assertEqual(first.tests, [("store_tests", "Sum.*"), ("report_tests", "*")])
        self.assertEqual(second.tests, [("store_tests", "*")])

    def test_a_reason_belongs_to_its_fault_alone(self):
        self.assertEqual([fault.survives for fault in self.read(LIST)], ["", "it does nothing"])

    def test_what_is_misspelled_is_named(self):
        with self.assertRaisesRegex(mutate.BadList, "what is txt"):
            self.read(LIST + "txt = x\n")

    def test_what_is_missing_is_named(self):
        with self.assertRaisesRegex(mutate.BadList, "file is missing"):
            self.read(LIST.replace("file = store/a.cpp", "", 1))

    def test_a_name_that_stands_twice_is_refused(self):
        with self.assertRaises(mutate.BadList):
            self.read(LIST.replace("never-called", "wrong-sign"))

    def test_the_fault_takes_the_place_of_the_text_however_it_is_broken(self):
        first, second = self.read(LIST)
        self.assertEqual(mutate.planted(first, SOURCE), SOURCE.replace("return a\n        + b;",
                                                                       "return a - b;"))
        self.assertNotIn("Call", mutate.planted(second, SOURCE))

    def test_a_file_is_cut_behind_its_includes(self):
        head = '// Sums.\n\n#include "store/a.h"\n\n#define WIDE\n#include <array>\n'
        for source in (head + "\nusing namespace std;\n#include <late>\n", head + "int a;\n"):
            self.assertEqual(source[:mutate.end_of_includes(source)], head)
        self.assertEqual(mutate.end_of_includes(SOURCE), 0)

    def test_a_list_that_fits_has_no_problems(self):
        self.assertEqual(mutate.problems_of(self.project(SOURCE), self.read(LIST)), [])

    def test_a_text_that_is_gone_or_stands_twice_is_a_problem(self):
        faults = self.read(LIST)
        root = self.project(SOURCE.replace("Call", "Other") + SOURCE.replace("Call", "Another"))
        self.assertEqual(mutate.problems_of(root, faults),
                         ["store/wrong-sign: its text stands 2 times in store/a.cpp",
                          "store/never-called: its text stands 0 times in store/a.cpp"])

    def test_a_fault_that_changes_nothing_is_a_problem(self):
        faults = self.read(LIST.replace("a - b", "a  +  b"))
        self.assertEqual(mutate.problems_of(self.project(SOURCE), faults),
                         ["store/wrong-sign: nothing would be changed"])

    def test_a_file_or_a_program_that_is_not_there_is_a_problem(self):
        faults = self.read(LIST.replace("store/a.cpp", "store/b.cpp", 1)
                           .replace("tests = store_tests\n", "tests = no_tests\n"))
        self.assertEqual(mutate.problems_of(self.project(SOURCE), faults),
                         ["store/wrong-sign: there is no source file store/b.cpp",
                          "store/never-called: there is no test program no_tests"])


class Verdicts(unittest.TestCase):
    def fault(self, survives=""):
        return mutate.Fault("store/x", "store/a.cpp", "a", "b", [("store_tests", "*")], survives)

    def test_an_earlier_verdict_holds_while_nothing_has_changed(self):
        noticed = {"key": "k", "verdict": "noticed"}
        survived = {"key": "k", "verdict": "survived"}
        self.assertTrue(mutate.holds(self.fault(), noticed, "k"))
        self.assertFalse(mutate.holds(self.fault(), noticed, "changed"))
        self.assertFalse(mutate.holds(self.fault(), survived, "k"))
        self.assertTrue(mutate.holds(self.fault("why"), survived, "k"))
        self.assertFalse(mutate.holds(self.fault(), None, "k"))

    def test_only_few_and_explained_survivors_are_good(self):
        with contextlib.redirect_stdout(io.StringIO()) as output:
            noticed = {f"store/{i}": "noticed" for i in range(39)}
            faults = [self.fault() for _ in noticed]
            for fault, name in zip(faults, noticed):
                fault.name = name
            verdicts = noticed | {"store/x": "survived"}
            self.assertTrue(mutate.report(faults + [self.fault("why")], verdicts))
            self.assertFalse(mutate.report(faults + [self.fault()], verdicts))
            self.assertFalse(mutate.report(faults[:5] + [self.fault("why")], verdicts))
            self.assertFalse(mutate.report(faults, noticed | {"store/0": "invalid"}))
            self.assertFalse(mutate.report(faults, noticed | {"store/0": "not run"}))
        self.assertIn("store             40        39         1", output.getvalue())
        self.assertIn("NO REASON IS KNOWN", output.getvalue())


if __name__ == "__main__":
    unittest.main()

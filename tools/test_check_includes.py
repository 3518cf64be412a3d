#!/usr/bin/env python3
"""Tests of check_includes.py."""

import tempfile
import unittest
from pathlib import Path

import check_includes


class CheckIncludes(unittest.TestCase):
    def faults(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            for name, text in files.items():
                path = root / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return check_includes.faults_of(root)[1]

    def test_a_downward_include_is_fine(self):
        self.assertEqual(self.faults({"entry/a.h": '#include "store/b.h"\n', "store/b.h": ""}), [])

    def test_an_upward_include_is_named_with_its_line(self):
        faults = self.faults({"store/a.h": '\n#include "entry/b.h"\n', "entry/b.h": ""})
        self.assertEqual(faults, ["store/a.h:2: store must not include entry"])

    def test_dialog_modules_do_not_include_one_another(self):
        self.assertEqual(len(self.faults({"lookup/a.h": '#include "summary/b.h"\n'})), 1)

    def test_an_include_that_does_not_name_its_module(self):
        self.assertEqual(len(self.faults({"store/a.h": '#include "b.h"\n', "store/b.h": ""})), 1)

    def test_a_module_that_includes_a_widget(self):
        self.assertEqual(len(self.faults({"entry/modA.h": "#include <QLineEdit>\n"})), 1)

    def test_a_module_that_reaches_a_widget_through_another_header(self):
        faults = self.faults({
            "entry/modA.h": '#include "platform/clsB.h"\n',
            "platform/clsB.h": "#include <QWidget>\n",
        })
        self.assertEqual(faults, ["entry/modA.h: a companion module that includes widgets"])


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""Tests of check_words.py."""

import unittest
from pathlib import Path

import check_words


class CheckWords(unittest.TestCase):
    def faults(self, text):
        words = check_words.words_of(Path(check_words.__file__).parent / "words.txt")
        return [(line, word) for line, word, _ in check_words.faults_in(text, words)]

    def test_a_word_is_named_with_its_line(self):
        self.assertEqual(self.faults("fine\nread anew\n"), [(2, "anew")])

    def test_a_form_of_it_is_found_in_any_case(self):
        self.assertEqual(self.faults("Handed over, and mended"),
                         [(1, "mended"), (1, "Handed over")])

    def test_a_part_of_a_word_is_not_that_word(self):
        self.assertEqual(self.faults("recommended classrooms"), [])

    def test_a_line_with_the_remark_is_left_out(self):
        self.assertEqual(self.faults("setColour() // word-ok: the library's\n"), [])

    def test_the_list_has_words_and_what_to_write_instead(self):
        words = check_words.words_of(Path(check_words.__file__).parent / "words.txt")
        self.assertGreater(len(words), 20)
        self.assertTrue(all(instead for _, instead in words))


if __name__ == "__main__":
    unittest.main()

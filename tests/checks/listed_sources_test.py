#!/usr/bin/env python3
"""Makes small trees and sees which sources the check reports as not listed."""

import pathlib
import tempfile
import unittest

from listed_sources import problems


class ListedSourcesTest(unittest.TestCase):
    def found_in(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in files.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text, encoding="utf-8")
            return problems(root)

    def test_listed_sources_are_no_problem(self):
        found = self.found_in(
            {
                "src/CMakeLists.txt": 'add_library(a STATIC Menus/A.cpp\n    "Menus/B.cpp")\nadd_executable(c main.cpp)',
                "src/Menus/A.cpp": "",
                "src/Menus/B.cpp": "",
                "src/Menus/B.h": "",
                "src/main.cpp": "",
                "tests/Menus/CMakeLists.txt": "add_test(SOURCES ATests.cpp ${PROJECT_SOURCE_DIR}/tests/Shared.cpp)",
                "tests/Menus/ATests.cpp": "",
                "tests/Shared.cpp": "",
                "benchmarks/CMakeLists.txt": "add_executable(b ${CMAKE_CURRENT_SOURCE_DIR}/B.cpp)",
                "benchmarks/B.cpp": "",
            }
        )
        self.assertEqual(found, [])

    def test_forgotten_source_is_found_in_each_folder(self):
        for folder in ["src", "extensions", "tests", "benchmarks"]:
            with self.subTest(folder=folder):
                found = self.found_in({f"{folder}/CMakeLists.txt": "add_library(a A.cpp)", f"{folder}/Deep/B.cpp": ""})
                self.assertEqual(found, [f"{folder}/Deep/B.cpp: listed in no CMakeLists.txt"])

    def test_source_of_the_same_name_elsewhere_does_not_count(self):
        found = self.found_in({"src/CMakeLists.txt": "add_library(a A.cpp)", "src/A.cpp": "", "src/Menus/A.cpp": ""})
        self.assertEqual(found, ["src/Menus/A.cpp: listed in no CMakeLists.txt"])

    def test_name_in_a_comment_does_not_count(self):
        found = self.found_in({"src/CMakeLists.txt": "# A.cpp\nadd_library(a # A.cpp\n)", "src/A.cpp": ""})
        self.assertEqual(found, ["src/A.cpp: listed in no CMakeLists.txt"])

    def test_longer_name_that_ends_alike_does_not_count(self):
        found = self.found_in({"src/CMakeLists.txt": "add_library(a BigA.cpp)", "src/A.cpp": "", "src/BigA.cpp": ""})
        self.assertEqual(found, ["src/A.cpp: listed in no CMakeLists.txt"])

    def test_tree_without_sources_is_a_problem(self):
        self.assertEqual(len(self.found_in({"src/CMakeLists.txt": ""})), 1)


if __name__ == "__main__":
    unittest.main()

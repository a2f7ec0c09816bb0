#!/usr/bin/env python3
"""Sets up small projects with planted faults and sees that the compile checks find each.

    compiling_test.py COMPILER
"""

import json
import pathlib
import sys
import tempfile
import unittest

import compiling

COMPILER = ["c++"]
FILE_URL_HEADER = """#pragma once
#include <string>
namespace marrowick { class FileURL { public: std::string const& path() const { return path_; }
private: std::string path_; }; }
"""


class CompilingTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        self.out = self.root / "out"
        self.out.mkdir()
        self.flags = []
        self.write("src/Platform/FileURL.h", FILE_URL_HEADER)
        self.write("src/Platform/FileURL.cpp", '#include "Platform/FileURL.h"\n')
        self.sources = ["src/Platform/FileURL.cpp"]

    def write(self, name, text):
        (self.root / name).parent.mkdir(parents=True, exist_ok=True)
        (self.root / name).write_text(text, encoding="utf-8")

    def problems(self, check):
        src = self.root / "src"
        entries = []
        for name in self.sources:
            source = str(self.root / name)
            command = [*COMPILER, "-std=c++20", *self.flags, f"-I{src}", "-MD", "-MF", "x.d", "-o", "x.o", "-c", source]
            entries.append({"directory": str(self.root), "file": source, "arguments": command})
        self.write("compile_commands.json", json.dumps(entries))
        commands = compiling.Commands(self.root / "compile_commands.json", src)
        return compiling.CHECKS[check](commands, src, self.out)

    def refuse_on_default_path(self):
        """What the project's forbidden headers do."""
        for header in compiling.TOOLKIT_HEADERS:
            self.write(f"forbidden/{header}", '#error "The core includes no toolkit"\n')
        self.flags = [f"-I{self.root}/forbidden"]

    def test_flags_that_refuse_toolkits_are_sound(self):
        self.refuse_on_default_path()
        self.assertEqual(self.problems("toolkits"), [])

    def test_toolkit_that_compiles_is_found(self):
        self.refuse_on_default_path()
        self.write("forbidden/glib.h", "")
        self.assertEqual(self.problems("toolkits"), ["a core file that includes <glib.h> compiles"])

    def test_toolkit_that_fails_for_another_reason_is_found(self):
        self.refuse_on_default_path()
        self.write("forbidden/glib.h", "int int;\n")
        found = self.problems("toolkits")
        self.assertEqual(len(found), 1)
        self.assertIn("<glib.h> fails for another reason", found[0])

    def test_core_that_does_not_compile_at_all_is_found(self):
        self.refuse_on_default_path()
        self.write("src/Platform/FileURL.h", "class {\n")
        found = self.problems("toolkits")
        self.assertEqual(len(found), 1)
        self.assertIn("the check would tell nothing", found[0])

    def test_headers_that_compile_alone_are_sound(self):
        self.assertEqual(self.problems("headers"), [])

    def test_header_that_leans_on_another_is_found(self):
        self.write("src/Platform/Leaning.h", "#pragma once\nstd::string lean();\n")
        found = self.problems("headers")
        self.assertEqual(len(found), 1)
        self.assertIn("Platform/Leaning.h: does not compile alone", found[0])

    def test_header_without_a_guard_is_found(self):
        self.write("src/Platform/Open.h", "struct Open { };\n")
        found = self.problems("headers")
        self.assertEqual(len(found), 1)
        self.assertIn("Platform/Open.h", found[0])

    def test_header_is_compiled_with_the_flags_of_its_own_folder(self):
        self.write("src/Freedesktop/Tray.h", "#pragma once\n#ifndef ADAPTER\n#error not the adapter's flags\n#endif\n")
        self.write("src/Freedesktop/Tray.cpp", "")
        self.sources.append("src/Freedesktop/Tray.cpp")
        self.assertEqual(len(self.problems("headers")), 1)
        self.flags.append("-DADAPTER")
        self.assertEqual(self.problems("headers"), [])

    def test_header_of_a_folder_that_is_not_built_is_found(self):
        self.write("src/Freedesktop/Tray.h", "#pragma once\n")
        self.assertEqual(
            self.problems("headers"), ["Freedesktop/Tray.h: no source of its folder is compiled"]
        )


if __name__ == "__main__":
    COMPILER[:] = sys.argv.pop(1).split()
    unittest.main()

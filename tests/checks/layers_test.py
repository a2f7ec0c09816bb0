#!/usr/bin/env python3
"""Plants violations and sees that the check of the layers finds each, and only those."""

import unittest

from layers import circles, extension_problems, includes_of, problems

SOUND = {
    "main.cpp": '#include "AppDelegate.h"\n#include "Platform/Platform.h"\n#include <memory>\n',
    "AppDelegate.h": '#include "Menus/Menu.h"\n#include "UI/Window.h"\n',
    "AppDelegate.cpp": '#include "AppDelegate.h"\n',
    "UI/Window.h": '#include "Actions/Action.h"\n',
    "Actions/Action.h": '#include "Support/Text.h"\n',
    "Menus/Menu.h": '#include "Models/Node.h"\n#include "Actions/Action.h"\n',
    "Models/Node.h": '#include "Support/Text.h"\n',
    "Support/Text.h": '#include "Platform/Platform.h"\n',
    "Support/PropertyList.cpp": "#include <expat.h>\n",
    "Support/ExchangeCoding.cpp": "#include <boost/json/basic_parser_impl.hpp>\n#include <boost/json/serializer.hpp>\n",
    "Support/RecordReader.h": "#include <boost/json/error.hpp>\n#include <boost/json/string_view.hpp>\n",
    "Platform/Platform.h": "#include <vector>\n",
    "Freedesktop/Tray.h": '#include "Platform/Platform.h"\n#include <QString>\n',
    "Freedesktop/Tray.cpp": '#include "Freedesktop/Tray.h"\n#include "Tray.moc"\n',
    "AppKit/Tray.mm": '#import "Platform/Platform.h"\n#import <AppKit/AppKit.h>\n',
}


class LayersTest(unittest.TestCase):
    def assert_found(self, path, text, *words):
        """Adding the file gives exactly one problem, whose text holds all the words."""
        found = problems({**SOUND, path: text})
        self.assertEqual(len(found), 1, found)
        for word in words:
            self.assertIn(word, found[0])

    def test_sound_tree_has_no_problems(self):
        self.assertEqual(problems(SOUND), [])

    def test_arrow_up_is_found_from_every_row(self):
        for path, target in [
            ("Platform/A.h", "Support/Text.h"),
            ("Platform/A.h", "Models/Node.h"),
            ("Models/A.h", "Menus/Menu.h"),
            ("Support/A.h", "Actions/Action.h"),
            ("Support/A.h", "UI/Window.h"),
            ("Menus/A.h", "AppDelegate.h"),
            ("Actions/A.cpp", "AppDelegate.h"),
            ("UI/A.cpp", "AppDelegate.h"),
        ]:
            with self.subTest(path=path, target=target):
                self.assert_found(path, f'#include "{target}"\n', path, target)

    def test_core_that_includes_an_adapter_is_found(self):
        for path in ["Platform/A.h", "Menus/A.cpp", "UI/A.cpp", "AppDelegateParts/A.h"]:
            with self.subTest(path=path):
                found = problems({**SOUND, path: '#include "Freedesktop/Tray.h"\n'})
                self.assertEqual(len(found), 1, found)

    def test_main_that_includes_an_adapter_is_found(self):
        self.assert_found("main.cpp", '#include "Freedesktop/Tray.h"\n', "main.cpp", "Freedesktop/Tray.h")

    def test_adapter_that_includes_more_of_the_core_than_platform_is_found(self):
        for target in ["Support/Text.h", "Models/Node.h", "Menus/Menu.h", "UI/Window.h", "AppDelegate.h"]:
            with self.subTest(target=target):
                self.assert_found("Freedesktop/Deep/A.cpp", f'#include "{target}"\n', target)

    def test_adapter_that_includes_another_adapter_is_found(self):
        self.assert_found("AppKit/A.mm", '#import "Freedesktop/Tray.h"\n', "AppKit/A.mm")

    def test_toolkit_in_the_core_is_found(self):
        for name in ["QString", "glib.h", "X11/Xlib.h", "xcb/randr.h", "unicode/ucol.h", "unistd.h", "expat.h"]:
            with self.subTest(name=name):
                self.assert_found("Support/A.cpp", f"#include <{name}>\n", f"<{name}>")

    def test_parser_is_allowed_in_its_own_files_only(self):
        self.assert_found("Support/PropertyList.h", "#include <expat.h>\n", "Support/PropertyList.h")
        self.assert_found("Support/ExchangeCoding.h", "#include <boost/json/error.hpp>\n", "Support/ExchangeCoding.h")
        self.assert_found("Support/RecordReader.cpp", "#include <boost/json.hpp>\n", "<boost/json.hpp>")

    def test_header_that_interfaces_do_without_is_found(self):
        for name in ["ranges", "source_location"]:
            with self.subTest(name=name):
                self.assert_found("Platform/A.h", f"#include <{name}>\n", f"<{name}>")
                self.assertEqual(problems({**SOUND, "Menus/A.h": f"#include <{name}>\n"}), [])

    def test_missing_file_is_found(self):
        self.assert_found("Menus/A.cpp", '#include "Menus/Missing.h"\n', "Menus/Missing.h")

    def test_include_beside_the_file_without_its_folder_is_found(self):
        self.assert_found("Menus/A.cpp", '#include "Menu.h"\n', '"Menu.h"')

    def test_own_header_in_angle_brackets_is_found(self):
        self.assert_found("Freedesktop/A.cpp", "#include <Platform/Platform.h>\n", "<Platform/Platform.h>")

    def test_include_of_a_macro_is_found(self):
        self.assert_found("Freedesktop/A.cpp", "#include HEADER\n", "HEADER")

    def test_generated_source_is_for_adapters_only(self):
        self.assert_found("Menus/A.cpp", '#include "A.moc"\n', "A.moc")

    def test_unknown_folder_is_found(self):
        self.assert_found("Helpers/A.h", "#include <string>\n", "Helpers/A.h")

    def test_unknown_file_beside_the_folders_is_found(self):
        self.assert_found("Helpers.h", "#include <string>\n", "Helpers.h")

    def test_file_that_includes_itself_is_a_circle(self):
        self.assert_found("Menus/A.h", '#include "Menus/A.h"\n', "Menus/A.h -> Menus/A.h")

    def test_circle_within_a_row_is_found_with_its_way(self):
        found = problems(
            {
                **SOUND,
                "Menus/A.h": '#include "Actions/B.h"\n',
                "Actions/B.h": '#include "UI/C.h"\n',
                "UI/C.h": '#include "Menus/A.h"\n#include "Actions/Action.h"\n',
                "Menus/User.cpp": '#include "Menus/A.h"\n',
            }
        )
        self.assertEqual(found, ["circle: Actions/B.h -> UI/C.h -> Menus/A.h -> Actions/B.h"])

    def test_two_ways_to_one_file_are_no_circle(self):
        self.assertEqual(circles({"a": {"b", "c"}, "b": {"d"}, "c": {"d"}, "d": set()}), [])

    def test_two_circles_are_both_found(self):
        self.assertEqual(circles({"a": {"b"}, "b": {"a"}, "c": {"d"}, "d": {"c"}}), [["a", "b", "a"], ["c", "d", "c"]])

    def test_includes_are_read_however_they_are_written(self):
        text = '#include "a"\n  #  include <b> // why\n#import "c"\n/* #include "d"\n#include "e" */\n// #include "f"\n'
        self.assertEqual(includes_of(text), [('"', "a"), ("<", "b"), ('"', "c")])

    def found_in_extension(self, path, text):
        core = {"Support/Record.h": "", "Platform/FileURL.h": "", "Freedesktop/Owners.h": ""}
        parts = {"Shared/Menu.h": "", "Gtk3/Windows.h": "", "Nemo/Selection.h": "", "Nautilus/Windows.h": ""}
        return extension_problems({**parts, path: text}, core)

    def test_sound_companions_have_no_problems(self):
        for path, text in [
            ("Shared/A.cpp", '#include "Shared/Menu.h"\n#include "Support/Record.h"\n#include <gio/gio.h>\n'),
            ("Nemo/A.cpp", '#include "Nemo/Selection.h"\n#include "Gtk3/Windows.h"\n#include <gtk/gtk.h>\n'),
            ("Nautilus/A.cpp", '#include "Shared/Menu.h"\n'),
        ]:
            with self.subTest(path=path):
                self.assertEqual(self.found_in_extension(path, text), [])

    def test_companion_that_includes_what_is_not_its_part_is_found(self):
        for path, target in [
            ("Shared/A.cpp", "Gtk3/Windows.h"),
            ("Shared/A.cpp", "Platform/FileURL.h"),
            ("Shared/A.cpp", "Freedesktop/Owners.h"),
            ("Nemo/A.cpp", "Support/Record.h"),
            ("Caja/A.cpp", "Nemo/Selection.h"),
            ("Nautilus/A.cpp", "Gtk3/Windows.h"),
            ("Gtk3/A.cpp", "Nemo/Selection.h"),
            ("Thunar/A.cpp", "Shared/Missing.h"),
            ("Other/A.cpp", "Shared/Menu.h"),
        ]:
            with self.subTest(path=path, target=target):
                found = self.found_in_extension(path, f'#include "{target}"\n')
                self.assertEqual(len(found), 1, found)
                self.assertIn(path, found[0])

    def test_toolkit_in_what_all_companions_share_is_found(self):
        for name in ["gtk/gtk.h", "gdk/gdkx.h", "atk/atk.h", "thunarx/thunarx.h", "libcaja-extension/caja-file-info.h"]:
            with self.subTest(name=name):
                self.assertEqual(len(self.found_in_extension("Shared/A.h", f"#include <{name}>\n")), 1)


if __name__ == "__main__":
    unittest.main()

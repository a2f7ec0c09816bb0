"""Stand-ins for what the program starts or asks; they remember what arrived."""

import os
import pathlib

from gi.repository import Gio, GLib

from .waiting import wait_for

RECORD = """#!/bin/sh
# Remembers the arguments of one start.
name=$1
shift
printf '%s\\0' "$name" "$@" >"{calls}/$$.part"
mv "{calls}/$$.part" "{calls}/$$.call"
"""

RECORD_START = """#!/bin/sh
# Remembers the arguments and the environment of its start.
{{ printf '%s\\0' "arguments" "$@"; printf '\\0'; env -0; }} >"{record}.part"
mv "{record}.part" "{record}"
"""

RECORD_RUN = """#!/bin/sh
# Remembers the arguments and the environment of its run.
printf '%s\\0' "$0" "$@" >"{place}/arguments.part"
env -0 >"{place}/environment"
mv "{place}/arguments.part" "{place}/arguments"
"""

ENTRY = """[Desktop Entry]
Type=Application
Name={title}
Exec="{program}" {name} %F
MimeType={types};
"""

FILE_MANAGER = """
<node><interface name="org.freedesktop.FileManager1">
  <method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ShowFolders"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
  <method name="ShowItemProperties"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
</interface></node>
"""


class DefaultApplications:
    """Default applications for text files and for folders that remember what they were opened with."""

    def __init__(self, place):
        self.calls_folder = place / "calls"
        self.calls_folder.mkdir(parents=True)
        program = place / "record"
        program.write_text(RECORD.format(calls=self.calls_folder))
        program.chmod(0o755)
        applications = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        for name, title, types in (("editor", "Test Editor", "text/plain"), ("files", "Test Files", "inode/directory")):
            (applications / f"marrowick-test-{name}.desktop").write_text(
                ENTRY.format(title=title, program=program, name=name, types=types))
        config = pathlib.Path(os.environ["XDG_CONFIG_HOME"])
        config.mkdir(parents=True, exist_ok=True)
        (config / "mimeapps.list").write_text(
            "[Default Applications]\n"
            "text/plain=marrowick-test-editor.desktop\n"
            "inode/directory=marrowick-test-files.desktop\n")

    def forget(self):
        for call in self.calls_folder.iterdir():
            call.unlink()

    def calls(self):
        """The starts so far, each a list of the application's name and its arguments."""
        files = sorted(self.calls_folder.glob("*.call"), key=lambda path: path.stat().st_mtime_ns)
        return [os.fsdecode(path.read_bytes()).split("\0")[:-1] for path in files]

    def wait_for_call(self):
        return wait_for(self.calls, "a default application to be started")[-1]


class InstalledApplication:
    """An application with a desktop entry of its own; it remembers how it was started."""

    def __init__(self, place, folder, identifier, name, keys=""):
        """The entry goes into `folder`; `keys` are further lines of it."""
        self.record = place / (identifier + ".start")
        program = place / (identifier + ".program")
        program.write_text(RECORD_START.format(record=self.record))
        program.chmod(0o755)
        self.entry = folder / (identifier + ".desktop")
        folder.mkdir(parents=True, exist_ok=True)
        self.entry.write_text(f"[Desktop Entry]\nType=Application\nName={name}\nExec=\"{program}\" %F\n{keys}")

    def has_started(self):
        return self.record.exists()

    def wait_for_start(self):
        """The arguments of the start, and its environment."""
        wait_for(self.has_started, "the application to be started")
        arguments, environment = self.record.read_bytes().split(b"\0\0", 1)
        variables = dict(os.fsdecode(each).split("=", 1) for each in environment.split(b"\0") if b"=" in each)
        return [os.fsdecode(each) for each in arguments.split(b"\0")[1:]], variables


class RecordingScripts:
    """Scripts that remember how the last one of them was run."""

    def __init__(self, place):
        self.arguments = place / "arguments"
        self.environment = place / "environment"

    def write(self, path):
        """Makes a script, forgets former runs, and returns the bytes of its path."""
        path.write_text(RECORD_RUN.format(place=self.arguments.parent))
        for record in (self.arguments, self.environment):
            record.unlink(missing_ok=True)
        return os.fsencode(path)

    def has_run(self):
        return self.arguments.exists()

    def wait_for_run(self):
        """The arguments of the script that ran, its own path first, and its environment."""
        wait_for(self.has_run, "the script to run")
        pairs = [pair.partition(b"=") for pair in self.environment.read_bytes().split(b"\0")[:-1]]
        return self.arguments.read_bytes().split(b"\0")[:-1], {name: value for name, _, value in pairs}


class FileManagerService:
    """The file manager of the session as programs reach it over the bus."""

    name = "org.freedesktop.FileManager1"

    def __init__(self):
        self.calls = []
        self.connection = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(FILE_MANAGER).interfaces[0]
        self.registration = self.connection.register_object("/org/freedesktop/FileManager1", interface,
                                                            self._called, None, None)
        do_not_queue, primary_owner = 4, 1
        assert self._bus("RequestName", GLib.Variant("(su)", (self.name, do_not_queue))) == primary_owner

    def _bus(self, method, arguments):
        return self.connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                         method, arguments, None, Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]

    def _called(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        self.calls.append((method, list(arguments.unpack()[0])))
        invocation.return_value(None)

    def wait_for_call(self):
        return wait_for(lambda: self.calls and self.calls[-1], "the file manager to be asked")

    def close(self):
        self._bus("ReleaseName", GLib.Variant("(s)", (self.name,)))
        self.connection.unregister_object(self.registration)

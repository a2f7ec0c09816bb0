#!/usr/bin/env python3
"""Compiles small files with the very commands of the build, to see what its flags let through and what they refuse.

    compiling.py toolkits COMMANDS SRC OUT     a core file that includes a toolkit does not compile
    compiling.py headers COMMANDS SRC OUT      every header below SRC compiles alone, and twice in one file

COMMANDS is the build's compile_commands.json, SRC the project's src, OUT a folder for what is made on the way.
"""

import concurrent.futures
import json
import os
import pathlib
import shlex
import subprocess
import sys

# A header of each toolkit, some of which lie on the compiler's default path.
TOOLKIT_HEADERS = [
    "QString",
    "QtCore/QString",
    "glib.h",
    "gio/gio.h",
    "X11/Xlib.h",
    "X11/Xutil.h",
    "xcb/xcb.h",
    "xcb/xproto.h",
    "unicode/ucol.h",
    "unicode/unistr.h",
    "dconf/dconf.h",
]
CORE_SOURCE = "Platform/FileURL.cpp"


class Commands:
    """The build's compile commands of the sources below src."""

    def __init__(self, commands_file, src):
        self.by_source = {}
        for entry in json.loads(pathlib.Path(commands_file).read_text(encoding="utf-8")):
            source = pathlib.Path(entry["directory"], entry["file"]).resolve()
            if source.is_relative_to(src):
                command = entry.get("arguments") or shlex.split(entry["command"])
                self.by_source[source] = (entry["directory"], command, entry["file"])

    def nearest(self, header):
        """A source compiled in the header's folder, its namesake first, or else in the folder above, or none."""
        for folder in header.parents:
            beside = sorted(source for source in self.by_source if source.parent == folder)
            if beside:
                return min(beside, key=lambda source: source.stem != header.stem)
        return None

    def run(self, source, own_file, out_file):
        """Compiles own_file as the build compiles source; gives the exit status and what the compiler said."""
        directory, command, named = self.by_source[source]
        changed = []
        arguments = iter(command)
        for argument in arguments:
            if argument in ("-o", "-MF", "-MT"):
                next(arguments)
            elif argument in ("-MD", named):
                continue
            else:
                changed.append(argument)
        changed += ["-o", str(out_file), str(own_file)]
        # Words of another language would hide what the compiler said.
        environment = {**os.environ, "LC_ALL": "C"}
        done = subprocess.run(
            changed, cwd=directory, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False
        )
        return done.returncode, done.stderr


def compile_text(commands, source, text, out, name):
    own_file = out / f"{name}.cpp"
    if not own_file.exists() or own_file.read_text(encoding="utf-8") != text:
        own_file.write_text(text, encoding="utf-8")
    return commands.run(source, own_file, out / f"{name}.o")


def is_refusal_of(header, said):
    """Whether the compiler's words are about this header and no accident on the way."""
    first = next((line for line in said.splitlines() if "error:" in line), "")
    return "The core includes no toolkit" in first or "No such file or directory" in first


def toolkit_problems(commands, src, out):
    source = src / CORE_SOURCE
    plain = '#include "Platform/FileURL.h"\n#include <string>\nstd::string const& pathOf(marrowick::FileURL const& url);\n' \
        "std::string const& pathOf(marrowick::FileURL const& url) { return url.path(); }\n"
    status, said = compile_text(commands, source, plain, out, "plain")
    if status != 0:
        return [f"a core file without a toolkit does not compile, so the check would tell nothing:\n{said}"]
    found = []
    for number, header in enumerate(TOOLKIT_HEADERS):
        status, said = compile_text(commands, source, f"#include <{header}>\n{plain}", out, f"toolkit{number}")
        if status == 0:
            found.append(f"a core file that includes <{header}> compiles")
        elif not is_refusal_of(header, said):
            found.append(f"a core file that includes <{header}> fails for another reason:\n{said}")
    return found


def header_problems(commands, src, out):
    headers = sorted(src.rglob("*.h"))
    if not headers:
        return [f"no headers below {src}"]

    def problem_of(header):
        source = commands.nearest(header)
        name = header.relative_to(src).as_posix()
        if source is None:
            return f"{name}: no source of its folder is compiled"
        text = f'#include "{name}"\n#include "{name}"\n'
        status, said = compile_text(commands, source, text, out, name.replace("/", "-"))
        return f"{name}: does not compile alone:\n{said}" if status != 0 else None

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        found = [problem for problem in pool.map(problem_of, headers) if problem]
    print(f"{len(headers)} headers")
    return found


CHECKS = {"toolkits": toolkit_problems, "headers": header_problems}


def main():
    kind, commands_file, src, out = sys.argv[1:]
    src = pathlib.Path(src).resolve()
    out = pathlib.Path(out).resolve() / kind
    out.mkdir(parents=True, exist_ok=True)
    found = CHECKS[kind](Commands(commands_file, src), src, out)
    print("\n".join(found))
    print(f"{kind}: {len(found)} problems")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Checks what the sources include: arrows between the layers point down only, and no files include each other in a circle.

    layers.py FOLDER [EXTENSIONS]       FOLDER is the project's src, EXTENSIONS the companions inside file managers

Of the core, the companions include the records that they exchange with the program and nothing else.
"""

import pathlib
import re
import sys

# Each row may include itself and the rows before it.
CORE_ROWS = [
    ["Platform"],
    ["Models", "Support"],
    ["Menus", "Actions", "UI"],
    ["AppDelegate", "main"],
]
ADAPTERS = ["Freedesktop", "AppKit"]

STANDARD_HEADERS = set(
    """
    algorithm any array atomic barrier bit bitset charconv chrono codecvt compare complex concepts condition_variable
    coroutine deque exception execution filesystem format forward_list fstream functional future initializer_list iomanip
    ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
    optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span
    sstream stack stdexcept stop_token streambuf string string_view syncstream system_error thread tuple type_traits
    typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
    cassert cctype cerrno cfenv cfloat cinttypes climits clocale cmath csetjmp csignal cstdarg cstddef cstdint cstdio
    cstdlib cstring ctime cuchar cwchar cwctype
    """.split()
)
# A core file's reason to need more than the standard library.
ALLOWED_HEADERS = {
    "Support/PropertyList.cpp": {"expat.h"},
    "Support/RecordReader.h": {"boost/json/error.hpp", "boost/json/string_view.hpp"},
    "Support/ExchangeCoding.cpp": {"boost/json/basic_parser_impl.hpp", "boost/json/serializer.hpp"},
}
# What each part of the companions may include of the others, and of the core.
EXTENSION_PARTS = {
    "Shared": {"Shared", "Support"},
    "Gtk3": {"Gtk3", "Shared"},
    "Caja": {"Caja", "Gtk3", "Shared"},
    "Nautilus": {"Nautilus", "Shared"},
    "Nemo": {"Gtk3", "Nemo", "Shared"},
    "Thunar": {"Gtk3", "Shared", "Thunar"},
}
# No file manager and no toolkit is needed to build and to test what all of them share.
FORBIDDEN_IN_SHARED = re.compile(r"(gtk|gdk|atk|thunarx|libcaja|libnemo|nautilus)")
# The interfaces are also compiled as Objective-C++ by compilers whose library lacks these.
FORBIDDEN_IN_PLATFORM = {"ranges", "source_location"}

COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
INCLUDE = re.compile(r"^\s*#\s*(?:include|import)\s*(.*?)\s*(?://.*)?$", re.MULTILINE)
NAME = re.compile(r'(["<])([^">]+)[">]$')
SUFFIXES = {".h", ".cpp", ".mm"}


def layer_of(path):
    """The first folder of a path below src, or the name of a file that lies in src itself."""
    first = pathlib.PurePosixPath(path).parts[0]
    return first if first != path else pathlib.PurePosixPath(path).stem


def layers_below(layer):
    """The layers that a layer may include, or nothing for an unknown layer."""
    if layer in ADAPTERS:
        return {"Platform", layer}
    allowed = set()
    for row in CORE_ROWS:
        allowed.update(row)
        if layer in row:
            return allowed
    return None


def includes_of(text):
    """The includes of a source text as pairs of the opening mark and the name."""
    found = []
    for argument in INCLUDE.findall(COMMENT.sub("", text)):
        match = NAME.match(argument)
        found.append((match[1], match[2]) if match else ("?", argument))
    return found


def problems_of_include(path, mark, name, known):
    layer = layer_of(path)
    if mark == '"':
        if name.endswith(".moc") and layer in ADAPTERS:
            return []
        if name not in known:
            return [f'{path}: includes "{name}", which is no file below src']
        if layer_of(name) not in layers_below(layer):
            return [f'{path}: includes "{name}"; {layer} may include {", ".join(sorted(layers_below(layer)))}']
        return []
    if mark != "<":
        return [f"{path}: includes something that cannot be read as a file's name: {name}"]
    if name in known:
        return [f'{path}: includes <{name}>; the project\'s own headers stand in quotation marks']
    if layer == "Platform" and name in FORBIDDEN_IN_PLATFORM:
        return [f"{path}: includes <{name}>, which interfaces must do without"]
    if layer not in ADAPTERS and name not in STANDARD_HEADERS | ALLOWED_HEADERS.get(path, set()):
        return [f"{path}: includes <{name}>; the core sees the standard library and its own headers"]
    return []


def problems_of_extension_include(path, mark, name, known):
    part = layer_of(path)
    if mark == '"':
        if name not in known:
            return [f'{path}: includes "{name}", which is no file of the companions or of the core']
        if layer_of(name) not in EXTENSION_PARTS[part]:
            return [f'{path}: includes "{name}"; {part} may include {", ".join(sorted(EXTENSION_PARTS[part]))}']
    elif mark != "<":
        return [f"{path}: includes something that cannot be read as a file's name: {name}"]
    elif part == "Shared" and FORBIDDEN_IN_SHARED.match(name):
        return [f"{path}: includes <{name}>, which not every file manager has"]
    return []


def extension_problems(files, core):
    """All that is wrong with the companions, by their paths below their folder; core holds the files below src."""
    found = []
    for path, text in sorted(files.items()):
        if layer_of(path) not in EXTENSION_PARTS:
            found.append(f"{path}: lies in no part that this check knows")
            continue
        for mark, name in includes_of(text):
            found += problems_of_extension_include(path, mark, name, files.keys() | core.keys())
    return found


def circles(graph):
    """One circle of the graph for each place where following the includes comes back to a file on the way."""
    found = []
    finished = set()
    for start in sorted(graph):
        way = []
        on_way = set()
        todo = [(start, "enter")]
        while todo:
            node, step = todo.pop()
            if step == "leave":
                way.pop()
                on_way.discard(node)
                finished.add(node)
            elif node in on_way:
                found.append(way[way.index(node) :] + [node])
            elif node not in finished:
                way.append(node)
                on_way.add(node)
                todo.append((node, "leave"))
                todo.extend((target, "enter") for target in sorted(graph[node], reverse=True))
    return found


def problems(files):
    """All that is wrong with the given source texts, by their paths below src."""
    found = []
    graph = {path: set() for path in files}
    for path, text in sorted(files.items()):
        if layers_below(layer_of(path)) is None:
            found.append(f"{path}: lies in no layer that this check knows")
            continue
        for mark, name in includes_of(text):
            found += problems_of_include(path, mark, name, files)
            if mark == '"' and name in files:
                graph[path].add(name)
    found += ["circle: " + " -> ".join(circle) for circle in circles(graph)]
    return found


def read_files(folder):
    return {
        path.relative_to(folder).as_posix(): path.read_text(encoding="utf-8")
        for path in sorted(folder.rglob("*"))
        if path.suffix in SUFFIXES and path.is_file()
    }


def main():
    files = read_files(pathlib.Path(sys.argv[1]))
    if not files:
        sys.exit(f"no sources in {sys.argv[1]}")
    found = problems(files)
    for folder in sys.argv[2:]:
        extensions = read_files(pathlib.Path(folder))
        found += extension_problems(extensions, files) if extensions else [f"no sources in {folder}"]
    print("\n".join(found))
    print(f"{len(files)} files, {len(found)} problems")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

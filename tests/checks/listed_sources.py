#!/usr/bin/env python3
"""Checks that every source is listed in a CMakeLists.txt, so that none is left out of the build unseen.

    listed_sources.py ROOT        ROOT is the project's folder
"""

import pathlib
import re
import sys

FOLDERS = ["src", "extensions", "tests", "benchmarks"]
SUFFIXES = {".cpp", ".mm"}
COMMENT = re.compile(r"#.*")
WORD = re.compile(r'[^\s()";]+')
HERE = "${CMAKE_CURRENT_SOURCE_DIR}/"
TOP = "${PROJECT_SOURCE_DIR}/"


def listed_in(cmake_file, root):
    """The files below root that the words of a CMakeLists.txt name."""
    for word in WORD.findall(COMMENT.sub("", cmake_file.read_text(encoding="utf-8"))):
        start = root if word.startswith(TOP) else cmake_file.parent
        path = (start / word.removeprefix(TOP).removeprefix(HERE)).resolve()
        if path.suffix in SUFFIXES:
            yield path


def problems(root):
    root = root.resolve()
    listed = set()
    sources = set()
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.name == "CMakeLists.txt":
                listed.update(listed_in(path, root))
            elif path.suffix in SUFFIXES:
                sources.add(path)
    if not sources:
        return [f"no sources below {root}"]
    return [f"{path.relative_to(root)}: listed in no CMakeLists.txt" for path in sorted(sources - listed)]


def main():
    found = problems(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

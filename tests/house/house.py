#!/usr/bin/env python3
"""The rules of the house, held against the sources: who may include whom, where an operating system may be
seen, how long files and functions may be, and what every header, fuzzer and paper owes its reader.

Prints "ok NAME" or "not ok NAME" with the places, a line each.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROOM = re.compile(r"vex_room\((\w+)(?:\s+KNOWS\s+([\w\s]*?))?(?:\s+USES\s+([^)]*))?\)")
INCLUDE = re.compile(r'#include\s+([<"])([^>"]+)[>"]')
SYSTEM_HEADERS = re.compile(r"^(sys/|linux/|arpa/|netinet/|net/|unistd\.h|fcntl\.h|poll\.h|spawn\.h|windows\.h|"
                            r"winsock|pthread\.h|signal\.h|dirent\.h|dlfcn\.h|netdb\.h|sched\.h)")
PLATFORM = re.compile(r"#\s*(if|ifdef|ifndef|elif).*\b(_WIN32|WIN32|__linux__|__unix__|__APPLE__)\b")
BACKENDS = ("host/linux", "host/win32", "components/open/media", "components/open/triggers", "components/com")
MACROS = {"MessageBox", "SendMessage", "CreateProcess", "DeleteFile", "GetMessage"}


def files(*patterns):
    names = subprocess.run(["git", "ls-files", *patterns], cwd=ROOT, capture_output=True, text=True, check=True)
    return [name for name in names.stdout.split("\n") if name and (ROOT / name).exists()]


def text(name):
    return (ROOT / name).read_text(encoding="utf-8")


def rooms():
    """Folder of each room with its name and the rooms that it declares to know."""
    found = {}
    for name in files("*CMakeLists.txt"):
        for match in ROOM.finditer(text(name)):
            found[str(pathlib.PurePosixPath(name).parent)] = (match.group(1), (match.group(2) or "").split())
    return found


def room_of(name, table):
    folder = str(pathlib.PurePosixPath(name).parent)
    return table.get(folder)


def includes():
    table = rooms()
    for name in files("*.h", "*.cpp"):
        here = room_of(name, table)
        if not here:
            continue
        for kind, target in INCLUDE.findall(text(name)):
            there = room_of(target, table) if kind == '"' else None
            if there and there[0] != here[0] and there[0] not in here[1]:
                yield f"{name} includes {target}, but {here[0]} does not declare to know {there[0]}"
            if kind == '"' and not (ROOT / target).exists():
                yield f"{name} includes {target}, which is no file of the project"


def downward():
    """The declarations themselves run down the staircase: no room knows one that knows it."""
    table = {name: known for name, known in rooms().values()}

    def reach(room, seen):
        for known in table.get(room, []):
            if known not in seen:
                seen.add(known)
                reach(known, seen)
        return seen

    for room in table:
        if room in reach(room, set()):
            yield f"{room} knows itself by a circle"


def platform():
    for name in files("*.h", "*.cpp"):
        if name.startswith(BACKENDS + ("tests/", "bench/", "demo/")):
            continue
        for number, line in enumerate(text(name).split("\n"), 1):
            header = INCLUDE.match(line)
            if header and SYSTEM_HEADERS.match(header.group(2)):
                yield f"{name}:{number} sees an operating-system header"
            if PLATFORM.match(line):
                yield f"{name}:{number} asks which platform this is"


def lengths():
    for name in files("*.h", "*.cpp"):
        count = text(name).count("\n")
        limit = 600 if name.startswith("tests/") else 400
        if count > limit:
            yield f"{name} has {count} lines (at most {limit})"


def functions():
    """A function body opens at the end of a line and closes with a brace alone at the same indent."""
    for name in files("*.cpp"):
        if name.startswith("tests/"):
            continue
        start = None
        for number, line in enumerate(text(name).split("\n"), 1):
            if start is None and re.match(r"^\S.*\)\s*(const)?\s*(noexcept)?\s*\{$", line):
                start = number
            elif start is not None and line == "}":
                if number - start > 70:
                    yield f"{name}:{start} is a function of {number - start} lines (at most 70)"
                start = None


def headers():
    """Every header says at its head what the thing is."""
    for name in files("*.h"):
        if name.startswith(("tests/", "bench/", "demo/", "programs/")):
            continue
        body = text(name)
        if not body.startswith("#pragma once"):
            yield f"{name} does not start with #pragma once"
        if "///" not in body:
            yield f"{name} says nowhere what it is for"


def words():
    names = re.compile(r"\b(class|struct)\s+(\w*(Helper|Utils?|Impl)|I[A-Z][a-z]\w*)\b")
    for name in files("*.h", "*.cpp"):
        for number, line in enumerate(text(name).split("\n"), 1):
            match = names.search(line)
            if match and match.group(2) not in ("Installation", "InteractiveGroup"):
                if not re.match(r"I[a-z]", match.group(2)):
                    yield f"{name}:{number} names a {match.group(2)}"
            if re.search(r"\b(TODO|FIXME)\b", line):
                yield f"{name}:{number} is a note to oneself"
            for macro in MACROS:
                if re.search(rf"virtual\s[^;]*\b{macro}\(", line):
                    yield f"{name}:{number} names a seam's method like a platform's macro"


def sleeps():
    """Tests of time move the virtual clock; only tests of real processes may wait."""
    for name in files("tests/*.cpp", "tests/*.h"):
        if name.startswith(("tests/host_linux/", "tests/host_win32/", "tests/media/")):
            continue
        for number, line in enumerate(text(name).split("\n"), 1):
            if re.search(r"\b(sleep_for|usleep|nanosleep|sleep_until)\b", line):
                yield f"{name}:{number} sleeps"


def corpora():
    for name in files("fuzz/*Fuzz.cpp"):
        corpus = ROOT / "fuzz" / "corpus" / pathlib.PurePosixPath(name).stem
        if not corpus.is_dir() or not any(corpus.iterdir()):
            yield f"{name} has no corpus in {corpus.relative_to(ROOT)}"


def papers():
    for name, limit in (("README.md", 100), ("ARCHITECTURE.md", 200), ("CONTRIBUTING.md", None), ("CHANGELOG.md", None),
                        ("LICENSE", None)):
        if not (ROOT / name).exists():
            yield f"{name} is missing"
        elif limit and text(name).count("\n") > limit:
            yield f"{name} is longer than {limit} lines"


RULES = {
    "includes follow the rooms' declarations": includes,
    "no room knows itself by a circle": downward,
    "operating systems are seen in backends only": platform,
    "files have one subject": lengths,
    "functions fit a screen": functions,
    "headers say what they are for": headers,
    "words of the house": words,
    "tests of time do not sleep": sleeps,
    "every fuzzer has a corpus": corpora,
    "the papers are there": papers,
}


def main():
    bad = 0
    for rule, check in RULES.items():
        places = list(check())
        print(("not ok " if places else "ok ") + rule)
        for place in places:
            print("  " + place)
        bad += 1 if places else 0
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())

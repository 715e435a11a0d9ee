#!/usr/bin/env python3
"""Runs the unit tests that were built for Windows, under Wine.

    run.py i686|x86_64 [NAME ...]     all test programs of build/windows-ARCHITECTURE, or the named ones

Closes with one line, "N N N": cases passed, failed and skipped. A program that dies or writes no report counts
as one failed case; a machine that cannot be set up here as one skipped case, with a line that says why.
"""
import concurrent.futures
import fnmatch
import os
import pathlib
import shutil
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
import count  # noqa: E402
import wine  # noqa: E402

TESTS = pathlib.Path(__file__).resolve().parents[1]
# What is not built for Windows of the folders of tests, and why.
LEFT_OUT = {
    "media, but for two files": "they play by the media library, which has no package for Windows",
    "host_linux": "they try the other machine's host; host_win32 is tried in their place",
    "osc": "they hold two readers against each other, one of them liblo's, which has no package for Windows",
    "page": "it is the stage of the browser's tests; the page is served by the other machine's program alone",
    "tray_*": "the tray program is the other machine's alone",
}
# Programs that take arguments instead of test cases, and data that is brought beside a program.
PLAIN = {"long_evenings": ["2"]}
DATA = {"rehearsals": TESTS / "rehearsals"}


def program_names():
    """Of what the folders of tests hold: those that must have been built, each once."""
    folders = {path.parent.name for path in TESTS.glob("*/CMakeLists.txt")}
    built = (name for name in folders - {"windows"} if not any(fnmatch.fnmatch(name, left_out) for left_out in LEFT_OUT))
    return sorted("long_evenings" if name == "long" else name for name in built)


def try_program(machine, program):
    """Cases passed, failed and skipped."""
    name = program.stem.removesuffix("_tests")
    output = machine.folder / f"{name}.log"
    report = machine.folder / f"{name}.xml"
    report.unlink(missing_ok=True)
    good = bad = left_out = 0
    status = None
    if program.exists():
        arguments = PLAIN.get(name) or [f"--gtest_output=xml:{report.name}", "--gtest_brief=1"]
        status = machine.run(program, arguments, output=output)
    else:
        output.write_text("it has not been built\n", encoding="utf-8")
    if report.exists():
        good, bad, left_out = count.report_counts(report)
    elif name in PLAIN and status == 0:
        good = 1
    if (status != 0 or good + bad + left_out == 0) and bad == 0:
        bad = 1
    for why in count.skip_reasons(report) if left_out else ():
        print(f"skipped: {name}: {why}", file=sys.stderr)
    if bad:
        lines = output.read_text(encoding="utf-8", errors="replace").splitlines()
        how = "does not end" if status is None else f"ends with status {status}"
        print(f"FAILED: {name} {how}", *telling_lines(lines), sep="\n  ", file=sys.stderr)
    return good, bad, left_out


def telling_lines(lines):
    """What tells why a program failed: how it began, what it says of failures, and how it ended."""
    failures = [line for line in lines[20:-40] if any(word in line for word in ("FAILED", "Failure", "Unhandled"))]
    return lines if len(lines) <= 60 else [*lines[:20], "...", *failures[:100], "...", *lines[-40:]]


def clear_shows(machine):
    """Takes away what the programs' own tests left of an earlier run: the tests of a room would find those shows."""
    for pattern in ("*.shw", "*.qsc"):
        for path in machine.folder.glob(pattern):
            path.unlink()


def bring_data(machine, name):
    if name in DATA:
        shutil.copytree(DATA[name], machine.folder / name, dirs_exist_ok=True)


def main(architecture, names):
    preset = f"windows-{architecture}"
    folder = wine.BUILD / preset / "tests"
    chosen = [name for name in program_names() if not names or name in names]
    programs = [folder / f"{name}{'' if name in PLAIN else '_tests'}.exe" for name in chosen]
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"{preset}: left out, {why}", file=sys.stderr)
        print(0, 0, 1)
        return 0
    try:
        clear_shows(machine)
        for name in chosen:
            bring_data(machine, name)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(lambda program: try_program(machine, program), programs))
    finally:
        machine.stop()
    good, bad, left_out = (sum(column) for column in zip((0, 0, 0), *results))
    bad += 0 if programs else 1
    for name, why in LEFT_OUT.items() if not names else ():
        print(f"skipped: {preset} {name}: {why}", file=sys.stderr)
        left_out += 1
    print(f"{preset}: {good} passed, {bad} failed, {left_out} skipped", file=sys.stderr)
    print(good, bad, left_out)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))

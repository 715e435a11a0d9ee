#!/usr/bin/env python3
"""Runs the unit tests that were built for Windows, under Wine.

    run.py i686|x86_64 [NAME ...]     all test programs of build/windows-ARCHITECTURE, or the named ones

Closes with one line, "N N N": cases passed, failed and skipped. A program that dies or writes no report counts
as one failed case; a machine that cannot be set up here as one skipped case, with a line that says why.
"""
import concurrent.futures
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
import count  # noqa: E402
import wine  # noqa: E402


def try_program(machine, program):
    name = program.stem
    report = machine.folder / f"{name}.xml"
    output = machine.folder / f"{name}.log"
    report.unlink(missing_ok=True)
    status = machine.run(program, [f"--gtest_output=xml:{report.name}", "--gtest_brief=1"], output=output)
    good, bad, left_out = count.report_counts(report) if report.exists() else (0, 0, 0)
    if (status != 0 or not report.exists()) and bad == 0:
        bad = 1
    if bad:
        lines = output.read_text(encoding="utf-8", errors="replace").splitlines()
        how = "does not end" if status is None else f"ends with status {status}"
        print(f"FAILED: {name} {how}", *lines[-40:], sep="\n  ", file=sys.stderr)
    return good, bad, left_out


def main(architecture, names):
    preset = f"windows-{architecture}"
    programs = sorted((wine.BUILD / preset / "tests").glob("*_tests.exe"))
    programs = [program for program in programs if not names or program.stem.removesuffix("_tests") in names]
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"{preset}: left out, {why}", file=sys.stderr)
        print(0, 0, 1)
        return 0
    try:
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(lambda program: try_program(machine, program), programs))
    finally:
        machine.stop()
    good, bad, left_out = (sum(column) for column in zip((0, 0, 0), *results))
    bad += 0 if programs else 1
    print(f"{preset}: {good} passed, {bad} failed, {left_out} skipped", file=sys.stderr)
    print(good, bad, left_out)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))

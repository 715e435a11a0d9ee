#!/usr/bin/env python3
"""Runs the end-to-end tests: the real programs, watched from outside as any other program could.

    tests/e2e/run.py BUILD [WORD ...]

BUILD is a build folder with the programs in bin/; with words, only cases whose name holds one of them. Prints
"ok NAME" or "not ok NAME" for each case; the exit status tells whether any failed. Cases have their own folders,
meeting places and loopback addresses, so several run at once.
"""
import concurrent.futures
import os
import pathlib
import sys
import traceback
import unittest

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))


def cases(suite):
    for each in suite:
        if isinstance(each, unittest.TestSuite):
            yield from cases(each)
        else:
            yield each


def name_of(case):
    if not hasattr(case, "_testMethodName"):
        return str(case)
    return f"{type(case).__name__}.{case._testMethodName}"


def run(case):
    result = unittest.TestResult()
    case.run(result)
    return case, result


def report(case, result):
    for _, why in result.skipped:
        print(f"not ok {name_of(case)}\n  skipped: {why}")  # nothing here may be left out silently
    problems = result.failures + result.errors
    if not problems and not result.skipped:
        print(f"ok {name_of(case)}")
    for _, trace in problems:
        print(f"not ok {name_of(case)}")
        for line in trace.rstrip().split("\n"):
            print("  " + line)
    sys.stdout.flush()
    return not problems and not result.skipped


def main():
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    os.environ["VEX_E2E_PROGRAMS"] = str((pathlib.Path(sys.argv[1]) / "bin").resolve())
    words = sys.argv[2:]
    try:
        found = list(cases(unittest.TestLoader().discover(str(HERE), pattern="test_*.py")))
    except Exception:
        traceback.print_exc()
        print("not ok loading the tests")
        return 1
    chosen = [case for case in found if not words or any(word.lower() in name_of(case).lower() for word in words)]
    good = bool(chosen)
    # The cases mostly wait for the player's start; more of them than cores are no burden.
    with concurrent.futures.ThreadPoolExecutor(max_workers=8) as workers:
        for done in concurrent.futures.as_completed([workers.submit(run, case) for case in chosen]):
            good = report(*done.result()) and good
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())

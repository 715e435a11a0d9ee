#!/usr/bin/env python3
"""Adds up the test cases of a CTest run: prints how many passed, failed and were skipped.

Test programs write a report each; a program that CTest calls failed although its report has no failed
case (or that wrote none, because it died) counts as one failed case. Each skipped case is named with its reason
on the error output.
"""
import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def report_counts(path):
    root = ElementTree.parse(path).getroot()
    tests = failures = skips = 0
    for case in root.iter("testcase"):
        tests += 1
        failures += 1 if case.find("failure") is not None else 0
        skips += 1 if case.find("skipped") is not None else 0
    return tests - failures - skips, failures, skips


def skip_reasons(path):
    """Each skipped case of a report, with its reason; what a case says begins with its place in the source."""
    for case in ElementTree.parse(path).getroot().iter("testcase"):
        skipped = case.find("skipped")
        if skipped is not None:
            said = (skipped.get("message") or "").splitlines()
            yield f"{case.get('classname')}.{case.get('name')}: {said[-1] if said else 'it does not say why'}"


def main(folder):
    passed = failed = skipped = 0
    reports = {}
    for path in pathlib.Path(folder).glob("*.xml"):
        reports[path.stem.removesuffix("_tests")] = report_counts(path)
        for case in skip_reasons(path):
            print(f"skipped: {case}", file=sys.stderr)
    for good, bad, left_out in reports.values():
        passed += good
        failed += bad
        skipped += left_out
    junit = pathlib.Path(folder) / "ctest.junit"
    if not junit.exists():
        failed += 1
    else:
        for case in ElementTree.parse(junit).getroot().iter("testcase"):
            name = case.get("name")
            if case.get("status") == "run":
                passed += 0 if name in reports else 1
            elif name not in reports or reports[name][1] == 0:
                failed += 1
    print(passed, failed, skipped)


if __name__ == "__main__":
    main(sys.argv[1])

#!/usr/bin/env python3
"""Rehearses one rich evening with the programs of several builds: compilers, optimisation and sanitizers must not
show in a single byte.

    tests/e2e/same_bytes.py BUILD BUILD ...

The evening is the demonstration's show with presses, messages, a tray, edits, a clock that is set and failures of
every kind, told in JSON with all lighting events, as a person reads it, and with faults on purpose.
"""
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "demo"))

import make_demo  # noqa: E402

SPAN = ["--from", "2026-12-24 17:59:50", "--until", "2026-12-24 18:02:30", "--assume-media"]
INPUTS = "evening.jsonl"
ALL = "log,sent,seq,media,io,send,flush,window,shell,box"
WAYS = {
    "in JSON": ["--json", "rehearse", *SPAN, "--inputs", INPUTS, "--only", ALL],
    "in JSON, with faults": ["--json", "rehearse", *SPAN, "--inputs", INPUTS, "--faults", "3", "--seed", "5"],
    "for people": ["rehearse", *SPAN, "--inputs", INPUTS, "--seed", "2"],
    "as a summary": ["rehearse", *SPAN, "--inputs", INPUTS, "--summary"],
}


def at(second, **what):
    return {"at": f"2026-12-24 18:{second // 60:02}:{second % 60:02}.500", **what}


def lay_out(folder):
    make_demo.make(folder, 60)
    data = folder / "data"
    thursday = 4 * 86400 + 18 * 3600
    (data / "weeksched.qsc").write_bytes(f"(({thursday + 120},2,(,0,demo.shw),{thursday}))\r\n".encode())
    (data / "yearsched.qsc").write_bytes(
        f"((2026-12-24,(({thursday + 90},2,(,0,other.shw),{thursday + 75}))))\r\n".encode())
    show = (data / "demo.shw").read_bytes()
    (data / "other.shw").write_bytes(show.replace(b"candy-cane.vexseq,rainbow.vexseq",
                                                  b"Jingle Bells.vexseq,gone.vexseq"))
    (folder / "edited.shw").write_bytes(show.replace(b"candy-cane.vexseq,", b""))
    (folder / "sequences" / "good-night.vexseq").write_text(json.dumps({
        "format": "vexseq", "version": 1, "duration": 1.2345,
        "shellCommand": {"commandLine": "notify-send Gute Nacht", "windowStyle": 1},
        "events": [{"kind": "main", "network": 0, "unit": 1, "circuit": 1, "start": 0.1, "from": 33.3, "to": 66.7}]}))
    press = {"network": 0, "unit": 1, "input": 3, "name": "T\u00fcr"}
    happenings = [
        at(1, message=2, sender=7), at(8, trigger=press), at(9, trigger=press),
        at(12, mediaError=["codec not found", "l\u00e4uft nicht"]),
        at(20, sequenceError={"file": "Jingle Bells.vexseq", "call": "sync", "text": "lost"}),
        at(24, sequenceError={"file": "doorbell.vexseq", "call": "start", "text": "stuck"}), at(25, trigger=press),
        at(35, copy={"from": "edited.shw", "to": str(data / "demo.shw")}), at(50, message=5),
        at(52, message=6, text="OFF"), at(53, trigger=press), at(54, message=6, text="ON"),
        at(60, clock="2026-12-24 18:01:10"),
        at(95, message=9, text="(other.shw,(F,,F,),2,F)", sender=7), at(105, message=9, text=""), at(110, message=9, text="(x"),
        at(130, message=8)]
    (folder / INPUTS).write_text("".join(json.dumps(each) + "\n" for each in happenings))


def rehearse(build, folder, arguments):
    program = str((build / "bin" / "vexctl").resolve())
    done = subprocess.run([program, *arguments], cwd=folder, capture_output=True, timeout=300,
                          env=dict(os.environ, VEX_SETTINGS=str(folder / "settings.reg"), LC_ALL="C.UTF-8"))
    return done.returncode, done.stdout, done.stderr


def main():
    builds = [pathlib.Path(each) for each in sys.argv[1:]]
    if len(builds) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    good = True
    with tempfile.TemporaryDirectory(prefix="vex-") as name:
        folder = pathlib.Path(name)
        lay_out(folder)
        for way, arguments in WAYS.items():
            first, *others = [rehearse(build, folder, arguments) for build in builds]
            rich = first[0] in (0, 1) and first[1].count(b"\n") >= (1000 if "--json" in arguments else 1)
            same = all(other == first for other in others)
            good = good and rich and same
            print(f"{'ok' if rich and same else 'not ok'} {way}: {first[1].count(bytes([10]))} lines, "
                  f"{hashlib.sha256(first[1]).hexdigest()[:16]}")
            for build, answer in zip(builds, [first, *others]):
                if not same or not rich:
                    status, output, errors = answer
                    print(f"  {build}: status {status}, {hashlib.sha256(output).hexdigest()[:16]} {errors[-500:]!r}")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())

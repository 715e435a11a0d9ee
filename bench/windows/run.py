#!/usr/bin/env python3
"""Measures the Windows programs under Wine: the spacing of ticks, the time from the start to the window, the answer to
a message while a show plays, and the sizes of the programs.

    run.py [x86_64|i686 ...] [--sharp]

Both widths where none is named. --sharp runs Wine and its server with real-time priority, which tells the machine's
other work from the programs' own. The presets windows-x86_64 and windows-i686 must have been built.
"""
import os
import pathlib
import random
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "windows"))
import network  # noqa: E402
import wine  # noqa: E402

TICK_SECONDS, STARTS, MESSAGES = 40, 20, 3000
UNIVERSES, FRAME_MS, SHOW_SECONDS = 4, 25, 120


def bench(stage, name, *arguments):
    stage.machine.bring(wine.BUILD / f"windows-{stage.architecture}" / "bench" / f"{name}.exe")
    stage.machine.call(["wine", f"{name}.exe", *map(str, arguments)], 300, stage.path("bench.txt"))
    print(stage.path("bench.txt").read_text(encoding="utf-8", errors="replace"), end="", flush=True)


def play_four_universes(stage):
    """A show in which every slot changes in each of 40 frames a second."""
    random.seed(1)
    frames = [random.randbytes(UNIVERSES * 512) for _ in range(SHOW_SECONDS * 1000 // FRAME_MS)]
    stage.path("frames.fseq").write_bytes(network.frame_file(frames, FRAME_MS, 0))
    stage.play(main=["frames.fseq"])
    stage.expect_line("Starting Animation: frames.fseq")


def sizes(architecture):
    for program in sorted((wine.BUILD / f"windows-{architecture}" / "bin").glob("*.exe")):
        stripped = wine.BUILD / "stripped.exe"
        subprocess.run([f"{architecture}-w64-mingw32-strip", "-o", stripped, program], check=True)
        print(f"{program.name:34} {stripped.stat().st_size / 1e6:7.2f} MB stripped")
        stripped.unlink()


def measure(architecture):
    print(f"== windows-{architecture}, load average {os.getloadavg()[0]:.1f}", flush=True)
    sizes(architecture)
    machine = wine.machine(architecture).start()
    stage = network.Stage(machine, architecture)
    stage.architecture = architecture
    try:
        bench(stage, "TickBench", TICK_SECONDS)
        stage.begin()
        stage.write_settings()
        stage.call("VexPostInstall.exe")
        bench(stage, "StartBench", "VexMonitor.exe /noschedule", STARTS)
        play_four_universes(stage)
        bench(stage, "MessageBench", MESSAGES)
        stage.end()
    finally:
        stage.clear()
        machine.stop()


def main(words):
    if "--sharp" in words:
        os.sched_setscheduler(0, os.SCHED_FIFO, os.sched_param(10))
        words.remove("--sharp")
    for architecture in words or ("x86_64", "i686"):
        measure(architecture)


if __name__ == "__main__":
    main(sys.argv[1:])

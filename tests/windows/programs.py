#!/usr/bin/env python3
"""Runs the Windows programs themselves under Wine, as a user would: installs, starts the player, asks and watches
it from another program, starts a second one, and ends it.

    programs.py i686|x86_64

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import json
import math
import pathlib
import struct
import sys
import threading
import time
import wave

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import wine  # noqa: E402

KEY = r"HKCU\Software\Brillara"


class Stage:
    """The programs in the machine's work folder; each run's output lies in a file of its own."""

    def __init__(self, machine, architecture):
        self.machine = machine
        self.runs = 0
        for name in ("VexMonitor", "vexctl", "VexPostInstall"):
            machine.bring(wine.BUILD / f"windows-{architecture}" / "bin" / f"{name}.exe")

    def run(self, *command, timeout=30):
        self.runs += 1
        output = self.machine.folder / f"run{self.runs}.txt"
        status = self.machine.call(["wine", *command], timeout, output)
        return status, output.read_text(encoding="utf-8", errors="replace").replace("\r\n", "\n")

    def start(self, *command, timeout=60):
        """In a thread of its own; the result is there after join()."""
        thread = threading.Thread(target=lambda: setattr(thread, "result", self.run(*command, timeout=timeout)))
        thread.start()
        return thread

    def wait_for_status(self, condition, seconds=20):
        """The player's status once the condition holds; None when it does not."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            status, text = self.run("vexctl.exe", "--json", "status")
            if status == 0 and condition(found := json.loads(text)):
                return found
            time.sleep(0.2)
        return None


def installation(stage):
    stage.run("reg", "delete", KEY, "/f")
    first = stage.run("VexPostInstall.exe")
    _, registry = stage.run("reg", "query", KEY)
    wanted = (r"AppPath    REG_SZ    Z:", "work\\\n", "PostInstall    REG_DWORD    0x1", "PostInstallVer    REG_DWORD    0x5",
              "UserDataPath    REG_SZ    C:\\")
    yield "the post-installation program makes its record", first[0] == 0 and all(part in registry for part in wanted), registry
    stage.run("VexPostInstall.exe")
    yield "a second run changes nothing", stage.run("reg", "query", KEY)[1] == registry, registry


def life(stage):
    yield "without a player there is nothing to ask", stage.run("vexctl.exe", "status")[0] == 1, ""
    player = stage.start("VexMonitor.exe", "/noschedule")
    status = stage.wait_for_status(lambda found: True)
    yield "a player is found and knows its command line", status and status["noSchedule"], status
    second = stage.run("VexMonitor.exe")
    yield "a second one ends silently", second == (0, ""), second
    watch = stage.start("vexctl.exe", "watch", timeout=15)
    status = stage.wait_for_status(lambda found: found["ready"])
    yield "the player is ready after its start-up delay", bool(status), status
    asked = stage.run("vexctl.exe", "play", "F\u00fcr Elise.shw", "--for", "1h")
    said = stage.run("vexctl.exe", "shutdown")
    player.join()
    watch.join()
    yield "it ends when it is asked to", asked[0] == said[0] == player.result[0] == 0, (asked, said, player.result)
    lines = ("Show Player starting (for on demand shows)", "Show Player initialized",
             "Request for show on demand received: F\u00fcr Elise.shw", "Graceful shutdown requested",
             "Show Player shutting down", "[initialized]", "[current] ", "[next] ")
    missing = [line for line in lines if line not in watch.result[1]]
    yield "another program has watched it all", not missing, (missing, watch.result[1])
    yield "and it is gone", stage.run("vexctl.exe", "status")[0] == 1, ""


def write_song(stage, name, media):
    cues = {"format": "vexseq", "version": 1, "duration": 1, "media": stage.machine.path(media), "events": []}
    (stage.machine.folder / name).write_text(json.dumps(cues))
    return stage.machine.path(name)


def songs(stage):
    """The machine's own media player control plays what a show names, and goes on behind what it cannot play."""
    stage.run("reg", "add", KEY + r"\Output", "/v", "Protocol", "/d", "none", "/f")
    with wave.open(str(stage.machine.folder / "carol.wav"), "wb") as carol:
        carol.setparams((1, 2, 22050, 0, "NONE", ""))
        carol.writeframes(b"".join(struct.pack("<h", int(3000 * math.sin(i / 10))) for i in range(22050)))
    names = ",".join(write_song(stage, *song) for song in (("carol.vexseq", "carol.wav"), ("none.vexseq", "none.wav")))
    (stage.machine.folder / "songs.shw").write_text(f"((2,0,1,0,,),(2,0,1,0,,),(1,0,1,0,,),(0,1,1,0,,({names})),)\r\n")
    player = stage.start("VexMonitor.exe", "/noschedule")
    stage.wait_for_status(lambda found: found["ready"])
    watch = stage.start("vexctl.exe", "watch", timeout=60)
    stage.run("vexctl.exe", "play", stage.machine.path("songs.shw"), "--for", "1h")
    playing = stage.wait_for_status(lambda found: (found["media"] or "").endswith("carol.wav"))
    yield "a song holds the media player control", bool(playing), playing
    failed = stage.wait_for_status(lambda found: found["lastError"])
    yield "a song that is not there fails", failed and "MEDIA PLAYER ERROR" in failed["lastError"]["text"], failed
    time.sleep(4)
    stage.run("vexctl.exe", "shutdown", "--now")
    player.join()
    watch.join()
    starts = watch.result[1].count("carol.vexseq")
    yield "a song that has ended comes round again", starts >= 3, watch.result[1]
    yield "the control is let go at the end", player.result[0] == 0, player.result


def main(architecture):
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
        return 0
    bad = 0
    try:
        stage = Stage(machine, architecture)
        for part in (installation, life, songs):
            for name, holds, seen in part(stage):
                print(f"{'ok' if holds else 'not ok'} windows-{architecture}: {name}")
                if not holds:
                    print(f"  {seen}")
                    bad += 1
    finally:
        machine.stop()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))

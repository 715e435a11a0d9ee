#!/usr/bin/env python3
"""Plays the same evening with the Linux programs and with the Windows programs under Wine, at the same time and each
watched by a tray of its own, and holds what they say, what they send and what they ask of their devices against each
other.

    evening.py i686|x86_64 FOLDER     FOLDER holds the Linux programs, build/release/bin

Prints "ok NAME" or "not ok NAME" for each case, with what was seen; and how far apart in time the lines came.
"""
import concurrent.futures
import difflib
import json
import os
import pathlib
import re
import shutil
import socket
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]
import network  # noqa: E402
import stage as linux  # noqa: E402
import wine  # noqa: E402
from stage import cue, show, wait_until, week  # noqa: E402
from test_inputs import free_port, group, press  # noqa: E402
from test_lights import Packets  # noqa: E402
from test_shows import silence  # noqa: E402

PATIENCE = 60  # seconds, on a busy machine
SONG = HERE.parent / "media" / "files" / "song.ogg"
RECORDING = network.RECORDING
MARK = "shell.txt"
CIRCUITS = {"up": 1, "back": 2, "run": 3, "f\u00fcr": 4, "none": 5, "two": 6, "three": 7, "flash": 8, "clean": 9,
            "bye": 10, "hello": 11, "dance": 12, "ciao": 13, "rest": 14}


class Transcript:
    """What the tray was told, line by line, each with the moment at which it was there to be read."""

    def __init__(self, file):
        self.file = file
        self.lines = []
        self.moments = []
        self.rest = b""
        self.read = 0

    def look(self):
        if self.file.exists():
            with open(self.file, "rb") as source:
                source.seek(self.read)
                new = source.read()
            self.read += len(new)
            *whole, self.rest = (self.rest + new).replace(b"\r\n", b"\n").split(b"\n")
            for line in whole:
                self.lines.append(json.loads(line))
                self.moments.append(time.monotonic())
        return self.lines

    def count(self, text):
        return sum(text in line["text"] for line in self.look())

    def compared(self):
        """The lines without the time of day; the machines have words of their own for why a file cannot be played, and
        each is asked for its show on demand at its own moment."""
        texts = []
        for line in self.lines:
            text = re.sub(r"(demand\.shw,\(F,,T,)[^)]*", r"\1...", line["text"])
            if line["kind"] == "status":
                text = re.sub(r"^\d\d?:\d\d( [AP]M)?: ", "", text)
                text = re.sub(r"(Error playing media file: ).*(\): )$", r"\1...\2", text)
            texts.append(f"[{line['kind']}] {text}")
        return texts


def listen(address):
    """None where another test beside this one has the port for a moment."""
    try:
        return Packets(address)
    except OSError:
        return None


class House:
    """One of the two players with its tray; a family says how programs are run."""

    packets = None

    def begin(self, recorded):
        self.packets = None if recorded else wait_until(lambda: listen(self.address), PATIENCE)
        self.link = {"LocalPort": free_port(), "On": 1}
        self.components = {"Lights": "recorded", "Media": "recorded", "Recording": RECORDING} if recorded else \
            {"Lights": "open"}

    def lay(self, week_text):
        """The same files for both."""
        def sequence(name, seconds, **options):
            levels = [(0, CIRCUITS[name], 20), (min(seconds / 2, 3), CIRCUITS[name], 100)]
            (self.files / f"{name}.vexseq").write_text(cue(seconds, *levels, **options), encoding="utf-8")

        sequence("up", 1.0)
        sequence("back", 120)
        sequence("run", 10.0)
        sequence("rest", 120)
        sequence("clean", 0.5)
        sequence("bye", 0.8)
        sequence("f\u00fcr", 20.0, media="F\u00fcr Elise.wav")
        sequence("none", 20.0, media="none.wav")
        sequence("two", 20.0, media="song.ogg")
        sequence("three", 120)
        for name, seconds in (("flash", 1.0), ("hello", 0.5), ("dance", 120), ("ciao", 0.6)):
            sequence(name, seconds)
        path = self.files / "run.vexseq"
        cues = json.loads(path.read_text(encoding="utf-8"))
        cues["shellCommand"] = {"commandLine": self.shell_command, "windowStyle": 0}
        path.write_text(json.dumps(cues), encoding="utf-8")
        silence(self.files / "F\u00fcr Elise.wav", 4.0)
        shutil.copyfile(SONG, self.files / "song.ogg")
        self.put("eve.shw", show(
            startup=["up.vexseq"], background=["back.vexseq"], main=["run.vexseq", "rest.vexseq"],
            musical=["f\u00fcr.vexseq", "none.vexseq", "two.vexseq", "three.vexseq"], clean_up="clean.vexseq", delay=1,
            groups="(" + group((3, "flash.vexseq")) + ")", shutdown=["bye.vexseq"]))
        self.put("demand.shw", show(startup=["hello.vexseq"], main=["dance.vexseq"], shutdown=["ciao.vexseq"]))
        self.put("weeksched.qsc", week_text)

    def put(self, name, text):
        (self.data / name).write_bytes(text.encode("cp1252") + b"\r\n")

    def press(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(press(3, "T\u00fcr"), ("127.0.0.1", self.link["LocalPort"]))

    def expect(self, text, count=1):
        if not wait_until(lambda: self.transcript.count(text) >= count, PATIENCE):
            raise network.Failed(f"{self.name}: no line {text!r} (x{count}) among\n" + "\n".join(
                self.transcript.compared()) + "\n" + self.said())

    def calls(self):
        """What the devices were asked, without the moments; lighting events one after another for each circuit."""
        lines = [json.loads(line) for line in (self.folder / RECORDING).read_text(encoding="utf-8").splitlines()]
        for line in lines:
            del line["t"]
            if line.get("call") == "setLink":
                line["args"][1] = "port"
            if line.get("commandLine") == self.shell_command:
                line["commandLine"] = "shell command"
        asked = [json.dumps(line, ensure_ascii=False) for line in lines if line.get("call") not in ("send", "flush")]
        sent = sorted((json.dumps(line) for line in lines if line.get("call") == "send"), key=self.circuit)
        return asked, sent

    @staticmethod
    def circuit(line):
        return json.loads(line)["args"][:3]

    def end(self):
        if self.packets:
            self.packets.close()
        self.clear()


class LinuxHouse(House, linux.Stage):
    name = "Linux"
    shell_command = f"touch {MARK}"

    def runTest(self):
        """A stage is a test case; here it is only the place."""

    def begin(self, recorded):
        self.setUp()
        House.begin(self, recorded)
        self.output = {"Protocol": "sacn", "Host": self.address}
        self.files = self.sequences
        # A machine without a sound card would say so in one line more.
        self.components |= {} if recorded else {"Media": "mpv", "AudioOutput": "null"}

    def start(self):
        self.start_player()
        with open(self.folder / "watch.txt", "wb") as sink:
            self.spawn("vexctl", "--json", "watch", stdout=sink, stderr=sink)
        self.transcript = Transcript(self.folder / "watch.txt")

    def ask(self, *command):
        return self.vexctl(*command).returncode

    def ended(self):
        return self.wait_exit(PATIENCE)

    def clear(self):
        self.doCleanups()


class WindowsHouse(House):
    name = "Windows"
    shell_command = f"cmd /c echo done > {MARK}"

    def __init__(self, machine, architecture):
        self.stage = network.Stage(machine, architecture)
        self.files = self.data = self.folder = machine.folder

    def begin(self, recorded):
        self.stage.begin()
        self.address = self.stage.address
        House.begin(self, recorded)
        self.stage.link = self.link
        self.stage.components = self.components | ({} if recorded else {"Media": "wmp"})
        (self.folder / MARK).unlink(missing_ok=True)
        self.stage.write_settings()

    def start(self):
        stage = self.stage
        stage.player = stage.spawn("player.txt", "VexMonitor.exe")
        if not wait_until(lambda: stage.call("vexctl.exe", "status")[0] == 0, PATIENCE):
            raise network.Failed("Windows: the player does not run\n" + self.said())
        stage.watch = stage.spawn("watch.txt", "vexctl.exe", "--json", "watch")
        self.transcript = Transcript(self.folder / "watch.txt")

    def ask(self, *command):
        return self.stage.call("vexctl.exe", *command)[0]

    def said(self):
        return self.stage.said()

    def ended(self):
        return self.stage.player.wait(PATIENCE)

    def clear(self):
        self.stage.clear()


def evening_of_songs(house):
    """Start-up, all phases, a press, a show on demand that ends by its own time, and a graceful end."""
    house.expect("Starting Musical: three.vexseq")
    house.press()
    house.expect("Ending Interactive: flash.vexseq")
    assert house.ask("play", "demand.shw", "--for", "6s") == 0
    house.expect("Starting show: eve.shw", count=2)
    house.expect("Starting Musical: f\u00fcr.vexseq", count=2)
    assert house.ask("shutdown") == 0


def evening_that_ends(house):
    """The show's time in the schedule ends; later somebody ends the player at once."""
    house.expect("Ending Shutdown: bye.vexseq")
    assert house.ask("link", "off") == 0
    assert house.ask("reload") == 0
    house.expect("Schedule loaded", count=2)
    assert house.ask("shutdown", "--now") == 0


def play(house, evening):
    house.start()
    evening(house)
    status = house.ended()
    if status != 0:
        raise network.Failed(f"{house.name}: the player ends with {status}\n{house.said()}")
    house.expect("Show Player shutting down")


def both(houses, recorded, evening, *events):
    week_text = None
    for house in houses:
        house.begin(recorded)
    for house in houses:
        week_text = week_text or week(*events)
        house.lay(week_text)
        if house.name == "Linux":
            house.write_settings()
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for done in [pool.submit(play, house, evening) for house in houses]:
            done.result()


def difference(one, other):
    return "\n".join(difflib.unified_diff(one, other, "Linux", "Windows", n=2, lineterm=""))


def tell_times(houses, architecture):
    """How far apart the same lines came, counted from the line that starts the show. Told, never judged."""
    gaps = []
    starts = []
    for house in houses:
        lines = house.transcript.compared()
        starts.append(house.transcript.moments[next(at for at, line in enumerate(lines) if "Starting show" in line)])
    for one, other in zip(*(house.transcript.moments for house in houses)):
        gaps.append((other - starts[1]) - (one - starts[0]))
    gaps.sort()
    print(f"   windows-{architecture}: lines come {gaps[0]:+.2f} to {gaps[-1]:+.2f} s, in the middle "
          f"{gaps[len(gaps) // 2]:+.2f} s, later than on Linux")


def levels_of(house):
    """The levels of each circuit one after another, as they went out."""
    return {name: house.packets.levels(1, circuit) for name, circuit in CIRCUITS.items()}


def songs(houses, architecture):
    both(houses, False, evening_of_songs, (-60, 600, "eve.shw"))
    lines = [house.transcript.compared() for house in houses]
    yield "an evening of songs has the same transcript as on Linux", lines[0] == lines[1], difference(*lines)
    yield "all of it has been played", len(lines[0]) > 60 and all(
        any(f": {name}.vexseq" in line for line in lines[0]) for name in CIRCUITS), "\n".join(lines[0])
    levels = [levels_of(house) for house in houses]
    yield "every light has been sent the same levels", levels[0] == levels[1] and all(
        255 in levels[0][name] for name in ("up", "run", "f\u00fcr", "two", "flash", "clean", "bye", "hello", "ciao")), levels
    marks = [(house.folder / MARK).exists() for house in houses]
    yield "the shell command has run on both", all(marks), marks
    tell_times(houses, architecture)


def devices(houses, architecture):
    both(houses, True, evening_that_ends, (-60, 22, "eve.shw"))
    lines = [house.transcript.compared() for house in houses]
    yield "an evening that ends has the same transcript as on Linux", lines[0] == lines[1], difference(*lines)
    asked, sent = zip(*(house.calls() for house in houses))
    yield "the devices are asked the same in the same order", asked[0] == asked[1] and len(asked[0]) > 30, difference(*asked)
    yield "every circuit gets the same lighting events", sent[0] == sent[1] and len(sent[0]) > 20, difference(*sent)
    tell_times(houses, architecture)


def main(architecture, programs):
    os.environ["VEX_E2E_PROGRAMS"] = str(pathlib.Path(programs).resolve())
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
        return 0
    bad = 0
    try:
        for part in (songs, devices):
            houses = (LinuxHouse(), WindowsHouse(machine, architecture))
            try:
                for name, holds, seen in part(houses, architecture):
                    print(f"{'ok' if holds else 'not ok'} windows-{architecture}: {name}", flush=True)
                    if not holds:
                        print(f"  {seen}", flush=True)
                        bad += 1
            except (network.Failed, AssertionError) as why:
                print(f"not ok windows-{architecture}: {part.__doc__ or part.__name__}\n  {why}", flush=True)
                bad += 1
            finally:
                for house in houses:
                    house.end()
    finally:
        machine.stop()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

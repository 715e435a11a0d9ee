"""What an end-to-end test needs around the real programs: a folder of its own with settings, schedules and
shows, the player as a process, and a tray that speaks the message channel from outside."""
import collections
import datetime
import itertools
import json
import os
import pathlib
import random
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import threading
import time
import unittest

WM_COPYDATA = 74
(IMMEDIATE, TRAY, CURRENT, NEXT, RELOAD, LINK, STATUS, GRACEFUL, DEMAND, INITIALIZED, SCHEDULES) = range(1, 12)
START_UP = 12.0  # seconds that a start may take on a busy machine: 4 of delay, 1 to the first heartbeat
_addresses = itertools.count(random.randrange(2, 100) * 256 + 10)


def programs():
    return pathlib.Path(os.environ["VEX_E2E_PROGRAMS"])


def wait_until(what, seconds, step=0.02):
    """What the call gives as soon as it is true; None when it never was."""
    end = time.monotonic() + seconds
    while True:
        value = what()
        if value:
            return value
        if time.monotonic() > end:
            return None
        time.sleep(step)


def system_path(path):
    return "Z:" + str(path).replace("/", "\\")


def week_second(moment):
    return (moment.isoweekday() % 7 * 24 + moment.hour) * 3600 + moment.minute * 60 + moment.second


def week(*events):
    """A weekly schedule's text; an event is (seconds from now to its start, to its end, show)."""
    now = datetime.datetime.now().replace(microsecond=0)
    fields = []
    for start, end, show in events:
        first, last = (week_second(now + datetime.timedelta(seconds=offset)) for offset in (start, end))
        fields.append(f"({last},2,(,0,{show}),{first})")
    return "(" + ",".join(fields) + ")"


def show(startup=(), shutdown=(), main=(), musical=(), background=(), clean_up="", delay=0, groups="", preload="F"):
    def names(entries):
        return "(" + ",".join(entries) + ")" if entries else ""

    return (f"((0,1,2,0,,{names(startup)},T,F,F),(0,1,2,0,,{names(shutdown)},T,F,F),(1,0,1,0,,{names(main)},T,F,F),"
            f"(0,1,2,{delay},{clean_up},{names(musical)},T,F,F),,(2,0,1,0,,{names(background)},T,F,F),{groups},0,,"
            f"{preload})")


def cue(duration, *levels, media=None, unit=1):
    """A cue file's text; a level is (second, circuit, level)."""
    content = {"format": "vexseq", "version": 1, "duration": duration, "events": [
        {"kind": "main", "network": 0, "unit": unit, "circuit": circuit, "start": start, "from": level, "to": level}
        for start, circuit, level in levels]}
    if media:
        content["media"] = media
    return json.dumps(content, ensure_ascii=False)


class Tray:
    """The tray from outside: a window is a bound datagram socket whose name is its number."""

    def __init__(self, stage, listen=True):
        self.stage = stage
        self.handle = random.randrange(1, 2 ** 31)
        self.received = []  # (type, text, moment)
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind(str(stage.meeting / str(self.handle)))
        self.socket.settimeout(0.1)
        self.closed = False
        if listen:
            self.listen()

    def listen(self):
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        while not self.closed:
            try:
                datagram = self.socket.recv(200000)
            except socket.timeout:
                continue
            except OSError:
                return
            number, sender, data, size = struct.unpack("<4I", datagram[:16])
            payload = datagram[16:]
            good = number == WM_COPYDATA and data == 3 and size == len(payload) and payload.endswith(b"\0")
            text = payload[:-1].decode("cp1252", "replace")
            self.received.append((int(text[:2]), text[2:], time.monotonic()) if good else
                                 (-1, repr(datagram), time.monotonic()))

    def close(self):
        self.closed = True
        self.socket.close()
        (self.stage.meeting / str(self.handle)).unlink(missing_ok=True)

    def send(self, kind, text=b""):
        payload = b"%02d" % kind + (text if isinstance(text, bytes) else text.encode("cp1252")) + b"\0"
        self.send_raw(struct.pack("<4I", WM_COPYDATA, self.handle, 3, len(payload)) + payload)

    def send_raw(self, datagram):
        self.socket.sendto(datagram, str(self.stage.meeting / self.stage.window()))

    def register(self):
        self.send(TRAY)

    def of(self, kind):
        return [text for number, text, _ in list(self.received) if number == kind]

    def lines(self):
        """Status lines without their time of day, blocks taken apart."""
        return [line.partition(": ")[2] for block in self.of(STATUS) for line in block.split("\r\n")]

    def wait_line(self, text, seconds=START_UP, count=1):
        return wait_until(lambda: sum(text in line for line in self.lines()) >= count, seconds)


Answer = collections.namedtuple("Answer", "returncode stdout stderr")


class Stage(unittest.TestCase):
    """One player in a place of its own."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="vex-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.meeting = self.folder / "meet"
        self.data = self.folder / "data"
        self.sequences = self.folder / "sequences"
        self.settings = self.folder / "settings.reg"
        for each in (self.data, self.sequences):
            each.mkdir()
        number = next(_addresses)
        self.address = f"127.{number >> 16 & 255}.{number >> 8 & 255}.{number & 255}"
        self.environment = dict(os.environ, VEX_SETTINGS=str(self.settings), VEX_RUNTIME_DIR=str(self.meeting),
                                HOME=str(self.folder), LC_ALL="C.UTF-8")
        for display in ("DISPLAY", "WAYLAND_DISPLAY"):
            self.environment.pop(display, None)
        self.output = {"Protocol": "none"}
        self.components = {}
        self.video = {}
        self.link = {}
        self.player = None

    # Settings, schedules, shows.

    def write_settings(self):
        def values(entries):
            return "".join(f'"{name}"=' + (f"dword:{value:08x}" if isinstance(value, int) else
                                           '"' + value.replace("\\", "\\\\") + '"') + "\n"
                           for name, value in entries.items())

        key = r"[HKEY_CURRENT_USER\Software\Brillara"
        self.settings.write_text(
            "Windows Registry Editor Version 5.00\n\n"
            f"{key}]\n" + values({"UserDataPath": system_path(self.data) + "\\"}) +
            f"\n{key}\\Shared]\n" + values({"AudioPath": system_path(self.sequences),
                                            "NonAudioPath": system_path(self.sequences)}) +
            f"\n{key}\\Shared\\VideoPreferences]\n" + values(self.video) +
            f"\n{key}\\Output]\n" + values(self.output) + f"\n{key}\\XLK]\n" + values(self.link) +
            f"\n{key}\\Components]\n" + values(self.components), encoding="utf-8")

    def sequence(self, name, *arguments, **options):
        (self.sequences / name).write_text(cue(*arguments, **options), encoding="utf-8")
        return name

    def write_show(self, name="eve.shw", text=None, **parts):
        (self.data / name).write_bytes((text if text is not None else show(**parts)).encode("cp1252") + b"\r\n")

    def write_week(self, *events, text=None):
        (self.data / "weeksched.qsc").write_bytes((text if text is not None else week(*events)).encode("cp1252") + b"\r\n")

    # Programs.

    def run_program(self, name, *arguments, seconds=60, **options):
        return subprocess.run([str(programs() / name), *arguments], env=self.environment, capture_output=True,
                              timeout=seconds, cwd=self.folder, **options)

    def vexctl(self, *arguments):
        done = self.run_program("vexctl", *arguments)
        return Answer(done.returncode, done.stdout.decode(), done.stderr.decode())

    def spawn(self, name, *arguments, **options):
        process = subprocess.Popen([str(programs() / name), *arguments], env=self.environment, cwd=self.folder,
                                   stdin=subprocess.DEVNULL, start_new_session=True, **options)
        self.addCleanup(self.end_process, process)
        return process

    @staticmethod
    def end_process(process):
        if process.poll() is None:
            process.send_signal(signal.SIGCONT)
            process.kill()
        process.wait()
        for pipe in (process.stdout, process.stderr):
            if pipe:
                pipe.close()

    def start_player(self, *arguments, settings=True):
        if settings:
            self.write_settings()
        self.messages = open(self.folder / "messages.txt", "ab")
        self.addCleanup(self.messages.close)
        self.player = self.spawn("VexMonitor", *arguments, stdout=self.messages, stderr=self.messages)
        self.started = time.monotonic()
        self.assertTrue(wait_until(self.window, START_UP), "the player has no window: " + self.said())
        return self.player

    def said(self):
        return (self.folder / "messages.txt").read_text(errors="replace")

    def window(self):
        """The running player's window; a file that a killed one left behind does not count."""
        try:
            handle = (self.meeting / "player").read_text().strip()
            probe = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
            try:
                probe.connect(str(self.meeting / handle))
            finally:
                probe.close()
            return handle
        except OSError:
            return None

    def tray(self, register=True, listen=True):
        tray = Tray(self, listen)
        self.addCleanup(tray.close)
        if register:
            tray.register()
        return tray

    def status(self):
        try:
            return json.loads((self.meeting / "status.json").read_text(encoding="utf-8"))
        except (OSError, ValueError):
            return None

    def wait_exit(self, seconds=15):
        try:
            return self.player.wait(seconds)
        except subprocess.TimeoutExpired:
            self.fail("the player does not end")

    def assert_line(self, tray, text, seconds=START_UP, count=1):
        self.assertTrue(tray.wait_line(text, seconds, count),
                        f"no line {text!r} (x{count}) among:\n" + "\n".join(tray.lines()) + "\n" + self.said())

    def assert_in_order(self, tray, *texts):
        def in_order():
            lines = iter(tray.lines())
            return all(any(text in line for line in lines) for text in texts)

        self.assertTrue(wait_until(in_order, 5),  # what has arrived is read beside the test
                        f"{texts!r} are not all there in this order in:\n" + "\n".join(tray.lines()))

    def play_show(self, seconds=600, **parts):
        """The player in the middle of a show that is in force, with a tray."""
        self.write_show(**parts)
        self.write_week((-60, seconds, "eve.shw"))
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Starting show: eve.shw")
        return tray

#!/usr/bin/env python3
"""What vextray costs while a show plays, and what open pages cost the show.

    bench/tray/measure.py BUILD [--pages N] [--seconds N] [--universes N] [--browser]

The real player of BUILD plays universes (4) of 40 frames a second that change in each, as multicast on the loopback
interface; vextray hears them and serves N pages (1), each of them read as fast as events come. Printed are
vextray's processor time and memory, how much later than a frame the player's packets followed each other (kernel time
stamps), and how long a line took from the press that the player writes it for to the pages. With --browser a real browser opens the
page besides (tests/page/measure_real.js): how soon it can be used, and how soon a line stands on it.
"""
import argparse
import json
import os
import pathlib
import re
import selectors
import socket
import struct
import subprocess
import sys
import time

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "e2e"))

import stage  # noqa: E402  (the folder of the end-to-end tests is known only now)

FIRST = 301  # of the universes; nobody else's
SLOTS = 2048  # that change, shared by all universes
GRID = 0.025
WAVE = 6.375  # 255 frames, so that every slot changes in each
SO_TIMESTAMPNS = 35
NAME = "bench %d" % os.getpid()


def share(sorted_values, part):
    return sorted_values[min(len(sorted_values) - 1, int(part * len(sorted_values)))] if sorted_values else float("nan")


def figures(values, unit=1000.0):
    values = sorted(values)
    return "p50 %.2f  p99 %.2f  max %.2f ms (%d)" % (
        *(share(values, part) * unit for part in (0.5, 0.99, 1.0)), len(values))


def osc_trigger(name):
    def text(value):
        data = value.encode() + b"\0"
        return data + b"\0" * (-len(data) % 4)

    return text("/trigger") + text(",iiis") + struct.pack(">3i", 0, 1, 3) + text(name)


class Scene(stage.Stage):
    """Player and vextray in a place of their own; not a test, but it takes places as the tests do."""

    def runTest(self):
        pass

    def begin(self, seconds, universes):
        self.setUp()
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            probe.bind(("127.0.0.1", 0))
            self.osc = probe.getsockname()[1]
        self.link = {"LocalPort": self.osc, "On": 1}
        self.output = {"Protocol": "sacn", "Interface": "127.0.0.1", "SourceName": NAME, "FirstUniverse": FIRST}
        # Up and down without an end within the measurement: where a sequence begins again a frame is left out.
        waves = int((seconds + 120) / WAVE)
        events = [{"kind": "main", "network": 0, "unit": unit, "circuit": circuit, "start": wave * WAVE,
                   "end": (wave + 1) * WAVE, "from": wave % 2 * 100, "to": 100 - wave % 2 * 100}
                  for wave in range(waves) for unit in range(1, universes + 1)
                  for circuit in range(1, SLOTS // universes + 1)]
        (self.sequences / "all.vexseq").write_text(json.dumps(
            {"format": "vexseq", "version": 1, "duration": waves * WAVE, "events": events}))
        self.write_show(background=["all.vexseq"])
        self.write_week((-60, 3600, "eve.shw"))
        self.environment.pop("XDG_STATE_HOME", None)
        self.start_player()
        self.vextray = self.spawn("vextray", "--listen", "127.0.0.1:0", stdout=subprocess.PIPE, text=True)
        self.page = int(re.search(r":(\d+)$", self.vextray.stdout.readline().strip()).group(1))
        stage.wait_until(lambda: (self.status() or {}).get("playing"), 20) or sys.exit("nothing plays")
        time.sleep(3)

    def press(self, name):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(osc_trigger(name), ("127.0.0.1", self.osc))


class Packets:
    """The packets of one universe with the kernel's time stamps."""

    def __init__(self, universe):
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.socket.setsockopt(socket.SOL_SOCKET, SO_TIMESTAMPNS, 1)
        group = "239.255.%d.%d" % (universe >> 8, universe & 255)
        self.socket.bind((group, 5568))
        self.socket.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
                               socket.inet_aton(group) + socket.inet_aton("127.0.0.1"))
        self.socket.setblocking(False)
        self.times = []

    def take(self):
        data, extra, _, _ = self.socket.recvmsg(1500, 256)
        if data[44:108].rstrip(b"\0").decode() != NAME:
            return
        seconds, nanoseconds = struct.unpack("=qq", extra[0][2][:16])
        self.times.append(seconds + nanoseconds / 1e9)

    def lateness(self):
        """By how much each came later after the one before it than a frame takes."""
        return [max(0.0, moment - before - GRID) for before, moment in zip(self.times, self.times[1:])]


class Page:
    """An open page: events as they come, lines with the moment of their coming."""

    def __init__(self, port, lines):
        self.socket = socket.create_connection(("127.0.0.1", port))
        self.socket.sendall(b"GET /api/events HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n")
        self.socket.setblocking(False)
        self.lines = lines
        self.rest = b""
        self.bytes = 0

    def take(self):
        data = self.socket.recv(1 << 16)
        if not data:
            sys.exit("a page was closed")
        self.bytes += len(data)
        if self.lines is None:
            return
        now = time.monotonic()
        self.rest += data
        for mark in re.findall(rb"Trigger detected: (mark \d+)\"", self.rest):
            self.lines.setdefault(mark.decode(), now)
        self.rest = self.rest[-1000:]


def watch(scene, readers, seconds):
    """Reads everything for so long and presses twice a second; when what was pressed."""
    selector = selectors.DefaultSelector()
    for reader in readers:
        selector.register(reader.socket, selectors.EVENT_READ, reader)
    end, pressed, following = time.monotonic() + seconds, {}, time.monotonic() + 0.5
    while time.monotonic() < end:
        for key, _ in selector.select(max(0.0, following - time.monotonic())):
            key.data.take()
        if time.monotonic() >= following:
            name = "mark %d" % len(pressed)
            pressed[name] = time.monotonic()
            scene.press(name)
            following += 0.5
    return pressed


def processor(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(") ", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def memory(pid):
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    found = {name: int(value) / 1024 for name, value in re.findall(r"^(\w+): +(\d+) kB", rollup, re.M)}
    return "resident %.1f MB, of these its own %.1f MB" % (
        found["Rss"], found["Private_Dirty"] + found["Private_Clean"])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--pages", type=int, default=1)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--universes", type=int, default=4)
    parser.add_argument("--browser", action="store_true")
    options = parser.parse_args()
    os.environ["VEX_E2E_PROGRAMS"] = str((options.build / "bin").resolve())
    scene = Scene()
    try:
        scene.begin(options.seconds, options.universes)
        lines = {}
        pages = [Page(scene.page, lines if number == 0 else None) for number in range(options.pages)]
        packets = Packets(FIRST)
        began, spent, player = time.monotonic(), processor(scene.vextray.pid), processor(scene.player.pid)
        pressed = watch(scene, [packets, *pages], options.seconds)
        took = time.monotonic() - began
        print("load average %.1f, %d pages, %d universes, %.0f s" % (os.getloadavg()[0], options.pages, options.universes,
                                                                     took))
        print("vextray: %.2f %% of a core, %s" % (100 * (processor(scene.vextray.pid) - spent) / took,
                                                  memory(scene.vextray.pid)))
        print("player: %.2f %% of a core" % (100 * (processor(scene.player.pid) - player) / took))
        print("a page: %.1f KB/s" % (sum(page.bytes for page in pages) / len(pages) / took / 1000))
        late = packets.lateness()
        print("packets later than a frame after the one before: %s, later than 5 ms: %d" % (figures(late), sum(each > 0.005 for each in late)))
        print("a line from the press to a page: %s, %d not seen" % (
            figures([lines[name] - moment for name, moment in pressed.items() if name in lines]),
            len([name for name in list(pressed)[:-2] if name not in lines])))
        if options.browser:
            subprocess.run(["node", str(ROOT / "tests" / "page" / "measure_real.js"), str(scene.page), str(scene.osc)],
                           check=True)
    finally:
        scene.doCleanups()


if __name__ == "__main__":
    main()

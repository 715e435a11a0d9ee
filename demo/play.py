#!/usr/bin/env python3
"""Plays the demonstration: the real player, the lights as a live picture, its status lines below.

    demo/play.py PROGRAMS FOLDER [--seconds N]

PROGRAMS is the folder with VexMonitor, vexctl and lightview; FOLDER is made and belongs to the demonstration:
its own settings, schedule and shows, so that nothing of the user's is touched. An interrupt ends the show
gracefully, a second one at once. At a terminal the key b, or the space bar, presses the button at the door of
the house; without one it is pressed once, as soon as the show answers it. Where there is a display (DISPLAY) the
first song is a video.
"""
import argparse
import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

from keys import Keys

import make_demo
import turns

PATIENCE = 60  # seconds that the show may take to come to its end
LIGHTING_PORT = 5568
LOOPBACK = "127.0.0.1"
BUTTON_KEYS = ("b", "B", " ")


class Demonstration:
    # Groups that never leave this machine, where others may listen beside the picture; then addresses of its own.
    ADDRESSES = [f"239.255.84.{last}" for last in range(1, 255)] + [f"127.0.0.{last}" for last in range(1, 255)]

    def __init__(self, programs, folder, seconds):
        self.programs = programs
        self.viewer = programs / "lightview"
        self.folder = folder
        self.seconds = seconds
        self.lines_file = folder / "status-lines.txt"
        self.counts_file = folder / "counts.json"
        self.player_log = folder / "player-messages.txt"
        self.interrupts = 0
        self.keys = Keys()
        self.display = bool(os.environ.get("DISPLAY"))
        self.presses = 0
        self.environment = dict(os.environ, VEX_SETTINGS=str(folder / "settings.reg"))

    def program(self, name, *arguments, **options):
        """Programs run in sessions of their own: an interrupt typed at the terminal is ours to pass on."""
        return subprocess.Popen([*self.command(name), *arguments], env=self.environment, start_new_session=True,
                                **options)

    def command(self, name):
        return [str(self.programs / name)]

    def vexctl(self, *arguments):
        """Its exit status and answer. The answer goes to a file: what a program starts may hold a pipe open."""
        with tempfile.TemporaryFile() as answer:
            status = self.program("vexctl", *arguments, stdin=subprocess.DEVNULL, stdout=answer,
                                  stderr=subprocess.DEVNULL).wait()
            answer.seek(0)
            return status, answer.read().decode("utf-8", "replace")

    def status(self):
        status, answer = self.vexctl("--json", "status")
        return json.loads(answer) if status == 0 and answer else None

    def prepare(self):
        """The usual place, so that `vexctl watch` in a second terminal finds the player; a place of our own
        where another player runs already."""
        if self.status():
            self.environment["VEX_RUNTIME_DIR"] = tempfile.mkdtemp(prefix="vexmonitor-demo-")
            print("Another player is running; this one meets its companions in VEX_RUNTIME_DIR=" +
                  self.environment["VEX_RUNTIME_DIR"])

    def free_address(self):
        """A place on this machine at which nobody else receives lights."""
        return next(filter(self.is_free, self.ADDRESSES), None)

    @staticmethod
    def is_free(address):
        """Nobody has the port there, and what is sent there comes."""
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            try:
                probe.bind((address, LIGHTING_PORT))
                if not address.startswith("239."):
                    return True
                probe.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
                                 socket.inet_aton(address) + socket.inet_aton(LOOPBACK))
                probe.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(LOOPBACK))
                probe.settimeout(0.2)
                probe.sendto(b"?", (address, LIGHTING_PORT))
                return probe.recv(10) == b"?"
            except OSError:
                return False

    @staticmethod
    def free_port():
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            probe.bind(("127.0.0.1", 0))
            return probe.getsockname()[1]

    def press(self):
        self.presses += 1
        self.vexctl("trigger", *map(str, make_demo.BUTTON), "Doorbell")

    def serve_button(self, patience):
        """Waits for so many seconds, or until a key comes."""
        if self.keys.work:
            if self.keys.pressed(patience) in BUTTON_KEYS:
                self.press()
            return
        time.sleep(patience)
        if self.presses or not self.lines_file.exists():
            return
        if b"Registering interactive triggers" in self.lines_file.read_bytes():
            self.press()

    def interrupted(self, *_):
        self.interrupts += 1
        self.vexctl("shutdown", *(["--now"] if self.interrupts > 1 else []))

    def play(self):
        """Until the player and the viewer have taken their places no other demonstration may look for its own."""
        turn = turns.Turn()
        try:
            return self.play_within(turn)
        finally:
            turn.end()

    def play_within(self, turn):
        self.prepare()
        self.address = self.free_address()
        if not self.address:
            print("UDP port 5568 is taken on every loopback address: end the program that receives lights there, "
                  "then start again", file=sys.stderr)
            return 1
        hint = " b: ring at the door " if self.keys.work else ""
        end = self.make(hint)
        print(f"The show is in force until {end:%H:%M:%S}. A second terminal can watch or control it:")
        print(f"  {self.typed('vexctl')} status    (or watch, shutdown, --help)", flush=True)
        self.tell_of_the_page()
        with open(self.player_log, "wb") as log:
            player = self.program("VexMonitor", stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        signal.signal(signal.SIGINT, self.interrupted)
        signal.signal(signal.SIGTERM, self.interrupted)
        companions = []
        try:
            if not self.wait_for_player(player):
                return 1
            companions = self.start_companions()
            turn.end()
            with self.keys:
                self.wait_for_end(player, time.time() + self.seconds)
        finally:
            if player.poll() is None:
                player.terminate()
            for companion in companions:
                self.end(companion)
        return self.summary(player.wait(), companions)

    def make(self, hint):
        return make_demo.make(self.folder, self.seconds, self.address, self.free_port(), hint, self.display)

    def tell_of_the_page(self):
        settings = os.path.relpath(self.folder / "settings.reg")
        print(f"  VEX_SETTINGS={settings} {self.typed('vextray')}    (the page; lines go there from then on)", flush=True)

    def typed(self, name):
        """The program as somebody types it at another terminal."""
        return os.path.relpath(self.programs / name)

    def wait_for_player(self, player):
        for _ in range(100):
            if self.status():
                return True
            if player.poll() is not None:
                break
            time.sleep(0.1)
        print("The player did not start. It said:", file=sys.stderr)
        print(self.player_log.read_text(errors="replace"), file=sys.stderr)
        player.poll() is None and player.kill()
        return False

    def start_companions(self):
        """`vexctl watch` writes the status lines; they go into a file and on to the viewer."""
        watch = self.program("vexctl", "watch", stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL)
        tee = subprocess.Popen(["tee", str(self.lines_file)], stdin=watch.stdout, stdout=subprocess.PIPE,
                               start_new_session=True)
        view = subprocess.Popen([str(self.viewer), "--address", self.address, "--counts", str(self.counts_file),
                                 str(self.folder / "picture.json")], stdin=tee.stdout, start_new_session=True)
        watch.stdout.close()
        tee.stdout.close()
        for _ in range(100):
            if not self.is_free(self.address) or view.poll() is not None:
                break
            time.sleep(0.05)
        return [watch, tee, view]

    def wait_for_end(self, player, event_end):
        """The show ends by itself when its event does; what ends the player is a graceful shutdown, sent
        when nothing plays any more."""
        asked = False
        while player.poll() is None:
            self.serve_button(0.2)
            if time.time() > event_end + PATIENCE:
                player.terminate()
            if asked or time.time() < event_end:
                continue
            status = self.status()
            if status and not status["playing"] and not named_show(status["current"]):
                self.vexctl("shutdown")
                asked = True

    @staticmethod
    def end(companion):
        """The first in the row is asked to end; the others end with their input."""
        try:
            if companion.args[-1] == "watch":
                companion.send_signal(signal.SIGINT)
            companion.wait(5)
        except subprocess.TimeoutExpired:
            companion.kill()
            companion.wait()

    def summary(self, status, companions):
        lines = self.lines_file.read_text(encoding="utf-8", errors="replace").splitlines()
        counts = json.loads(self.counts_file.read_text()) if self.counts_file.exists() else {}

        def count(*words):
            return sum(all(word in line for word in words) for line in lines)

        universes = ", ".join(map(str, counts.get("universes", [])))
        errors = [line for line in lines if "ERROR" in line or " Error: " in line]
        print()
        print("The show is over." if count("Finished show") else "The show was cut short.")
        print(f"  sequences  {count(': Starting ')} started: {count(': Starting Musical')} songs, "
              f"{count(': Starting Animation')} animations, {count(': Starting Cleanup')} clean-ups,")
        print(f"             {count(': Starting Startup')} startup, {count(': Starting Shutdown')} shutdown, "
              f"{count(': Starting Background')} background")
        if self.display:
            films = sum(count(f": Starting Musical: {film.title}.vexseq") for film in make_demo.FILMS)
            print(f"  video      {films} of the songs {'was a video' if films == 1 else 'were videos'}, "
                  f"{'heard only' if count('Video cannot be shown') else 'seen in a window'}")
        heard, answered = count(": Trigger detected"), count(": Starting Interactive")
        print(f"  button     {self.presses} press{'' if self.presses == 1 else 'es'}, {heard} heard by the player, "
              f"{answered} answered with light")
        print(f"  lights     {counts.get('packets', 0)} packets in universes {universes or 'none'}, "
              f"{counts.get('lost', 0)} lost, {counts.get('malformed', 0)} malformed")
        print(f"             {counts.get('changes', 0)} changes of level, {counts.get('mostLit', 0)} of "
              f"{counts.get('lamps', 0)} lamps lit at once")
        print(f"  log        {len(lines)} lines, {len(errors)} errors; kept in {os.path.relpath(self.lines_file)}")
        for line in errors[:5]:
            print("             " + line)
        print(f"  player     ended with status {status}", flush=True)
        good = status == 0 and counts.get("packets", 0) > 0 and all(each.returncode == 0 for each in companions)
        if not self.keys.work:  # a press at a keyboard may come too early or too late to be answered
            good = good and (self.interrupts or (self.presses, heard, answered) == (1, 1, 1))
        return 0 if good and (self.interrupts or (count("Finished show") and not errors)) else 1


def named_show(serialised):
    """True when a serialised show event names a show: "(eve.shw,(...),0,F)", not "" and not "(,...)"."""
    return len(serialised) > 1 and serialised[1] != ","


def arguments(description):
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--seconds", type=int, default=40)
    return parser


def empty(folder):
    """The folder, made anew."""
    folder = folder.resolve()
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def main():
    given = arguments(__doc__).parse_args()
    with turns.claim(given.folder):
        return Demonstration(given.programs.resolve(), empty(given.folder), given.seconds).play()


def run(program):
    """Ends with the status that shells give to an interrupted program, where nothing plays yet."""
    try:
        sys.exit(program())
    except KeyboardInterrupt:
        sys.exit(128 + signal.SIGINT)
    except turns.Taken as why:
        sys.exit(str(why))


if __name__ == "__main__":
    run(main)

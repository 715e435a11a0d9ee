#!/usr/bin/env python3
"""Plays a film on the machine's own media player control under Wine, on a display in memory, and looks at the screen:
the window of the form, its place, its close box, and a photograph of the picture.

    video.py i686|x86_64 [FILE]     FILE: keeps the photograph there

Wine's control cannot say what is a film, so the form is to be seen where songs are to be drawn; it shows the picture
in a window of its own, and knows no full screen. None of it may stop the show.
Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]
import network  # noqa: E402
import wine  # noqa: E402
from network import Failed  # noqa: E402
from stage import wait_until  # noqa: E402

FORM, PICTURE = "Brillara Video", "ActiveMovie Window"
LEFT, TOP = 300, 200
FRAME = 40  # pixels that a title and a border may take
FILM = HERE.parent / "media" / "files" / "film.avi"


class Screen:
    """A display in memory with a window manager."""

    def __init__(self):
        self.server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                                        "-noreset"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.name = ":" + self.server.stdout.readline().decode().strip()
        self.environment = dict(os.environ, DISPLAY=self.name)
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)

    def close(self):
        for process in (self.manager, self.server):
            process.kill()
            process.wait()

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True).stdout

    def seen(self, name):
        """Left, top, width and height of a window that is to be seen, else None."""
        text = self.ask("xwininfo", "-name", name).decode(errors="replace")
        if "IsViewable" not in text:
            return None
        return tuple(int(re.search(word + r":\s+(-?\d+)", text).group(1)) for word in
                     ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def colours(self, name):
        photo = self.ask("xwd", "-silent", "-name", name)
        return len({photo[at:at + 3] for at in range(max(len(photo) - 4 * 160 * 90, 0), len(photo) - 3, 4)})


class Stage(network.Stage):
    def __init__(self, machine, architecture, screen):
        super().__init__(machine, architecture)
        self.screen = screen
        shutil.copyfile(FILM, self.path("film.avi"))

    def begin(self):
        super().begin()
        self.components["Media"] = "wmp"
        self.video = {"MonitorX": LEFT, "MonitorY": TOP, "DisplayVideos": 1, "FullScreenVideo": 1}

    def write_settings(self):
        super().write_settings()
        for name, value in self.video.items():
            self.call("reg", "add", network.KEY.replace("HKEY_CURRENT_USER", "HKCU") + r"\Shared\VideoPreferences",
                      "/v", name, "/t", "REG_DWORD", "/d", str(value), "/f")

    def show_film(self):
        self.sequence("film.vexseq", 20.0, (0.2, 1, 50), media="film.avi")
        self.sequence("rest.vexseq", 60.0, (0.2, 1, 50))
        self.play(musical=["film.vexseq", "rest.vexseq"])
        self.expect_line("Starting Musical: film.vexseq")

    def wait_seen(self, name, seen=True):
        self.expect(wait_until(lambda: bool(self.screen.seen(name)) == seen, 15, 0.1),
                    f"{name!r} is {'not ' if seen else 'still '}seen")


def a_film_plays_and_the_form_stays_away_where_it_is_not_wanted(stage):
    stage.show_film()
    stage.wait_seen(PICTURE)
    photographs = [stage.screen.colours(PICTURE)]
    stage.expect(wait_until(lambda: photographs.append(stage.screen.colours(PICTURE)) or photographs[-1] > 50, 8),
                 f"no picture, only so many colours: {photographs}")
    if stage.photograph:
        stage.photograph.write_bytes(stage.screen.ask("xwd", "-silent", "-root"))
    stage.expect(stage.screen.seen(FORM) is None, "the form is seen")
    stage.expect_line("Ending Musical: film.vexseq")
    stage.wait_seen(PICTURE, False)
    stage.expect("ERROR" not in stage.said(), "an error is told")
    stage.end()


def the_form_is_shown_in_its_place_and_its_close_box_does_nothing(stage):
    stage.video["DisplayVisualizations"] = 1
    stage.show_film()
    stage.wait_seen(FORM)
    left, top, width, height = stage.screen.seen(FORM)
    stage.expect(0 <= left - LEFT <= FRAME and 0 <= top - TOP <= FRAME and (width, height) == (640, 480),
                 f"the form is at {left}, {top} and {width} by {height}")
    if stage.photograph:
        stage.photograph.with_suffix(".form.xwd").write_bytes(stage.screen.ask("xwd", "-silent", "-root"))
    stage.screen.ask("wmctrl", "-c", FORM)
    time.sleep(1)
    stage.expect(stage.screen.seen(FORM), "the close box has closed the form")
    stage.expect_line("Ending Musical: film.vexseq")
    stage.expect("ERROR" not in stage.said(), "an error is told")
    stage.end()
    stage.wait_seen(FORM, False)


CASES = (a_film_plays_and_the_form_stays_away_where_it_is_not_wanted,
         the_form_is_shown_in_its_place_and_its_close_box_does_nothing)


def main(architecture, photograph=None):
    screen = None
    bad = 0
    try:
        if architecture == "i686":
            raise wine.Unavailable("the 32-bit Wine's root folder has no 3D library, without which it shows no film")
        machine = wine.machine(architecture)
        screen = Screen()
        machine.start().show_on(screen.name)
        stage = Stage(machine, architecture, screen)
        stage.photograph = photograph and pathlib.Path(photograph)
        for case in CASES:
            stage.begin()
            try:
                case(stage)
                print(f"ok windows-{architecture}: {case.__name__.replace('_', ' ')}", flush=True)
            except Failed as why:
                bad += 1
                print(f"not ok windows-{architecture}: {case.__name__.replace('_', ' ')}\n  {why}", flush=True)
            finally:
                stage.clear()
        machine.stop()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
    finally:
        if screen:
            screen.close()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

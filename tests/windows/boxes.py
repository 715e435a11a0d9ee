#!/usr/bin/env python3
"""Looks from outside at the message boxes that the player shows at its start under Wine: what they say, to the
letter, and how the program ends behind them.

    boxes.py i686|x86_64 [WORD ...]     all cases, or those whose name holds the words

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import pathlib
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]
import network  # noqa: E402
import wine  # noqa: E402
from network import START_UP, Failed  # noqa: E402
from stage import wait_until  # noqa: E402

READER = "host_win32_tests.exe"
UNKNOWN_LIGHTS = ("Shows cannot be enabled because of an error."
                  'There is no component "candles" for "Lights" (subkey Components of the settings) in this '
                  'program; possible are "open", "suite", "recorded"./ComponentTable')


class Stage(network.Stage):
    def __init__(self, machine, architecture):
        super().__init__(machine, architecture)
        self.programs = wine.BUILD / f"windows-{architecture}" / "bin"
        machine.bring(wine.BUILD / f"windows-{architecture}" / "tests" / READER)

    def start(self):
        self.player = self.spawn("player.txt", "VexMonitor.exe")

    def read_box(self, title, press=True):
        status, text = self.call(READER, "box", title, *(["press"] if press else []))
        self.expect(status == 0, f"there is no box {title!r}")
        return text

    def end_status(self):
        try:
            return self.player.wait(START_UP)
        except subprocess.TimeoutExpired:
            raise Failed("the player does not end\n" + self.said()) from None

    def expect_box(self, title, text):
        seen = self.read_box(title)
        self.expect(seen == text, f"the box says {seen!r}")
        status = self.end_status()
        self.expect(status == 1, f"the player ends with {status}")


def lights_that_are_not_installed_are_told_in_a_box(stage):
    """Somebody wants them after the installation, which would have chosen others."""
    stage.write_settings()
    stage.call("VexPostInstall.exe")
    stage.call("reg", "add", network.KEY + r"\Components", "/v", "Lights", "/d", "suite", "/f")
    stage.start()
    seen = stage.read_box("VexMonitor")
    stage.expect(seen.startswith('Shows cannot be enabled because of an error.The component ChannelIO (program id '
                                 '"VexChannelIO.ChannelIO") cannot be created: '), f"the box says {seen!r}")
    status = stage.end_status()
    stage.expect(status == 1, f"the player ends with {status}")


def a_setting_that_means_nothing_is_told_in_a_box(stage):
    stage.components["Lights"] = "candles"
    stage.write_settings()
    stage.start()
    stage.expect_box("VexMonitor", UNKNOWN_LIGHTS)


def an_installation_that_is_missing_is_told_in_a_box(stage):
    """The post-installation program, which would have mended it, is another that does nothing of the kind."""
    stage.call("reg", "delete", network.KEY, "/f")
    shutil.copyfile(stage.path("vexctl.exe"), stage.path("VexPostInstall.exe"))
    try:
        stage.start()
        stage.expect_box("Brillara", "Brillara is not correctly installed.")
    finally:
        stage.machine.bring(stage.programs / "VexPostInstall.exe")


def a_missing_post_installation_program_ends_the_player_without_a_box(stage):
    """Nothing can be mended then, and a player that nobody has installed has nothing to say."""
    stage.call("reg", "delete", network.KEY, "/f")
    stage.path("VexPostInstall.exe").unlink()
    try:
        stage.start()
        status = stage.end_status()  # which would not come while a box stood
        stage.expect((status, stage.said()) == (1, ""), f"the player ends with {status}")
    finally:
        stage.machine.bring(stage.programs / "VexPostInstall.exe")


def a_second_player_is_silent_beside_a_box(stage):
    stage.components["Lights"] = "candles"
    stage.write_settings()
    stage.start()
    stage.read_box("VexMonitor", press=False)
    second = stage.call("VexMonitor.exe")
    stage.expect(second == (0, ""), second)
    stage.expect(stage.player.poll() is None, "the first one has gone")
    stage.expect_box("VexMonitor", UNKNOWN_LIGHTS)


def a_player_that_shows_a_box_still_ends_when_it_is_asked_to(stage):
    """Nobody may be there to press the button."""
    stage.components["Lights"] = "candles"
    stage.write_settings()
    stage.start()
    stage.read_box("VexMonitor", press=False)
    said = wait_until(lambda: stage.call("vexctl.exe", "shutdown", "--now")[0] == 0, START_UP)
    stage.expect(said, "the player is not found")
    status = stage.end_status()
    stage.expect(status == 1, f"the player ends with {status}")


CASES = (lights_that_are_not_installed_are_told_in_a_box, a_setting_that_means_nothing_is_told_in_a_box,
         an_installation_that_is_missing_is_told_in_a_box,
         a_missing_post_installation_program_ends_the_player_without_a_box, a_second_player_is_silent_beside_a_box,
         a_player_that_shows_a_box_still_ends_when_it_is_asked_to)


def main(architecture, *words):
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
        return 0
    bad = 0
    try:
        stage = Stage(machine, architecture)
        for case in [case for case in CASES if all(word in case.__name__ for word in words)]:
            stage.begin()
            try:
                case(stage)
                print(f"ok windows-{architecture}: {case.__name__.replace('_', ' ')}", flush=True)
            except Failed as why:
                bad += 1
                print(f"not ok windows-{architecture}: {case.__name__.replace('_', ' ')}\n  {why}", flush=True)
            finally:
                stage.clear()
    finally:
        machine.stop()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

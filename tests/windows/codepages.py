#!/usr/bin/env python3
"""Installs, plans, rehearses and plays on Windows machines of other countries: their ANSI code page is what shows,
schedules and the registry's text are written in. In that of Japan the second byte of a character may be a backslash.

    codepages.py i686|x86_64 [WORD ...]     all cases, or those whose name holds one of the words

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import datetime
import json
import os
import pathlib
import pty
import select
import shutil
import subprocess
import sys
import time
import wave

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]
import network  # noqa: E402
import wine  # noqa: E402
from network import KEY, START_UP, Failed  # noqa: E402
from stage import cue, show, wait_until  # noqa: E402
from test_inputs import free_port, group  # noqa: E402

OUTSIDE = "\u1681"  # in neither page


class Poland:
    name, locale, number, codec = "Poland", "pl_PL", "Windows-1250", "cp1250"
    folder, show, other_case = "Święta", "Ślązak.shw", "ŚLĄZAK.SHW"
    song, sound, frames, bell = "Żółć.vexseq", "kolęda.wav", "łańcuch.fseq", "Dźwięk"


class Japan:
    """Each of these names has a character whose second byte is a backslash or a bar, and the folder ends in one."""
    name, locale, number, codec = "Japan", "ja_JP", "code page 932", "cp932"
    folder, show, other_case = "予定表", "ソングア.shw", "ソングア.SHW"
    song, sound, frames, bell = "能.vexseq", "十.wav", "ポ表.fseq", "ソ"


class Stage(network.Stage):
    def set_up(self, country):
        """A data folder as somebody of that country names it, set in the registry without a backslash behind."""
        self.country = country
        locales = self.machine.folder / "locales"
        if not (locales / f"{country.locale}.UTF-8").exists():
            locales.mkdir(exist_ok=True)
            subprocess.run(["localedef", "-i", country.locale, "-f", "UTF-8", locales / f"{country.locale}.UTF-8"],
                           check=True)
        self.machine.environment |= {"LC_ALL": f"{country.locale}.UTF-8", "LOCPATH": f"{self.machine.work}/locales"}
        self.data = self.path(country.folder)
        for left in self.machine.folder.glob(country.folder[:-1] + "*"):
            shutil.rmtree(left)
        (self.data / country.folder).mkdir(parents=True)
        port = free_port()
        data = self.machine.path(country.folder).replace("\\", "\\\\")
        text = (f'REGEDIT4\r\n\r\n[-{KEY}]\r\n\r\n[{KEY}]\r\n"UserDataPath"="{data}"\r\n\r\n[{KEY}\\Shared]\r\n'
                f'"AudioPath"="{data}"\r\n"NonAudioPath"="{data}"\r\n\r\n[{KEY}\\Output]\r\n"Protocol"="none"\r\n\r\n'
                f'[{KEY}\\Components]\r\n"Lights"="open"\r\n"Media"="recorded"\r\n"Recording"="heard.txt"\r\n\r\n'
                f'[{KEY}\\XLK]\r\n"On"=dword:1\r\n"RemoteHost"="127.0.0.1"\r\n"LocalPort"=dword:{port:x}\r\n')
        self.path("country.reg").write_bytes(text.encode(country.codec))
        self.call("reg", "delete", KEY, "/f")
        self.expect(self.call("reg", "import", "country.reg")[0] == 0, "the settings cannot be imported")
        self.lay_out()

    def lay_out(self):
        """A song whose light comes from a frame file beside it, in a folder of its own."""
        country = self.country
        with wave.open(str(self.data / country.sound), "wb") as sound:
            sound.setparams((1, 2, 8000, 0, "NONE", ""))
            sound.writeframes(bytes(32000))
        song = json.loads(cue(2, media=country.sound)) | {"frames": country.frames}
        (self.data / country.folder / country.song).write_text(json.dumps(song, ensure_ascii=False), encoding="utf-8")
        frames = [bytes([level]) * 4 for level in (0, 255) * 4]
        (self.data / country.folder / country.frames).write_bytes(network.frame_file(frames, 250, 0))
        (self.data / "bell.vexseq").write_text(cue(0.5, (0, 1, 100)), encoding="utf-8")
        self.song = f"{country.folder}\\{country.song}"
        groups = group((3, "bell.vexseq")).replace("Button,", country.bell + ",")
        text = show(musical=[self.song], groups=f"({groups})")
        (self.data / country.show).write_bytes(text.encode(country.codec) + b"\r\n")
        now = datetime.datetime.now()
        self.times = [(now + datetime.timedelta(minutes=minutes)).strftime("%a %H:%M") for minutes in (-2, 60)]

    def vexctl(self, *arguments):
        """Status, standard output and standard error, which are UTF-8 whatever the machine's page is."""
        outputs = [self.path(f"vexctl.{name}") for name in ("out", "err")]
        status = self.machine.call(["wine", "vexctl.exe", *arguments], 60, *outputs)
        return status, *(output.read_bytes().decode("utf-8") for output in outputs)

    def expect_done(self, *arguments):
        answer = self.vexctl(*arguments)
        self.expect(answer[0] == 0, f"{arguments}: {answer}")
        return answer[1]

    def console(self, *command):
        """What a program writes on a console, which is a terminal of this machine there."""
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(self.machine.folder)
            words = self.machine.command(["wine", *command])
            os.execvpe(words[0], words, dict(self.machine.environment, TERM="xterm", COLUMNS="200"))
        seen, end = b"", time.monotonic() + START_UP
        while time.monotonic() < end:
            if select.select([terminal], [], [], 0.5)[0]:
                try:
                    seen += os.read(terminal, 65536)
                except OSError:
                    break
        os.close(terminal)
        os.waitpid(child, 0)
        return seen.decode("utf-8", "replace")


def the_installation_takes_the_folder_as_it_is_named(stage):
    shutil.rmtree(stage.data)
    done = stage.call("VexPostInstall.exe")
    stage.expect(done[0] == 0 and stage.data.is_dir(), f"there is no folder: {done}")
    beside = [path.name for path in stage.data.parent.iterdir() if path.name.startswith(stage.country.folder[:-1])]
    stage.expect(beside == [stage.country.folder], f"other folders: {beside}")


def plans_are_written_in_the_page(stage):
    country = stage.country
    stage.expect_done("week", "add", "Mon 18:00", "Mon 22:00", country.show)
    written = (stage.data / "weeksched.qsc").read_bytes()
    stage.expect(country.show.encode(country.codec) in written, written)
    listed = stage.expect_done("--json", "week", "list")
    stage.expect(country.show in json.loads(listed)["text"], listed)
    file = f"{country.folder}\\{country.show}"
    exported = stage.expect_done("show", "export", file)
    stage.expect(stage.song in exported.replace("\\\\", "\\") and country.bell in exported, exported)
    stage.path("exported.json").write_text(exported, encoding="utf-8")
    stage.expect_done("show", "import", "exported.json", f"{country.folder}\\again.shw")
    again = (stage.data / "again.shw").read_bytes()
    stage.expect(stage.song.encode(country.codec) in again, again)
    texts = [json.loads(line)["text"] for line in
             stage.expect_done("--json", "check", file, f"{country.folder}\\again.shw").splitlines()]
    stage.expect(texts[0] == texts[1], texts)


def what_the_page_does_not_know_is_refused_by_its_name(stage):
    status, _, errors = stage.vexctl("week", "add", "Mon 18:00", "Mon 22:00", OUTSIDE + ".shw")
    stage.expect(status == 2 and f"outside {stage.country.number};" in errors, (status, errors))
    bad = {"format": "vexshow", "version": 1, "main": {"cleanUp": OUTSIDE}}
    stage.path("bad.json").write_text(json.dumps(bad), encoding="utf-8")
    status, _, errors = stage.vexctl("show", "import", "bad.json", "bad.shw")
    stage.expect(status == 1 and f"outside {stage.country.number}" in errors, (status, errors))


def an_evening_is_rehearsed_with_the_machines_settings_and_with_a_file_of_them(stage):
    country = stage.country
    stage.expect_done("week", "add", "Thu 18:00", "Thu 22:00", country.other_case)
    evening = ["--json", "rehearse", "--from", "2026-12-24 17:59:50", "--until", "2026-12-24 18:00:20"]
    rehearsed = stage.expect_done(*evening)
    lines = [json.loads(line) for line in rehearsed.splitlines()]
    for wanted in ({"kind": "seq", "call": "load", "file": stage.song}, {"kind": "media", "call": "open"},
                   {"kind": "io", "call": "registerTrigger", "args": [0, 1, 3, country.bell]}):
        stage.expect(any(wanted.items() <= line.items() for line in lines), f"no line {wanted}\n{rehearsed}")
    errors = [line for line in lines if line["kind"] == "log" and line["level"] == 3]
    stage.expect(not errors, errors)
    stage.expect(stage.expect_done(*evening, "--settings", "country.reg") == rehearsed, "the file says something else")


def a_show_plays_and_its_names_are_seen_as_they_are(stage):
    country = stage.country
    stage.expect_done("week", "add", *stage.times, country.show)
    stage.player = stage.spawn("player.txt", "VexMonitor.exe")
    stage.expect(wait_until(lambda: stage.call("vexctl.exe", "status")[0] == 0, START_UP), "the player does not run")
    stage.watch = stage.spawn("watch.txt", "vexctl.exe", "watch")
    stage.expect_line(f"Starting Musical: {stage.song}")
    status = json.loads(stage.expect_done("--json", "status"))
    stage.expect(status["current"].startswith(f"({country.show},"), status)
    stage.expect(any(one["file"] == stage.song for one in status["playing"]), status)
    stage.expect(status["media"].endswith(f"{country.folder}\\{country.sound}"), status)
    stage.expect_done("trigger", "0", "1", "3", country.bell)
    stage.expect_line(f"Trigger detected: {country.bell}")
    stage.expect_line("Starting Interactive: bell.vexseq")
    stage.end()
    stage.expect("rror" not in stage.said(), "an error")
    stage.expect(country.sound in stage.path("heard.txt").read_text(encoding="utf-8"), "the song was not heard")


def a_console_shows_every_name_and_keeps_its_own_page(stage):
    before = stage.console("cmd", "/c", "chcp").split()[-1]
    seen = stage.console("cmd", "/c", f"vexctl.exe check none-{stage.country.show} & vexctl.exe check {OUTSIDE}.shw & chcp")
    for wanted in (f"none-{stage.country.show}: File not found", OUTSIDE, before):
        stage.expect(wanted in seen, f"no {wanted!r} on the console: {seen!r}")


CASES = (the_installation_takes_the_folder_as_it_is_named, plans_are_written_in_the_page,
         what_the_page_does_not_know_is_refused_by_its_name,
         an_evening_is_rehearsed_with_the_machines_settings_and_with_a_file_of_them,
         a_show_plays_and_its_names_are_seen_as_they_are, a_console_shows_every_name_and_keeps_its_own_page)


def in_country(case, country):
    def run(stage):
        stage.set_up(country)
        case(stage)

    run.__name__ = f"in_{country.name}_{case.__name__}"
    return run


if __name__ == "__main__":
    sys.exit(network.main(sys.argv[1], sys.argv[2:], [in_country(case, country) for country in (Poland, Japan)
                                                      for case in CASES], Stage))

#!/usr/bin/env python3
"""Tries every command of vexctl under Wine, as a user would: plans an evening, rehearses it with the settings of the
registry, controls a running player, and changes a schedule from sixteen sides at once. What is planned is planned
with this machine's own vexctl too, where there is one, and every answer must be the same to the byte.

    commands.py i686|x86_64

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import concurrent.futures
import datetime
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import wave

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import programs  # noqa: E402
import wine  # noqa: E402

KEY = r"HKEY_CURRENT_USER\Software\Brillara"
SHOW = "((2,0,1,0,,),(2,0,1,0,,),(1,0,1,0,,),(0,1,1,0,,(carol.vexseq)),)\r\n"
EVENING = ["--from", "2026-12-24 17:59:50", "--until", "2026-12-24 18:00:20"]
# Each command with its exit status, in an order in which one builds on the other.
PLAN = [
    (0, ["week", "list"]), (0, ["--json", "week", "list"]),
    (0, ["week", "add", "Thu 18:00", "Thu 22:00", "eve.shw"]),
    (1, ["week", "add", "Thu 19:00", "Thu 20:00", "other.shw"]),
    (1, ["--json", "week", "add", "Mon 19:00", "Mon 19:00", "other.shw"]),
    (0, ["--json", "week", "add", "Fri 17:30", "Fri 22:00:05", "F\u00fcr Elise.shw"]),
    (2, ["week", "add", "Someday 19:00", "Mon 20:00", "x.shw"]), (2, ["week", "add", "Mon 18:00"]),
    (2, ["week", "add", "Mon 18:00", "Mon 19:00", "\u4e2d.shw"]),
    (0, ["--json", "week", "fits", "Thu 21:00", "Thu 23:00"]), (0, ["week", "fits", "Mon 18:00", "Mon 19:00"]),
    (0, ["week", "remove", "Fri 18:00"]), (1, ["--json", "week", "remove", "Sat 18:00"]), (0, ["week", "list"]),
    (0, ["year", "add", "2026-12-24 20:00", "2026-12-24 21:00", "F\u00fcr Elise.shw"]),
    (1, ["--json", "year", "add", "2026-12-24 20:30", "2026-12-24 21:30", "x.shw"]),
    (2, ["year", "add", "2026-13-24 20:00", "2026-12-24 21:00", "x.shw"]), (0, ["--json", "year", "list"]),
    (1, ["--json", "year", "remove", "2026-12-25 20:00"]),
    (0, ["--json", "year", "add", "2026-12-26 20:00", "2026-12-26 21:00", "x.shw", "--no-reload"]),
    (0, ["year", "remove", "2026-12-26 20:30"]), (0, ["year", "list"]),
    (0, ["--json", "week", "list", "--file", "none.qsc"]),
    (0, ["--json", "week", "add", "Thu 18:00", "Thu 22:00", "eve.shw", "--file", "F\u00fcr.qsc"]),
    (0, ["--json", "check", "--as", "week", "F\u00fcr.qsc"]), (0, ["--json", "check", "--as", "list", "data/eve.shw"]),
    (0, ["check", "data/eve.shw"]), (1, ["--json", "check", "data/eve.shw", "bad.shw", "none.shw"]),
    (1, ["check", "bad.shw"]), (2, ["check"]), (2, ["check", "--as", "song", "bad.shw"]),
    (0, ["show", "export", "data/eve.shw"]), (1, ["show", "export", "bad.shw"]),
    (0, ["--json", "show", "import", "eve.json", "new.shw"]), (0, ["--json", "check", "new.shw"]),
    (1, ["show", "import", "bad.shw", "new.shw"]), (2, ["show", "export"]),
    (0, ["timeline", "--from", "2026-12-21 00:00", "--to", "2026-12-28 00:00"]),
    (0, ["--json", "timeline", "--from", "2026-12-21 00:00", "--to", "2026-12-28 00:00"]),
    (0, ["--json", "timeline", "--from", "2026-12-21 00:00", "--to", "2026-12-21 00:00"]),
    (0, ["timeline", "--from", "2026-12-21 00:00", "--to", "2026-12-28 00:00", "--svg", "week.svg", "--week",
         "F\u00fcr.qsc"]),
    (1, ["timeline", "--from", "2026-12-21 00:00", "--to", "2026-12-28 00:00", "--week", "none.qsc"]),
    (2, ["timeline", "--from", "tomorrow", "--to", "2026-12-28 00:00"]),
    (0, ["why", "2026-12-24 20:30"]), (0, ["--json", "why", "2026-12-24 19:00"]), (0, ["why", "2026-12-22 20:30"]),
    (2, ["why", "at eight"]),
    (0, ["--json", "rehearse", *EVENING]), (0, ["rehearse", *EVENING]), (0, ["rehearse", *EVENING, "--summary"]),
    (0, ["--json", "rehearse", *EVENING, "--noschedule", "--inputs", "sub/inputs.jsonl", "--only", "log,seq,media"]),
    (0, ["--json", "rehearse", *EVENING, "--assume-media", "--only", "send,flush,io", "--seed", "3"]),
    (0, ["--json", "rehearse", *EVENING, "--settings", "empty.reg"]),
    (1, ["rehearse", *EVENING, "--settings", "none.reg"]), (1, ["rehearse", *EVENING, "--inputs", "bad.shw"]),
    (2, ["rehearse", "--from", "2026-12-24 18:00", "--until", "2026-12-24 18:00"]), (2, ["rehearse"]),
    (2, ["rehearse", *EVENING, "--only", "everything"]),
    (0, ["week", "--help"]), (2, ["nonsense"]), (2, []), (2, ["link", "maybe"]), (2, ["schedules", "off"]),
]
NEEDS_PLAYER = [["status"], ["--json", "status"], ["watch"], ["play", "eve.shw"], ["clear"], ["reload"], ["link", "on"],
                ["schedules", "on"], ["shutdown"], ["shutdown", "--now"], ["trigger", "0", "1", "3"]]


def lay_out(folder):
    """What the plan works on, alike for both machines."""
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "data").mkdir(parents=True)
    (folder / "sub").mkdir()
    (folder / "data" / "eve.shw").write_bytes(SHOW.encode())
    (folder / "data" / "carol.vexseq").write_text(json.dumps(
        {"format": "vexseq", "version": 1, "duration": 2, "media": "carol.wav",
         "events": [{"kind": "main", "network": 0, "unit": 1, "circuit": 1, "start": 0.5, "from": 0, "to": 100}]}))
    with wave.open(str(folder / "data" / "carol.wav"), "wb") as carol:
        carol.setparams((1, 2, 8000, 0, "NONE", ""))
        carol.writeframes(bytes(32000))
    (folder / "bad.shw").write_bytes(b"(a),b),c)")
    (folder / "empty.reg").write_bytes(b"REGEDIT4\r\n")
    exported = {"version": 1}
    (folder / "eve.json").write_text(json.dumps(exported))
    (folder / "sub" / "new.shw").write_bytes(SHOW.encode())
    inputs = [{"at": "2026-12-24 18:00:00.000", "copy": {"from": "new.shw", "to": "../data/F\u00fcr Elise.shw"}},
              {"at": "2026-12-24 18:00:02.000", "message": 9, "text": "(F\u00fcr Elise.shw,(F,,F,),2,F)"}]
    (folder / "sub" / "inputs.jsonl").write_text("".join(json.dumps(each) + "\n" for each in inputs), encoding="utf-8")


def settings(data):
    """A settings file as the registry editor writes it; data is a folder as the machine names it."""
    path = (data + "\\").replace("\\", "\\\\")
    return (f'Windows Registry Editor Version 5.00\r\n\r\n[{KEY}]\r\n"UserDataPath"="{path}"\r\n\r\n'
            f'[{KEY}\\Shared]\r\n"AudioPath"="{path}"\r\n"NonAudioPath"="{path}"\r\n\r\n'
            f'[{KEY}\\Output]\r\n"Protocol"="none"\r\n\r\n[{KEY}\\Components]\r\n"Lights"="open"\r\n\r\n'
            f'[{KEY}\\XLK]\r\n"On"=dword:00000000\r\n"RemoteHost"="127.0.0.1"\r\n"LocalPort"=dword:{port():08x}\r\n')


def port():
    return 20000 + os.getpid() % 20000


class Desk:
    """vexctl.exe in a folder below the machine's work folder."""

    def __init__(self, machine, architecture):
        self.machine = machine
        self.folder = machine.folder / "plan"
        self.runs = 0
        self.stage = programs.Stage(machine, architecture)
        lay_out(self.folder)
        # Another test's show there would be found before the data folder's.
        (machine.folder / "eve.shw").unlink(missing_ok=True)
        (machine.folder / "plan.reg").write_bytes(b"\xff\xfe" + settings(machine.path("plan/data")).encode("utf-16-le"))
        self.stage.run("reg", "delete", KEY, "/f")
        self.stage.run("reg", "import", "plan.reg")

    def vexctl(self, *arguments, timeout=60):
        """Status, standard output and standard error, all as bytes came."""
        self.runs += 1
        outputs = [self.machine.folder / f"{name}{self.runs}.txt" for name in ("out", "err")]
        status = self.machine.call(["wine", "../vexctl.exe", *arguments], timeout, *outputs, folder="plan")
        return status, outputs[0].read_bytes(), outputs[1].read_bytes()

    def import_show(self):
        """The JSON that the machine itself makes of a show."""
        _, exported, _ = self.vexctl("show", "export", "data/eve.shw")
        (self.folder / "eve.json").write_bytes(exported)
        return exported


class NativeDesk:
    """This machine's own vexctl on the same files; None where it has not been built."""

    def __init__(self, folder):
        builds = [wine.BUILD / preset / "bin" / "vexctl" for preset in ("release", "dev")]
        self.program = next((path for path in builds if path.exists()), None)
        self.folder = folder
        lay_out(folder)
        data = "Z:" + str(folder / "data").replace("/", "\\")
        (folder / "settings.reg").write_bytes(settings(data).encode())

    def vexctl(self, *arguments):
        environment = dict(os.environ, VEX_SETTINGS=str(self.folder / "settings.reg"), LC_ALL="C.UTF-8",
                           VEX_RUNTIME_DIR=str(self.folder / "run"))
        done = subprocess.run([self.program, *arguments], cwd=self.folder, env=environment, capture_output=True,
                              timeout=60)
        return done.returncode, done.stdout, done.stderr


def plain(output):
    """The answer without the folders of the machine that gave it."""
    return re.sub(rb"(?:Z:)?[/\\][^ \"]*?[/\\](?:plan|native)[/\\]+data[/\\]+", b"DATA/", output)


def planning(desk, native):
    exported = desk.import_show()
    (native.folder / "eve.json").write_bytes(exported)
    if native.program is None:
        print("skipped: no vexctl of this machine's own to compare with has been built", file=sys.stderr)
    for wanted, arguments in PLAN:
        name = "vexctl " + " ".join(arguments)
        status, output, errors = desk.vexctl(*arguments)
        told = bool(errors) == (status != 0) and (status != 1 or errors.count(b"\n") >= 1)
        yield f"{name}: status {wanted}", status == wanted and (told or status == 0), (status, output, errors)
        if native.program is not None:
            other = native.vexctl(*arguments)
            same = (other[0], plain(other[1])) == (status, plain(output)) or "--help" in arguments
            yield f"{name}: the same to the byte", same, ((status, output, errors), other)
    files = sorted(path.relative_to(desk.folder) for path in desk.folder.rglob("*") if path.is_file())
    others = [path for path in files if (native.folder / path).exists()]
    yield "nothing is left over", not [path for path in files if ".new-" in str(path)], files
    if native.program is not None:
        different = [path for path in others if (desk.folder / path).read_bytes() != (native.folder / path).read_bytes()]
        yield "both wrote the same files", files == others and not different, (files, different)


def lengths(desk, _native):
    """How long a song lasts is asked of what plays it, and it is said where nothing can tell."""
    shutil.copy2(wine.BUILD.parent / "demo" / "jingle-bells.ogg", desk.folder / "data" / "bells.ogg")
    (desk.folder / "data" / "bells.vexseq").write_text(json.dumps(
        {"format": "vexseq", "version": 1, "duration": 2, "media": "bells.ogg", "events": []}))
    (desk.folder / "data" / "bells.shw").write_bytes(SHOW.replace("carol", "bells").encode())
    (desk.folder / "bells.jsonl").write_text(json.dumps(
        {"at": "2026-12-24 18:00:00.000", "message": 9, "text": "(bells.shw,(F,,F,),2,F)"}) + "\n")
    evening = ["--json", "rehearse", "--from", "2026-12-24 17:59:50", "--until", "2026-12-24 18:10:00", "--noschedule",
               "--inputs", "bells.jsonl", "--only", "media"]
    status, output, errors = desk.vexctl(*evening)
    calls = [json.loads(line) for line in output.splitlines()]
    played = next((call["t"] for call in calls if call["call"] == "play"), None)
    ended = next((call["t"] for call in calls if call["call"] == "ended"), None)
    lasts = (datetime.datetime.fromisoformat(ended) - datetime.datetime.fromisoformat(played)).total_seconds() \
        if played and ended else None
    song = (desk.folder / "data" / "bells.ogg").read_bytes()
    samples = int.from_bytes(song.rsplit(b"OggS", 1)[1][2:10], "little")
    rate = int.from_bytes(song.split(b"\x01vorbis", 1)[1][5:9], "little")
    close = lasts is not None and abs(lasts - samples / rate) < 0.05
    yield "a song lasts as long as the media player control says", status == 0 and b"vexctl:" not in errors and close, \
        (status, lasts, samples, rate, output, errors)
    text = settings(desk.machine.path("plan/data")).replace('"Lights"="open"', '"Lights"="open"\r\n"Media"="mpv"')
    (desk.folder / "mpv.reg").write_text(text, encoding="utf-8", newline="")
    status, output, errors = desk.vexctl(*evening, "--settings", "mpv.reg")
    told = errors.count(b"vexctl:") == 1 and b"libmpv-2.dll" in errors and b"--assume-media" in errors
    yield "it is said where no library can tell", status == 0 and told, (status, output, errors)


def words(desk, _native):
    for arguments in (["--help"], ["status"], ["rehearse", "--help"]):
        _, output, errors = desk.vexctl(*arguments)
        said = (output + errors).decode("utf-8")
        foreign = [word for word in ("VEX_", "XDG", "/tmp") if word in said]
        yield f"vexctl {' '.join(arguments)} speaks of this machine", said and not foreign, said
    said = desk.stage.run("VexPostInstall.exe", "--help")
    yield "VexPostInstall --help names the registry", said[0] == 0 and KEY in said[1] and "VEX_" not in said[1], said
    yield "VexPostInstall takes no other word", desk.stage.run("VexPostInstall.exe", "now")[0] == 2, ""


def without_player(desk, _native):
    for arguments in NEEDS_PLAYER:
        status, output, errors = desk.vexctl(*arguments)
        alone = status == 1 and not output and errors.count(b"\n") == 1 and b"no player is running" in errors
        yield f"vexctl {' '.join(arguments)} without a player: status 1", alone, (status, output, errors)


def control(desk, _native):
    """Two processes and the messages between them; a third watches."""
    player = desk.stage.start("VexMonitor.exe", "/noschedule", timeout=120)
    desk.stage.wait_for_status(lambda found: found["ready"])
    watch = desk.stage.start("vexctl.exe", "--json", "watch", timeout=60)
    seen = desk.stage.wait_for_status

    def done(*arguments):
        status, output, errors = desk.vexctl("--json", *arguments)
        return status == 0 and json.loads(output) == {"ok": True}, (status, output, errors)

    def is_off(found):
        return not found["link"]

    def is_on(found):
        return found["link"]

    def plays(found):
        return found["current"].startswith("(eve.shw,") and found["playing"]

    time.sleep(1)
    status, output, _ = desk.vexctl("status")
    yield "status for people", status == 0 and b"shows on demand only" in output and b"link     off" in output, output
    for arguments, wanted in ((["link", "on"], is_on), (["link", "off"], is_off), (["link", "on"], is_on),
                              (["play", "eve.shw", "--for", "1h30m"], plays),
                              (["clear"], lambda found: not found["playing"]),
                              (["play", "eve.shw", "--from", "2026-01-01 00:00", "--until", "2099-01-01 00:00"], plays),
                              (["schedules", "on"], lambda found: not found["noSchedule"])):
        told = done(*arguments)
        yield f"vexctl {' '.join(arguments)} is done", told[0] and bool(seen(wanted)), told
    told = done("trigger", "0", "1", "3", "T\u00fcr")
    yield "vexctl trigger is sent", told[0], told
    told = done("reload")
    yield "vexctl reload is taken", told[0], told
    for arguments in (["play", "eve.shw", "--for", "forever"], ["trigger", "0", "1", "x"], ["play"], ["play", "\u4e2d.shw"]):
        yield f"vexctl {' '.join(arguments)}: status 2", desk.vexctl(*arguments)[0] == 2, ""
    status, output, errors = desk.vexctl("week", "add", "Tue 18:00", "Tue 19:00", "eve.shw")
    yield "a change is told to the player", status == 0 and b"asked the running player to reload" in output, output
    time.sleep(1)
    told = done("shutdown", "--now")
    yield "vexctl shutdown --now", told[0], told
    player.join()
    watch.join()
    yield "the player has ended well", player.result[0] == 0, player.result
    lines = [line for line in watch.result[1].splitlines() if line.startswith("{")]
    texts = [json.loads(line)["text"] for line in lines]
    wanted = ("Request for show on demand received: eve.shw", "Schedule loaded", "Immediate shutdown requested",
              "T\u00fcr")
    missing = [text for text in wanted if not any(text in each for each in texts)]
    yield "the watch has told each of it", not missing, (missing, texts)


def race(desk, _native):
    """Sixteen at once change the same file: each waits for the others and nothing is lost."""
    before = json.loads(desk.vexctl("--json", "week", "list")[1])["text"].count(".shw")
    slots = [(day, hour) for day in ("Sun", "Mon", "Wed", "Sat") for hour in (2, 6, 10, 14)]

    def add(slot):
        day, hour = slot
        return desk.vexctl("--json", "week", "add", f"{day} {hour:02}:00", f"{day} {hour + 2:02}:00", f"{day}{hour}.shw",
                           timeout=120)

    with concurrent.futures.ThreadPoolExecutor(len(slots)) as pool:
        answers = list(pool.map(add, slots))
    yield "sixteen week add at once all succeed", all(answer[0] == 0 for answer in answers), answers
    text = json.loads(desk.vexctl("--json", "week", "list")[1])["text"]
    lost = [slot for slot in slots if f"{slot[0]}{slot[1]}.shw" not in text]
    yield "and nothing is lost", not lost and text.count(".shw") == before + 16, (lost, text)
    with concurrent.futures.ThreadPoolExecutor(len(slots)) as pool:
        removed = list(pool.map(lambda slot: desk.vexctl("week", "remove", f"{slot[0]} {slot[1] + 1:02}:00"), slots))
    text = json.loads(desk.vexctl("--json", "week", "list")[1])["text"]
    yield "nor when sixteen remove", all(each[0] == 0 for each in removed) and text.count(".shw") == before, (removed, text)
    left = [path.name for path in (desk.folder / "data").iterdir() if ".new-" in path.name]
    yield "and no scrap is left", not left, left


def main(architecture):
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
        return 0
    bad = 0
    try:
        desk = Desk(machine, architecture)
        native = NativeDesk(machine.folder / "native")
        for part in (planning, lengths, words, without_player, control, race):
            for name, holds, seen in part(desk, native):
                print(f"{'ok' if holds else 'not ok'} windows-{architecture}: {name}")
                if not holds:
                    print(f"  {seen}")
                    bad += 1
    finally:
        machine.stop()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))

#!/usr/bin/env python3
"""Makes a season to be rehearsed: 45 dated shows from 20 November to 3 January, 17:00 to 22:00, nothing between.

    bench/season/make.py FOLDER [--songs N]

Each show has a background, two animations in turn, a clean-up, two songs of about three minutes and 3000 events
each (the demonstration's melodies, played again and again), a startup and a shutdown sequence. With --songs the
show has N songs. FOLDER also gets a year of ten dated shows a day in other/yearsched.qsc, and settings without
any schedule in idle.reg. Then:

    vexctl rehearse --settings FOLDER/settings.reg --assume-media --summary \\
        --from "2026-11-20 00:00" --until "2027-01-05 00:00"
    vexctl rehearse --settings FOLDER/idle.reg --summary --from "2026-01-01 00:00" --until "2027-01-01 00:00"
    vexctl timeline --week FOLDER/data/weeksched.qsc --year FOLDER/other/yearsched.qsc \\
        --from "2026-01-01 00:00" --to "2027-01-01 00:00"
"""
import argparse
import datetime
import pathlib
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "demo"))

import sequences as demo  # noqa: E402
from cues import DARK, Cues  # noqa: E402
from house import House  # noqa: E402
from make_demo import CODE_PAGE, playlist, second_of_week, settings_text, text_list  # noqa: E402
from songs import SONGS  # noqa: E402

FIRST_NIGHT = datetime.date(2026, 11, 20)
NIGHTS = 45
SONG_SECONDS = 180
SONG_EVENTS = 3000


def song(house, music, number):
    """The melody again and again; each note lights lamps of the tree until the song has its events."""
    melody = list(music.timed(music.melody))
    length = music.duration
    rounds = SONG_SECONDS / length
    lamps_a_note = SONG_EVENTS / (3 * len(melody) * rounds)
    cues = Cues(SONG_SECONDS)
    wanted = 0.0
    place = number
    for turn in range(int(rounds) + 1):
        for start, note, step in melody:
            at = turn * length + start
            if at >= SONG_SECONDS:
                break
            wanted += lamps_a_note
            while wanted >= 1:
                wanted -= 1
                place += 1
                light = house.tree_lights[(place * 7 + step) % len(house.tree_lights)]
                cues.fade(light, at, at + note, demo.hue(place / 24), DARK)
    return cues


def write_sequences(house, folder, songs):
    for name, build in (("night", demo.night), ("lights-up", demo.lights_up), ("candy-cane", demo.candy_cane),
                        ("snowfall", demo.snowfall), ("good-night", demo.good_night)):
        build(house).write(folder / f"{name}.vexseq")
    demo.write_rainbow(house, folder)
    names = []
    for number in range(songs):
        names.append(f"song-{number + 1}")
        song(house, SONGS[number % len(SONGS)], number).write(folder / f"{names[-1]}.vexseq",
                                                              media=f"{names[-1]}.ogg")
    return names


def show_text(songs):
    def named(*stems):
        return [f"{stem}.vexseq" for stem in stems]

    return text_list(playlist(0, 1, 2, 0, "", named("lights-up"), "F"),
                     playlist(0, 1, 2, 0, "", named("good-night"), "T"),
                     playlist(1, 0, 1, 0, "", named("candy-cane", "rainbow"), "F"),
                     playlist(0, 1, 2, 2, "snowfall.vexseq", named(*songs), "F"), "",
                     playlist(2, 0, 1, 0, "", named("night"), "F"), "", "0", "", "F")


def dated(day, *shows):
    """A day's schedule; a show is (first second of the day, last one, name)."""
    base = second_of_week(datetime.datetime.combine(day, datetime.time()))
    return text_list(day.isoformat(), text_list(*(
        text_list(str(base + end), "2", text_list("", "0", name), str(base + start)) for start, end, name in shows)))


def days(first, count):
    return (first + datetime.timedelta(days=number) for number in range(count))


def write_text(path, text):
    path.write_bytes((text + "\r\n").encode(CODE_PAGE))


def make(folder, songs):
    data, other, sequences = (folder / below for below in ("data", "other", "sequences"))
    for below in (data, other, sequences):
        below.mkdir(parents=True, exist_ok=True)
    write_text(data / "season.shw", show_text(write_sequences(House(), sequences, songs)))
    hour = 3600
    write_text(data / "yearsched.qsc",
               text_list(*(dated(day, (17 * hour, 22 * hour, "season.shw")) for day in days(FIRST_NIGHT, NIGHTS))))
    write_text(data / "weeksched.qsc", text_list(""))
    ten_a_day = [(2 * hour * number + 1800, 2 * hour * number + 5400, f"show-{number}.shw") for number in range(10)]
    write_text(other / "yearsched.qsc",
               text_list(*(dated(day, *ten_a_day) for day in days(datetime.date(2026, 1, 1), 365))))
    settings = settings_text(folder, "127.0.0.1", 3737)
    (folder / "settings.reg").write_bytes(settings.encode("utf-8"))
    (folder / "idle.reg").write_bytes(settings.replace("data", "empty").encode("utf-8"))


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--songs", type=int, default=2)
    given = parser.parse_args()
    make(given.folder.resolve(), given.songs)

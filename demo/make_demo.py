#!/usr/bin/env python3
"""Makes the demonstration's files in a folder: sequences, songs, the show, its weekly schedule and settings.

    demo/make_demo.py FOLDER [--seconds N] [--films]

The show is in force from now on for N seconds (40 unless told). FOLDER/settings.reg is what VEX_SETTINGS is
to point at, FOLDER/picture.json what the viewer draws.
"""
import argparse
import datetime
import json
import pathlib
import shutil

from house import House
from sequences import write_all
from songs import FILMS, SONGS

WEEK = 7 * 24 * 3600
BUTTON = (0, 1, 3)  # network, unit and input of the button at the door
CODE_PAGE = "cp1252"  # of show and schedule files


def text_list(*fields):
    return "(" + ",".join(fields) + ")"


def playlist(animation, musical, kind, delay, clean_up, names, lights_off):
    return text_list(str(animation), str(musical), str(kind), str(delay), clean_up, text_list(*names), lights_off,
                     "F", "F")


def button_group():
    """The button plays its sequence anew each time it is pressed."""
    network, unit, number = BUTTON
    entry = text_list("doorbell.vexseq", text_list(str(number), "Doorbell", str(unit), str(network)))
    return text_list("1", "", "F", "T", "F", "Button at the door", text_list(entry), "T")


def show_text(songs):
    def named(*stems):
        return [f"{stem}.vexseq" for stem in stems]

    startup = playlist(0, 1, 2, 0, "", named("lights-up"), "F")
    shutdown = playlist(0, 1, 2, 0, "", named("good-night", "last-star"), "T")
    main = playlist(1, 0, 1, 0, "", named("candy-cane", "rainbow"), "F")
    musical = playlist(0, 1, 2, 2, "snowfall.vexseq", named(*(song.title for song in songs)), "F")
    background = playlist(2, 0, 1, 0, "", named("night"), "F")
    return text_list(startup, shutdown, main, musical, "", background, text_list(button_group()), "0", "", "F")


def second_of_week(moment):
    return (moment.isoweekday() % 7 * 24 + moment.hour) * 3600 + moment.minute * 60 + moment.second


def schedule_text(start, end, show):
    """A week with one show; one that runs over the week's end ends earlier in the week than it starts."""
    return text_list(text_list(str(second_of_week(end) % WEEK), "2", text_list("", "0", show),
                               str(second_of_week(start) % WEEK)))


def settings_text(folder, address, link_port):
    def path(below):
        return ("Z:" + str(folder / below)).replace("/", "\\").replace("\\", "\\\\") + "\\\\"

    interface = '"Interface"="127.0.0.1"\n' if address.startswith("239.") else ""  # a group's packets stay here
    return f"""Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\Brillara]
"UserDataPath"="{path('data')}"

[HKEY_CURRENT_USER\\Software\\Brillara\\Shared]
"AudioPath"="{path('sequences')}"
"NonAudioPath"="{path('sequences')}"

[HKEY_CURRENT_USER\\Software\\Brillara\\Shared\\VideoPreferences]
"MonitorX"=dword:00000028
"MonitorY"=dword:00000028

[HKEY_CURRENT_USER\\Software\\Brillara\\Output]
"Protocol"="sacn"
"Host"="{address}"
{interface}"SourceName"="VexMonitor demonstration"

[HKEY_CURRENT_USER\\Software\\Brillara\\XLK]
"LocalPort"=dword:{link_port:08x}
"On"=dword:00000001
""".replace("\n", "\r\n")


def make(folder, seconds, address="127.0.0.1", link_port=3737, hint="", films=False):
    """Returns the moment at which the show event ends. Presses of the button come to the link's port; the hint
    stands in the picture. Films are for a machine with a display, and come first."""
    songs = (FILMS if films else ()) + SONGS
    for below in ("data", "sequences"):
        (folder / below).mkdir(parents=True, exist_ok=True)
    house = House()
    write_all(house, songs, folder / "sequences")
    for song in songs:
        shutil.copyfile(song.committed(), folder / "sequences" / song.media)
    (folder / "picture.json").write_text(json.dumps(house.picture(hint), ensure_ascii=False), encoding="utf-8")
    (folder / "data" / "demo.shw").write_bytes((show_text(songs) + "\r\n").encode(CODE_PAGE))
    (folder / "settings.reg").write_bytes(settings_text(folder, address, link_port).encode("utf-8"))
    now = datetime.datetime.now().replace(microsecond=0)
    end = now + datetime.timedelta(seconds=seconds)
    week = schedule_text(now - datetime.timedelta(minutes=1), end, "demo.shw")
    (folder / "data" / "weeksched.qsc").write_bytes((week + "\r\n").encode(CODE_PAGE))
    return end


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--seconds", type=int, default=40)
    parser.add_argument("--films", action="store_true", help="begin the songs with a film, for a display")
    given = parser.parse_args()
    print("the show ends at", make(given.folder.resolve(), given.seconds, films=given.films))

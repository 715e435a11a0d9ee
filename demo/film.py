#!/usr/bin/env python3
"""Makes the film of the demonstration anew: a village on a winter's night, drawn here, with a song of the music box.
Each note of the melody lights a window, the higher the farther to the right.

    demo/film.py FOLDER      (needs ffmpeg)
"""
import math
import pathlib
import random
import subprocess
import sys

from songs import SILENT_NIGHT, write_wave

WIDTH, HEIGHT, RATE = 320, 180, 12
SNOW = (225, 232, 245)
DARK_WINDOW, LIT_WINDOW = (40, 34, 40), (255, 205, 90)
WINDOWS = 7
GLOW = 1.6  # seconds until a window is dark again


def blend(first, second, part):
    return tuple(round(a + (b - a) * part) for a, b in zip(first, second))


class Picture:
    def __init__(self):
        self.bytes = bytearray(3 * WIDTH * HEIGHT)

    def rectangle(self, left, top, width, height, colour):
        left, right = max(0, left), min(WIDTH, left + width)
        for y in range(max(0, top), min(HEIGHT, top + height)):
            at = 3 * (y * WIDTH + left)
            self.bytes[at:at + 3 * (right - left)] = bytes(colour) * (right - left)


def house_left(number):
    return 14 + number * 43


def background():
    """Sky, moon, hills and houses: what does not move."""
    picture = Picture()
    for y in range(HEIGHT):
        picture.rectangle(0, y, WIDTH, 1, blend((6, 9, 32), (44, 58, 110), y / HEIGHT))
    for dy in range(-13, 14):
        half = round(math.sqrt(13 * 13 - dy * dy))
        picture.rectangle(258 - half, 34 + dy, 2 * half, 1, (238, 236, 214))
    for x in range(WIDTH):
        far = round(104 + 14 * math.sin(x / 47) + 5 * math.sin(x / 13))
        near = round(146 + 5 * math.sin(x / 60 + 2))
        picture.rectangle(x, far, 1, HEIGHT - far, (92, 106, 150))
        picture.rectangle(x, near, 1, HEIGHT - near, SNOW)
    for number in range(WINDOWS):
        left, top = house_left(number), 122 + (number * 5) % 9
        picture.rectangle(left, top, 34, 32, (74 + 9 * (number % 3), 44, 40))
        for row in range(14):
            picture.rectangle(left + 16 - row - 4, top - 14 + row, 2 * row + 10, 1, SNOW)
    return picture


def lit(song, second):
    """How brightly each window burns at that moment, 0 to 1."""
    steps = sorted({step for _, _, step in song.timed(song.melody)})
    levels = [0.0] * WINDOWS
    for start, _, step in song.timed(song.melody):
        if start <= second < start + GLOW:
            window = round(steps.index(step) * (WINDOWS - 1) / (len(steps) - 1))
            levels[window] = max(levels[window], 1 - (second - start) / GLOW)
    return levels


class Flake:
    def __init__(self, chance):
        self.x, self.y = chance.uniform(0, WIDTH), chance.uniform(0, HEIGHT)
        self.speed = chance.uniform(14, 42)
        self.swing = chance.uniform(0, 2 * math.pi)
        self.size = 2 if self.speed > 28 else 1

    def draw(self, picture, second):
        x = self.x + 6 * math.sin(self.swing + second)
        picture.rectangle(round(x) % WIDTH, round(self.y + self.speed * second) % HEIGHT, self.size, self.size, SNOW)


def frames(song):
    still = background()
    chance = random.Random(3)
    flakes = [Flake(chance) for _ in range(140)]
    for number in range(round(song.duration * RATE)):
        second = number / RATE
        picture = Picture()
        picture.bytes[:] = still.bytes
        for window, level in enumerate(lit(song, second)):
            left, top = house_left(window), 122 + (window * 5) % 9
            picture.rectangle(left + 12, top + 9, 10, 12, blend(DARK_WINDOW, LIT_WINDOW, level))
        for flake in flakes:
            flake.draw(picture, second)
        yield picture.bytes


def make(song, folder):
    sound = folder / "film.wav"
    write_wave(song, sound)
    encoder = subprocess.Popen(
        ["ffmpeg", "-y", "-loglevel", "error", "-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{WIDTH}x{HEIGHT}", "-r",
         str(RATE), "-i", "-", "-i", str(sound), "-c:v", "libx264", "-preset", "veryslow", "-crf", "30", "-pix_fmt",
         "yuv420p", "-c:a", "aac", "-b:a", "48k", "-map_metadata", "-1", "-fflags", "+bitexact", "-flags:v", "+bitexact",
         "-flags:a", "+bitexact", str(folder / song.file)], stdin=subprocess.PIPE)
    for frame in frames(song):
        encoder.stdin.write(frame)
    encoder.stdin.close()
    status = encoder.wait()
    sound.unlink()
    if status != 0:
        sys.exit("demo/film.py: ffmpeg failed")


if __name__ == "__main__":
    make(SILENT_NIGHT, pathlib.Path(sys.argv[1]))

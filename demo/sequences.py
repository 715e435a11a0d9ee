"""The sequences of the demonstration, each a function that fills cues for the house.

Who lights what, so that phases which run side by side do not fight over a lamp: the background has the sky,
the windows and the door; the animations have roof, icicles and fence; the songs and the clean-up have the tree
and its star. The arch around the door answers the button.
"""
import colorsys
import random

from cues import DARK, Cues, write_frames
from songs import TAIL

WARM = (100, 62, 18)
WHITE = (100, 100, 90)
RED = (100, 4, 2)
GREEN = (4, 80, 10)
ICE = (30, 60, 100)
FIR = (0, 14, 3)  # the tree while nothing else is on it


def hue(turn, value=100.0, saturation=1.0):
    return tuple(round(value * part, 1) for part in colorsys.hsv_to_rgb(turn % 1.0, saturation, 1.0))


def dim(colour, part):
    return tuple(round(level * part, 1) for level in colour)


def night(house):
    """Background: stars twinkle, lamps burn behind the windows. Loops for as long as the show lasts."""
    cues = Cues(6.0)
    chance = random.Random(1)
    for window, flicker in zip(house.windows + [house.door], (0.75, 0.85, 0.6, 0.9)):
        colour = RED if window is house.door else WARM
        cues.fade(window, 0.0, 3.0, dim(colour, 0.95), dim(colour, flicker))
        cues.fade(window, 3.0, 6.0, dim(colour, flicker), dim(colour, 0.95))
    for star in house.sky:
        at = chance.uniform(0.0, 3.5)
        cues.set(star, 0.0, dim(WHITE, 0.12))
        cues.fade(star, at, at + 0.8, dim(WHITE, 0.12), dim(WHITE, 0.9))
        cues.fade(star, at + 0.8, at + 2.4, dim(WHITE, 0.9), dim(WHITE, 0.12))
    return cues


def lights_up(house):
    """Startup: light climbs the roof from the eaves, then the fence and the tree come up."""
    cues = Cues(4.0)
    for slope in (house.roof_left, house.roof_right):
        for place, light in enumerate(slope):
            cues.fade(light, 0.15 * place, 0.15 * place + 0.5, DARK, WARM)
    for place, light in enumerate(house.icicles):
        cues.fade(light, 1.8 + 0.05 * place, 2.6 + 0.05 * place, DARK, dim(ICE, 0.6))
    for place, light in enumerate(house.fence):
        cues.fade(light, 2.0 + 0.08 * place, 2.5 + 0.08 * place, DARK, GREEN if place % 2 else RED)
    for height, row in enumerate(reversed(house.tree)):
        for light in row:
            cues.fade(light, 2.4 + 0.12 * height, 3.0 + 0.12 * height, DARK, FIR)
    cues.fade(house.star, 3.5, 4.0, DARK, WHITE)
    return cues


def candy_cane(house):
    """Animation: red and white climb the roof, icicles drip, the fence blinks."""
    cues = Cues(6.0)
    step = 0.2
    for tick in range(int(cues.duration / step)):
        for slope in (house.roof_left, house.roof_right):
            for place, light in enumerate(slope):
                colour, before = (RED if (place - at) % 6 < 3 else WHITE for at in (tick, tick - 1))
                if tick == 0 or colour != before:
                    cues.set(light, tick * step, colour)
        if tick % 5 == 0:
            for place, light in enumerate(house.fence):
                cues.set(light, tick * step, GREEN if (place + tick // 5) % 2 else RED)
    for place, light in enumerate(house.icicles):
        for drop in range(4):
            at = 1.5 * drop + 0.11 * ((place * 5) % 12)
            cues.fade(light, at, at + 0.25, dim(ICE, 0.2), WHITE)
            cues.fade(light, at + 0.25, at + 1.3, WHITE, dim(ICE, 0.2))
    return cues


def write_rainbow(house, folder):
    """Animation from a frame file: the rainbow runs over roof, icicles and fence, forty frames a second."""
    frames = []
    for number in range(240):
        turn = number / 120
        colours = [hue(turn + place / 24) for _ in range(2) for place in range(12)]
        colours += [hue(turn + 0.5 + place / 12, saturation=0.55) for place in range(12)]
        colours += [hue(-turn + place / len(house.fence)) for place in range(len(house.fence))]
        frames.append(bytes(round(2.55 * level) for colour in colours for level in colour))
    eaves = house.roof + house.icicles
    ranges = [(eaves[0].circuit - 1, 3 * len(eaves)), (512 + house.fence[0].circuit - 1, 3 * len(house.fence))]
    write_frames(folder / "rainbow.fseq", frames, ranges, step_ms=25)
    (folder / "rainbow.vexseq").write_text('{ "format": "vexseq", "version": 1, "frames": "rainbow.fseq" }\n',
                                           encoding="utf-8")


def song(house, music):
    """Lights for a song: each note lights a band of the tree as high as it sounds, the bass the lowest rows."""
    cues = Cues(music.duration)
    steps = [step for _, _, step in music.timed(music.melody)]
    lowest, span = min(steps), max(steps) - min(steps)
    for light in house.tree_lights:
        cues.set(light, 0.0, FIR)
    for start, length, step in music.timed(music.bass):
        for row in house.tree[-2:]:
            for light in row:
                cues.fade(light, start, start + length * 0.95, dim(ICE, 0.7), FIR)
    for number, (start, length, step) in enumerate(music.timed(music.melody)):
        height = (step - lowest) / span
        centre = round(7 - 6 * height)
        for row in house.tree[max(0, centre - 1):centre + 2]:
            for place, light in enumerate(row):
                colour = hue(height * 0.8 + number * 0.03, 100.0 if (place + number) % 2 else 70.0, 0.85)
                cues.fade(light, start, start + max(length * 0.95, 0.3), colour, FIR)
        beats = start / (music.beat * music.bar)
        if abs(beats - round(beats)) < 0.01:
            cues.fade(house.star, start, start + music.beat * music.bar * 0.9, WHITE, dim(WARM, 0.25))
    end = music.duration - TAIL + 0.2
    for place, light in enumerate(house.tree_lights):
        cues.fade(light, end, end + 0.3 + 0.01 * place, dim(WARM, 0.8), FIR)
    return cues


def snowfall(house):
    """Clean-up after each song: snow falls down the tree."""
    cues = Cues(2.5)
    chance = random.Random(2)
    cues.set(house.star, 0.0, dim(WHITE, 0.5))
    for height, row in enumerate(house.tree):
        for light in row:
            at = 0.16 * height + chance.uniform(0.0, 0.25)
            cues.fade(light, at, at + 0.4, FIR, WHITE)
            cues.fade(light, at + 0.4, at + 0.7, WHITE, FIR)
    return cues


def doorbell(house):
    """Interactive: light runs over the arch around the door, then all of it flashes and glows out."""
    cues = Cues(1.8)
    for place, light in enumerate(house.arch):
        cues.set(light, 0.0, GREEN if place == 0 else dim(RED, 0.3))
        cues.set(light, 0.08 * place, GREEN)
        cues.fade(light, 0.8, 1.2, WHITE, WARM)
        cues.fade(light, 1.2, 1.75, WARM, DARK)
    return cues


def good_night(house):
    """Shutdown, first: everything goes dark from the ground up; only the star stays."""
    cues = Cues(4.0)
    for light in house.all:
        if light is not house.star and light not in house.arch:
            at = 0.2 * (15 - light.y)
            colour = FIR if light in house.tree_lights else dim(WARM, 0.7)
            cues.fade(light, at, at + 0.8, colour, DARK)
    cues.set(house.star, 0.0, WHITE)
    return cues


def last_star(house):
    """Shutdown, second: the star over the tree fades."""
    cues = Cues(2.5)
    cues.fade(house.star, 0.0, 2.4, WHITE, DARK)
    return cues


def write_all(house, songs, folder):
    for name, build in (("night", night), ("lights-up", lights_up), ("candy-cane", candy_cane),
                        ("snowfall", snowfall), ("doorbell", doorbell), ("good-night", good_night), ("last-star", last_star)):
        build(house).write(folder / f"{name}.vexseq")
    write_rainbow(house, folder)
    for each in songs:
        song(house, each).write(folder / f"{each.title}.vexseq", media=each.media)

"""The songs of the demonstration: melodies in the public domain, and the little music box that plays them. One of
them comes as a film, which `demo/film.py` makes; it is played where there is a display.

A voice is a list of (note, beats); "-" is a rest. `python3 demo/songs.py FOLDER` makes the committed audio
files anew (needs oggenc).
"""
import array
import math
import pathlib
import subprocess
import sys
import wave

RATE = 32000
STEPS = {"C": -9, "D": -7, "E": -5, "F": -4, "G": -2, "A": 0, "B": 2}
TAIL = 1.2  # seconds in which the last note dies away


def notes(text):
    """ "E5 E5 E5:2" as (note, beats)."""
    return [(name, float(beats or 1)) for name, _, beats in (word.partition(":") for word in text.split())]


class Song:
    def __init__(self, title, file, beat, bar, melody, bass):
        self.title = title
        self.file = file        # the committed one, beside this
        self.beat = beat        # seconds
        self.bar = bar          # beats
        self.melody = notes(melody)
        self.bass = notes(bass)

    @property
    def duration(self):
        return round(sum(beats for _, beats in self.melody) * self.beat + TAIL, 3)

    def timed(self, voice):
        """(start in seconds, length in seconds, semitones above A4) of every note that sounds."""
        start = 0.0
        for name, beats in voice:
            length = beats * self.beat
            if name != "-":
                yield start, length, semitones(name)
            start += length

    def committed(self):
        return pathlib.Path(__file__).parent / self.file

    @property
    def media(self):
        """Its name in the show."""
        return self.title + pathlib.Path(self.file).suffix


def semitones(name):
    """Semitones above A4: "A4" is 0, "C#5" is 4."""
    return STEPS[name[0]] + name.count("#") + 12 * (int(name[-1]) - 4)


JINGLE_BELLS = Song(
    "Jingle Bells", "jingle-bells.ogg", beat=0.375, bar=4,
    melody="E5 E5 E5:2 E5 E5 E5:2 E5 G5 C5:1.5 D5:0.5 E5:4 "
           "F5 F5 F5:1.5 F5:0.5 F5 E5 E5 E5:0.5 E5:0.5 G5 G5 F5 D5 C5:4",
    bass="C3 G3 C4 G3 C3 G3 C4 G3 C3 G3 C4 G3 C3 G3 C4 G3 F3 C4 F3 C4 C3 G3 C4 G3 G3 D4 G3 D4 C3 G3 C4:2")

FUR_ELISE = Song(
    "Für Elise", "fur-elise.ogg", beat=0.235, bar=6,
    melody="E5 D#5 E5 D#5 E5 B4 D5 C5 A4:2 - C4 E4 A4 B4:2 - E4 G#4 B4 C5:2 - E4 E5 D#5 "
           "E5 D#5 E5 B4 D5 C5 A4:2 - C4 E4 A4 B4:2 - E4 C5 B4 A4:4",
    bass="-:8 A2 E3 A3 -:3 E2 E3 G#3 -:3 A2 E3 A3 -:9 A2 E3 A3 -:3 E2 E3 G#3 -:3 A2 E3 A3:2")

SILENT_NIGHT = Song(
    "Silent Night", "silent-night.mp4", beat=0.42, bar=3,
    melody="G4:1.5 A4:0.5 G4 E4:3 G4:1.5 A4:0.5 G4 E4:3 D5:2 D5 B4:3 C5:2 C5 G4:3",
    bass="C3 E3 G3 C3 E3 G3 C3 E3 G3 C3 E3 G3 G2 D3 F3 G2 D3 F3 C3 E3 G3 C3 E3 G3")

SONGS = (FUR_ELISE, JINGLE_BELLS)
FILMS = (SILENT_NIGHT,)


def strike(samples, start, step, volume, decay):
    """One tine of the music box: a few partials that die away, the high ones first."""
    frequency = 440.0 * 2 ** (step / 12)
    first = int(start * RATE)
    count = min(int(5 * decay * RATE), len(samples) - first)
    for partial, strength in ((1, 1.0), (2, 0.35), (4.02, 0.12), (6.7, 0.04)):
        turn = 2 * math.pi * frequency * partial / RATE
        fall = math.exp(-partial ** 0.5 / (decay * RATE))
        level = volume * strength
        for i in range(count):
            samples[first + i] += level * math.sin(turn * i)
            level *= fall


def render(song):
    samples = array.array("d", bytes(8 * int(song.duration * RATE)))
    for start, _, step in song.timed(song.melody):
        strike(samples, start, step, 0.42, 0.45)
    for start, _, step in song.timed(song.bass):
        strike(samples, start, step, 0.2, 0.6)
    loudest = max(abs(value) for value in samples)
    attack = int(0.004 * RATE)
    fade = int(0.3 * RATE)
    for i in range(attack):
        samples[i] *= i / attack
    for i in range(fade):
        samples[-1 - i] *= i / fade
    return array.array("h", (int(30000 * value / loudest) for value in samples))


def write_wave(song, path):
    with wave.open(str(path), "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(RATE)
        out.writeframes(render(song).tobytes())


def make_audio(song, folder):
    path = folder / "song.wav"
    write_wave(song, path)
    subprocess.run(["oggenc", "--quiet", "-q", "2", "-s", "1", "-t", song.title, "-o", str(folder / song.file),
                    str(path)], check=True)
    path.unlink()


if __name__ == "__main__":
    for each in SONGS:
        make_audio(each, pathlib.Path(sys.argv[1]))

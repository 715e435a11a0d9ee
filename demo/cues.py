"""Writers of the two open sequence formats: cue files (JSON) and frame files (FSEQ version 2)."""
import json
import struct
import zlib

DARK = (0, 0, 0)


class Cues:
    """The events of one sequence. Levels are 0 to 100, colours three levels."""

    def __init__(self, duration):
        self.duration = duration
        self.events = []

    def set(self, light, start, colour):
        for offset, level in enumerate(colour):
            self._event(light, offset, {"start": start, "end": start, "from": level, "to": level})

    def fade(self, light, start, end, colour, to):
        for offset, (level, target) in enumerate(zip(colour, to)):
            self._event(light, offset,
                        {"start": start, "end": min(end, self.duration), "from": level, "to": target})

    def _event(self, light, offset, times):
        event = {"kind": "main", "network": 0, "unit": light.unit, "circuit": light.circuit + offset}
        event.update((name, round(value, 3)) for name, value in times.items())
        event["command"] = "set" if times["start"] == times["end"] else "fade"
        self.events.append(event)

    def write(self, path, media=None):
        cue = {"format": "vexseq", "version": 1, "duration": round(self.duration, 3)}
        if media:
            cue["media"] = media
        head = json.dumps(cue, ensure_ascii=False)[:-1]
        events = ",\n  ".join(json.dumps(event) for event in sorted(self.events, key=lambda event: event["start"]))
        path.write_text(f'{head}, "events": [\n  {events}\n]}}\n', encoding="utf-8")


def write_frames(path, frames, ranges, step_ms):
    """A frame file with sparse ranges, its frames compressed in blocks of a second.

    ranges are (first channel from 0, count); each frame is the bytes of the ranges one after another.
    """
    per_block = 1000 // step_ms
    blocks = [(first, zlib.compress(b"".join(frames[first:first + per_block]), 9))
              for first in range(0, len(frames), per_block)]
    header_size = 32 + 8 * len(blocks) + 6 * len(ranges)
    producer = struct.pack("<H2s", 4 + 5, b"sp") + b"demo\0"
    data_offset = header_size + len(producer) + (-(header_size + len(producer))) % 4
    head = struct.pack("<4sHBBHIIBBBBBBQ", b"PSEQ", data_offset, 0, 2, header_size, sum(count for _, count in ranges),
                       len(frames), step_ms, 0, 2, len(blocks), len(ranges), 0, 1)
    head += b"".join(struct.pack("<II", first, len(data)) for first, data in blocks)
    head += b"".join(struct.pack("<I", first)[:3] + struct.pack("<I", count)[:3] for first, count in ranges)
    path.write_bytes((head + producer).ljust(data_offset, b"\0") + b"".join(data for _, data in blocks))

#!/usr/bin/env python3
"""A program that shouts at the player: messages of all types but those that end it, and of none.

    flooder.py SOCKET HANDLE NAME COUNT SHARE RETRY

SOCKET is the player's window, HANDLE the window that stands as the sender, NAME ("one" or "two") decides by which
lines its messages can be told from another's; SHARE of them cause lines. With RETRY 1 what is refused for want of
room is sent again when there is some; with 0 it is left out. Prints one JSON object: how many were sent and refused,
how many sends failed otherwise, and the lines that the player has to write about those sent, in order.
"""
import json
import random
import select
import socket
import struct
import sys

WRONG = "Show on demand error: Unexpected number of fields in serialized monitored show event: "
LINES = {
    "one": {b"09(a)": WRONG + "1", b"05": "Schedule loaded",
            b"09(eve.shw,(F,,F,),0,F)": "Request for show on demand received: eve.shw"},
    "two": {b"09(a,b)": WRONG + "2", b"09(a,b,c)": WRONG + "3", b"09": "Request to clear show on demand received"},
}
SILENT = [b"", b"0", b"zz", b"-1", b"\xff\xfe", b"e1", b"02", b"06ON", b"06off", b"07" + b"x" * 3000, b"12(a,(b", b"99",
          b"100"] + [b"%02d" % kind for kind in range(100) if kind not in (1, 2, 5, 6, 8, 9)]


def payloads(name, count, share, chance):
    told = list(LINES[name])
    for _ in range(count):
        yield chance.choice(told) if chance.random() < share else chance.choice(SILENT)


def datagram(handle, payload, chance):
    body = payload + (b"\0" if chance.random() < 0.9 else b"")
    return struct.pack("<4I", 74, handle, chance.choice((3, 0, 2 ** 32 - 1)), len(body)) + body


def main():
    path, handle, name, count, share, retry = sys.argv[1:]
    window = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    window.connect(path)
    window.setblocking(False)
    chance = random.Random(name)
    sent = refused = failed = 0
    lines = []
    for payload in payloads(name, int(count), float(share), chance):
        while True:
            try:
                window.send(datagram(int(handle), payload, chance))
                sent += 1
                if payload in LINES[name]:
                    lines.append(LINES[name][payload])
            except BlockingIOError:
                refused += 1
                if retry == "1":
                    select.select([], [window], [])
                    continue
            except OSError:
                failed += 1
            break
    print(json.dumps({"sent": sent, "refused": refused, "failed": failed, "lines": lines}))


if __name__ == "__main__":
    main()

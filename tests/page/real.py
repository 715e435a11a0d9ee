#!/usr/bin/env python3
"""The page of the real tray before the real player: sets the scene for tests/page/real.js and hostile.js.

    tests/page/real.py BUILD

Prints "ok" or "not ok" with the name, as the other tests do.
"""
import json
import os
import pathlib
import socket
import subprocess
import sys
import urllib.request

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "e2e"))

import run  # noqa: E402  (the folder of the end-to-end tests is known only now)
import stage  # noqa: E402
import test_tray_names  # noqa: E402


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def answers(url):
    try:
        with urllib.request.urlopen(url) as answer:
            return answer.status == 200
    except OSError:
        return False


class HostilePage(test_tray_names.HostileNames):
    def test_hostile_names_are_text_in_a_browser(self):
        self.play_them()
        names = self.folder / "names.json"
        names.write_text(json.dumps({"show": test_tray_names.MARKUP, "sequence": test_tray_names.SEQUENCE,
                                     "trigger": test_tray_names.TRIGGER, "missing": test_tray_names.LONG}))
        played = subprocess.run(["node", str(HERE / "hostile.js"), f"http://127.0.0.1:{self.page}/", str(names)],
                                capture_output=True, text=True, timeout=120)
        self.assertEqual(played.returncode, 0, (played.stdout + played.stderr)[-3000:])


class RealPage(stage.Stage):
    def test_each_button_does_to_the_player_what_it_says(self):
        self.output = {"Protocol": "sacn", "Host": self.address, "SourceName": "Test page"}
        self.sequence("on.vexseq", 5, (0, 1, 100), (0, 2, 10))
        self.write_show("eve.shw", background=["on.vexseq"])
        self.write_show("other.shw", background=["on.vexseq"])
        next_week = self.folder / "next.qsc"
        next_week.write_bytes(stage.week((-60, 600, "other.shw")).encode("cp1252") + b"\r\n")
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()
        port = free_port()
        self.environment["XDG_STATE_HOME"] = str(self.folder / "state")
        self.spawn("vextray", "--listen", f"127.0.0.1:{port}")
        url = f"http://127.0.0.1:{port}/"
        self.assertTrue(stage.wait_until(lambda: answers(url), 10), "the page is not served")
        played = subprocess.run(["node", str(HERE / "real.js"), url, str(self.meeting / "status.json"),
                                 str(self.data / "weeksched.qsc"), str(next_week)], capture_output=True, text=True, timeout=120)
        self.assertEqual(played.returncode, 0, played.stdout + played.stderr + self.said())
        self.assertEqual(self.wait_exit(), 0)


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    os.environ["VEX_E2E_PROGRAMS"] = str((pathlib.Path(sys.argv[1]) / "bin").resolve())
    cases = [RealPage("test_each_button_does_to_the_player_what_it_says"),
             HostilePage("test_hostile_names_are_text_in_a_browser")]
    return 0 if all([run.report(*run.run(case)) for case in cases]) else 1


if __name__ == "__main__":
    sys.exit(main())

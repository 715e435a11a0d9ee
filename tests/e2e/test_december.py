"""The walk of docs/planning.md: what stands there is typed here, and what is printed must stand there."""
import os
import pathlib
import re
import shutil
import subprocess

import stage

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "planning.md"
PLACE = "/srv/shows"
BLOCK = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.M | re.S)


class December(stage.Stage):
    def setUp(self):
        super().setUp()
        for song in ("jingle-bells.ogg", "fur-elise.ogg"):
            shutil.copy(ROOT / "demo" / song, self.sequences)
        self.environment["PATH"] = f"{stage.programs()}:{os.environ['PATH']}"

    def typed(self, command):
        """What the command prints, in the order in which it comes."""
        done = subprocess.run(["bash", "-c", command.replace(PLACE, str(self.folder))], env=self.environment,
                              cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
        return done.stdout.decode().replace(str(self.folder), PLACE)

    def walk(self):
        """The page's commands with what it says they print, and with what they do."""
        for kind, name, body in BLOCK.findall(PAGE.read_text(encoding="utf-8")):
            if name:
                (self.folder / name).write_text(body.replace(PLACE, str(self.folder)), encoding="utf-8")
            for step in re.split(r"^\$ ", body, flags=re.M)[1:] if kind == "console" else []:
                command, _, printed = step.partition("\n")
                yield command, printed, self.typed(command)

    def test_the_page_is_true(self):
        steps = 0
        for command, printed, really in self.walk():
            self.assertEqual(printed, really, command)
            steps += 1
        self.assertGreater(steps, 20)
        picture = (self.folder / "december.svg").read_bytes()
        self.assertEqual((ROOT / "docs" / "december.svg").read_bytes(), picture)


def write():
    """Puts into the page what the programs print: to be read, line by line, before it is kept."""
    case = December("test_the_page_is_true")
    case.setUp()
    try:
        text = PAGE.read_text(encoding="utf-8")
        pieces = iter([f"$ {command}\n{really}" for command, _, really in case.walk()])
        page = BLOCK.sub(lambda block: block.group(0) if block.group(1) != "console" else
                         "```console\n" + "".join(next(pieces) for _ in re.findall(r"^\$ ", block.group(3), re.M)) + "```",
                         text)
        PAGE.write_text(page, encoding="utf-8")
        shutil.copy(case.folder / "december.svg", ROOT / "docs" / "december.svg")
    finally:
        case.doCleanups()


if __name__ == "__main__":
    write()

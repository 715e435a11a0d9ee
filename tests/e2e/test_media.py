"""Songs and videos as people bring them: what is heard, what is seen, and that the show goes on."""
import collections
import pathlib
import re
import shutil
import subprocess
import time

from stage import Stage, wait_until
from test_shows import silence

FILES = pathlib.Path(__file__).resolve().parents[1] / "media" / "files"
CAPTION = "Brillara Video"
NO_DISPLAY = "Video cannot be shown"
MEDIA_ERROR = "WINDOWS MEDIA PLAYER ERROR (Error playing media file: "

Window = collections.namedtuple("Window", "left top width height")


class MediaStage(Stage):
    """A song that is well stands behind each that is not."""

    def bring(self, file, name):
        shutil.copyfile(FILES / file, self.sequences / name)
        return self.song(name)

    def song(self, name):
        """A sequence with that media; its lights would go on for longer."""
        return self.sequence(pathlib.Path(name).stem + ".vexseq", 20.0, (0.2, 1, 50), media=name)

    def good_song(self):
        silence(self.sequences / "good.wav", 0.5)
        return self.song("good.wav")

    def errors(self, tray):
        return [line for line in tray.lines() if "ERROR" in line or "Error: " in line]


class Media(MediaStage):
    def test_a_text_named_as_a_song_is_told_and_the_show_goes_on(self):
        (self.sequences / "text.mp3").write_text("Silent night, holy night.\n" * 500)
        tray = self.play_show(musical=[self.song("text.mp3"), self.good_song()])
        self.assert_in_order(tray, "Starting Musical: text.vexseq", MEDIA_ERROR, "Ending Musical: text.vexseq")
        self.assert_line(tray, "Ending Musical: good.vexseq")
        line = next(line for line in self.errors(tray) if MEDIA_ERROR in line)
        self.assertTrue(line.endswith("): "), line)

    def test_a_list_of_songs_named_as_a_song_is_no_song(self):
        silence(self.sequences / "listed.wav", 30)
        (self.sequences / "list.mp3").write_text(f"#EXTM3U\n{self.sequences}/listed.wav\n")
        tray = self.play_show(musical=[self.song("list.mp3"), self.good_song()])
        self.assert_line(tray, MEDIA_ERROR)
        self.assert_line(tray, "Ending Musical: good.vexseq")

    def test_a_song_deleted_while_it_plays_is_heard_to_its_end_and_missed_the_next_time(self):
        silence(self.sequences / "gone.wav", 2)
        tray = self.play_show(musical=[self.song("gone.wav"), self.good_song()])
        self.assert_line(tray, "Starting Musical: gone.vexseq")
        self.assertTrue(wait_until(lambda: self.status()["media"], 5))
        time.sleep(0.5)
        (self.sequences / "gone.wav").unlink()
        self.assert_line(tray, "Ending Musical: gone.vexseq")
        self.assertFalse([line for line in self.errors(tray) if "MEDIA PLAYER" in line])
        self.assert_line(tray, MEDIA_ERROR, 8)
        self.assertIn("gone.wav", next(line for line in self.errors(tray) if MEDIA_ERROR in line))
        self.assert_line(tray, "Ending Musical: good.vexseq", 8, count=2)

    def test_a_song_with_its_cover_is_a_song(self):
        tray = self.play_show(musical=[self.bring("cover.mp3", "cover.mp3"), self.good_song()])
        self.assert_line(tray, "Ending Musical: good.vexseq")
        self.assertFalse(self.errors(tray) or [line for line in tray.lines() if NO_DISPLAY in line])

    def test_without_a_display_videos_are_heard_and_it_is_told_once(self):
        tray = self.play_show(musical=[self.bring("silent.mp4", "silent.mp4"), self.bring("clip.mp4", "clip.mp4")])
        self.assert_line(tray, "Starting Musical: silent.vexseq", count=2, seconds=20)
        self.assert_in_order(tray, "Starting Musical: silent.vexseq", "Ending Musical: silent.vexseq",
                             "Starting Musical: clip.vexseq", "Ending Musical: clip.vexseq")
        self.assertEqual(sum(NO_DISPLAY in line for line in tray.lines()), 1)
        self.assertFalse(self.errors(tray))

    def test_videos_that_are_not_wanted_need_no_display(self):
        self.video = {"DisplayVideos": 0}
        tray = self.play_show(musical=[self.bring("clip.mp4", "clip.mp4")])
        self.assert_line(tray, "Ending Musical: clip.vexseq")
        self.assertFalse([line for line in tray.lines() if NO_DISPLAY in line])


class Display(MediaStage):
    """With a display in memory."""

    def setUp(self):
        super().setUp()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                                        "-noreset"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(self.end_process, self.server)
        self.environment["DISPLAY"] = ":" + self.server.stdout.readline().decode().strip()
        self.video = {"MonitorX": 101, "MonitorY": 57}

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True)

    def seen(self):
        """The window on the screen, None for none."""
        text = self.ask("xwininfo", "-name", CAPTION).stdout.decode(errors="replace")
        if "IsViewable" not in text:
            return None
        return Window(*(int(re.search(word + r":\s+(-?\d+)", text).group(1)) for word in
                        ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")))

    def colours(self):
        photo = self.ask("xwd", "-silent", "-name", CAPTION).stdout
        return len({photo[at:at + 3] for at in range(len(photo) - 4 * 640 * 200, len(photo), 4)})

    def wait_seen(self, seen=True):
        self.assertTrue(wait_until(lambda: bool(self.seen()) == seen, 15),
                        f"the window is {'not ' if seen else 'still '}seen; " + self.said())

    def test_a_video_is_seen_in_its_place_until_the_show_ends(self):
        tray = self.play_show(seconds=9, musical=[self.bring("clip.mp4", "clip.mp4")])
        self.wait_seen()
        self.assertEqual(self.seen(), Window(101, 57, 640, 360))
        self.assertTrue(wait_until(lambda: self.colours() > 50, 5))
        self.assert_line(tray, "Finished show: eve.shw", 20)
        self.wait_seen(False)
        self.assertFalse(self.errors(tray))
        self.vexctl("shutdown")
        self.assertEqual(self.wait_exit(), 0)

    def test_a_song_after_the_video_takes_the_window_away(self):
        silence(self.sequences / "song.wav", 30)
        self.play_show(musical=[self.bring("clip.mp4", "clip.mp4"), self.song("song.wav")])
        self.wait_seen()
        self.wait_seen(False)
        self.assertTrue(wait_until(lambda: "song.wav" in (self.status()["media"] or ""), 5), self.status())

    def test_a_song_is_drawn_where_that_is_wanted(self):
        self.video["DisplayVisualizations"] = 1
        self.play_show(musical=[self.bring("cover.mp3", "cover.mp3")])
        self.wait_seen()
        self.assertEqual(self.seen()[:2], (101, 57))
        self.assertTrue(wait_until(lambda: self.colours() > 2, 5))

    def test_the_player_ends_with_its_window_open(self):
        tray = self.play_show(musical=[self.bring("clip.mp4", "clip.mp4")])
        self.wait_seen()
        self.vexctl("shutdown", "--now")
        self.assertEqual(self.wait_exit(), 0)
        self.wait_seen(False)
        self.assertFalse(self.errors(tray))

    def test_the_show_goes_on_when_the_display_breaks_away(self):
        tray = self.play_show(musical=[self.bring("clip.mp4", "clip.mp4"), self.good_song()])
        self.wait_seen()
        self.server.kill()
        self.assert_line(tray, "Ending Musical: good.vexseq", 20)
        self.assertIsNone(self.player.poll())

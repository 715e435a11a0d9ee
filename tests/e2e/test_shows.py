"""Shows as they play: phases, changed files and times, sequences and songs that are damaged or missing."""
import json
import struct
import time
import wave

from stage import RELOAD, Stage, wait_until


def silence(path, seconds):
    with wave.open(str(path), "wb") as out:
        out.setnchannels(1)
        out.setsampwidth(2)
        out.setframerate(8000)
        out.writeframes(b"\0\0" * int(8000 * seconds))


class Phases(Stage):
    def test_a_show_runs_through_its_phases(self):
        for name in ("up", "run", "back", "clean", "bye"):
            self.sequence(f"{name}.vexseq", 0.6, (0, 1, 50))
        for name in ("one", "two"):
            silence(self.sequences / f"{name}.wav", 1.0)
            self.sequence(f"{name}.vexseq", 1.0, (0, 2, 70), media=f"{name}.wav")
        tray = self.play_show(seconds=14, startup=["up.vexseq"], main=["run.vexseq"], background=["back.vexseq"],
                              musical=["one.vexseq", "two.vexseq"], clean_up="clean.vexseq", delay=1,
                              shutdown=["bye.vexseq"])
        self.assert_line(tray, "Finished show: eve.shw", 30)
        self.assert_in_order(tray, "Starting Background: back.vexseq", "Starting Startup: up.vexseq",
                             "Ending Startup: up.vexseq", "Starting Musical: one.vexseq",
                             "Ending Musical: one.vexseq", "Starting Cleanup: clean.vexseq",
                             "Delaying between Musical sequences for 1 seconds", "Starting Musical: two.vexseq",
                             "Current show is entering shutdown mode", "Starting Shutdown: bye.vexseq",
                             "Ending Background: back.vexseq", "Finished show: eve.shw")
        self.assertGreater(sum("Starting Animation: run.vexseq" in line for line in tray.lines()), 3)
        self.assertFalse([line for line in tray.lines() if "rror" in line.lower().replace("initialized", "")])

    def test_names_with_umlauts_are_found(self):
        silence(self.sequences / "Für Elise.wav", 0.5)
        self.sequence("Für Elise.vexseq", 0.5, (0, 1, 100), media="Für Elise.wav")
        tray = self.play_show(musical=["Für Elise.vexseq"])
        self.assert_line(tray, "Ending Musical: Für Elise.vexseq")


class Changes(Stage):
    def test_a_show_edited_while_it_plays_is_ended_and_begun_again(self):
        for name in ("old", "new", "bye"):
            self.sequence(f"{name}.vexseq", 0.4, (0, 1, 50))
        tray = self.play_show(background=["old.vexseq"], shutdown=["bye.vexseq"])
        self.assert_line(tray, "Starting Background: old.vexseq")
        self.write_show(background=["new.vexseq"], shutdown=["bye.vexseq"])
        self.assert_line(tray, "Starting Background: new.vexseq")
        self.assert_in_order(tray, "Current show's contents have changed", "Current show is entering shutdown mode",
                             "Starting Shutdown: bye.vexseq", "Finished show: eve.shw", "Starting show: eve.shw",
                             "Starting Background: new.vexseq")

    def test_a_show_file_written_anew_with_the_same_text_changes_nothing(self):
        self.sequence("old.vexseq", 0.4, (0, 1, 50))
        tray = self.play_show(background=["old.vexseq"])
        self.write_show(background=["old.vexseq"])
        time.sleep(2.5)
        self.assertFalse(tray.wait_line("contents have changed", 0))

    def test_an_end_moved_while_it_plays_is_followed(self):
        tray = self.play_show(seconds=600)
        self.write_week((-60, 4, "eve.shw"))
        tray.send(RELOAD)
        self.assert_line(tray, "Current show's time range has changed", 4)
        self.assert_line(tray, "Finished show: eve.shw", 8)
        self.assertFalse(tray.wait_line("contents have changed", 0))

    def test_a_show_file_that_goes_ends_its_show(self):
        tray = self.play_show()
        (self.data / "eve.shw").unlink()
        self.assert_line(tray, "Cannot read show file: eve.shw", 5)
        self.assert_line(tray, "Finished show: eve.shw", 5)
        self.write_show()
        self.assert_line(tray, "Starting show: eve.shw", 5, count=2)


class Faults(Stage):
    def test_a_missing_sequence_is_told_and_the_others_play(self):
        self.sequence("good.vexseq", 0.3, (0, 1, 50))
        tray = self.play_show(main=["missing.vexseq", "good.vexseq"])
        self.assert_line(tray, "m_ShowTimer_Timer Error: ", 5)
        self.assertIn("missing.vexseq", next(line for line in tray.lines() if "m_ShowTimer_Timer Error" in line))
        self.assert_line(tray, "Starting Animation: good.vexseq", 5, count=2)

    def test_a_damaged_sequence_says_what_is_wrong(self):
        (self.sequences / "bad.vexseq").write_text('{"format":"vexseq","version":1,"duration":"long"}')
        self.sequence("good.vexseq", 0.3, (0, 1, 50))
        tray = self.play_show(main=["bad.vexseq", "good.vexseq"])
        self.assert_line(tray, "m_ShowTimer_Timer Error: ", 5)
        line = next(line for line in tray.lines() if "m_ShowTimer_Timer Error" in line)
        self.assertIn("bad.vexseq", line)
        self.assertIn("duration", line)
        self.assert_line(tray, "Starting Animation: good.vexseq", 5)

    def test_a_frame_file_cut_short_is_told(self):
        (self.sequences / "cut.fseq").write_bytes(b"PSEQ" + struct.pack("<HBBHIIBB", 32, 0, 2, 32, 3, 100, 25, 0))
        tray = self.play_show(main=["cut.fseq"])
        self.assert_line(tray, "m_ShowTimer_Timer Error: ", 5)
        self.assertIsNone(self.player.poll())

    def test_a_missing_song_ends_its_sequence_and_the_next_one_plays(self):
        silence(self.sequences / "good.wav", 0.5)
        self.sequence("gone.vexseq", 5.0, (0, 1, 50), media="gone.wav")
        self.sequence("good.vexseq", 0.5, (0, 1, 50), media="good.wav")
        tray = self.play_show(musical=["gone.vexseq", "good.vexseq"])
        self.assert_line(tray, "WINDOWS MEDIA PLAYER ERROR (Error playing media file", 8)
        self.assert_line(tray, "Ending Musical: good.vexseq", 8)

    def test_a_song_of_garbage_is_told_and_the_show_goes_on(self):
        (self.sequences / "bad.ogg").write_bytes(bytes(range(256)) * 40)
        silence(self.sequences / "good.wav", 0.5)
        self.sequence("bad.vexseq", 5.0, (0, 1, 50), media="bad.ogg")
        self.sequence("good.vexseq", 0.5, (0, 1, 50), media="good.wav")
        tray = self.play_show(musical=["bad.vexseq", "good.vexseq"])
        self.assert_line(tray, "WINDOWS MEDIA PLAYER ERROR (Error playing media file", 8)
        self.assert_line(tray, "Ending Musical: good.vexseq", 8)
        time.sleep(0.2)
        self.assertIsNotNone(self.status()["lastError"])

    def test_a_show_that_is_no_show_keeps_the_player_alive(self):
        self.write_show(text="(nothing,of,the,kind)")
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.assertTrue(wait_until(lambda: self.status() and self.status()["lastError"], 5))
        self.write_show()
        self.assert_line(tray, "Starting show: eve.shw", 5)


class Recorded(Stage):
    def test_recorded_components_write_down_what_is_asked_of_them(self):
        recording = self.folder / "recording.jsonl"
        silence(self.sequences / "song.wav", 1.0)
        self.sequence("song.vexseq", 5.0, (0.2, 3, 60), media="song.wav")
        self.components = {"Lights": "recorded", "Media": "recorded",
                           "Recording": "Z:" + str(recording).replace("/", "\\")}
        tray = self.play_show(musical=["song.vexseq"])
        self.assert_line(tray, "Ending Musical: song.vexseq")
        lines = [json.loads(line) for line in recording.read_text(encoding="utf-8").splitlines()]
        kinds = [(line["kind"], line.get("call")) for line in lines]
        for expected in (("io", "configureValue"), ("io", "openNetwork"), ("io", "setLink"), ("seq", "load"),
                         ("seq", "prepare"), ("media", "open"), ("media", "play"), ("seq", "start"), ("io", "send"),
                         ("io", "flush"), ("media", "ended"), ("media", "stop")):
            self.assertIn(expected, kinds)
        media = [line for line in lines if line["kind"] == "media"]
        self.assertEqual([line["call"] for line in media[:4]], ["open", "play", "ended", "stop"])
        self.assertEqual(media[0]["file"], "song.wav")
        self.assertEqual([line.get("file") for line in media[1:4]], [None] * 3)
        self.assertLess(media[1]["t"], media[2]["t"])

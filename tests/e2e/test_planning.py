"""Looking ahead with the companion: what will play, and why."""
import json

import stage


class Planning(stage.Stage):
    """24 December 2026 is a Thursday: the weekly show plays from 18:00 to 22:00, a dated one from 19:00 to 20:00."""

    WEEK = "((424800,2,(,0,eve.shw),410400))"
    YEAR = "((2026-12-24,((417600,2,(,0,x.shw),414000))))"

    def setUp(self):
        super().setUp()
        self.write_settings()
        self.week_file = self.folder / "w.qsc"
        self.week_file.write_text(self.WEEK)
        self.year_file = self.folder / "y.qsc"
        self.year_file.write_text(self.YEAR)
        self.files = ["--week", str(self.week_file), "--year", str(self.year_file)]

    def timeline(self, start, end, *more):
        return self.vexctl("--json", "timeline", "--from", start, "--to", end, *self.files, *more)

    def test_a_timeline_has_a_row_for_each_decision(self):
        answer = self.timeline("2026-12-24 17:59:59", "2026-12-24 20:00:01")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertEqual(answer.stdout.splitlines(), [
            '{"from":"2026-12-24 17:59:59","to":"2026-12-24 18:00:00",'
            '"event":"(,(T,2026-12-17 22:00:00,T,2026-12-24 18:00:00),0,F)"}',
            '{"from":"2026-12-24 18:00:00","to":"2026-12-24 19:00:00",'
            '"event":"(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)"}',
            '{"from":"2026-12-24 19:00:00","to":"2026-12-24 20:00:00",'
            '"event":"(x.shw,(T,2026-12-24 19:00:00,T,2026-12-24 20:00:00),1,F)"}',
            '{"from":"2026-12-24 20:00:00","to":"2026-12-24 20:00:01",'
            '"event":"(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)"}'])

    def test_a_timeline_of_no_length_prints_nothing(self):
        for end in ("2026-12-24 18:00", "2026-12-23 18:00"):
            answer = self.timeline("2026-12-24 18:00", end)
            self.assertEqual((answer.returncode, answer.stdout, answer.stderr), (0, "", ""))

    def test_a_table_names_the_shows_and_warnings_stand_beside_it(self):
        answer = self.vexctl("timeline", "--from", "2026-12-24 00:00", "--to", "2026-12-25 00:00", *self.files)
        self.assertEqual(answer.returncode, 0)
        self.assertIn("Thu 2026-12-24 19:00:00  Thu 2026-12-24 20:00:00  1 h               dated     x.shw",
                      answer.stdout)
        self.assertIn('weekly show "eve.shw" gives way to dated show "x.shw" on 24 December 2026 from 19:00 to 20:00',
                      answer.stderr)
        self.assertIn('show "eve.shw": its file is missing', answer.stderr)

    def test_a_missing_song_is_found_before_the_season(self):
        self.sequence("m.vexseq", 3, media="carol.ogg")
        self.write_show("eve.shw", musical=["m.vexseq"])
        answer = self.timeline("2026-12-24 18:00", "2026-12-24 19:00")
        self.assertEqual(answer.returncode, 0)
        self.assertIn('song "carol.ogg" of sequence "m.vexseq" does not exist', answer.stderr)

    def test_a_picture_is_written(self):
        picture = self.folder / "december.svg"
        answer = self.timeline("2026-12-20 00:00", "2027-01-03 00:00", "--svg", str(picture))
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertIn("x.shw, dated, 24 December 2026 19:00", picture.read_text())

    def test_a_picture_that_cannot_be_written_is_said(self):
        answer = self.timeline("2026-12-20 00:00", "2027-01-03 00:00", "--svg", str(self.folder / "no" / "a.svg"))
        self.assertEqual(answer.returncode, 1)
        self.assertEqual(len(answer.stderr.splitlines()), 1)
        self.assertIn("a.svg", answer.stderr)

    def test_without_files_given_those_of_the_user_data_folder_count(self):
        self.write_week(text=self.WEEK)
        answer = self.vexctl("--json", "timeline", "--from", "2026-12-24 18:00", "--to", "2026-12-24 18:01")
        self.assertIn("eve.shw", answer.stdout)

    def test_without_any_schedule_nothing_is_in_force(self):
        answer = self.vexctl("--json", "timeline", "--from", "2026-01-01 00:00", "--to", "2027-01-01 00:00")
        self.assertEqual(answer.stdout,
                         '{"from":"2026-01-01 00:00:00","to":"2027-01-01 00:00:00","event":"(,(F,,F,),0,F)"}\n')

    def test_wrong_words_are_wrong_usage(self):
        for words in (["--from", "soon", "--to", "2026-12-24 18:00"], ["--from", "2026-12-24 18:00"],
                      ["--from", "2026-13-24 18:00", "--to", "2026-12-24 18:00"]):
            answer = self.vexctl("timeline", *words)
            self.assertEqual(answer.returncode, 2, answer)
            self.assertTrue(answer.stderr)

    def test_a_schedule_that_cannot_be_used_is_named(self):
        self.week_file.write_text("((1,2")
        for command in (["timeline", "--from", "2026-12-24 18:00", "--to", "2026-12-24 19:00"], ["why"]):
            answer = self.vexctl(*command, *self.files)
            self.assertEqual(answer.returncode, 1)
            self.assertEqual(len(answer.stderr.splitlines()), 1)
            self.assertIn("w.qsc: Badly formatted list, enclosing parens (number 1, Serialize.ListFromText): it has 2",
                          answer.stderr)
        answer = self.vexctl("why", "--week", str(self.folder / "gone.qsc"))
        self.assertEqual(answer.returncode, 1)
        self.assertIn("gone.qsc", answer.stderr)
        self.assertEqual(self.vexctl("why", "--week", "☃.qsc").returncode, 2)

    def why(self, *arguments):
        answer = self.vexctl("--json", "why", *arguments)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return json.loads(answer.stdout)

    def test_why_tells_the_rule_and_what_was_passed_over(self):
        told = self.why("2026-12-24 19:30", *self.files)
        self.assertEqual(list(told), ["at", "event", "rule", "passedOver", "sentence"])
        self.assertEqual(told["at"], "2026-12-24 19:30:00")
        self.assertEqual(told["event"], "(x.shw,(T,2026-12-24 19:00:00,T,2026-12-24 20:00:00),1,F)")
        self.assertEqual(told["rule"], "year")
        self.assertEqual(told["passedOver"], [
            {"rule": "week", "event": "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)",
             "because": 'the weekly show "eve.shw" gives way to the dated one'}])
        answer = self.vexctl("why", "2026-12-24 19:30", *self.files)
        self.assertEqual(answer.stdout, told["sentence"] + "\n")

    def test_why_nothing_plays(self):
        told = self.why("2026-12-24 23:10", *self.files)
        self.assertEqual(told["rule"], "none")
        self.assertEqual(told["sentence"], "No show on 24 December 2026 at 23:10: the dated schedule has none for "
                                           '24 December at 23:10, the weekly show "eve.shw" ended at 22:00.')

    def test_why_now_knows_the_show_on_demand(self):
        self.play_show()
        tray = self.tray()
        self.sequence("a.vexseq", 60)
        self.write_show("d.shw", main=["a.vexseq"])
        tray.send(9, b"(d.shw,(F,,F,),2,F)")
        stage.wait_until(lambda: "d.shw" in self.status()["current"], 20)
        told = self.why()
        self.assertEqual(told["rule"], "demand")
        self.assertIn('"d.shw" plays', told["sentence"])

"""Making and checking shows and schedules with the companion."""
import json
import shutil

import stage
from stage import show

CONFLICT = {"number": 1, "source": "Schedule.AddShowEvent", "description": "Can't add event -- event conflict"}
NO_SHOW = {"number": 1, "source": "Schedule.RemoveShowEvent", "description": "Can not remove non-show event"}
MONDAY = "((165600,2,(,0,eve.shw),151200))"
CHRISTMAS_EVE = "((2026-12-24,((428400,2,(,0,x.shw),403200))))"


class Authoring(stage.Stage):
    def setUp(self):
        super().setUp()
        self.write_settings()

    def file(self, name, text):
        path = self.folder / name
        path.write_bytes(text.encode("cp1252"))
        return str(path)

    def done(self, *arguments):
        answer = self.vexctl(*arguments)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""), answer)
        return answer.stdout

    def json(self, *arguments):
        """The one line of an answer that went well."""
        return json.loads(self.done("--json", *arguments))

    def refused(self, *arguments, status=1):
        """A refusal has one line on standard error; gives the answer."""
        answer = self.vexctl(*arguments)
        self.assertEqual(answer.returncode, status, answer)
        self.assertEqual(len(answer.stderr.splitlines()), 1, answer)
        self.assertTrue(answer.stderr.startswith("vexctl: "), answer)
        return answer

    def assert_refused(self, error, *arguments):
        answer = self.refused("--json", *arguments)
        told = json.loads(answer.stdout)
        self.assertEqual(list(told), ["file", "kind", "ok", "number", "source", "description"])
        self.assertEqual({key: told[key] for key in error}, error)
        self.assertFalse(told["ok"])
        self.assertIn(told["description"], answer.stderr)
        return answer

    def left_over(self, folder=None):
        return sorted(path.name for path in (folder or self.data).iterdir())


class Check(Authoring):
    def test_the_answer_has_the_shape_that_is_promised(self):
        (self.folder / "weeksched.qsc").write_text(MONDAY + "\r\n")
        (self.folder / "YEARSCHED.QSC").write_text("xx" + CHRISTMAS_EVE)
        self.file("a.shw", show(main=["Für Elise.vexseq"]))
        self.file("l.txt", "(a,(b,c),d)")
        answer = self.done("--json", "check", "a.shw", "weeksched.qsc", "YEARSCHED.QSC")
        text = show(main=["Für Elise.vexseq"])
        self.assertEqual(answer, "".join(line + "\n" for line in (
            '{"file":"a.shw","kind":"show","ok":true,"text":"' + text + '"}',
            '{"file":"weeksched.qsc","kind":"week","ok":true,"text":"' + MONDAY + '"}',
            '{"file":"YEARSCHED.QSC","kind":"year","ok":true,"text":"' + CHRISTMAS_EVE + '"}')))
        self.assertEqual(self.done("--json", "check", "--as", "list", "l.txt"),
                         '{"file":"l.txt","kind":"list","ok":true,"fields":["a","(b,c)","d"]}\n')

    def test_all_files_are_checked_and_each_bad_one_has_a_line(self):
        self.file("w.qsc", "((165600,2,(,0,eve.shw),151200),(165600,2,(,0,b.shw),140000))")
        self.file("a.shw", show())
        self.file("empty.shw", "")
        self.file("nogroup.shw", show(groups="((0,,F,F,T,Door,,T))"))
        answer = self.vexctl("--json", "check", "empty.shw", "gone.shw", "a.shw", "nogroup.shw")
        self.assertEqual(answer.returncode, 1)
        self.assertEqual(answer.stdout.splitlines()[:2], [
            '{"file":"empty.shw","kind":"show","ok":false,"number":91,"source":"",'
            '"description":"Object variable not set"}',
            '{"file":"gone.shw","kind":"show","ok":false,"number":53,"source":"","description":"File not found"}'])
        self.assertTrue(json.loads(answer.stdout.splitlines()[2])["ok"])
        self.assertEqual(answer.stdout.splitlines()[3],
                         '{"file":"nogroup.shw","kind":"show","ok":false,"number":9,"source":"",'
                         '"description":"Subscript out of range"}')
        self.assertEqual([line.split(": ")[1] for line in answer.stderr.splitlines()],
                         ["empty.shw", "gone.shw", "nogroup.shw"])
        answer = self.refused("--json", "check", "w.qsc", "--as", "week")
        self.assertEqual(answer.stdout, '{"file":"w.qsc","kind":"week","ok":false,"number":2,'
                                        '"source":"Schedule.AddShowEvent",'
                                        '"description":"Can\'t add event -- event conflict"}\n')
        self.assertIn('event 2, "b.shw"', answer.stderr)
        self.assertIn('"eve.shw" from Mon 18:00 to Mon 22:00 stands in the way', answer.stderr)

    def test_an_error_is_one_line_whatever_the_file_holds(self):
        self.file("y.qsc", "((20\r\n26,()))")
        answer = self.refused("check", "--as", "year", "y.qsc")
        self.assertIn("Unexpected date string format", answer.stderr)

    def test_as_reads_any_file_as_asked(self):
        (self.folder / "weeksched.qsc").write_text(MONDAY)
        self.assertEqual(self.json("check", "weeksched.qsc", "--as", "list")["fields"],
                         ["(165600,2,(,0,eve.shw),151200)"])
        self.assert_refused({"kind": "show", "number": 91}, "check", "--as", "show", "weeksched.qsc")

    def test_a_folder_is_no_file(self):
        answer = self.assert_refused({"number": 53, "source": ""}, "check", str(self.data))
        self.assertIn("directory", answer.stderr.lower())

    def test_a_person_hears_what_a_sound_show_lacks(self):
        self.sequence("m.vexseq", 3, media="carol.ogg")
        self.file("a.shw", show(musical=["m.vexseq"], main=["gone.vexseq"]))
        lines = self.done("check", "a.shw").splitlines()
        self.assertEqual(lines[0], "a.shw: show, sound")
        self.assertEqual(len(lines), 3, lines)
        self.assertIn('song "carol.ogg" of sequence "m.vexseq" does not exist', lines[2])
        self.assertIn("gone.vexseq", lines[1])

    def test_a_song_that_cannot_be_played_is_found(self):
        self.sequence("m.vexseq", 3, media="carol.ogg")
        (self.sequences / "carol.ogg").write_bytes(b"this is no music")
        self.file("a.shw", show(musical=["m.vexseq"]))
        self.assertIn('song "carol.ogg" of sequence "m.vexseq" cannot be played: ', self.done("check", "a.shw"))

    def test_a_group_that_is_left_out_is_told(self):
        self.file("a.shw", show(groups="((1,2))"))
        self.assertIn("interactive group 1 cannot be read and is left out", self.done("check", "a.shw"))

    def test_wrong_words_are_wrong_usage(self):
        for words in (["check"], ["check", "--as", "shows", "a.shw"], ["check", "a☃.shw"], ["check", ""]):
            self.refused(*words, status=2)


class Week(Authoring):
    def week(self):
        return (self.data / "weeksched.qsc").read_bytes().decode("cp1252")

    def test_shows_are_added_listed_and_removed(self):
        self.assertEqual(self.done("--json", "week", "list"), '{"ok":true,"text":"()"}\n')
        self.assertEqual(self.done("--json", "week", "add", "Mon 18:00", "Mon 22:00", "eve.shw"),
                         '{"ok":true,"text":"' + MONDAY + '"}\n')
        self.assertEqual(self.week(), MONDAY + "\r\n")
        self.json("week", "add", "sat 22:00:05", "Sun 02:00", "Für Elise.shw")
        both = "((165600,2,(,0,eve.shw),151200),(7200,2,(,0,Für Elise.shw),597605))"
        self.assertEqual(self.week(), both + "\r\n")
        self.assertEqual(self.json("week", "list"), {"ok": True, "text": both})
        self.assertEqual(self.done("week", "list"), "from          to            show\n"
                                                    "Mon 18:00     Mon 22:00     eve.shw\n"
                                                    "Sat 22:00:05  Sun 02:00     Für Elise.shw\n")
        self.assertEqual(self.json("week", "remove", "Sun 01:59:59"), {"ok": True, "text": MONDAY})
        self.assertEqual(self.done("week", "remove", "Mon 18:00"),
                         'removed "eve.shw" from Mon 18:00 to Mon 22:00\n')
        self.assertEqual(self.week(), "()\r\n")
        self.assertEqual(self.done("week", "list"), "the weekly schedule holds no shows\n")

    def test_a_conflict_has_the_systems_words_and_names_what_stands_in_the_way(self):
        self.write_week(text=MONDAY)
        before = self.week()
        answer = self.assert_refused(CONFLICT, "week", "add", "Mon 20:00", "Mon 23:00", "b.shw")
        self.assertIn('"eve.shw" from Mon 18:00 to Mon 22:00 stands in the way', answer.stderr)
        self.assert_refused(dict(CONFLICT, number=2, kind="week"), "week", "add", "Mon 17:00", "Mon 19:00", "b.shw")
        self.assert_refused({"number": 3, "source": "Schedule.AddShowEvent", "description": "Internal error"},
                            "week", "add", "Tue 10:00", "Tue 09:00", "b.shw")
        self.assert_refused(CONFLICT, "week", "add", "Tue 10:00", "Tue 10:00", "b.shw")
        answer = self.refused("week", "add", "Mon 20:00", "Mon 23:00", "b.shw")
        self.assertEqual(answer.stdout, "")
        self.assertIn("Can't add event -- event conflict (number 1, Schedule.AddShowEvent)", answer.stderr)
        self.assertEqual(self.week(), before)

    def test_removing_where_nothing_plays_fails(self):
        self.assert_refused(NO_SHOW, "week", "remove", "Mon 18:00")
        self.assertEqual(self.left_over(), [])
        self.write_week(text=MONDAY)
        self.assert_refused(NO_SHOW, "week", "remove", "Mon 22:00")
        self.assertEqual(self.week(), MONDAY + "\r\n")

    def test_fits_answers_with_the_code(self):
        self.write_week(text=MONDAY)
        for start, end, code in (("Tue 10:00", "Tue 12:00", 0), ("Mon 19:00", "Mon 23:00", 1),
                                 ("Mon 17:00", "Mon 19:00", 2), ("Sat 22:00", "Sun 02:00", 2),
                                 ("Tue 10:00", "Tue 09:00", 3)):
            self.assertEqual(self.done("--json", "week", "fits", start, end),
                             '{"ok":true,"code":%d}\n' % code, (start, end))
        self.assertEqual(self.done("week", "fits", "Tue 10:00", "Tue 12:00"), "fits\n")
        self.assertIn("stands in the way", self.done("week", "fits", "Mon 17:00", "Mon 19:00"))
        self.assertIn("week add takes it", self.done("week", "fits", "Sat 22:00", "Sun 02:00"))
        self.assertIn("ends when it starts", self.done("week", "fits", "Tue 22:00", "Tue 22:00"))

    def test_another_file_may_be_given_anywhere(self):
        path = str(self.folder / "other.qsc")
        for words in (["week", "--file", path, "add", "Mon 18:00", "Mon 22:00", "eve.shw"],
                      ["week", "add", "--file", path, "Tue 18:00", "Tue 22:00", "eve.shw"],
                      ["week", "add", "Wed 18:00", "Wed 22:00", "eve.shw", "--file", path]):
            self.json(*words)
        self.assertEqual(self.done("week", "list", "--file", "other.qsc").count("eve.shw"), 3)
        self.json("week", "remove", "Tue 18:00", "--file", path)
        self.assertEqual(self.json("week", "fits", "Tue 18:00", "Tue 22:00", "--file", path)["code"], 0)
        self.assertEqual(self.left_over(), [])

    def test_a_show_that_is_not_there_yet_is_told(self):
        self.assertIn('show "eve.shw": its file is missing', self.done("week", "add", "Mon 18:00", "Mon 22:00", "eve.shw"))
        self.write_show("b.shw")
        self.assertEqual(self.done("week", "add", "Tue 18:00", "Tue 22:00", "b.shw"),
                         'added "b.shw" from Tue 18:00 to Tue 22:00\n')

    def test_a_damaged_file_is_refused_and_left(self):
        self.write_week(text="((1,2))")
        for words in (["list"], ["add", "Mon 18:00", "Mon 22:00", "a"], ["remove", "Mon 18:00"],
                      ["fits", "Mon 18:00", "Mon 22:00"]):
            answer = self.assert_refused({"number": 9, "source": "", "description": "Subscript out of range"},
                                         "week", *words)
            self.assertIn("weeksched.qsc", answer.stderr)
            self.assertIn('event 1, "(1,2)", cannot be read', answer.stderr)
        self.assertEqual(self.week(), "((1,2))\r\n")

    def test_wrong_words_are_wrong_usage(self):
        for words in ([], ["lst"], ["add"], ["add", "Mon 18:00", "Mon 22:00"], ["add", "Mon 18:00", "Mon 22:00", ""],
                      ["add", "Mon 24:00", "Tue 22:00", "a"], ["add", "Mon 18", "Mon 22:00", "a"],
                      ["add", "2026-12-24 18:00", "Mon 22:00", "a"], ["add", "Mon 18:00", "Mon 22:00", "☃.shw"],
                      ["add", "Mon 18:00", "Mon 22:00", "a", "b"], ["remove"], ["remove", "Monday 18:00"],
                      ["fits", "Mon 18:00"], ["list", "--file", "☃.qsc"], ["list", "--files", "a"], ["list", "--json"]):
            self.refused("week", *words, status=2)
        self.assertEqual(self.left_over(), [])

    def test_forgotten_quotes_are_told(self):
        answer = self.refused("week", "add", "Mon", "18:00", "Mon", "22:00", "eve.shw", status=2)
        self.assertIn('a time with a blank in it stands in quotes, as "Mon 18:00"', answer.stderr)

    def test_without_a_data_folder_there_is_a_remedy(self):
        self.settings.write_text("Windows Registry Editor Version 5.00\n")
        self.assertEqual(self.json("week", "list")["text"], "()")
        self.assertEqual(self.json("week", "fits", "Mon 18:00", "Mon 22:00")["code"], 0)
        self.assert_refused(NO_SHOW, "week", "remove", "Mon 18:00")
        answer = self.refused("week", "add", "Mon 18:00", "Mon 22:00", "eve.shw")
        self.assertIn("VexPostInstall", answer.stderr)
        shutil.rmtree(self.data)
        self.write_settings()
        self.assert_refused({"number": 76, "source": "", "description": "Path not found"},
                            "week", "add", "Mon 18:00", "Mon 22:00", "eve.shw")


class Year(Authoring):
    def year(self):
        return (self.data / "yearsched.qsc").read_bytes().decode("cp1252")

    def test_shows_are_added_listed_and_removed(self):
        self.assertEqual(self.json("year", "list"), {"ok": True, "text": "()"})
        self.assertEqual(self.done("--json", "year", "add", "2026-12-24 16:00", "2026-12-24 23:00", "x.shw"),
                         '{"ok":true,"text":"' + CHRISTMAS_EVE + '"}\n')
        self.assertEqual(self.year(), CHRISTMAS_EVE + "\r\n")
        self.done("year", "add", "2026-12-06 17:00:30", "2026-12-06 20:00", "n.shw")
        self.assertEqual(self.done("year", "list"), "date        from          to            show\n"
                                                    "2026-12-06  Sun 17:00:30  Sun 20:00     n.shw\n"
                                                    "2026-12-24  Thu 16:00     Thu 23:00     x.shw\n")
        self.assertEqual(self.json("year", "list")["text"],
                         "((2026-12-24,((428400,2,(,0,x.shw),403200))),(2026-12-06,((72000,2,(,0,n.shw),61230))))")
        self.assertEqual(self.json("year", "remove", "2026-12-06 19:59:59")["text"], CHRISTMAS_EVE)
        self.assertEqual(self.done("year", "remove", "2026-12-24 16:00"),
                         'removed "x.shw" from Thu 16:00 to Thu 23:00 of 2026-12-24\n')
        self.assertEqual(self.year(), "()\r\n")
        self.assertEqual(self.done("year", "list"), "the dated schedule holds no shows\n")

    def test_each_refusal_has_the_systems_words(self):
        (self.data / "yearsched.qsc").write_text(CHRISTMAS_EVE)
        for number, words, start, end in (
                (1, "End time precedes start time", "2026-12-24 20:00", "2026-12-24 20:00"),
                (2, "Event spans more than two days", "2026-12-25 22:00", "2026-12-27 01:00"),
                (3, "End time conficts with event in next day", "2026-12-23 22:00", "2026-12-24 17:00"),
                (4, "Start time conflicts with event in previous day", "2026-12-24 22:00", "2026-12-25 01:00"),
                (4, "Event conflict", "2026-12-24 15:00", "2026-12-24 17:00")):
            answer = self.assert_refused({"kind": "year", "number": number, "source": "Schedule.AddShowEventByFile",
                                          "description": words}, "year", "add", start, end, "y.shw")
            self.assertRegex(answer.stderr, r"\): \S")
            if number > 2:
                self.assertIn('"x.shw" from 2026-12-24 16:00 to 2026-12-24 23:00 stands in the way', answer.stderr)
        self.assertEqual(self.year(), CHRISTMAS_EVE)

    def test_removing_where_nothing_is_in_force_fails(self):
        self.assert_refused(NO_SHOW, "year", "remove", "2026-12-24 18:00")
        self.json("year", "add", "2026-12-24 22:00", "2026-12-25 02:00", "x.shw")
        for moment in ("2026-12-25 01:00", "2026-12-24 21:59:59", "2027-12-24 23:00"):
            self.assert_refused(NO_SHOW, "year", "remove", moment)
        self.json("year", "remove", "2026-12-24 23:59:59")

    def test_what_runs_past_midnight_is_told_to_be_cut_off(self):
        self.assertIn("cut off at midnight", self.done("year", "add", "2026-12-24 22:00", "2026-12-25 02:00", "x.shw"))

    def test_another_file_may_be_given(self):
        self.json("year", "add", "2026-12-24 16:00", "2026-12-24 23:00", "x.shw", "--file", "y.qsc")
        self.assertEqual((self.folder / "y.qsc").read_bytes().decode(), CHRISTMAS_EVE + "\r\n")
        self.assertEqual(self.json("year", "--file", "y.qsc", "remove", "2026-12-24 16:00")["text"], "()")
        self.assertEqual(self.left_over(), [])

    def test_wrong_words_are_wrong_usage(self):
        for words in ([], ["fits", "2026-12-24 16:00", "2026-12-24 17:00"], ["add", "2026-12-24 16:00"],
                      ["add", "Mon 18:00", "Mon 22:00", "a"], ["add", "2026-12-32 16:00", "2027-01-01 17:00", "a"],
                      ["remove", "soon"], ["add", "2026-12-24 16:00", "2026-12-24 17:00", ""]):
            self.refused("year", *words, status=2)


class Shows(Authoring):
    GROUPS = "((1,At the *Odoor*C,F,T,T,Door,((p.vexseq,(3,Front door,1,0),q*Sr.vexseq)),F))"

    def test_a_round_trip_gives_what_check_prints(self):
        self.file("a.shw", show(main=["Für Elise.vexseq"], musical=["m*Sn.vexseq"], delay=5, clean_up="c.vexseq",
                                groups=self.GROUPS, preload="t")[:-1] + ",more)\r\n")
        exported = self.done("show", "export", "a.shw")
        self.assertEqual(json.loads(exported)["musical"]["sequences"], ["m,n.vexseq"])
        (self.folder / "a.json").write_text(exported, encoding="utf-8")
        checked = self.json("check", "a.shw")["text"]
        self.assertEqual(self.json("show", "import", "a.json", "b.shw"), {"ok": True, "text": checked})
        self.assertEqual((self.folder / "b.shw").read_bytes().decode("cp1252"), checked + "\r\n")
        one_line = self.done("--json", "show", "export", "a.shw")
        self.assertEqual(json.loads(one_line), json.loads(exported))
        self.assertEqual(len(one_line.splitlines()), 1)

    def test_json_may_come_through_a_pipe(self):
        done = self.run_program("vexctl", "show", "import", "/dev/stdin", "a.shw", input=b'{"format":"vexshow"}')
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue((self.folder / "a.shw").exists())

    def test_what_the_show_lacks_is_told(self):
        self.file("a.json", '{"format":"vexshow","musical":{"sequences":["gone.vexseq"]}}')
        answer = self.done("show", "import", "a.json", "a.shw")
        self.assertTrue(answer.startswith("a.shw is written\n"), answer)
        self.assertIn("gone.vexseq", answer)

    def test_damaged_json_is_told_with_its_place_and_nothing_is_written(self):
        self.file("b.shw", "old")
        for text, place in (('{\n "format": "vexshow",\n "main": ]\n}', "a.json: line 3, column 10: "),
                            ('{"format":"vexshow","main":{"sequences":["a",1]}}',
                             "a.json: main.sequences[1]: must be a text"),
                            ('{"format":"vexshow","mian":{}}', "a.json: mian: is not known here"),
                            ('{"format":"vexshow","main":{"cleanUp":"\\u2603"}}',
                             "a.json: main.cleanUp: holds a character outside Windows-1252")):
            self.file("a.json", text)
            answer = self.assert_refused({"file": "a.json", "kind": "show", "number": 13, "source": ""},
                                         "show", "import", "a.json", "b.shw")
            self.assertIn(place, answer.stderr)
        self.assert_refused({"file": "gone.json", "number": 53}, "show", "import", "gone.json", "b.shw")
        self.assertEqual((self.folder / "b.shw").read_text(), "old")

    def test_a_show_file_that_cannot_be_used_is_named(self):
        self.file("empty.shw", "")
        self.assert_refused({"file": "empty.shw", "number": 91}, "show", "export", "empty.shw")
        self.assert_refused({"file": "gone.shw", "number": 53}, "show", "export", "gone.shw")
        self.file("nogroup.shw", show(groups="((0,,F,F,T,Door,,T))"))
        self.assert_refused({"number": 9}, "show", "export", "nogroup.shw")
        self.file("a.json", '{"format":"vexshow"}')
        self.assert_refused({"file": "no/a.shw", "number": 76}, "show", "import", "a.json", "no/a.shw")

    def test_wrong_words_are_wrong_usage(self):
        for words in ([], ["export"], ["import", "a.json"], ["export", "☃.shw"], ["export", "a", "b"],
                      ["import", "a.json", "☃.shw"]):
            self.refused("show", *words, status=2)

"""vextray's doors from outside: what it lets be listened on, whose passwords it takes, and what it says about both."""
import http.client
import json
import subprocess

from stage import programs, wait_until
from test_tray import WithVexTray

CONTROL, VIEW = "correct horse", "looking only"


class TheDoors(WithVexTray):
    def setUp(self):
        super().setUp()
        self.write_settings()
        self.passwords = self.folder / "passwords"
        self.passwords.touch(0o600)
        for role, password in (("control", CONTROL), ("view", VIEW)):
            done = subprocess.run([str(programs() / "vextray"), "--hash-password", role], input=password + "\n", text=True,
                                  env=self.environment, capture_output=True, timeout=20)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertNotIn(password, done.stdout + done.stderr)
            self.passwords.write_text(self.passwords.read_text() + done.stdout)

    def refused(self, *options):
        done = self.run_program("vextray", *options, seconds=20)
        self.assertEqual(done.returncode, 1, done.stderr)
        return done.stderr.decode()

    def request(self, method, path, body=None, **headers):
        connection = http.client.HTTPConnection("127.0.0.1", self.page, timeout=5)
        connection.request(method, path, body, {name.replace("_", "-"): value for name, value in headers.items()})
        answer = connection.getresponse()
        found = answer.status, dict(answer.getheaders()), answer.read().decode()
        connection.close()
        return found

    def session(self, **headers):
        return json.loads(self.request("GET", "/api/session", **headers)[2])

    def change(self, path, content, **headers):
        own = {"Origin": f"http://127.0.0.1:{self.page}", "Content_Type": "application/json",
               "X_Vex_Token": self.session(**headers)["token"]}
        return self.request("POST", path, json.dumps(content), **{**own, **headers})

    def test_others_than_this_machine_need_passwords_that_nobody_else_reads(self):
        for address in ("0.0.0.0", "[::]", "::ffff:0.0.0.0", "192.0.2.1"):
            self.assertIn("--password-file", self.refused("--listen", address + (":0" if "::" not in address else "")))
        self.assertIn("--password-file", self.refused("--listen", "127.0.0.1:0", "--name", "show.example.org"))
        for mode in (0o644, 0o660, 0o604, 0o700, 0o400):
            self.passwords.chmod(mode)
            said = self.refused("--listen", "0.0.0.0:0", "--password-file", str(self.passwords))
            self.assertIn("chmod 600", said, oct(mode))
        self.assertIn("cannot be read", self.refused("--listen", "0.0.0.0:0", "--password-file", "/nowhere"))

    def test_with_passwords_it_says_whose_task_encryption_is(self):
        self.vextray = self.spawn("vextray", "--listen", "0.0.0.0:0", "--password-file", str(self.passwords),
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.page = int(self.vextray.stdout.readline().strip().rsplit(":", 1)[1])
        self.assertIn("TLS belongs to a reverse proxy", self.vextray.stderr.readline())
        self.assertEqual(self.request("GET", "/api/state")[0], 401)
        self.assertEqual(self.session()["role"], "none")

    def test_two_passwords_two_roles(self):
        self.start_player("/noschedule")
        self.start_vextray("--password-file", str(self.passwords))
        self.assertEqual(self.change("/api/login", {"password": "guess"})[0], 401)
        cookies = {}
        for password in (CONTROL, VIEW):
            status, headers, _ = self.change("/api/login", {"password": password})
            self.assertEqual(status, 200)
            cookies[password] = headers["Set-Cookie"].split(";")[0]
            self.assertEqual(self.request("GET", "/api/state", Cookie=cookies[password])[0], 200)
        before = self.status()["link"]
        wanted = {"action": "link off" if before else "link on"}
        self.assertEqual(self.change("/api/do", wanted, Cookie=cookies[VIEW])[0], 403)
        self.assertEqual(self.change("/api/do", wanted)[0], 401)
        self.assertEqual(self.status()["link"], before)
        self.assertEqual(self.change("/api/do", wanted, Cookie=cookies[CONTROL])[0], 200)
        self.assertTrue(wait_until(lambda: self.status()["link"] != before, 5))

    def test_neither_password_nor_cookie_is_ever_logged(self):
        self.start_vextray("--password-file", str(self.passwords))
        cookie = self.change("/api/login", {"password": CONTROL})[1]["Set-Cookie"].split(";")[0]
        self.change("/api/login", {"password": "a guess\r\n18:00: forged"})
        self.request("GET", "/api/lines", Cookie=cookie)
        kept = "".join(path.read_text(errors="replace") for path in self.state.iterdir() if path.is_file())
        for secret in (CONTROL, "a guess", "forged", cookie.split("=")[1]):
            self.assertNotIn(secret, kept)


class TheLogByTime(WithVexTray):
    def test_since_takes_what_is_newer(self):
        self.state.mkdir(parents=True)
        (self.state / "log").write_text("".join(
            json.dumps({"time": f"2026-12-24 18:00:0{second}", "level": 1 + second % 3, "text": f"line {second}"}) + "\n"
            for second in range(6)))
        self.assertEqual([line["text"] for line in self.log()], [f"line {second}" for second in range(6)])
        answer = self.vexctl("log", "--since", "2026-12-24 18:00:04")
        self.assertEqual([line.split()[-1] for line in answer.stdout.splitlines()], ["4", "5"])
        answer = self.vexctl("log", "--since", "2026-12-24 18:00:03", "--level", "3")
        self.assertEqual([line.split()[-1] for line in answer.stdout.splitlines()], ["5"])
        wrong = self.vexctl("log", "--since", "yesterday")
        self.assertEqual((wrong.returncode, wrong.stdout), (2, ""))
        self.assertIn("yesterday", wrong.stderr)

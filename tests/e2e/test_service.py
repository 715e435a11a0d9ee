"""The player as a service: what the service manager is told, and that a player that is stuck falls silent."""
import os
import signal
import socket
import time

import stage


class Service(stage.Stage):
    WATCHDOG = 0.4  # seconds that the manager would wait for a sign of life

    def setUp(self):
        super().setUp()
        self.manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(self.manager.close)
        self.manager.bind(str(self.folder / "notify"))
        self.environment["NOTIFY_SOCKET"] = str(self.folder / "notify")
        self.environment["WATCHDOG_USEC"] = str(int(self.WATCHDOG * 1e6))
        self.environment.pop("WATCHDOG_PID", None)

    def told(self, seconds, until=None):
        """The states that come within that time, or up to the one that is waited for."""
        end, states = time.monotonic() + seconds, []
        while time.monotonic() < end and (until is None or not any(until in state for state in states)):
            self.manager.settimeout(max(0.01, end - time.monotonic()))
            try:
                states += self.manager.recv(4096).decode().splitlines()
            except socket.timeout:
                break
        return states

    def test_ready_comes_after_the_start_up_delay_and_a_line_tells_the_show(self):
        self.sequence("loop.vexseq", 0.5, (0, 1, 100))
        self.write_show(background=["loop.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()
        states = self.told(stage.START_UP, "STATUS=Playing eve.shw until ")
        self.assertGreater(time.monotonic() - self.started, 4.0)
        self.assertEqual(states.count("READY=1"), 1, states)
        self.assertIn("STATUS=Starting", states[:states.index("READY=1")])
        self.assertTrue(any(state.startswith("STATUS=Playing eve.shw until ") for state in states), states)
        self.vexctl("shutdown")
        states = self.told(5, "STOPPING=1")
        self.assertIn("STOPPING=1", states)
        self.assertEqual(self.wait_exit(), 0)

    def test_a_stalled_loop_gives_no_more_signs_of_life(self):
        self.start_player()
        self.assertTrue(any(state == "WATCHDOG=1" for state in self.told(stage.START_UP, "WATCHDOG=1")))
        self.assertGreaterEqual(self.told(3 * self.WATCHDOG).count("WATCHDOG=1"), 3)
        self.player.send_signal(signal.SIGSTOP)
        self.told(0.05)  # what was under way
        self.assertEqual(self.told(5 * self.WATCHDOG), [])
        self.player.send_signal(signal.SIGCONT)
        self.assertIn("WATCHDOG=1", self.told(2, "WATCHDOG=1"))

    def test_without_a_watchdog_there_are_no_signs_and_without_a_socket_nothing_is_told(self):
        del self.environment["WATCHDOG_USEC"]
        self.start_player("/noschedule")
        states = self.told(stage.START_UP, "READY=1")
        self.assertIn("READY=1", states)
        self.assertNotIn("WATCHDOG=1", states + self.told(1))
        self.player.kill()
        self.player.wait()
        del self.environment["NOTIFY_SOCKET"]
        self.start_player("/noschedule")
        self.assertEqual(self.told(1), [])
        self.assertEqual(self.said(), "")

    def test_a_second_instance_is_not_ready(self):
        self.start_player()
        self.told(stage.START_UP, "READY=1")
        os.unlink(self.folder / "notify")
        other = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(other.close)
        other.bind(str(self.folder / "notify"))
        self.manager = other
        self.assertEqual(self.run_program("VexMonitor").returncode, 0)
        self.assertNotIn("READY=1", self.told(0.5))

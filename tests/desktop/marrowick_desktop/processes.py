"""Programs that a test starts, and their end."""

import os
import re
import signal
import subprocess

from .waiting import DEADLINE

CRASH = re.compile(
    r"AddressSanitizer|LeakSanitizer|UndefinedBehaviorSanitizer|runtime error:|terminate called|ASSERT|"
    r"pure virtual|double free|corrupted size|Segmentation")


class Process:
    """A started program; what it prints goes to a file."""

    def __init__(self, arguments, log, environment=None, directory=None):
        self.arguments = arguments
        self.log_path = log
        variables = dict(os.environ)
        for name, value in (environment or {}).items():
            if value is None:
                variables.pop(name, None)
            else:
                variables[name] = value
        with open(log, "ab") as output:
            self.popen = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                          env=variables, cwd=directory)

    @property
    def pid(self):
        return self.popen.pid

    def log(self):
        with open(self.log_path, "rb") as stream:
            return stream.read().decode("utf-8", "backslashreplace")

    def lines(self):
        return self.log().splitlines()

    def runs(self):
        return self.popen.poll() is None

    def wait(self, deadline=None):
        """The exit status; fails when the program does not end by itself."""
        try:
            return self.popen.wait(DEADLINE if deadline is None else deadline)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"{self.arguments[0]} did not end") from None

    def terminate(self):
        """Asks the program to end and returns its exit status."""
        if self.runs():
            self.popen.send_signal(signal.SIGTERM)
        return self.wait()

    def kill(self):
        """Ends the program at once, without a chance to say goodbye."""
        if self.runs():
            self.popen.kill()
        self.popen.wait()

    def dispose(self):
        """Ends the program in whatever way works."""
        if self.runs():
            self.popen.terminate()
            try:
                self.popen.wait(3)
            except subprocess.TimeoutExpired:
                self.kill()


class Marrowick(Process):
    """The program itself. Its end must be clean and its log free of reports of broken memory."""

    @staticmethod
    def path():
        return os.environ["MARROWICK_PROGRAM"]

    def __init__(self, log, environment=None, prefix=()):
        super().__init__([*prefix, self.path()], log, environment)
        self.has_stopped = False

    def check_log(self):
        match = CRASH.search(self.log())
        if match:
            raise AssertionError(f"the program reported {match.group()!r}:\n{self.log()}")

    def stop(self):
        """Ends the program by SIGTERM; fails unless it ends cleanly with status 0. Once is enough."""
        if self.has_stopped:
            return
        self.has_stopped = True
        ended_before = not self.runs()
        status = self.terminate()
        self.check_log()
        if ended_before or status != 0:
            how = "by itself" if ended_before else "on SIGTERM"
            raise AssertionError(f"the program ended {how} with status {status}:\n{self.log()}")

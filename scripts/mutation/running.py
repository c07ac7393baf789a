"""Runs test programs with one mutant chosen, where they can do no harm."""

import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

NOBODY = 65534
MEMORY = 4 << 30
FILE_SIZE = 256 << 20


class Sandbox:
    """Everything is readable, and nothing can be written but a temporary folder of the run's own: a mutant of what
    removes folders must not get at anybody's files. Started by root it runs as an ordinary user, as the tests do."""

    def __init__(self, root, work):
        self.root = root
        self.homes = work / "homes"
        shutil.rmtree(self.homes, ignore_errors=True)
        self.homes.mkdir(parents=True)
        self.as_user = []
        if os.geteuid() == 0:
            self.as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]

    def run(self, program, variables, arguments, cpu_seconds, seconds):
        """Returns the exit code (negative for a signal, None when it took too long) and the output."""
        home = Path(tempfile.mkdtemp(dir=self.homes))
        (home / "run").mkdir(mode=0o700)
        (home / "output").mkdir()
        if self.as_user:
            for folder in (home, home / "run", home / "output"):
                os.chown(folder, NOBODY, NOBODY)
        command = [*self.as_user, "bwrap", "--die-with-parent", "--unshare-pid", "--ro-bind", "/", "/",
                   "--dev-bind", "/dev", "/dev", "--proc", "/proc", "--bind", home, "/tmp",
                   "--ro-bind", self.root, self.root, "--chdir", self.root, "--clearenv"]
        variables = {"PATH": os.environ["PATH"], "HOME": "/tmp", "TMPDIR": "/tmp", "XDG_RUNTIME_DIR": "/tmp/run",
                     "LANG": os.environ.get("LANG", "C.UTF-8"), **variables}
        for name, value in variables.items():
            command += ["--setenv", name, value]
        command += [program, "--gtest_brief=1", *arguments]

        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, resource.RLIM_INFINITY)) # tests set their own
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        output = home / "output/text"
        with output.open("wb") as file:
            process = subprocess.Popen([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=file,
                                       stderr=subprocess.STDOUT, preexec_fn=limit, start_new_session=True)
            try:
                code = process.wait(seconds)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                code = None
        text = output.read_bytes()[:1 << 20].decode(errors="replace")
        reached = home / "reached"
        lines = reached.read_text().splitlines() if reached.exists() else []
        shutil.rmtree(home, ignore_errors=True)
        return code, text, lines


class TestProgram:
    """A program with woven mutants: how long it takes, and which of its tests reach which mutant."""

    def __init__(self, name, path, sandbox):
        self.name, self.path, self.sandbox = name, path, sandbox
        self.tests_of = {} # by number of the mutant
        self.anywhere = set()

    def learn(self, count):
        """Runs it without a mutant, which has to pass."""
        begin = time.monotonic()
        code, text, lines = self.sandbox.run(
            self.path, {"PANELKIT_MUTANTS_REACHED": "/tmp/reached", "PANELKIT_MUTANTS_COUNT": str(count)}, [], 600, 900)
        if code != 0 or not lines or not lines[-1].startswith("cpu "):
            raise SystemExit(f"mutants: {self.name} fails without a mutant:\n{text[-4000:]}")
        self.seconds = time.monotonic() - begin
        self.cpu_seconds = int(lines.pop().split(" ")[1])
        for line in lines:
            test, *numbers = line.split(" ")
            for number in map(int, numbers):
                if test == "-":
                    self.anywhere.add(number)
                else:
                    self.tests_of.setdefault(number, []).append(test)

    def reaches(self, number):
        return number in self.anywhere or number in self.tests_of

    def try_mutant(self, number, every_test):
        """Returns what killed the mutant, or nothing."""
        arguments = ["--gtest_fail_fast"]
        if not every_test and number not in self.anywhere:
            arguments.append("--gtest_filter=" + ":".join(self.tests_of[number]))
        code, text, _ = self.sandbox.run(self.path, {"PANELKIT_MUTANT": str(number)}, arguments,
                                         3 * self.cpu_seconds + 5, 10 * self.seconds + 60)
        if code == 0:
            return ""
        failed = re.search(r"^\[  FAILED  \] (\S+?)(?:,| \()", text, re.M)
        if failed:
            return f"{self.name} {failed.group(1)}"
        if code is None or code in (-signal.SIGXCPU, -signal.SIGKILL, 128 + signal.SIGXCPU, 128 + signal.SIGKILL):
            return f"{self.name}, which took too long"
        return f"{self.name}, which died with {code}"

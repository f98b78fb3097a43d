# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""A workstation of the soak's own: bus, simulated host, logbook, agent and a shared folder as the
content server, all as the real programs, in a temporary folder."""

import os
import pathlib
import queue
import re
import shutil
import signal
import subprocess
import threading
import time
import zipfile

ID = "QUOREX"
CELL = ["com.norvane.Quorex.Logbook", "/DDELabel", "com.norvane.Quorex.Cell", "Text"]
LIMIT = 120  # seconds after which what is waited for does not come


class Failure(Exception):
    """Something that the soak promises is not so."""


def wait(what, condition, limit=LIMIT):
    """Looks again and again until the condition gives something, and returns that."""
    end = time.monotonic() + limit
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.005)
    raise Failure("waited in vain for " + what)


class Program:
    """A program whose lines are read while it runs."""

    def __init__(self, command, environment):
        self.name = os.path.basename(command[0])
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.lines = queue.Queue()
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            self.lines.put(line.decode("utf-8", "replace").rstrip("\r\n"))
        self.lines.put(None)

    def line(self, pattern):
        """The match of the next line that matches; others are passed over."""
        end = time.monotonic() + LIMIT
        seen = []
        while time.monotonic() < end:
            try:
                text = self.lines.get(timeout=max(0.01, end - time.monotonic()))
            except queue.Empty:
                break
            if text is None:
                raise Failure("%s has ended: %s" % (self.name, seen))
            found = re.search(pattern, text)
            if found:
                return found
            seen.append(text)
        raise Failure("%s does not say %r but %s" % (self.name, pattern, seen))

    def say(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def try_to_say(self, line):
        """The same to a program that may have ended."""
        try:
            self.say(line)
        except BrokenPipeError:
            pass

    def kill(self):
        self.process.kill()
        self.process.wait()

    def id(self):
        return self.process.pid


def processes(program):
    """Ids of the processes that run this file."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and os.readlink(entry / "exe") == str(program):
                found.append(int(entry.name))
        except OSError:
            pass
    return found


class Figures:
    """What a process uses now."""

    def __init__(self, pid):
        proc = pathlib.Path("/proc", str(pid))
        status = (proc / "status").read_text()
        self.kilobytes = int(re.search(r"RssAnon:\s+(\d+)", status).group(1))
        self.files = len(os.listdir(proc / "fd"))
        self.wakes = self.threads = 0
        for task in (proc / "task").iterdir():
            self.threads += 1
            text = (task / "status").read_text()
            self.wakes += int(re.search(r"\nvoluntary_ctxt_switches:\s+(\d+)", text).group(1))
        ticks = (proc / "stat").read_text().rpartition(")")[2].split()
        self.seconds = (int(ticks[11]) + int(ticks[12])) / os.sysconf("SC_CLK_TCK")


class Workstation:
    def __init__(self, build, folder, plant=False):
        self.programs = pathlib.Path(build, "bin")
        self.folder = pathlib.Path(folder)
        self.home = self.folder / "home"
        self.share = self.folder / "share"
        self.share.mkdir()
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.bus = bus
        address = bus.stdout.readline().decode().strip()
        self.environment = dict(
            os.environ, LOGBOOK_HOME=str(self.home), DBUS_SESSION_BUS_ADDRESS=address,
            QT_QPA_PLATFORM="offscreen", QT_QPA_GENERIC_PLUGINS="soakhand",
            QT_PLUGIN_PATH=str(pathlib.Path(build, "soak")))
        for name in ("DISPLAY", "WAYLAND_DISPLAY"):
            self.environment.pop(name, None)
        if plant:
            self.environment["SOAK_PLANT"] = "1"
        self.run_host("init", "--seed", "7")
        self.application = self.home / "drives/c/QUOREX/qrxexe"
        self.root = self.home / "drives/c/QUOREX/inst1/maintain"
        for program in ("logbook", "ecm-agent"):
            shutil.copy(self.programs / program, self.application)
        (self.application / "arecm.cfg").write_text(
            "[Content Server]\r\nRetryPause=100\r\nLongestPause=500\r\nFolder=station\r\n"
            "Url=file://%s\r\n" % self.share, newline="")
        self.host = self.logbook = None
        self.monitor = Program(["gdbus", "monitor", "--address", address, "--dest", CELL[0],
                                "--object-path", CELL[1]], self.environment)
        self.monitor.line("Monitoring")

    def run_host(self, *arguments):
        subprocess.run([self.programs / "quorex-host", *arguments], env=self.environment,
                       check=True, stdout=subprocess.DEVNULL)

    def start_host(self, *arguments):
        """Instead of the host that was there, if there was one."""
        self.end_host()
        self.host = Program([str(self.programs / "quorex-host"), "run", "--id", ID, *arguments],
                            self.environment)
        self.host.line("waiting as")

    def end_host(self):
        if self.host:
            self.host.kill()
        self.host = None

    def start_logbook(self):
        self.logbook = Program([str(self.application / "logbook"), ID], self.environment)
        wait("the list", (self.root / "listlog.csv").exists)

    # The handshake cell, seen and touched as any peer on the bus can.

    def busctl(self, *arguments):
        return subprocess.run(
            ["busctl", "--address=" + self.environment["DBUS_SESSION_BUS_ADDRESS"], *arguments],
            capture_output=True, text=True, check=False)

    def set_cell(self, kind, *value):
        """Sets the cell to a value of this type of the bus; true if the logbook took it."""
        return self.busctl("set-property", *CELL, kind, "--", *value).returncode == 0

    def wait_for_cell(self, *texts):
        def look():
            found = re.match(r's "(.*)"', self.cell())
            return found and found.group(1) in texts
        wait("the cell to hold " + " or ".join(texts), look)

    def cell(self):
        """What the cell holds now, in busctl's words."""
        return self.busctl("get-property", *CELL).stdout.strip()

    def rest(self, number):
        """Waits until host and cell are at rest. Earlier changes do not count for wait_for_job."""
        self.wait_for_cell("0", "")
        mark = "0 is the mark %d" % number  # which reads as 0
        self.set_cell("s", mark)
        self.monitor.line(mark)

    def wait_for_job(self):
        """Waits for the next change of the cell to 1."""
        self.monitor.line(r"'Text': <'1'>")

    # The agent and what it delivers.

    def agents(self):
        return processes(self.application / "ecm-agent")

    def kill_agents(self):
        for pid in self.agents():
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass

    def take_server_away(self):
        self.share.rename(self.folder / "away")

    def bring_server_back(self):
        (self.folder / "away").rename(self.share)

    def arrivals(self):
        """Takes what has arrived whole from the server: the comment of each package, one None for
        each event without a package."""
        comments = []
        place = self.share / "station"
        for descriptor in sorted(place.glob("*.xml")) if place.exists() else []:
            event = place / descriptor.stem
            names = sorted(entry.name for entry in event.iterdir())
            packages = [name for name in names if name.endswith(".qkvzip")]
            if names != packages + ["listlog.csv"] or len(packages) > 1:
                raise Failure("%s has %s" % (descriptor.name, names))
            if not (event / "listlog.csv").read_bytes().startswith(b"\"Date\"") and \
                    (event / "listlog.csv").stat().st_size == 0:
                raise Failure("the list of %s is empty" % descriptor.name)
            comments.append(comment_of(event / packages[0]) if packages else None)
            shutil.rmtree(event)
            descriptor.unlink()
        return comments

    def left_over(self):
        """Files that nobody takes away: of the upload and under working names."""
        area = self.home / "drives/c/Norvane.Quorex.ECM"
        found = [str(path.relative_to(self.home)) for path in self.home.rglob("*")
                 if path.is_file() and (area in path.parents or path.suffix == ".part" or
                                        path.name.startswith(".logbook-new~") or
                                        path.suffix == ".qkvzip")]
        # The agent's and the logbook's locks are files of their own, which stay.
        locks = ("/outbox/.agent", "/outbox/.taking-over")
        return [path for path in found if not path.endswith(locks)]

    def close(self):
        for program in (self.logbook, self.host, self.monitor):
            if program:
                program.kill()
        self.kill_agents()
        self.bus.kill()
        self.bus.wait()


def comment_of(package):
    with zipfile.ZipFile(package) as archive:
        if archive.testzip() is not None:
            raise Failure("%s is damaged" % package)
        name = package.stem
        if b"Date=" not in archive.read(name + "/logfile.ini"):
            raise Failure("%s has no date" % package)
        return archive.read(name + "/comment.txt").decode().strip()

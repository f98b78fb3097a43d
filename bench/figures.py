# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""The figures: one function a row.

To add a row, write a function that takes the Workplace and returns a Measured, under @figure with
the row's name, title, unit ("x" for a ratio) and target (None: told, not judged), and a row of
that name to docs/performance.md. A figure that takes more than some ten seconds on a quiet machine
is for full runs alone: is_long=True. Samples of a benchmark program come by
place.collect(PROGRAM, ARGUMENTS...), those of any command by place.measure(COMMAND...); a subject
and its base are always measured in turn, in the same run. What two rows share goes through
place.once(KEY, MAKE).
"""

import os
import tempfile
import zipfile

from verdict import Figure, Measured, median, ratio

FIGURES = []
MIB = 1024.0 * 1024.0


def figure(name, title, unit, target, is_long=False):
    def add(measure):
        FIGURES.append(Figure(name, title, unit, target, measure, is_long))
        return measure
    return add


# The list


def list_samples(place):
    return place.once("list", lambda: place.collect("bench_list", place.store(256), "rounds", 41))


@figure("list.first", "list rebuild of 256 logs, first of a process", "x", 2.5)
def list_first(place):
    base, subject = place.in_turn(
        15, lambda: place.collect("bench_list", place.store(256), "bare")["list.bare"][0],
        lambda: place.collect("bench_list", place.store(256), "first")["list.first"][0])
    return ratio(subject, base)


@figure("list.fresh", "the same in a process that has made lists, nothing kept of them", "x", 2.5)
def list_fresh(place):
    samples = list_samples(place)
    return ratio(samples["list.fresh"], samples["list.base"])


@figure("list.again", "list rebuild of 256 logs, in a running process", "x", 0.9)
def list_again(place):
    samples = list_samples(place)
    return ratio(samples["list.again"], samples["list.base"])


def of_list(place, logs, count):
    """What count() gives of a rebuild that begins without listlog.csv. A second process looks, where
    it is not counted, whether the list is there."""
    place.remove_list(place.store(logs))
    counted = count()
    place.run(place.program("bench_list"), place.store(logs), "look", logs)
    return counted


def calls_a_log(place, what):
    counts = [of_list(place, logs, lambda: place.system_calls(
        "%file", place.program("bench_list"), place.store(logs), what)) for logs in (16, 64)]
    return Measured((counts[1] - counts[0]) / 48.0, calls=counts)


@figure("list.calls", "system calls by path a log, first rebuild", "calls", 8)
def list_calls(place):
    return calls_a_log(place, "once")


@figure("list.calls_again", "system calls by path a log, first rebuild and a second", "calls", 16)
def list_calls_again(place):
    return calls_a_log(place, "twice")


@figure("list.growth", "list: instructions a further log, 1 to 256 logs, spread", "%", 15)
def list_growth(place):
    counts = {logs: of_list(place, logs, lambda store=place.store(logs): place.instructions(
        place.program("bench_list"), store, "once")) for logs in (1, 16, 64, 256)}
    steps = list(zip(sorted(counts), sorted(counts)[1:]))
    costs = [(counts[more] - counts[less]) / (more - less) for less, more in steps]
    return Measured(100 * (max(costs) / min(costs) - 1), instructions=counts, a_log=costs)


# Many folders


def folders(place, count):
    """A home with so many log folders, most of them empty."""
    def make():
        home = place.fresh_store(1)
        root = os.path.join(home, "drives/c/QUOREX/inst1/maintain")
        for number in range(1, count):
            os.mkdir(os.path.join(root, "%08X" % (0x30000000 + number)))
        return home
    return place.once("folders-%d" % count, make)


def list_command(place, count):
    home = folders(place, count)
    return ((place.program("logbookctl"), "list", "--log-root", "C:\\QUOREX\\inst1\\maintain",
             "--ini", "C:\\QUOREX\\logbook.ini"), {"LOGBOOK_HOME": home})


def many_folders(place):
    command, variables = list_command(place, 100000)
    rows = place.run(*command, **variables).count("\n") - 1
    if rows != 256:
        raise RuntimeError("the list has %d rows" % rows)
    return place.once("many", lambda: [place.measure(*command, **variables) for _ in range(5)])


@figure("folders.cpu", "logbookctl list, 100,000 folders: CPU time", "s", 0.1)
def folders_cpu(place):
    return median([taken["cpu"] for taken in many_folders(place)])


@figure("folders.memory", "logbookctl list, 100,000 folders: memory", "MB", 9)
def folders_memory(place):
    return median([taken["rss"] / MIB for taken in many_folders(place)])


@figure("folders.growth", "logbookctl list: instructions a folder, 1,000 to 100,000, growth", "%",
        15)
def folders_growth(place):
    counts = {}
    for count in (1000, 10000, 100000):
        command, variables = list_command(place, count)
        counts[count] = place.instructions(*command, **variables)
    low = (counts[10000] - counts[1000]) / 9000.0
    high = (counts[100000] - counts[10000]) / 90000.0
    return Measured(max(0, 100 * (high / low - 1)), instructions=counts)


# The index


def index_folder(place):
    """A folder with a root of 1,000 logs, in a full run of 10,000; made once."""
    def make():
        folder = place.path("index")
        os.mkdir(folder)
        place.run(place.program("bench_index"), folder, "make", 10000 if place.full else 1000)
        return folder
    return place.once("index-folder", make)


def index_samples(place):
    return place.once("index", lambda: place.collect("bench_index", index_folder(place),
                                                     "rounds", 5 if place.full else 7))


@figure("index.cold", "index of a log root made / its files read once", "x", 4)
def index_cold(place):
    samples = index_samples(place)
    return ratio(samples["index.cold"], samples["index.base"])


@figure("index.again", "unchanged log root looked through / walked with stat", "x", 1.5)
def index_again(place):
    samples = index_samples(place)
    return ratio(samples["index.again"], samples["walk.base"])


@figure("index.size", "index / files of the logs, bytes", "x", 2)
def index_size(place):
    samples = place.collect("bench_index", index_folder(place), "size")
    return ratio(samples["size.index"], samples["size.base"])


@figure("index.growth", "index: instructions a further log, 128 to 1,024 logs, growth", "%", 15,
        is_long=True)
def index_growth(place):
    program = place.program("bench_index")
    counts = {}
    for logs in (128, 512, 1024):
        place.run(program, index_folder(place), "links", logs)
        counts[logs] = place.instructions(program, index_folder(place), "cold", logs)
    low = (counts[512] - counts[128]) / 384.0
    high = (counts[1024] - counts[512]) / 512.0
    return Measured(max(0, 100 * (high / low - 1)), instructions=counts)


def found_samples(place):
    def make():
        place.run(place.program("bench_index"), index_folder(place), "many", 100000)
        return place.collect("bench_index", index_folder(place), "find", 5)
    return place.once("find", make)


@figure("find.page", "find over 100,000 logs, the slowest of five queries: CPU time", "s", 0.1,
        is_long=True)
def find_page(place):
    samples = found_samples(place)
    return max((median(values) for name, values in samples.items() if name.startswith("find.")),
               key=lambda measured: measured.value)


@figure("find.look", "the look at the folders of 100,000 logs / walked with stat", "x", 1.5,
        is_long=True)
def find_look(place):
    samples = found_samples(place)
    return ratio(samples["look"], samples["look.base"])


# Start


def window(place, rows):
    return (place.program("bench_window"), rows), {}


def logbook(place, logs):
    return ((place.program("logbook"), "bench"),
            {"LOGBOOK_HOME": place.store(logs), **place.host()})


def starts(place, logs, rows):
    """Start of the program to its painted window, beside a window with so many rows. Each start
    that counts is seen to paint its window. Both are started twice before: once for the toolkit's
    caches of fonts, and once to see that rows are painted, and by how many instructions."""
    def make():
        commands = (window(place, rows), logbook(place, logs))
        jobs = [lambda command=command, variables=variables: place.started(*command, **variables)
                for command, variables in commands]
        place.in_turn(1, *jobs)
        instructions = [place.painted(*command, rows=logs, **variables)
                        for command, variables in commands]
        place.expect_list(logs)
        return place.in_turn(9, *jobs) + [instructions]
    return place.once("starts-%d-%s" % (logs, rows), make)


def start_ratio(place, logs, rows, what):
    base, subject, instructions = starts(place, logs, rows)
    return ratio([taken[what] for taken in subject], [taken[what] for taken in base],
                 instructions=instructions)


@figure("start.list", "start to painted list, 255 logs / window with a list of as many rows", "x",
        1.6)
def start_list(place):
    return start_ratio(place, 255, 255, "cpu")


@figure("start.memory", "memory then, 255 logs / window with a list of as many rows", "x", 1.25)
def start_memory(place):
    return start_ratio(place, 255, 255, "rss")


@figure("start.empty", "start with 0 logs / window with an empty list", "x", 1.25)
def start_empty(place):
    return start_ratio(place, 0, 0, "cpu")


@figure("start.bare", "start with 0 logs / window with nothing in it", "x", None)
def start_bare(place):
    return start_ratio(place, 0, "bare", "cpu")


# Reports


def report_samples(place):
    return place.once("reports", lambda: place.collect("bench_reports", place.store(64), 41))


def reports(place, name):
    samples = report_samples(place)
    return median([1000 * sample for sample in samples[name]],
                  base=1000 * median(samples["reports.base"]).value)


@figure("reports.all", "all reports and tune.bin of a log, none there yet", "ms", 0.45)
def reports_all(place):
    return reports(place, "reports.all")


@figure("reports.each", "the same one by one, as the viewer makes them", "ms", None)
def reports_each(place):
    return reports(place, "reports.each")


@figure("reports.bare", "its needed files read and files of the same bytes made, by bare calls", "ms",
        None)
def reports_bare(place):
    return reports(place, "reports.bare")


@figure("reports.made", "the bytes of the same made, nothing written", "ms", None)
def reports_made(place):
    return reports(place, "reports.made")


@figure("reports.same", "all reports and tune.bin of a log, there with the same bytes", "ms", 0.45)
def reports_same(place):
    return reports(place, "reports.same")


@figure("diff.two", "two whole logs compared, from files to text", "ms", 5)
def diff_two(place):
    samples = place.collect("bench_diff", place.store(64), 41)
    return median([1000 * sample for sample in samples["diff.two"]],
                  base=1000 * median(samples["diff.base"]).value)


def export_memory(place, shape):
    """The memory of an export of 256 logs over that of 16, the greatest of all formats."""
    taken = {}
    for kind in ("csv", "jsonl", "xlsx", "sqlite"):
        for logs in (16, 256):
            taken[kind, logs] = place.measure(
                place.program("logbookctl"), "export", "--format", kind, "--shape", shape,
                place.path("export." + kind), LOGBOOK_HOME=place.store(logs))["rss"]
            if os.path.getsize(place.path("export." + kind)) < 1000 * logs:
                raise RuntimeError("%s: the export holds less than %d logs" % (kind, logs))
    growth = {kind: taken[kind, 256] / taken[kind, 16] for kind in ("csv", "jsonl", "xlsx", "sqlite")}
    return Measured(max(growth.values()), growth=growth)


@figure("export.long", "export in long shape: memory, 256 logs / 16 logs", "x", 1.15)
def export_long(place):
    return export_memory(place, "long")


@figure("export.wide", "export in wide shape: memory, 256 logs / 16 logs", "x", 1.15)
def export_wide(place):
    return export_memory(place, "wide")


@figure("print.line", "printing 65,533 characters in one line", "s", 3)
def print_line(place):
    return median(place.collect("bench_print", "line", 65533)["print.line"])


@figure("print.pages", "printing 5,000 lines / bare PDF writer", "x", 1.5)
def print_pages(place):
    samples = place.collect("bench_print", "pages", 5000, 7)
    return ratio(samples["print.pages"], samples["print.base"])


def long_text(place):
    """The home with a chained log of 100 MB."""
    def make():
        home = place.path("text")
        place.run(place.program("bench_text"), home, "make", 100)
        return home
    return place.once("text", make)


@figure("text.first", "chained log of 100 MB: first text, wall time", "s", 0.1)
def text_first(place):
    home = long_text(place)
    return median([place.collect("bench_text", home, "first")["text.first"][0] for _ in range(5)])


@figure("text.memory", "chained log of 100 MB: memory a byte", "bytes", 4)
def text_memory(place):
    return median(place.collect("bench_text", long_text(place), "all")["text.memory"])


# Writing


@figure("editor.replacements", "OK in the editor: replacements", "files", 5)
def editor_replacements(place):
    return Measured(place.system_calls("rename,renameat,renameat2",
                                       place.program("bench_editor"), place.fresh_store(1)))


@figure("editor.syncs", "OK in the editor: fsyncs", "calls", 10)
def editor_syncs(place):
    return Measured(place.system_calls("fsync,fdatasync", place.program("bench_editor"),
                                       place.fresh_store(1)))


class Remaking:
    """Reports and tune.bin of a log and the list beside it, in a store of their own."""

    NAMES = ("analog.rpt", "bitin.rpt", "bitout.rpt", "listlog.csv", "mainte.rpt", "meter.rpt",
             "Sys.rpt", "tune.bin")

    def __init__(self, place):
        self.place = place
        self.home = place.fresh_store(16)
        self.commands = ((place.program("bench_reports"), self.home, "once"),
                         (place.program("bench_list"), self.home, "once"))

    def paths(self):
        found = [os.path.join(folder, name) for folder, _, names in os.walk(self.home)
                 for name in names if name in self.NAMES]
        if len(found) != len(self.NAMES):
            raise RuntimeError("made are only " + ", ".join(found))
        return found

    def bytes(self):
        """Of each made file; the list is looked at, too."""
        self.place.run(self.place.program("bench_list"), self.home, "look", 16)
        return {path: open(path, "rb").read() for path in self.paths()}

    def stamps(self):
        """What a writing changes, also one in place."""
        seen = {path: os.stat(path) for path in self.paths()}
        return {path: (stat.st_ino, stat.st_mtime_ns, stat.st_ctime_ns, stat.st_size)
                for path, stat in seen.items()}

    def count(self, calls):
        return sum(self.place.system_calls(calls, *command) for command in self.commands)


def remaking(place, calls, first):
    made = Remaking(place)
    counted = made.count(calls)
    texts = made.bytes()
    if any(not text for text in texts.values()):
        raise RuntimeError("a file is empty")
    if first:
        return Measured(counted)
    stamps = made.stamps()
    counted = made.count(calls)
    if made.stamps() != stamps:
        raise RuntimeError("a file with the same bytes was touched")
    # The same commands would have made what is missing.
    for path in made.paths():
        os.remove(path)
    made.count(calls)
    if made.bytes() != texts:
        raise RuntimeError("the files are others")
    return Measured(counted)


@figure("remade.syncs", "reports, tune.bin and listlog.csv written: fsyncs", "calls", 0)
def remade_syncs(place):
    return remaking(place, "fsync,fdatasync", first=True)


@figure("remade.same", "the same when their bytes are the same: replacements", "files", 0)
def remade_same(place):
    return remaking(place, "rename,renameat,renameat2", first=False)


# Waiting


def idle_wait(place):
    return place.once("idle", lambda: place.collect("bench_wait", "idle", 6, **place.bus()))


@figure("wait.cpu", "wait for a busy host: share of a core", "%", 0.05)
def wait_cpu(place):
    return median([100 * sample for sample in idle_wait(place)["wait.cpu"]])


@figure("wait.wakeups", "wait for a busy host: wake-ups a second", "/s", 5)
def wait_wakeups(place):
    return median(idle_wait(place)["wait.wakeups"])


@figure("wait.reaction", "wait for a busy host: reaction, wall time", "ms", 5)
def wait_reaction(place):
    samples = place.collect("bench_wait", "react", 15, **place.bus())["wait.reaction"]
    return median([1000 * sample for sample in samples])


# The archive


@figure("archive", "archive of 256 logs / zip -qr", "x", 1)
def archive(place):
    home = place.path("archive")
    place.run(place.program("bench_archive"), home, "make", 256)
    root = os.path.join(home, "drives/c/QUOREX/inst1")
    out, theirs = os.path.join(home, "drives/c/out.zip"), os.path.join(home, "theirs.zip")

    def zip_program():
        place.run("rm", "-f", theirs)
        return place.measure("sh", "-c", "cd '%s' && zip -qr '%s' maintain" % (root, theirs))["cpu"]

    def ours():
        place.run("rm", "-f", out)
        return place.measure(place.program("bench_archive"), home, "add", 256)["cpu"]

    base, subject = place.in_turn(5, zip_program, ours)
    if not names_in(out, "logfile.ini") == names_in(theirs, "logfile.ini") == 256:
        raise RuntimeError("logs are missing in an archive")
    return ratio(subject, base)


def names_in(archive_path, ending):
    with zipfile.ZipFile(archive_path) as opened:
        return sum(name.endswith(ending) for name in opened.namelist())


# The content server


def uploads(place):
    """CPU times of one curl run, of the agent and of a bare handle of curl's library, each with the
    requests of 500 packages."""
    return place.once("uploads", lambda: measure_uploads(place))


def measure_uploads(place):
    program = place.program("bench_agent")
    server = place.start(program, "serve", sign="http:")

    def packages(side):
        home = tempfile.mkdtemp(dir=place.folder)
        url = server + os.path.basename(home) + side + "/"
        place.run(program, "make", home, url, 500)
        return home, url

    def expect_all_there(url, unknown=0):
        place.run(program, "expect", url, 500, unknown)

    def curl():
        home, url = packages("curl")
        requests = place.path("requests")
        with open(requests, "w", encoding="utf-8") as file:
            file.write(place.run(program, "requests", home, url))
        taken = place.measure("curl", "-K", requests)["cpu"]
        expect_all_there(url)
        return taken

    def handle():
        home, url = packages("handle")
        taken = place.measure(program, "handle", home, url)["cpu"]
        expect_all_there(url)
        return taken

    def ours():
        home, url = packages("agent")
        taken = place.measure(place.program("ecm-agent"), "--home", home, "--app",
                              os.path.join(home, "drives/c/QUOREX/qrxexe"))["cpu"]
        outbox = os.path.join(home, "drives/c/Norvane.Quorex.ECM/outbox")
        if any(not name.startswith(".") for name in os.listdir(outbox)):
            raise RuntimeError("packages are left")
        expect_all_there(url, unknown=1)  # the first, by which it learns how to log on
        return taken

    return place.in_turn(7, curl, ours, handle)


@figure("agent", "agent, 500 small packages / one curl with the same requests", "x", 1.3)
def agent(place):
    base, subject, _ = uploads(place)
    return ratio(subject, base)


@figure("agent.handle", "the same / one bare handle of curl's library", "x", None)
def agent_handle(place):
    _, subject, base = uploads(place)
    return ratio(subject, base)

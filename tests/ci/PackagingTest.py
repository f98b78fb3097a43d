# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT

# What belongs to the package and can be judged without making it. The argument RULE names one.
#   PackagingTest.py SOURCES BUILD RULE

import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

SOURCES, BUILD, RULE = sys.argv[1:4]
SKIPPED = 77


def text(*path):
    with open(os.path.join(SOURCES, *path), encoding="utf-8") as file:
        return file.read()


def check(arguments, **variables):
    with tempfile.TemporaryDirectory() as work:
        return subprocess.run([os.path.join(SOURCES, "packaging/check"), *arguments], text=True,
                              env={**os.environ, "WORK": work, **variables}, capture_output=True)


def demand(what, findings):
    if findings:
        sys.exit(f"{what}: {findings}")


# The names of packages in a list of dependencies; what the builder fills in is left out.
def names(dependencies):
    each = (entry.split("(")[0].strip() for entry in dependencies.split(","))
    return sorted(entry for entry in each if entry and not entry.startswith("${"))


def field_of_control(name):
    return names(re.search(rf"^{name}:((?:.*\n)(?: .*\n)*)", text("debian/control").split(
        "\nPackage:")[1], re.MULTILINE).group(1))


def fields_of_cpack():
    script = os.path.join(SOURCES, "packaging/CMakeLists.txt")
    lines = [line for line in open(script, encoding="utf-8")]
    start = next(at for at, line in enumerate(lines) if "CPACK_GENERATOR" in line)
    wanted = [line for line in lines[start:] if "include(CPack)" not in line]
    with tempfile.TemporaryDirectory() as folder:
        asked = os.path.join(folder, "fields.cmake")
        with open(asked, "w", encoding="utf-8") as file:
            file.write("".join(wanted))
            for field in ("DEPENDS", "RECOMMENDS", "SUGGESTS"):
                file.write(f'message("{field}=${{CPACK_DEBIAN_PACKAGE_{field}}}")\n')
        told = subprocess.run(["cmake", "-P", asked], text=True, capture_output=True, check=True)
    return dict(re.findall(r"^([A-Z]+)=(.*)$", told.stderr, re.MULTILINE))


def BothWaysNameTheSameDependencies():
    packed = fields_of_cpack()
    for field in ("Depends", "Recommends", "Suggests"):
        control, cpack = field_of_control(field), names(packed[field.upper()])
        if not control or control != cpack:
            sys.exit(f"{field}: debian/control has {control}, cpack {cpack}")


# Libraries that are loaded when they are first needed, which no tool sees in the programs.
def LibrariesThatAreLoadedLateAreDependencies():
    macros = set()
    for room in ("src", "insight", "cli", "host", "agent"):
        for folder, _, files in os.walk(os.path.join(SOURCES, room)):
            for name in files:
                if name.endswith(".cpp"):
                    macros |= set(re.findall(r"LateLibrary \w+\((\w+)\)", text(folder, name)))
    ninja = open(os.path.join(BUILD, "build.ninja"), encoding="utf-8").read()
    sonames = dict(re.findall(r'(LOGBOOK_\w+_LIBRARY)=\\+"([^"\\]+)', ninja))
    demand("no soname in the build", macros - set(sonames))
    if not macros:
        sys.exit("no library is loaded late; this rule looks at nothing")
    if not shutil.which("dpkg-query"):
        sys.exit(SKIPPED)
    depended = field_of_control("Depends")
    for macro in sorted(macros):
        found = subprocess.run(["dpkg-query", "-S", "*/" + sonames[macro]], text=True,
                               capture_output=True).stdout
        owners = {line.split(":")[0] for line in found.splitlines()}
        print(sonames[macro], "is of", *owners)
        if not owners & set(depended):
            sys.exit(f"{sonames[macro]} of {owners} is not among {depended}")


def VersionIsTheSameInEveryPaper():
    data = xml.fromstring(text("packaging/com.norvane.Quorex.Logbook.metainfo.xml"))
    release = data.find("releases/release")
    changes = re.findall(r"^## \[(\d\S*)\] - (\S+)$", text("CHANGELOG.md"), re.MULTILINE)
    versions = {
        "CMakeLists.txt": re.search(r"project\(\w+ VERSION (\S+)", text("CMakeLists.txt")).group(1),
        "CHANGELOG.md": changes[0][0],
        "debian/changelog": re.match(r"\S+ \((.*?)\)", text("debian/changelog")).group(1),
        "metainfo": release.get("version")}
    if len(set(versions.values())) != 1 or changes[0][1] != release.get("date"):
        sys.exit(f"{versions}, {changes[0][1]}, {release.get('date')}")


# What the main window is called in a language.
def title(tongue):
    return re.search(r"^112\t(.*)$", text("src/resources", tongue, "strings.txt"), re.M).group(1)


def TheMetadataNameEveryProgramAndTheVisibleEntryInEveryLanguage():
    data = xml.fromstring(text("packaging/com.norvane.Quorex.Logbook.metainfo.xml"))
    programs = {each.text for each in data.findall("provides/binary")}
    installed = set(re.search(r"foreach\(program IN ITEMS (.*?)\)",
                              text("packaging/CMakeLists.txt")).group(1).split())
    demand("not provided", installed ^ programs)
    language = "{http://www.w3.org/XML/1998/namespace}lang"
    spoken = set(re.search(r"set\(LOGBOOK_LANGUAGES (.*?)\)",
                           text("src/resources/CMakeLists.txt")).group(1).split())
    for tag in ("name", "summary"):
        told = {each.get(language, "en") for each in data.findall(tag)}
        demand(f"<{tag}> in other languages", spoken ^ told)
    for each in data.findall("name"):
        if each.text != title(each.get(language, "en")):
            sys.exit(f"{each.text} is not the title of the window")
    for launchable in data.findall("launchable"):
        if "NoDisplay=true" in text("packaging", launchable.text):
            sys.exit(f"{launchable.text} is not shown in any menu")
    for name in ("Demonstration", "Logbook"):
        entry = text(f"packaging/com.norvane.Quorex.{name}.desktop")
        for key in ("Name", "GenericName", "Comment", "Keywords"):
            told = set(re.findall(rf"^{key}\[(\w+)\]=.", entry, re.MULTILINE))
            for tongue, words in re.findall(rf"^{key}\[(\w+)\]=(.*)", entry, re.MULTILINE):
                if key == "Name" and not words.startswith(title(tongue)):
                    sys.exit(f"{key}[{tongue}] of {name} is not the title of the window")
            demand(f"{key} of {name} in other languages", (spoken - {"en"}) ^ told)


def AStepThatWantsABuildFailsWithoutOne():
    for step, tool in (("lintian", "lintian"), ("symbols", "readelf"), ("cpack", "cpack"),
                       ("again", "dh")):
        done = check([step])
        if shutil.which(tool):
            if done.returncode != 1 or "FAIL" not in done.stdout or "OK" in done.stdout:
                sys.exit(f"{step}: {done}")
        elif "SKIP" not in done.stdout:
            sys.exit(f"{step}: {done}")


def EveryStepIsToldWhereNoPackageCanBeBuilt():
    with tempfile.TemporaryDirectory() as tools:
        for name in ("bash", "cat", "dirname", "env", "git", "grep", "mkdir", "mktemp", "rm", "sed"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        done = check(["all"], PATH=tools)
    told = re.findall(r"^SKIP +(\w+) \((.*)\)$", done.stdout, re.MULTILINE)
    expected = [("build", "dpkg-buildpackage is not here"),
                ("metadata", "desktop-file-validate is not here"),
                *((step, "there is no build")
                  for step in ("lintian", "symbols", "cpack", "again", "chroot"))]
    if told != expected or done.returncode != 0:
        sys.exit(f"{told}\n{done}")


# A terminal has 80 columns.
def HelpOfEveryProgramFitsATerminal():
    asked = [["logbook"], ["ecm-agent"], ["logbookctl"], ["quorex-host"],
             *(["quorex-host", verb] for verb in ("demo", "fill", "init", "run", "snapshot"))]
    for program, *verb in asked:
        told = subprocess.run([os.path.join(BUILD, "bin", program), *verb, "--help"], text=True,
                              env={"HOME": "/h", "QT_QPA_PLATFORM": "offscreen"},
                              capture_output=True, check=True).stdout
        if not told:
            sys.exit(f"{program} tells nothing")
        demand([program, *verb], [line for line in told.splitlines() if len(line) > 80])


def AskedForHelpItSucceedsAndAWrongStepIsWrongUse():
    helped, wrong = check(["--help"]), check(["nonsense"])
    if helped.returncode != 0 or "packaging/check" not in helped.stdout:
        sys.exit(str(helped))
    if wrong.returncode != 2 or wrong.stdout or "packaging/check" not in wrong.stderr:
        sys.exit(str(wrong))


# debhelper takes whatever looks like one for the changelog of the package.
def ThePaperOfChangesStaysBesideTheChangelogOfThePackage():
    if not shutil.which("dh"):
        print("SKIP  debhelper is not here")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory() as tree:
        shutil.copytree(os.path.join(SOURCES, "debian"), os.path.join(tree, "debian"))
        papers = os.path.join(tree, "debian/maintenance-logbook/usr/share/doc/maintenance-logbook")
        os.makedirs(papers)
        paper = shutil.copy(os.path.join(SOURCES, "CHANGELOG.md"), papers)
        subprocess.run(["debian/rules", "override_dh_installchangelogs"], cwd=tree, check=True)
        if not os.path.exists(paper):
            sys.exit(f"only {os.listdir(papers)}")
        with open(os.path.join(papers, "changelog"), encoding="utf-8") as file:
            if file.read() != text("debian/changelog"):
                sys.exit("the package has another changelog")


def can_be_tried(*before, **variables):
    return subprocess.run([*before, os.path.join(SOURCES, "packaging/try-installed"), "--can"],
                          text=True, env={**os.environ, **variables}, capture_output=True)


def ATrialThatCannotBeMadeTellsWhatIsMissing():
    reasons = []
    if os.geteuid() != 0:
        reasons.append((can_be_tried(), "wants root"))
    else:
        reasons.append((can_be_tried("setpriv", "--reuid=65534", "--clear-groups"), "wants root"))
        with tempfile.TemporaryDirectory() as tools:
            for name in ("bash", "dirname", "id", "python3"):
                os.symlink(shutil.which(name), os.path.join(tools, name))
            reasons.append((can_be_tried(PATH=tools), "debootstrap is not here"))
        if shutil.which("debootstrap") and not subprocess.call(["unshare", "--net", "true"]):
            reasons.append((can_be_tried("unshare", "--net"), r"the mirror \S+ is out of reach"))
    for done, reason in reasons:
        expected = rf"SKIP  package in a bare system \({reason}\)\n"
        if not re.fullmatch(expected, done.stdout) or done.stderr or done.returncode != 0:
            sys.exit(f"{reason}: {done}")


# What packaging/check says of the last commit. The folder stays for whoever looks into a failure,
# and is made anew each time; its place stays the same, so that the compiler's cache knows the files.
def TheLastCommitIsBuiltInstalledTriedAndPurgedInABareSystem():
    possible = can_be_tried()
    if not possible.stdout.startswith("OK"):
        print(possible.stdout, possible.stderr)
        sys.exit(SKIPPED)
    if subprocess.call(["git", "-C", SOURCES, "rev-parse", "--quiet", "--verify", "HEAD"]):
        print("SKIP  there is no commit to build")
        sys.exit(SKIPPED)
    work = os.path.join(BUILD, "package-trial")
    shutil.rmtree(work, ignore_errors=True)
    done = check(["build", "lintian", "symbols", "chroot"], WORK=work)
    print(done.stdout, done.stderr)
    if done.returncode == 0 and "SKIP  build" in done.stdout:
        sys.exit(SKIPPED)
    demand("not tried", [step for step in ("dpkg-buildpackage", "the package is installed",
                                           "it arrives when the network is back",
                                           "nothing is left behind")
                         if f"OK    {step}\n" not in done.stdout])
    if done.returncode != 0:
        sys.exit("a step has failed")


globals()[RULE]()

#!/usr/bin/env python3
"""Checks the program as a screen reader meets it.

Makes a throw-away demo install, starts the program there on the X display and the D-Bus session
with its AT-SPI bus that run.sh gives it, reads the window tree and works the menus through their
actions.

Exit status: 0 passed, 1 failed, 77 skipped.
"""

import argparse
import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIP = 77

try:
    import pyatspi
    from gi.repository import GLib
except (ImportError, ValueError):
    print("SKIP: python3-pyatspi is not installed")
    sys.exit(SKIP)

# The tree reading the screenshot scripts use too.
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..",
                                "scripts", "lib"))
from atspi import (application, children, descendants, find_all, safe,  # noqa: E402
                   showing, texts, wait, windows)

SAMPLE_LIST = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts",
                           "lib", "sample-files.txt")
with open(SAMPLE_LIST) as sample_list:
    SAMPLE_FILES = [line.split()[0] for line in sample_list if line.strip() and line[0] != "#"]
SETTINGS_FILE = "NVbackuptool.ini"

MAIN_TITLE = "Norvale Backup & Restore "
HELP_TITLE = "Help - Norvale Backup"
HELP_FILE = "NV BU tool.chm"
HELP_HEADING = "Norvale Backup: gebruikershandleiding"
APP_NAME = "Norvale Backup"

# Role and accessible name of the controls a user works the main window with.
MAIN_CONTROLS = [
    ("push button", "Back Up"),
    ("push button", "Voeg bestand toe aan lijst"),
    ("push button", "Verwijder bestand uit lijst"),
    ("list", "Geselecteerde bestanden"),
    ("label", "Onderstaande bestanden worden naar de backupschijf verzonden"),
]

MENUS = {
    "Bestand": ["Voeg bestand toe", "Verwijder uit lijst", "Afsluiten"],
    "Uitvoeren": ["Back up", "Terugzetten backup (stap voor stap)"],
    "Help": ["Help F1", "About"],
}

# Controls a user can reach with the keyboard; each needs a name to be spoken by.
NAMED_ROLES = {"push button", "list", "text", "combo box", "check box", "radio button"}

START_TIMEOUT = 20
WINDOW_TIMEOUT = 10
EXIT_TIMEOUT = 5
# How long a menu action may take to answer; libatspi's own defaults are 0.8 s, and 15 s while
# the program is young.
ACTION_REPLY_MS = 2000
DEFAULT_TIMEOUTS_MS = (800, 15000)

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36


class Stop(Exception):
    """A fault that leaves nothing sensible to check after it; without a text, already reported."""


class Report:
    failures = 0

    def check(self, passed, what, detail=""):
        if passed:
            print(f"ok    {what}")
        else:
            self.failures += 1
            print(f"FAIL  {what}" + (f": {detail}" if detail else ""))
        return passed

    def require(self, passed, what, detail=""):
        if not self.check(passed, what, detail):
            raise Stop()


def prctl(option, value):
    ctypes.CDLL("libc.so.6", use_errno=True).prctl(option, value)


def die_with_parent():
    """Has a child killed when this script dies, however it dies."""
    prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def adopted_children():
    """(pid, state) of the processes left behind by the servers this script started."""
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat") as f:
                # State and parent follow the command name, in parentheses and maybe with blanks.
                state, parent = f.read().rsplit(")", 1)[1].split()[:2]
        except OSError:
            continue
        if int(parent) == os.getpid():
            found.append((int(entry), state))
    return found


def bus_name_has_owner(name):
    answer = subprocess.run(
        ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
         "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", f"string:{name}"],
        capture_output=True, text=True,
    )
    return answer.returncode == 0 and "boolean true" in answer.stdout


class Session:
    """The demo install and the processes the check starts; stop() ends them all."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="nv-a11y-")
        self.program_dir = os.path.join(self.folder, "Norvale")
        self.processes = []
        self.env = dict(os.environ)

    def make_install(self, program):
        stick = os.path.join(self.folder, "stick")
        os.makedirs(self.program_dir)
        os.makedirs(stick)
        for name in SAMPLE_FILES:
            with open(os.path.join(self.program_dir, name), "wb") as f:
                f.write(b"".join(f"Demo {name} regel {i}\r\n".encode() for i in range(1, 6)))
        shutil.copy2(program, os.path.join(self.program_dir, "norvale-backup"))
        shutil.copy2(os.path.join(os.path.dirname(program), HELP_FILE), self.program_dir)

        for name in ("XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"):
            self.env[name] = os.path.join(self.folder, name.lower())
            os.makedirs(self.env[name], mode=0o700)
        self.env.update({
            "NVBACKUP_DRIVES": f"E={stick}",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_ACCESSIBILITY": "1",
            "QT_QPA_PLATFORM": "xcb",
            "GSETTINGS_BACKEND": "memory",
        })
        for name in ("WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS"):
            self.env.pop(name, None)
            os.environ.pop(name, None)

    def start(self, command, **options):
        process = subprocess.Popen(command, env=self.env, preexec_fn=die_with_parent, **options)
        self.processes.append(process)
        return process

    def start_program(self):
        return self.start([os.path.join(self.program_dir, "norvale-backup")], cwd=self.program_dir)

    def stop(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(timeout=3)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        deadline = time.monotonic() + 3
        while (left := adopted_children()) and time.monotonic() < deadline:
            for pid, state in left:
                if state != "Z":
                    os.kill(pid, signal.SIGTERM)
                os.waitpid(pid, os.WNOHANG)
            time.sleep(0.1)
        shutil.rmtree(self.folder, ignore_errors=True)


def press(acc):
    """Works the control's action "Press", as a screen reader does."""
    action = acc.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    if "Press" not in names:
        raise Stop(f"{acc.getRoleName()} '{acc.name}' has no action Press ({names})")
    action.doAction(names.index("Press"))


def window_list(app):
    return [(safe(w.getRoleName), safe(lambda: w.name)) for w in children(app)]


# --- The checks


def check_main_window(report, app, version):
    frames = windows(app, "frame", MAIN_TITLE)
    report.require(len(frames) == 1, f"main window: frame '{MAIN_TITLE}'",
                   f"windows are {window_list(app)}")
    frame = frames[0]

    for role, name in MAIN_CONTROLS:
        found = [acc for acc in find_all(frame, role, name) if showing(acc)]
        report.check(len(found) == 1, f"{role} '{name}' is shown")

    for files in find_all(frame, "list", "Geselecteerde bestanden")[:1]:
        rows = [row.name for row in children(files)]
        expected = sorted(SAMPLE_FILES + [SETTINGS_FILE])
        report.check(sorted(row.rsplit("\\", 1)[-1] for row in rows) == expected,
                     f"the list holds {len(expected)} rows: the sample files and {SETTINGS_FILE}",
                     f"rows are {rows}")

    panels = [acc.name for bar in find_all(frame, "status bar") for acc in children(bar)]
    for text in ("Aantal files: 9", f"Versie {version}"):
        report.check(text in panels, f"status bar reads '{text}'", f"panels are {panels}")

    unnamed = [role for acc in descendants(frame)
               if (role := safe(acc.getRoleName)) in NAMED_ROLES and showing(acc)
               and not (safe(lambda: acc.name) or "").strip()]
    report.check(not unnamed, "every shown control a user can reach has a name",
                 f"unnamed: {unnamed}")
    return frame


def check_menus(report, frame):
    bars = find_all(frame, "menu bar")
    if not report.check(len(bars) == 1, "the main window has one menu bar"):
        return
    tops = [acc for acc in children(bars[0]) if safe(acc.getRoleName) == "menu item"]
    names = [acc.name for acc in tops]
    report.check(names == list(MENUS), f"menus {list(MENUS)}", f"menus are {names}")
    for top in tops:
        if top.name in MENUS:
            items = [acc.name for acc in find_all(top, "menu item")]
            report.check(items == MENUS[top.name], f"menu {top.name}: {MENUS[top.name]}",
                         f"items are {items}")


def check_about(report, app, frame, version):
    item = find_all(frame, "menu item", "About")
    if not report.check(len(item) == 1, "menu item 'About' exists"):
        return
    started = time.monotonic()
    pyatspi.setTimeout(ACTION_REPLY_MS, ACTION_REPLY_MS)
    try:
        press(item[0])
        answered = True
    except GLib.GError:
        answered = False
    finally:
        pyatspi.setTimeout(*DEFAULT_TIMEOUTS_MS)
    report.check(answered, "Help > About answers its action at once",
                 f"no answer within {ACTION_REPLY_MS} ms; a screen reader waits that long")

    dialogs = wait(lambda: windows(app, "dialog"), WINDOW_TIMEOUT)
    if not report.check(len(dialogs) == 1, "Help > About opens one dialog",
                        f"windows are {window_list(app)}"):
        return
    about = dialogs[0]
    print(f"      About window '{about.name}' after {time.monotonic() - started:.1f} s")
    read = texts(about)
    for text in ("Norvale Backup Tool", f"Versie {version}", "Voor vragen, mail naar:"):
        report.check(text in read, f"About window reads '{text}'", f"texts are {read}")

    mail = [b for b in find_all(about, "push button") if "@" in (b.name or "")]
    report.check(len(mail) == 1, "the mail address is a button a screen reader can press")

    ok = find_all(about, "push button", "OK")
    if report.check(len(ok) == 1, "About window has an 'OK' button"):
        press(ok[0])
        report.check(wait(lambda: not windows(app, "dialog"), WINDOW_TIMEOUT),
                     "OK closes the About window")


def key(keysym):
    pyatspi.Registry.generateKeyboardEvent(keysym, None, pyatspi.KEY_SYM)


def check_help(report, app):
    key(0xFFBE)  # F1
    helps = wait(lambda: windows(app, "frame", HELP_TITLE), WINDOW_TIMEOUT)
    if not report.check(len(helps) == 1, f"F1 opens the help window '{HELP_TITLE}'",
                        f"windows are {window_list(app)}"):
        return
    help_window = helps[0]
    pages = [acc for acc in find_all(help_window, None, "Helptekst") if showing(acc)]
    shown = safe(lambda: pages[0].queryText().getText(0, -1), "") if pages else ""
    report.check(shown.startswith(HELP_HEADING),
                 f"the help window shows the guide's first heading '{HELP_HEADING}'",
                 f"it reads {shown[:80]!r}")
    contents = [acc for acc in find_all(help_window, None, "Inhoud") if showing(acc)]
    report.check(bool(contents) and HELP_HEADING in texts(contents[0]),
                 "the help window's contents name the guide's first page")
    for name in ("Terug", "Vooruit"):
        report.check(len(find_all(help_window, "push button", name)) == 1,
                     f"the help window has a button '{name}'")
    unnamed = [role for acc in descendants(help_window)
               if (role := safe(acc.getRoleName)) in NAMED_ROLES and showing(acc)
               and not (safe(lambda: acc.name) or "").strip()]
    report.check(not unnamed, "every control of the help window has a name",
                 f"unnamed: {unnamed}")
    key(0xFF1B)  # Escape
    report.check(wait(lambda: not windows(app, "frame", HELP_TITLE), WINDOW_TIMEOUT),
                 "Escape closes the help window")


def check_exit(report, frame, program):
    item = find_all(frame, "menu item", "Afsluiten")
    if not report.check(len(item) == 1, "menu item 'Afsluiten' exists"):
        return
    press(item[0])
    try:
        status = program.wait(timeout=EXIT_TIMEOUT)
        detail = f"exit status {status}"
    except subprocess.TimeoutExpired:
        status, detail = None, "it still runs"
    report.check(status == 0, f"Bestand > Afsluiten ends the program within {EXIT_TIMEOUT} s",
                 detail)


def run_checks(report, session, version):
    started = time.monotonic()
    program = session.start_program()
    app = wait(lambda: program.poll() is not None or application(program.pid), START_TIMEOUT,
               step=0.25)
    report.require(program.poll() is None, "the program keeps running",
                   f"exit status {program.returncode}")
    report.require(app, f"the program appears on the AT-SPI desktop within {START_TIMEOUT} s")
    print(f"      application '{app.name}' after {time.monotonic() - started:.1f} s")

    # The splash stands over the main window for two seconds after the start.
    report.check(wait(lambda: not windows(app, "frame", APP_NAME), WINDOW_TIMEOUT),
                 f"the splash goes within {WINDOW_TIMEOUT} s")

    frame = check_main_window(report, app, version)
    check_menus(report, frame)
    check_help(report, app)
    check_about(report, app, frame, version)
    check_exit(report, frame, program)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="the built norvale-backup")
    parser.add_argument("version", help="the version the program shows, as 1.7.1")
    args = parser.parse_args()

    # A kill from the test driver still runs the clean-up below.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    die_with_parent()
    prctl(PR_SET_CHILD_SUBREAPER, 1)

    report = Report()
    started = time.monotonic()
    session = Session()
    try:
        session.make_install(args.program)
        if not bus_name_has_owner("org.a11y.Bus"):
            raise Stop("no AT-SPI bus: run through run.sh, which starts the display and the buses")
        run_checks(report, session, args.version)
    except Stop as stop:
        if stop.args:
            report.check(False, stop.args[0])
    finally:
        session.stop()
    took = time.monotonic() - started
    if report.failures:
        print(f"{report.failures} check(s) failed ({took:.1f} s)")
        return 1
    print(f"all checks passed ({took:.1f} s)")
    return 0


if __name__ == "__main__":
    sys.exit(main())

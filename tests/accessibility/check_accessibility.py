#!/usr/bin/env python3
"""Checks the program as a screen reader meets it: a throw-away demo install, the program started
there on run.sh's display and AT-SPI bus, its window tree read and its menus worked through their
actions. Exit status: 0 passed, 1 failed, 77 skipped."""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

try:
    import pyatspi
    from gi.repository import GLib
except (ImportError, ValueError):
    print("SKIP: python3-pyatspi is not installed")
    sys.exit(77)

# The tree reading the screenshot scripts use too.
LIB = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "lib")
sys.path.insert(0, LIB)
from atspi import (application, children, descendants, find_all, safe,  # noqa: E402
                   showing, texts, wait, windows)

with open(os.path.join(LIB, "sample-files.txt")) as sample_list:
    SAMPLE_FILES = [line.split()[0] for line in sample_list if line.strip() and line[0] != "#"]

MAIN_TITLE, APP_NAME = "Norvale Backup & Restore ", "Norvale Backup"
HELP_TITLE, HELP_FILE = "Help - Norvale Backup", "NV BU tool.chm"
HELP_HEADING = "Norvale Backup: gebruikershandleiding"
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
START_TIMEOUT, WINDOW_TIMEOUT, EXIT_TIMEOUT = 20, 10, 5
# How long a menu action may take to answer; libatspi's own defaults are 0.8 s, and 15 s while
# the program is young.
ACTION_REPLY_MS, DEFAULT_TIMEOUTS_MS = 2000, (800, 15000)
PR_SET_PDEATHSIG = 1


class Stop(Exception):
    """A fault that leaves nothing sensible to check after it; without a text, already reported."""


failures = 0


def check(passed, what, detail=""):
    global failures
    failures += not passed
    print(f"ok    {what}" if passed else f"FAIL  {what}" + (f": {detail}" if detail else ""))
    return passed


def require(passed, what, detail=""):
    if not check(passed, what, detail):
        raise Stop()


def prctl(option, value):
    ctypes.CDLL("libc.so.6", use_errno=True).prctl(option, value)


class Session:
    """The demo install and the program started on it; stop() ends the program."""

    def __init__(self, program):
        self.folder = tempfile.mkdtemp(prefix="nv-a11y-")
        self.program_dir = os.path.join(self.folder, "Norvale")
        self.process = None
        stick = os.path.join(self.folder, "stick")
        os.makedirs(self.program_dir)
        os.makedirs(stick)
        for name in SAMPLE_FILES:
            with open(os.path.join(self.program_dir, name), "wb") as f:
                f.write(b"".join(f"Demo {name} regel {i}\r\n".encode() for i in range(1, 6)))
        shutil.copy2(program, os.path.join(self.program_dir, "norvale-backup"))
        shutil.copy2(os.path.join(os.path.dirname(program), HELP_FILE), self.program_dir)
        self.env = dict(os.environ, NVBACKUP_DRIVES=f"E={stick}", QT_ACCESSIBILITY="1",
                        QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb",
                        GSETTINGS_BACKEND="memory")
        for name in ("XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"):
            self.env[name] = os.path.join(self.folder, name.lower())
            os.makedirs(self.env[name], mode=0o700)
        for name in ("WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS"):
            self.env.pop(name, None)
            os.environ.pop(name, None)

    def start(self):
        self.process = subprocess.Popen(
            [os.path.join(self.program_dir, "norvale-backup")], cwd=self.program_dir, env=self.env,
            preexec_fn=lambda: prctl(PR_SET_PDEATHSIG, signal.SIGTERM))
        return self.process

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(timeout=3)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def press(acc):
    """Works the control's action "Press", as a screen reader does."""
    action = acc.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    if "Press" not in names:
        raise Stop(f"{acc.getRoleName()} '{acc.name}' has no action Press ({names})")
    action.doAction(names.index("Press"))


def key(keysym):
    pyatspi.Registry.generateKeyboardEvent(keysym, None, pyatspi.KEY_SYM)


def window_list(app):
    return [(safe(w.getRoleName), safe(lambda: w.name)) for w in children(app)]


def check_named(window, what):
    """Every shown control a user can reach has a name, and no label borrows its frame's title:
    one spoken by the title of the frame it stands in shows nothing of its own."""
    shown = [acc for acc in descendants(window) if showing(acc)]
    unnamed = [role for acc in shown if (role := safe(acc.getRoleName)) in NAMED_ROLES
               and not (safe(lambda: acc.name) or "").strip()]
    check(not unnamed, f"every shown control of the {what} a user can reach has a name",
          f"unnamed: {unnamed}")
    borrowed = [acc.name for acc in shown if safe(acc.getRoleName) == "label" and acc.name
                and acc.name == safe(lambda: acc.parent.name)]
    check(not borrowed, f"no label of the {what} is spoken by its frame's title",
          f"labels named like their frame: {borrowed}")


def check_main_window(app, version):
    frames = windows(app, "frame", MAIN_TITLE)
    require(len(frames) == 1, f"main window: frame '{MAIN_TITLE}'",
            f"windows are {window_list(app)}")
    frame = frames[0]
    for role, name in MAIN_CONTROLS:
        check(len([a for a in find_all(frame, role, name) if showing(a)]) == 1,
              f"{role} '{name}' is shown")
    for files in find_all(frame, "list", "Geselecteerde bestanden")[:1]:
        rows = [row.name for row in children(files)]
        expected = sorted(SAMPLE_FILES + ["NVbackuptool.ini"])
        check(sorted(row.rsplit("\\", 1)[-1] for row in rows) == expected,
              f"the list holds {len(expected)} rows: the sample files and the settings file",
              f"rows are {rows}")
    panels = [acc.name for bar in find_all(frame, "status bar") for acc in children(bar)]
    for text in ("Aantal files: 9", f"Versie {version}"):
        check(text in panels, f"status bar reads '{text}'", f"panels are {panels}")
    check_named(frame, "main window")

    bars = find_all(frame, "menu bar")
    if check(len(bars) == 1, "the main window has one menu bar"):
        tops = [acc for acc in children(bars[0]) if safe(acc.getRoleName) == "menu item"]
        check([acc.name for acc in tops] == list(MENUS), f"menus {list(MENUS)}",
              f"menus are {[acc.name for acc in tops]}")
        for top in (top for top in tops if top.name in MENUS):
            items = [acc.name for acc in find_all(top, "menu item")]
            check(items == MENUS[top.name], f"menu {top.name}: {MENUS[top.name]}",
                  f"items are {items}")
    return frame


def check_help(app):
    key(0xFFBE)  # F1
    helps = wait(lambda: windows(app, "frame", HELP_TITLE), WINDOW_TIMEOUT)
    if not check(len(helps) == 1, f"F1 opens the help window '{HELP_TITLE}'",
                 f"windows are {window_list(app)}"):
        return
    pages = [acc for acc in find_all(helps[0], None, "Helptekst") if showing(acc)]
    shown = safe(lambda: pages[0].queryText().getText(0, -1), "") if pages else ""
    check(shown.startswith(HELP_HEADING), f"the help window shows its heading '{HELP_HEADING}'",
          f"it reads {shown[:80]!r}")
    check_named(helps[0], "help window")
    key(0xFF1B)  # Escape
    check(wait(lambda: not windows(app, "frame", HELP_TITLE), WINDOW_TIMEOUT),
          "Escape closes the help window")


def check_about(app, frame, version):
    item = find_all(frame, "menu item", "About")
    if not check(len(item) == 1, "menu item 'About' exists"):
        return
    pyatspi.setTimeout(ACTION_REPLY_MS, ACTION_REPLY_MS)
    try:
        press(item[0])
        answered = True
    except GLib.GError:
        answered = False
    finally:
        pyatspi.setTimeout(*DEFAULT_TIMEOUTS_MS)
    check(answered, "Help > About answers its action at once",
          f"no answer within {ACTION_REPLY_MS} ms; a screen reader waits that long")
    dialogs = wait(lambda: windows(app, "dialog"), WINDOW_TIMEOUT)
    if not check(len(dialogs) == 1, "Help > About opens one dialog",
                 f"windows are {window_list(app)}"):
        return
    about, read = dialogs[0], texts(dialogs[0])
    for text in ("Norvale Backup Tool", f"Versie {version}", "Voor vragen, mail naar:"):
        check(text in read, f"About window reads '{text}'", f"texts are {read}")
    check(len([b for b in find_all(about, "push button") if "@" in (b.name or "")]) == 1,
          "the mail address is a button a screen reader can press")
    ok = find_all(about, "push button", "OK")
    if check(len(ok) == 1, "About window has an 'OK' button"):
        press(ok[0])
        check(wait(lambda: not windows(app, "dialog"), WINDOW_TIMEOUT),
              "OK closes the About window")


def run_checks(session, version):
    program = session.start()
    app = wait(lambda: program.poll() is not None or application(program.pid), START_TIMEOUT,
               step=0.25)
    require(program.poll() is None, "the program keeps running",
            f"exit status {program.returncode}")
    require(app, f"the program appears on the AT-SPI desktop within {START_TIMEOUT} s")

    # The splash stands over the main window for two seconds after the start.
    check(wait(lambda: not windows(app, "frame", APP_NAME), WINDOW_TIMEOUT),
          f"the splash goes within {WINDOW_TIMEOUT} s")

    frame = check_main_window(app, version)
    check_help(app)
    check_about(app, frame, version)
    item = find_all(frame, "menu item", "Afsluiten")
    if check(len(item) == 1, "menu item 'Afsluiten' exists"):
        press(item[0])
        try:
            status = program.wait(timeout=EXIT_TIMEOUT)
        except subprocess.TimeoutExpired:
            status = "none: it still runs"
        check(status == 0, f"Bestand > Afsluiten ends the program within {EXIT_TIMEOUT} s",
              f"exit status {status}")


def main(program, version):
    # A kill from the test driver still runs the clean-up below.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    prctl(PR_SET_PDEATHSIG, signal.SIGTERM)
    started = time.monotonic()
    session = Session(program)
    try:
        bus = subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
             "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", "string:org.a11y.Bus"],
            capture_output=True, text=True)
        if bus.returncode != 0 or "boolean true" not in bus.stdout:
            raise Stop("no AT-SPI bus: run through run.sh, which starts the display and the buses")
        run_checks(session, version)
    except Stop as stop:
        if stop.args:
            check(False, stop.args[0])
    finally:
        session.stop()
    print(f"{failures} check(s) failed" if failures else "all checks passed",
          f"({time.monotonic() - started:.1f} s)")
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(f"usage: {sys.argv[0]} PROGRAM VERSION (the version the program shows, 1.7.1)")
    sys.exit(main(*sys.argv[1:]))

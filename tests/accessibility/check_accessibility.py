#!/usr/bin/env python3
"""Checks the program as a screen reader meets it.

Makes a throw-away demo install, starts the program there under a private X display, D-Bus
session and AT-SPI bus, reads the window tree and works the menus through their actions.

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

SAMPLE_FILES = [
    "NV_Ledger01.mdb",
    "NV_Lists97.mdb",
    "panels.ini",
    "NV_Entity.NVD",
    "Nota.ini",
    "NV.ini",
    "Refresh.ini",
    "NV_stock.NVD",
]
SETTINGS_FILE = "NVbackuptool.ini"

MAIN_TITLE = "Norvale Backup & Restore "
APP_NAME = "Norvale Backup"

# Role, accessible name and object name of the controls a user works the main window with.
MAIN_CONTROLS = [
    ("push button", "Back Up", "Cmd_Backup"),
    ("push button", "Voeg bestand toe aan lijst", "CmdSelectFiles"),
    ("push button", "Verwijder bestand uit lijst", "CmdVerwijder"),
    ("list", "Geselecteerde bestanden", "LstSelectedFiles"),
    ("label", "Onderstaande bestanden worden naar de backupschijf verzonden", "Label1"),
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


class Failed(Exception):
    """A fault that leaves nothing sensible to check after it."""


class Stop(Exception):
    """A failed check, already reported, that leaves nothing sensible to check after it."""


class Report:
    def __init__(self):
        self.failures = 0

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

    def note(self, text):
        print(f"note  {text}")


def prctl(option, value):
    ctypes.CDLL("libc.so.6", use_errno=True).prctl(option, value)


def die_with_parent():
    """Has a child killed when this script dies, however it dies."""
    prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


def adopted_children():
    """The processes left behind by the servers this script started, which it adopts."""
    me = os.getpid()
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat") as f:
                stat = f.read()
        except OSError:
            continue
        # State and parent follow the command name, which is in parentheses and may hold blanks.
        state, parent = stat.rsplit(")", 1)[1].split()[:2]
        if int(parent) == me:
            found.append((int(entry), state))
    return found


def wait_until(condition, timeout, step=0.1):
    deadline = time.monotonic() + timeout
    while True:
        result = condition()
        if result or time.monotonic() > deadline:
            return result
        time.sleep(step)


class Session:
    """The demo install and the processes the check starts; stop() ends them all."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="nv-a11y-")
        self.program_dir = os.path.join(self.folder, "Norvale")
        self.stick = os.path.join(self.folder, "stick")
        self.processes = []
        self.env = dict(os.environ)

    def make_install(self, program):
        os.makedirs(self.program_dir)
        os.makedirs(self.stick)
        for name in SAMPLE_FILES:
            with open(os.path.join(self.program_dir, name), "wb") as f:
                for line in range(1, 6):
                    f.write(f"Demo {name} regel {line}\r\n".encode("ascii"))
        shutil.copy2(program, os.path.join(self.program_dir, "norvale-backup"))

    def make_environment(self):
        for name in ("XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"):
            self.env[name] = os.path.join(self.folder, name.lower())
            os.makedirs(self.env[name], mode=0o700)
        self.env.update(
            {
                "NVBACKUP_DRIVES": f"E={self.stick}",
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                "QT_ACCESSIBILITY": "1",
                "QT_QPA_PLATFORM": "xcb",
                "GSETTINGS_BACKEND": "memory",
            }
        )
        for name in ("WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS"):
            self.env.pop(name, None)
            os.environ.pop(name, None)

    def start(self, command, **options):
        process = subprocess.Popen(command, env=self.env, preexec_fn=die_with_parent, **options)
        self.processes.append(process)
        return process

    def start_and_read(self, command, what):
        """Starts a server that writes where it can be reached to the file descriptor in command."""
        read_end, write_end = os.pipe()
        command = [part.replace("{fd}", str(write_end)) for part in command]
        self.start(command, pass_fds=[write_end], stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            answer = pipe.readline().strip()
        if not answer:
            raise Failed(f"{what} did not start")
        return answer

    def start_display(self):
        number = self.start_and_read(
            # Without -noreset the server resets when its last client leaves, and refuses the next
            # for a moment.
            ["Xvfb", "-displayfd", "{fd}", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
             "-noreset"],
            "Xvfb",
        )
        self.set_env("DISPLAY", f":{number}")

    def start_bus(self, launcher):
        address = self.start_and_read(
            ["dbus-daemon", "--session", "--nofork", "--print-address={fd}"], "dbus-daemon"
        )
        self.set_env("DBUS_SESSION_BUS_ADDRESS", address)
        self.start([launcher, "--launch-immediately", "--a11y=1"], stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)
        if not wait_until(lambda: bus_name_has_owner("org.a11y.Bus"), WINDOW_TIMEOUT):
            raise Failed("the AT-SPI bus did not start")

    def set_env(self, name, value):
        # libatspi in this script finds the bus through these: they must be the private ones.
        self.env[name] = value
        os.environ[name] = value

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


def bus_name_has_owner(name):
    answer = subprocess.run(
        ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
         "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", f"string:{name}"],
        capture_output=True, text=True,
    )
    return answer.returncode == 0 and "boolean true" in answer.stdout


# --- The tree as AT-SPI gives it; a window that closes meanwhile counts as not there.


def children(acc):
    try:
        count = acc.childCount
    except GLib.GError:
        return
    for i in range(count):
        try:
            child = acc.getChildAtIndex(i)
        except GLib.GError:
            continue
        if child is not None:
            yield child


def descendants(acc):
    for child in children(acc):
        yield child
        yield from descendants(child)


def describe(acc):
    try:
        return acc.getRoleName(), acc.name
    except GLib.GError:
        return None, None


def matches(acc, role, name):
    given_role, given_name = describe(acc)
    return given_role == role and (name is None or given_name == name)


def find_all(root, role, name=None):
    return [acc for acc in descendants(root) if matches(acc, role, name)]


def spoken_texts(root):
    """Every name and text content under root: what a screen reader can read out."""
    texts = []
    for acc in descendants(root):
        if acc.name:
            texts.append(acc.name)
        try:
            text = acc.queryText()
        except NotImplementedError:
            continue
        content = text.getText(0, -1)
        if content:
            texts.append(content)
    return texts


def is_showing(acc):
    return acc.getState().contains(pyatspi.STATE_SHOWING)


def press(acc, action_name):
    action = acc.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    if action_name not in names:
        raise Failed(f"{acc.getRoleName()} '{acc.name}' has no action {action_name} ({names})")
    return action.doAction(names.index(action_name))


def find_application(pid):
    desktop = pyatspi.Registry.getDesktop(0)
    for app in children(desktop):
        try:
            if app.get_process_id() == pid:
                return app
        except GLib.GError:
            continue
    return None


def windows(app, role, name=None):
    return [window for window in children(app) if matches(window, role, name)]


def window_list(app):
    return [describe(window) for window in children(app)]


# --- The checks


def check_main_window(report, app, version):
    frames = windows(app, "frame", MAIN_TITLE)
    report.require(len(frames) == 1, f"main window: frame '{MAIN_TITLE}'",
                   f"windows are {window_list(app)}")
    frame = frames[0]

    for role, name, _ in MAIN_CONTROLS:
        found = [acc for acc in find_all(frame, role, name) if is_showing(acc)]
        report.check(len(found) == 1, f"{role} '{name}' is shown")

    lists = find_all(frame, "list", "Geselecteerde bestanden")
    if lists:
        rows = [row.name for row in children(lists[0])]
        expected = sorted(SAMPLE_FILES + [SETTINGS_FILE])
        report.check(
            sorted(row.rsplit("\\", 1)[-1] for row in rows) == expected,
            f"the list holds {len(expected)} rows: the sample files and {SETTINGS_FILE}",
            f"rows are {rows}",
        )

    bars = find_all(frame, "status bar")
    panels = [acc.name for bar in bars for acc in children(bar)]
    for text in ("Aantal files: 9", f"Versie {version}"):
        report.check(text in panels, f"status bar reads '{text}'", f"panels are {panels}")

    unnamed = [
        acc.getRoleName() for acc in descendants(frame)
        if acc.getRoleName() in NAMED_ROLES and is_showing(acc) and not acc.name.strip()
    ]
    report.check(not unnamed, "every shown control a user can reach has a name",
                 f"unnamed: {unnamed}")
    return frame


def check_menus(report, frame):
    bars = find_all(frame, "menu bar")
    if not report.check(len(bars) == 1, "the main window has one menu bar"):
        return
    tops = [acc for acc in children(bars[0]) if acc.getRoleName() == "menu item"]
    report.check([acc.name for acc in tops] == list(MENUS), f"menus {list(MENUS)}",
                 f"menus are {[acc.name for acc in tops]}")
    for top in tops:
        if top.name not in MENUS:
            continue
        items = [acc.name for acc in find_all(top, "menu item")]
        report.check(items == MENUS[top.name], f"menu {top.name}: {MENUS[top.name]}",
                     f"items are {items}")


def check_object_names(report, frame):
    """Checks the object names where the bridge gives them as accessible id (Qt 6.4's does not)."""
    controls = [(frame, "FrmMain")]
    for role, name, object_name in MAIN_CONTROLS:
        controls += [(acc, object_name) for acc in find_all(frame, role, name)]
    ids = {object_name: acc.get_accessible_id() or "" for acc, object_name in controls}
    if not any(ids.values()):
        report.note("AT-SPI gives no accessible id for any control; object names not checked")
        return
    for object_name, given in ids.items():
        report.check(given.endswith(object_name), f"accessible id of {object_name}",
                     f"id is '{given}'")


def check_about(report, app, frame, version):
    item = find_all(frame, "menu item", "About")
    if not report.check(len(item) == 1, "menu item 'About' exists"):
        return
    started = time.monotonic()
    pyatspi.setTimeout(ACTION_REPLY_MS, ACTION_REPLY_MS)
    try:
        press(item[0], "Press")
        answered = True
    except GLib.GError:
        answered = False
    finally:
        pyatspi.setTimeout(*DEFAULT_TIMEOUTS_MS)
    report.check(answered, "Help > About answers its action at once",
                 f"no answer within {ACTION_REPLY_MS} ms; a screen reader waits that long")

    dialogs = wait_until(lambda: windows(app, "dialog"), WINDOW_TIMEOUT)
    if not report.check(len(dialogs) == 1, "Help > About opens one dialog",
                        f"windows are {window_list(app)}"):
        return
    about = dialogs[0]
    print(f"      About window '{about.name}' after {time.monotonic() - started:.1f} s")
    texts = spoken_texts(about)
    for text in ("Norvale Backup Tool", f"Versie {version}", "Voor vragen, mail naar:"):
        report.check(text in texts, f"About window reads '{text}'", f"texts are {texts}")

    mail = [b for b in find_all(about, "push button") if "@" in (b.name or "")]
    report.check(len(mail) == 1, "the mail address is a button a screen reader can press")

    ok = find_all(about, "push button", "OK")
    if not report.check(len(ok) == 1, "About window has an 'OK' button"):
        return
    press(ok[0], "Press")
    gone = wait_until(lambda: not windows(app, "dialog"), WINDOW_TIMEOUT)
    report.check(gone, "OK closes the About window")


def check_exit(report, frame, program):
    item = find_all(frame, "menu item", "Afsluiten")
    if not report.check(len(item) == 1, "menu item 'Afsluiten' exists"):
        return
    press(item[0], "Press")
    try:
        status = program.wait(timeout=EXIT_TIMEOUT)
    except subprocess.TimeoutExpired:
        report.check(False, f"Bestand > Afsluiten ends the program within {EXIT_TIMEOUT} s")
        return
    report.check(status == 0, f"Bestand > Afsluiten ends the program within {EXIT_TIMEOUT} s",
                 f"exit status {status}")


def run_checks(report, session, version):
    started = time.monotonic()
    program = session.start_program()
    app = wait_until(lambda: program.poll() is not None or find_application(program.pid),
                     START_TIMEOUT, step=0.25)
    report.require(program.poll() is None, "the program keeps running",
                   f"exit status {program.returncode}")
    report.require(app, f"the program appears on the AT-SPI desktop within {START_TIMEOUT} s")
    print(f"      application '{app.name}' after {time.monotonic() - started:.1f} s")

    # The splash stands over the main window for two seconds after the start.
    splash_gone = wait_until(lambda: not windows(app, "frame", APP_NAME), WINDOW_TIMEOUT)
    report.check(splash_gone, f"the splash goes within {WINDOW_TIMEOUT} s")

    frame = check_main_window(report, app, version)
    check_menus(report, frame)
    check_object_names(report, frame)
    check_about(report, app, frame, version)
    check_exit(report, frame, program)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="the built norvale-backup")
    parser.add_argument("version", help="the version the program shows, as 1.7.1")
    parser.add_argument("--launcher", default="/usr/libexec/at-spi-bus-launcher")
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
        session.make_environment()
        session.start_display()
        session.start_bus(args.launcher)
        run_checks(report, session, args.version)
    except Failed as failure:
        report.check(False, str(failure))
    except Stop:
        pass
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

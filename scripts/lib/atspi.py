#!/usr/bin/env python3
"""Reads and works the program's windows through AT-SPI, as a screen reader does.

    atspi.py press PID ROLE NAME [--window TITLE]     works the control's first action
    atspi.py window PID TITLE [--text PREFIX]         waits for a window; prints its texts
    atspi.py extents PID ROLE NAME [--window TITLE]   prints the control as WxH+X+Y on screen

Each waits up to --timeout seconds for what it looks for; the exit status is 1 when it is not
there by then.
"""

import argparse
import sys
import time

import pyatspi
from gi.repository import GLib


# --- The tree as AT-SPI gives it; a window that closes while it is read counts as not there.
# tests/accessibility/check_accessibility.py reads the tree with these too.


def safe(read, default=None):
    try:
        return read()
    except (GLib.GError, NotImplementedError):
        return default


def children(acc):
    for i in range(safe(lambda: acc.childCount, 0)):
        child = safe(lambda: acc.getChildAtIndex(i))
        if child is not None:
            yield child


def descendants(acc):
    for child in children(acc):
        yield child
        yield from descendants(child)


def matches(acc, role=None, name=None):
    return ((role is None or safe(acc.getRoleName) == role)
            and (name is None or safe(lambda: acc.name) == name))


def find_all(root, role=None, name=None):
    return [acc for acc in descendants(root) if matches(acc, role, name)]


def application(pid):
    for app in children(pyatspi.Registry.getDesktop(0)):
        if safe(app.get_process_id) == pid:
            return app
    return None


def windows(app, role=None, name=None):
    return [w for w in children(app) if matches(w, role, name)]


def top_windows(pid, title):
    app = application(pid)
    return windows(app, name=title) if app is not None else []


def texts(root):
    """Every name and text content under root, root's own name first."""
    found = [root.name] if safe(lambda: root.name) else []
    for acc in descendants(root):
        name = safe(lambda: acc.name)
        if name:
            found.append(name)
        content = safe(lambda: acc.queryText().getText(0, -1))
        if content and content != name:
            found.append(content)
    return found


def showing(acc):
    return safe(lambda: acc.getState().contains(pyatspi.STATE_SHOWING), False)


def find_control(pid, role, name, window):
    # The items of a closed menu are not showing, yet a screen reader can work them.
    for top in top_windows(pid, window):
        for acc in find_all(top, role, name):
            if role == "menu item" or showing(acc):
                return acc
    return None


def wait(look, timeout, step=0.1):
    deadline = time.monotonic() + timeout
    while True:
        found = look()
        if found or time.monotonic() > deadline:
            return found
        time.sleep(step)


def press(args):
    control = wait(lambda: find_control(args.pid, args.role, args.name, args.window),
                   args.timeout)
    if control is None:
        sys.exit(f"No {args.role} {args.name!r} is shown"
                 + (f" in the window {args.window!r}" if args.window else "") + ".")
    # A menu item that opens a modal window answers only when that window has closed; a push
    # button answers at once and clicks a moment later.
    pyatspi.setTimeout(500, 500)
    try:
        control.queryAction().doAction(0)
    except GLib.GError:
        pass


def window(args):
    def look():
        for top in top_windows(args.pid, args.title):
            found = texts(top)
            if args.text is None or any(t.startswith(args.text) for t in found):
                return found
        return None

    found = wait(look, args.timeout)
    if found is None:
        sys.exit(f"No window {args.title!r}" + (f" reading {args.text!r}..." if args.text else "")
                 + f" within {args.timeout:g} s.")
    for text in found:
        print(text.replace("\r\n", " ").replace("\n", " "))


def extents(args):
    control = wait(lambda: find_control(args.pid, args.role, args.name, args.window),
                   args.timeout)
    if control is None:
        sys.exit(f"No {args.role} {args.name!r} is shown.")
    box = control.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    print(f"{box.width}x{box.height}+{box.x}+{box.y}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    commands = parser.add_subparsers(dest="command", required=True)
    for name, run in (("press", press), ("extents", extents)):
        command = commands.add_parser(name)
        command.set_defaults(run=run)
        command.add_argument("pid", type=int)
        command.add_argument("role")
        command.add_argument("name")
        command.add_argument("--window", help="the title of the window the control is in")
        command.add_argument("--timeout", type=float, default=20)
    command = commands.add_parser("window")
    command.set_defaults(run=window)
    command.add_argument("pid", type=int)
    command.add_argument("title")
    command.add_argument("--text", help="the start of a text the window must read")
    command.add_argument("--timeout", type=float, default=20)
    args = parser.parse_args()
    args.run(args)


if __name__ == "__main__":
    main()

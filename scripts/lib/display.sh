# A private X display and session bus with AT-SPI for the scripts and the accessibility check
# that run the real program. Source it, then start_display DIR WIDTH HEIGHT and start_buses DIR
# export DISPLAY and DBUS_SESSION_BUS_ADDRESS; stop_session ends what they started.

launcher=/usr/libexec/at-spi-bus-launcher
session_groups=()

# Waits up to $1 seconds for the test in the rest of the arguments to pass.
wait_up_to() {
    local seconds="$1" i
    shift
    for i in $(seq $((seconds * 20))); do
        "$@" && return 0
        sleep 0.05
    done
    echo "Gave up waiting for: $*" >&2
    return 1
}

wait_for() { wait_up_to 10 "$@"; }

# Each server leads a process group of its own, so that what it starts in turn (the AT-SPI
# registry, the accessibility bus) ends with it.
start_server() {
    setsid "$@" &
    session_groups+=($!)
}

# Without -noreset the server resets when its last client leaves, and refuses the next for a
# moment.
start_display() {
    local dir="$1" width="$2" height="$3" fd
    exec {fd}>"$dir/display"
    start_server Xvfb -displayfd "$fd" -screen 0 "${width}x${height}x24" -nolisten tcp -noreset \
        2>/dev/null
    exec {fd}>&-
    wait_for test -s "$dir/display"
    export DISPLAY=":$(cat "$dir/display")"
}

a11y_bus_up() {
    dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.NameHasOwner string:org.a11y.Bus 2>/dev/null | grep -q 'boolean true'
}

start_buses() {
    local dir="$1"
    start_server dbus-daemon --session --nofork --print-address=1 >"$dir/bus" 2>/dev/null
    wait_for test -s "$dir/bus"
    DBUS_SESSION_BUS_ADDRESS="$(head -n 1 "$dir/bus")"
    export DBUS_SESSION_BUS_ADDRESS
    unset AT_SPI_BUS_ADDRESS WAYLAND_DISPLAY
    start_server "$launcher" --launch-immediately --a11y=1 >/dev/null 2>&1
    wait_for a11y_bus_up
}

stop_session() {
    local group
    for group in "${session_groups[@]}"; do
        kill -- "-$group" 2>/dev/null || true
        wait "$group" 2>/dev/null || true
    done
    session_groups=()
}

#!/usr/bin/env bash
# Starts Kestrelway from a build folder, after the install step an installer would run. Its engine
# is dravlinkd, which the session bus starts on the first call. Without a display, runs a
# demonstration under a virtual X server, on a session bus of its own, and keeps a screenshot of
# each stage and the list of its processes.
# DEMO_DESTINATION and DEMO_SCENARIO (isp-password, call-home, busy, ...) choose the call shown;
# KESTRELWAY_ENGINE=dravlink.sim runs the simulator inside Kestrelway instead.
set -euo pipefail
build=${1:-build/release}
app="$build/src/app"
engine=${KESTRELWAY_ENGINE:-dravlink.dbus}

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    "$app/kestrelway-install" --engine "$engine"
    if [ "$engine" = dravlink.dbus ] && [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] &&
        [ ! -S "${XDG_RUNTIME_DIR:-/nonexistent}/bus" ]; then
        echo "No session bus here: Kestrelway and its engine get one of their own."
        exec dbus-run-session -- "$app/kestrelway"
    fi
    exec "$app/kestrelway"
fi

out="build/demo${DEMO_SCENARIO:+/$DEMO_SCENARIO}"
echo "No display here: a demonstration of one call runs under a virtual X server."
rm -rf "$out"
mkdir -p "$out/home"
# The demonstration keeps its settings and engine data to itself, and its engine too: the bus it
# starts reads the engine's entry from this data folder and hands the engine this environment.
export XDG_CONFIG_HOME="$PWD/$out/home/config" XDG_DATA_HOME="$PWD/$out/home/data"
mkdir -p "$out/home/tmp" && export TMPDIR="$PWD/$out/home/tmp"
export DRAVLINK_SCENARIO="${DEMO_SCENARIO:-}"
"$app/kestrelway-install" --engine "$engine"
xvfb-run -a -s "-screen 0 1024x768x24" dbus-run-session -- sh -c '
    processes=$1; shift
    "$@" & demo=$!
    sleep 6
    engine=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.GetConnectionUnixProcessID string:com.ostvarra.Dravlink 2>/dev/null |
        sed -n "s/.*uint32 //p")
    ps -o pid,ppid,comm,args -p "$demo${engine:+,$engine}" > "$processes"
    wait $demo' sh "$out/processes.txt" \
    "$app/kestrelway-demo" "$out" "${DEMO_DESTINATION:-Ostvarra Corporate}" ${DEMO_SCENARIO:+"$DEMO_SCENARIO"}
echo "The processes during the call: $out/processes.txt"
cat "$out/processes.txt"

#!/usr/bin/env bash
# Starts Kestrelway from a build folder, after the install step an installer would run. Without a
# display, runs a demonstration under a virtual X server and keeps a screenshot of each stage.
# DEMO_DESTINATION and DEMO_SCENARIO (isp-password, call-home, busy, ...) choose the call shown.
set -euo pipefail
build=${1:-build/release}
app="$build/src/app"

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    "$app/kestrelway-install"
    exec "$app/kestrelway"
fi

out="build/demo${DEMO_SCENARIO:+/$DEMO_SCENARIO}"
echo "No display here: a demonstration of one call runs under a virtual X server."
rm -rf "$out"
mkdir -p "$out/home"
# The demonstration keeps its settings and engine data to itself.
export XDG_CONFIG_HOME="$PWD/$out/home/config" XDG_DATA_HOME="$PWD/$out/home/data"
mkdir -p "$out/home/tmp" && export TMPDIR="$PWD/$out/home/tmp"
"$app/kestrelway-install"
xvfb-run -a -s "-screen 0 1024x768x24" "$app/kestrelway-demo" "$out" "${DEMO_DESTINATION:-Ostvarra Corporate}" \
    ${DEMO_SCENARIO:+"$DEMO_SCENARIO"}

#!/usr/bin/env bash
# Start-up against its floor: the time from process start until Kestrelway is idle with its dial
# list shown, next to a bare frameless masked Qt window started the same way, under the same
# virtual X server, alternating. Prints both medians and their ratio.
#   scripts/startup-bench.sh [BUILD_DIR] [RUNS]
set -euo pipefail
build=$(realpath "${1:-build/release}")
runs=${2:-9}
if [ -z "${INSIDE_XVFB:-}" ]; then
    INSIDE_XVFB=1 exec xvfb-run -a -s "-screen 0 1024x768x24" "$0" "$build" "$runs"
fi

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data"
"$build/src/app/kestrelway-install" >/dev/null
mkdir -p "$XDG_CONFIG_HOME/Ostvarra"
printf 'WINE REGISTRY Version 2\n\n[Software\\\\Ostvarra\\\\Kestrelway]\n"UserName"="bench"\n' \
    >"$XDG_CONFIG_HOME/Ostvarra/user.reg"

# Milliseconds from starting the command until it prints "ready".
time_to_ready() {
    local start end
    start=$(date +%s%N)
    "$@" | grep -q '^ready$'
    end=$(date +%s%N)
    echo $(((end - start) / 1000000))
}

median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }

# One unmeasured start of each warms the disk cache and seeds the engine's data.
KESTRELWAY_EXIT_WHEN_READY=1 "$build/src/app/kestrelway" >/dev/null
"$build/bench/startup_floor" >/dev/null

kestrelway=()
floor=()
for _ in $(seq "$runs"); do
    kestrelway+=("$(time_to_ready env KESTRELWAY_EXIT_WHEN_READY=1 "$build/src/app/kestrelway")")
    floor+=("$(time_to_ready "$build/bench/startup_floor")")
done
k=$(printf '%s\n' "${kestrelway[@]}" | median)
f=$(printf '%s\n' "${floor[@]}" | median)
echo "kestrelway runs (ms): ${kestrelway[*]}"
echo "floor runs (ms):      ${floor[*]}"
echo "median start to idle: kestrelway ${k} ms, bare masked window ${f} ms, ratio $(awk -v k="$k" -v f="$f" 'BEGIN { printf "%.2f", k / f }')"

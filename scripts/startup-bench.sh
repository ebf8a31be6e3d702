#!/usr/bin/env bash
# Start-up against its floor, two moments of one run each: the main window first painted, and idle
# with its dial list shown. The floor is a bare frameless masked Qt window started the same way
# under the same virtual X server; runs alternate. The simulated engine answers at once here (its
# "DialListDelay" set to 0), so the figures are the program's own. Prints medians and ratios.
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

# "PAINTED READY": milliseconds from starting the command until it prints each of the two lines.
time_moments() {
    local start painted=0 ready=0 line now
    start=$(date +%s%N)
    while IFS= read -r line; do
        now=$(date +%s%N)
        case "$line" in
            painted) painted=$(((now - start) / 1000000)) ;;
            ready) ready=$(((now - start) / 1000000)) ;;
        esac
    done < <("$@")
    echo "$painted $ready"
}

median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }

# One unmeasured start of each warms the disk cache and seeds the engine's data, which is then
# told to answer the dial list at once.
KESTRELWAY_EXIT_WHEN_READY=1 "$build/src/app/kestrelway" >/dev/null
"$build/bench/startup_floor" >/dev/null
ini="$XDG_DATA_HOME/Ostvarra/Dravlink/engine.ini"
if grep -q '^DialListDelay *=' "$ini"; then
    sed -i 's/^DialListDelay *=.*/DialListDelay = 0/' "$ini"
else
    sed -i 's/^\[Engine\]$/[Engine]\nDialListDelay = 0/' "$ini"
fi

kp=() kr=() fp=() fr=()
for _ in $(seq "$runs"); do
    read -r p r < <(time_moments env KESTRELWAY_EXIT_WHEN_READY=1 "$build/src/app/kestrelway")
    kp+=("$p") kr+=("$r")
    read -r p r < <(time_moments "$build/bench/startup_floor")
    fp+=("$p") fr+=("$r")
done
mkp=$(printf '%s\n' "${kp[@]}" | median)
mkr=$(printf '%s\n' "${kr[@]}" | median)
mfp=$(printf '%s\n' "${fp[@]}" | median)
mfr=$(printf '%s\n' "${fr[@]}" | median)
echo "kestrelway first paint (ms): ${kp[*]}"
echo "kestrelway idle (ms):        ${kr[*]}"
echo "floor first paint (ms):      ${fp[*]}"
echo "floor idle (ms):             ${fr[*]}"
echo "median first paint: kestrelway ${mkp} ms, bare window ${mfp} ms, ratio $(ratio "$mkp" "$mfp")"
echo "median idle:        kestrelway ${mkr} ms, bare window ${mfr} ms, ratio $(ratio "$mkr" "$mfr")"

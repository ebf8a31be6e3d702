#!/usr/bin/env bash
# Starts Kestrelway from a build folder.
set -euo pipefail
build=${1:-build/release}
exec "$build/src/app/kestrelway"

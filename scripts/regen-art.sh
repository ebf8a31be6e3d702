#!/bin/sh
# Redraws assets/art/ from the layout header and writes a preview to build/art-preview.png.
set -e
cd "$(dirname "$0")/.."
cmake --preset dev >/dev/null
cmake --build --preset dev --target artgen
QT_QPA_PLATFORM=offscreen build/dev/tools/artgen/artgen assets build/art-preview.png

#!/usr/bin/env bash
# Builds everything and runs every test suite: Linux, then the Windows core under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

echo "== Linux build and tests"
cmake --preset dev >/dev/null
cmake --build --preset dev -j2
ctest --preset dev -j2

echo "== Windows core under Wine"
bash scripts/test-windows.sh

echo "== Every Linux test under AddressSanitizer and UndefinedBehaviorSanitizer"
cmake --preset asan >/dev/null
cmake --build --preset asan -j2
ctest --preset asan -j2

echo "== The Debian package: contents, and an install into a scratch root"
bash scripts/package-check.sh

echo "== Fuzzing the settings file and the path routines, 60 s each"
bash scripts/fuzz.sh 60

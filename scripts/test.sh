#!/usr/bin/env bash
# Builds everything and runs every test suite: Linux, then the Windows core and program under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

# Configures and builds the preset $1 and runs its tests.
build_and_test() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -j2
    ctest --preset "$1" -j2
}

echo "== Linux build and tests"
build_and_test dev

echo "== Windows core, program and installer under Wine"
bash scripts/test-windows.sh

echo "== Every Linux test under AddressSanitizer and UndefinedBehaviorSanitizer"
build_and_test asan

echo "== The Debian package: contents, and an install into a scratch root"
bash scripts/package-check.sh

echo "== Fuzzing the settings file and the path routines, 60 s each"
bash scripts/fuzz.sh 60

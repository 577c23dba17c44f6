#!/usr/bin/env bash
# Builds the libFuzzer targets (preset fuzz: clang 14, AddressSanitizer, UndefinedBehaviorSanitizer)
# and runs each for the given seconds (default 60) on a copy of its seed corpus, so the
# committed corpus does not grow. Fails on any crash, leak or sanitizer report.
#   bash scripts/fuzz.sh [seconds]
# NV_FUZZ_BUILD_DIR puts the build elsewhere than build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
if ! [[ "$seconds" =~ ^[0-9]+$ ]] || [ "$seconds" -eq 0 ]; then
    echo "usage: scripts/fuzz.sh [seconds]" >&2
    exit 2
fi

bash scripts/install-deps.sh cmake ninja-build clang-14 libfuzzer-14-dev libclang-rt-14-dev

build="${NV_FUZZ_BUILD_DIR:-build/fuzz}"
echo "== Fuzz build in $build"
cmake --preset fuzz -B "$build" >/dev/null
cmake --build "$build" -j2

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
# The targets write their files below TMPDIR; on a RAM disk their many flushes cost nothing.
mkdir -p "$work/tmp"
if [ -d /dev/shm ] && [ -w /dev/shm ]; then
    scratch="$(mktemp -d /dev/shm/nvfuzz-run-XXXXXX)"
    trap 'rm -rf "$work" "$scratch"' EXIT
else
    scratch="$work/tmp"
fi

status=0
# Longest input per target: a settings file of the program is well under 2 KiB, and four lines
# of paths well under 1 KiB; longer inputs only slow each run.
declare -A max_len=([fuzz_settings]=2048 [fuzz_paths]=1024)
for target in fuzz_settings fuzz_paths; do
    corpus="fuzz/corpus/${target#fuzz_}"
    echo "== $target for ${seconds}s on a copy of $corpus"
    mkdir -p "$work/$target/corpus" "$work/$target/artifacts"
    cp "$corpus"/* "$work/$target/corpus/"
    log="$work/$target/log.txt"
    set +e
    TMPDIR="$scratch" \
        ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=16:max_malloc_fill_size=0" \
        UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
        "$build/fuzz/$target" -max_total_time="$seconds" -max_len="${max_len[$target]}" \
        -detect_leaks=1 -print_final_stats=1 \
        -artifact_prefix="$work/$target/artifacts/" "$work/$target/corpus" >"$log" 2>&1
    rc=$?
    set -e
    grep -E '^(#[0-9]+ +DONE|stat::(number_of_executed_units|average_exec_per_sec|new_units_added))' \
        "$log" || true
    grep -E '^#[0-9]+' "$log" | tail -1 || true
    artifacts=$(find "$work/$target/artifacts" -type f | wc -l)
    if [ "$rc" -ne 0 ] || [ "$artifacts" -ne 0 ] ||
        grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|==nvfuzz==' "$log"; then
        echo "!! $target found a fault (exit $rc); its log and input follow" >&2
        grep -E -A12 'ERROR:|runtime error:|==nvfuzz==' "$log" | head -60 >&2 || true
        mkdir -p "$build/findings"
        cp "$work/$target/artifacts/"* "$build/findings/" 2>/dev/null || true
        cp "$log" "$build/findings/$target.log"
        echo "!! kept in $build/findings/; replay: $build/fuzz/$target <input>" >&2
        status=1
    fi
done
exit $status

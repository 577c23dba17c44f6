#!/usr/bin/env bash
# Builds the libFuzzer targets (preset fuzz: clang 14, AddressSanitizer, UndefinedBehaviorSanitizer)
# and runs both at once, one process each. Fails on any crash, leak or sanitizer report.
#   bash scripts/fuzz.sh [seconds]   each target for the given seconds (default 60), on a copy
#                                    of its seed corpus, so the committed corpus does not grow
#   bash scripts/fuzz.sh --runs N    each target for N executions, on a corpus kept in
#                                    build/fuzz/long/, so a long run that is stopped resumes
#                                    from what it found; logs stay there too
# NV_FUZZ_BUILD_DIR puts the build elsewhere than build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
    echo "usage: scripts/fuzz.sh [seconds] | --runs N" >&2
    exit 2
}
if [ "${1:-}" = "--runs" ]; then
    [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || usage
    limit=(-runs="$2")
    what="$2 executions"
    long=1
else
    seconds="${1:-60}"
    [[ "$seconds" =~ ^[1-9][0-9]*$ ]] || usage
    limit=(-max_total_time="$seconds")
    what="${seconds}s"
    long=0
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

# Longest input per target: a settings file of the program is well under 2 KiB, and four lines
# of paths well under 1 KiB; longer inputs only slow each run.
declare -A max_len=([fuzz_settings]=2048 [fuzz_paths]=1024)
targets=(fuzz_settings fuzz_paths)

declare -A pids
for target in "${targets[@]}"; do
    seeds="fuzz/corpus/${target#fuzz_}"
    if [ "$long" -eq 1 ]; then
        dir="$build/long/$target"
    else
        dir="$work/$target"
    fi
    mkdir -p "$dir/corpus" "$dir/artifacts"
    for seed in "$seeds"/*; do
        [ -e "$dir/corpus/${seed##*/}" ] || cp "$seed" "$dir/corpus/"
    done
    rm -f "$dir/artifacts/"* "$dir/log.txt"
    echo "== $target for $what on $dir/corpus"
    TMPDIR="$scratch" \
        ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=16:max_malloc_fill_size=0" \
        UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
        "$build/fuzz/$target" "${limit[@]}" -max_len="${max_len[$target]}" \
        -detect_leaks=1 -print_final_stats=1 \
        -artifact_prefix="$dir/artifacts/" "$dir/corpus" >"$dir/log.txt" 2>&1 &
    pids[$target]=$!
done

status=0
for target in "${targets[@]}"; do
    rc=0
    wait "${pids[$target]}" || rc=$?
    if [ "$long" -eq 1 ]; then
        dir="$build/long/$target"
    else
        dir="$work/$target"
    fi
    log="$dir/log.txt"
    echo "== $target"
    grep -E '^stat::(number_of_executed_units|average_exec_per_sec|new_units_added|peak_rss_mb)' \
        "$log" || true
    grep -E '^#[0-9]+' "$log" | tail -1 || true
    artifacts=$(find "$dir/artifacts" -type f | wc -l)
    if [ "$rc" -ne 0 ] || [ "$artifacts" -ne 0 ] ||
        grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|==nvfuzz==' "$log"; then
        echo "!! $target found a fault (exit $rc); its log and input follow" >&2
        grep -E -A12 'ERROR:|runtime error:|==nvfuzz==' "$log" | head -60 >&2 || true
        mkdir -p "$build/findings"
        cp "$dir/artifacts/"* "$build/findings/" 2>/dev/null || true
        cp "$log" "$build/findings/$target.log"
        echo "!! kept in $build/findings/; replay: $build/fuzz/$target <input>" >&2
        status=1
    fi
done
exit $status

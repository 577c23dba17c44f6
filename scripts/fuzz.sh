#!/usr/bin/env bash
# Builds the libFuzzer targets (preset fuzz: clang 14, AddressSanitizer, UndefinedBehaviorSanitizer)
# and runs them, all at once. Fails on any crash, leak or sanitizer report.
#   bash scripts/fuzz.sh [seconds]
#       each target for the given seconds (default 60), one process each, on a copy of its seed
#       corpus, so the committed corpus does not grow
#   bash scripts/fuzz.sh --runs N [--workers K] [target...]
#       each named target (default: all) for N executions in all, shared by K processes (default
#       1) that work on one corpus kept in build/fuzz/long/<target>, so a long run that is
#       stopped resumes from what it found; the logs stay there too
# NV_FUZZ_BUILD_DIR puts the build elsewhere than build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
    echo "usage: scripts/fuzz.sh [seconds] | --runs N [--workers K] [target...]" >&2
    exit 2
}
all_targets=(fuzz_settings fuzz_paths)
targets=("${all_targets[@]}")
workers=1
if [ "${1:-}" = "--runs" ]; then
    [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || usage
    runs="$2"
    shift 2
    if [ "${1:-}" = "--workers" ]; then
        [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || usage
        workers="$2"
        shift 2
    fi
    if [ $# -gt 0 ]; then
        for target in "$@"; do
            [[ " ${all_targets[*]} " == *" $target "* ]] || usage
        done
        targets=("$@")
    fi
    share=$(((runs + workers - 1) / workers))
    what="$runs executions in $workers process(es) at a time"
    long=1
else
    [ $# -le 1 ] || usage
    seconds="${1:-60}"
    [[ "$seconds" =~ ^[1-9][0-9]*$ ]] || usage
    limit=(-max_total_time="$seconds")
    share=0
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

folder_of() {
    if [ "$long" -eq 1 ]; then echo "$build/long/$1"; else echo "$work/$1"; fi
}

# A process of a target slows down as it ages and its memory grows, while a fresh one
# on the same corpus runs at full speed again: a long run goes in chunks of this many executions.
chunk="${NV_FUZZ_CHUNK:-1000000}"

# One process of a target after another until its share is done, or until one fails.
#   worker <target> <folder> <number> <executions, or 0 for a run by time>
worker() {
    local target="$1" dir="$2" w="$3" left="$4" part=1 rc=0 this
    while :; do
        if [ "$left" -gt 0 ]; then
            this=$((left < chunk ? left : chunk))
            limit=(-runs="$this")
            left=$((left - this))
        fi
        # Allocator caches make a long run's memory grow well past libFuzzer's 2 GiB default
        # while the live heap stays small; a leak is LeakSanitizer's to find.
        TMPDIR="$scratch" \
            ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=16:max_malloc_fill_size=0:malloc_context_size=10" \
            UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
            "$build/fuzz/$target" "${limit[@]}" -seed="$w$part$RANDOM" -max_len="${max_len[$target]}" \
            -rss_limit_mb=6144 -detect_leaks=1 -print_final_stats=1 \
            -artifact_prefix="$dir/artifacts/" "$dir/corpus" >"$dir/log$w.$part.txt" 2>&1 || rc=$?
        if [ "$rc" -ne 0 ] || [ "$left" -le 0 ]; then
            return "$rc"
        fi
        part=$((part + 1))
    done
}

declare -A pids
for target in "${targets[@]}"; do
    dir=$(folder_of "$target")
    seeds="fuzz/corpus/${target#fuzz_}"
    mkdir -p "$dir/corpus" "$dir/artifacts"
    for seed in "$seeds"/*; do
        [ -e "$dir/corpus/${seed##*/}" ] || cp "$seed" "$dir/corpus/"
    done
    rm -f "$dir/artifacts/"* "$dir"/log*.txt
    echo "== $target for $what on $dir/corpus"
    for ((w = 1; w <= workers; w++)); do
        worker "$target" "$dir" "$w" "$share" &
        pids[$target.$w]=$!
    done
done

report() {
    echo "!! $1 found a fault; the end of ${2##*/} follows" >&2
    grep -E -A12 'ERROR:|runtime error:|==nvfuzz==' "$2" | head -60 >&2 || tail -20 "$2" >&2
    mkdir -p "$build/findings"
    cp "$2" "$build/findings/$1-${2##*/}"
}

status=0
for target in "${targets[@]}"; do
    dir=$(folder_of "$target")
    echo "== $target"
    failed=0
    executions=0
    for ((w = 1; w <= workers; w++)); do
        rc=0
        wait "${pids[$target.$w]}" || rc=$?
        for log in "$dir/log$w".*.txt; do
            done_line=$(grep -E '^#[0-9]+' "$log" | tail -1 || true)
            echo "   ${log##*/}: ${done_line:0:110}"
            n=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
            executions=$((executions + ${n:-0}))
            if grep -qE 'ERROR: (AddressSanitizer|LeakSanitizer|libFuzzer)|runtime error:|==nvfuzz==' \
                "$log"; then
                report "$target" "$log"
                failed=1
            fi
        done
        # The worker stops at the first process that fails; its log is the last one.
        if [ "$rc" -ne 0 ] && [ "$failed" -eq 0 ]; then
            echo "!! $target ended with exit $rc" >&2
            report "$target" "$log"
            failed=1
        fi
    done
    echo "   executions: $executions"
    if [ "$(find "$dir/artifacts" -type f | wc -l)" -ne 0 ]; then
        mkdir -p "$build/findings"
        cp "$dir/artifacts/"* "$build/findings/"
        failed=1
    fi
    if [ "$failed" -eq 1 ]; then
        echo "!! kept in $build/findings/; replay: $build/fuzz/$target <input>" >&2
        status=1
    fi
done
exit $status

#!/bin/sh
# Runs each fuzz target for the given seconds: scripts/fuzz.sh BUILD_DIR SECONDS
# The corpus grows in BUILD_DIR/corpus/<target>, seeded from fuzz/corpus/<target> (the kept
# inputs, which `make test` replays); findings go to BUILD_DIR/findings/<target>/.
# Prints, per target, the executions and the findings. Allocation stacks are left out of the
# reports (it nearly doubles the speed); run a finding again on its own for the full report:
#     build-fuzz/fuzz/fuzz_analysed build-fuzz/findings/analysed/crash-...
set -u
build=${1:-build-fuzz}
seconds=${2:-60}
src=$(cd "$(dirname "$0")/.." && pwd)
status=0
for t in nc_reader analysed frames; do
    mkdir -p "$build/corpus/$t" "$build/findings/$t"
    log="$build/fuzz_$t.log"
    ASAN_OPTIONS=detect_leaks=0:malloc_context_size=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
        "$build/fuzz/fuzz_$t" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
        -artifact_prefix="$build/findings/$t/" -print_final_stats=1 \
        "$build/corpus/$t" "$src/fuzz/corpus/$t" >"$log" 2>&1
    rc=$?
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    found=$(ls "$build/findings/$t" | wc -l)
    echo "$t: ${runs:-?} executions in ${seconds} s, findings: $found (log: $log)"
    [ "$rc" -ne 0 ] && status=1
done
exit $status

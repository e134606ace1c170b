# Sourced by the benchmark scripts. `row TASK OURS_S OURS_KB PEER PEER_S PEER_KB GOAL [MEMORY_GOAL]`
# appends one
# comparison to the file named by QUILLET_BENCH_ROWS (tab-separated) when bench/compare.sh runs
# the scripts; on its own a script only prints its report. MEMORY_GOAL is a ratio of peak memory
# ("<= 1.50") or a ceiling ("< 120 MB").
row() {
    [[ -n "${QUILLET_BENCH_ROWS:-}" ]] || return 0
    local IFS=$'\t'
    echo "$*" >>"$QUILLET_BENCH_ROWS"
}

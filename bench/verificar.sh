#!/usr/bin/env bash
# Measures "tavrel_script verificar" as a whole process: time per line at three sizes, against luac5.4 on the same
# scripts in Lua, the start of a ten-line script, and how time grows with the number of one thing.
# usage: bench/verificar.sh [sizes|start|many]...    all three without arguments
# BUILD names another build folder, ROUNDS the runs of each command. Wants lua5.4 for the comparisons.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD:-$root/build/bench}
rounds=${ROUNDS:-21}
tool=$build/tavrel_script
generate=$build/bench/generate_script
timer=$build/bench/time_process
# The largest counts stay below 65,535, the most slots and enumerations that a program can number.
counts=(15000 30000 60000)

build_all() {
    if [ ! -f "$build/build.ninja" ]; then cmake -S "$root" --preset bench -B "$build" >/dev/null; fi
    cmake --build "$build" >/dev/null
}

have() {
    command -v "$1" >/dev/null && return
    echo "(no $1 here: no comparison)"
    return 1
}

time_of() { cut -d ' ' -f 1 <<<"$1"; }

# measure COMMANDS...: "processor wall peak" of each command, one a line.
measure() { "$timer" "$rounds" "$@"; }

# The processor time of a script that holds nothing: what a run costs whatever its size.
measure_floor() {
    echo "modulo Vazio" >"$work/vazio.tvl"
    floor=$(time_of "$(measure "$tool" verificar "$work/vazio.tvl")")
}

report_size() {
    local lines=$1 result=$2
    awk -v n="$lines" -v bytes="$(stat -c %s "$work/$lines.tvl")" -v floor="$floor" '{
        printf "%8d %9d %9.1f %9.1f %9.3f %11.3f %8.1f %9.1f\n",
            n, bytes, $1 / 1000, $2 / 1000, $1 / n, ($1 - floor) / n, bytes / $1, $3 / 1024 }' <<<"$result"
}

compare_with_luac() {
    local lines=$1 ours=$2 luac=$3
    awk -v n="$lines" -v ours="$(time_of "$ours")" -v luac="$(time_of "$luac")" \
        -v bytes="$(stat -c %s "$work/$lines.tvl")" -v luabytes="$(stat -c %s "$work/$lines.lua")" 'BEGIN {
        printf "%8d %15.1f %15.1f %15.2f\n", n, bytes / ours, luabytes / luac, (bytes / ours) / (luabytes / luac) }'
}

measure_sizes() {
    local lines result with_lua="" first="" last=""
    command -v luac5.4 >/dev/null && with_lua=yes
    measure_floor
    echo "verificar, whole process; \"net\" is without the $floor us of an empty script"
    echo "   lines     bytes    cpu ms   wall ms   us/line net us/line     MB/s  peak MiB"
    : >"$work/compared"
    for lines in 1000 10000 100000; do
        "$generate" "$lines" >"$work/$lines.tvl"
        "$generate" "$lines" --lua >"$work/$lines.lua"
        result=$(measure "$tool" verificar "$work/$lines.tvl" ${with_lua:+-- luac5.4 -p "$work/$lines.lua"})
        report_size "$lines" "$(head -n 1 <<<"$result")"
        if [ -n "$with_lua" ]; then
            compare_with_luac "$lines" "$(head -n 1 <<<"$result")" "$(tail -n 1 <<<"$result")" >>"$work/compared"
        fi
        if [ -z "$first" ]; then first=$(time_of "$result" | head -n 1); fi
        last=$(time_of "$result" | head -n 1)
    done
    awk -v first="$first" -v last="$last" -v floor="$floor" 'BEGIN {
        printf "growth per line from the smallest to the largest: %+.0f %%, net %+.0f %%\n\n",
            (last / 100 / first - 1) * 100, ((last - floor) / 100 / (first - floor) - 1) * 100 }'
    if have luac5.4; then
        echo "   lines  verificar MB/s  luac5.4 -p MB/s  ours / theirs"
        cat "$work/compared"
    fi
    echo
}

write_ten_lines() {
    cat >"$work/dez.tvl" <<'SCRIPT'
modulo Dez

estado
    pulos: inteiro
fim

a cada tick (passo: real)
    pulos = pulos + 1
    escreva(formatar("pulos: {}", pulos))
fim
SCRIPT
}

measure_start() {
    local result
    write_ten_lines
    echo "ten lines, from spawn to exit"
    if have lua5.4; then
        result=$(rounds=$((rounds * 10)) measure "$tool" verificar "$work/dez.tvl" -- lua5.4 -e "")
        awk 'NR == 1 { printf "verificar  %.2f ms wall, %.2f ms cpu\n", $2 / 1000, $1 / 1000 }
             NR == 2 { printf "lua5.4 -e  %.2f ms wall, %.2f ms cpu\n", $2 / 1000, $1 / 1000 }' <<<"$result"
    else
        result=$(rounds=$((rounds * 10)) measure "$tool" verificar "$work/dez.tvl")
        awk '{ printf "verificar  %.2f ms wall, %.2f ms cpu\n", $2 / 1000, $1 / 1000 }' <<<"$result"
    fi
    echo
}

# report_many NAME TIMES...: nanoseconds for one thing at each count, and the growth from the first count to the last.
report_many() {
    awk -v name="$1" -v counts="${counts[*]}" -v times="${*:2}" -v floor="$floor" 'BEGIN {
        size = split(counts, count, " "); split(times, time, " ")
        printf "%-18s", name
        for (at = 1; at <= size; ++at) {
            each[at] = (time[at] - floor) * 1000 / count[at]
            printf " %9.0f", each[at]
        }
        growth = each[size] / each[1]
        mark = (growth > 1.6) ? "  <- look here" : ""
        printf "  x%.2f%s\n", growth, mark }'
}

measure_kind() {
    local count times=()
    for count in "${counts[@]}"; do
        "$generate" --many "$1" "$count" >"$work/many.tvl"
        times+=("$(time_of "$(measure "$tool" verificar "$work/many.tvl")")")
    done
    report_many "$1" "${times[@]}"
}

measure_imports() {
    local count times=()
    for count in "${counts[@]}"; do
        mkdir "$work/imports"
        "$generate" --imports "$count" "$work/imports"
        times+=("$(time_of "$(measure "$tool" verificar "$work/imports/main.tvl")")")
        rm -r "$work/imports"
    done
    report_many imports "${times[@]}"
}

measure_many() {
    local kind rounds=$((rounds / 4 + 1))
    measure_floor
    echo "many of one thing: ns for each at ${counts[*]}, net, and the growth"
    for kind in $("$generate" --kinds); do measure_kind "$kind"; done
    measure_imports
    echo
}

build_all
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
if [ $# -eq 0 ]; then set -- sizes start many; fi
for part in "$@"; do
    case "$part" in
        sizes) measure_sizes ;;
        start) measure_start ;;
        many) measure_many ;;
        *)
            echo "usage: bench/verificar.sh [sizes|start|many]..." >&2
            exit 2
            ;;
    esac
done

#!/usr/bin/env bash
# Measures the interpreter: ten kernels in our language against the same kernels in Lua, as whole processes.
# usage: bench/kernels.sh [fib|loop|sieve|nbody|mandel|strings|dict|sort|records|vectors]...    all without arguments
# Checks what both print, then runs them in turn ROUNDS times and compares the medians of user and system time.
# Builds nothing: TAVREL_SCRIPT names our program, TIME_PROCESS the timer of the "bench" preset, LUA the other side.
set -euo pipefail
shopt -s inherit_errexit

root=$(cd "$(dirname "$0")/.." && pwd)
kernels=$root/bench/kernels
tool=${TAVREL_SCRIPT:-$root/build/release/tavrel_script}
timer=${TIME_PROCESS:-$root/build/bench/bench/time_process}
lua=${LUA:-lua5.4}
rounds=${ROUNDS:-7}

# Name, ticks, what ours prints, what Lua prints. Our reals have 32 bits and Lua's 64, so two kernels end apart from
# Lua; as each of our operations is rounded alone, even they have one right answer.
table="\
fib     2000 13530000         13530000
loop     600 358160_3425974   358160_3425974
sieve   1500 1843500          1843500
nbody    900 -0.16929545      -0.16929
mandel  1500 26041500         26041500
strings  600 842400000_297000 842400000_297000
dict    2400 1998885600       1998885600
sort    1500 595564           595564
records 1200 378358           378358
vectors  300 232970.67        233165.17"

row_of() { awk -v name="$1" '$1 == name' <<<"$table"; }

refuse() {
    echo "$1" >&2
    exit 2
}

need_program() { command -v "$1" >/dev/null || refuse "no program $1: $2"; }

# check WHO EXPECTED COMMAND...: ends the script unless the first line that the command prints is the expected one.
check() {
    local who=$1 expected=$2 output line
    shift 2
    if ! output=$("$@"); then
        echo "$who failed: $*" >&2
        exit 1
    fi
    line=$(head -n 1 <<<"$output" | tr '\t ' '__')
    if [ "$line" != "$expected" ]; then
        echo "$who printed \"$line\" and not \"$expected\": $*" >&2
        exit 1
    fi
}

# measure NAME TICKS OURS THEIRS: one row of the table, "name ours lua ratio", times in milliseconds.
measure() {
    local ours=("$tool" executar "$kernels/$1.tvl" --ticks "$2") theirs=("$lua" "$kernels/lua/$1.lua" "$2") times
    check ours "$3" "${ours[@]}"
    check lua "$4" "${theirs[@]}"
    times=$("$timer" "$rounds" "${ours[@]}" -- "${theirs[@]}")
    awk -v name="$1" 'NR == 1 { ours = $1 / 1000 }
        NR == 2 { printf "%-8s %9.1f %9.1f %7.3f\n", name, ours, $1 / 1000, ours * 1000 / $1 }' <<<"$times"
}

summarise() {
    awk '{ logs += log($4); if (NR == 1 || $4 > worst) { worst = $4; name = $1 } }
        END { printf "geometric mean %.3f, worst %.3f (%s)\n", exp(logs / NR), worst, name }' <<<"$1"
}

need_program "$tool" "build the preset \"release\" or set TAVREL_SCRIPT"
need_program "$timer" "build the preset \"bench\" or set TIME_PROCESS"
need_program "$lua" "install Lua 5.4 or set LUA"
mapfile -t names < <(awk '{ print $1 }' <<<"$table")
if [ $# -eq 0 ]; then set -- "${names[@]}"; fi
for name in "$@"; do
    if [ -z "$(row_of "$name")" ]; then refuse "no kernel \"$name\"; there are: ${names[*]}"; fi
done

"$lua" -v
echo "processor time in ms, medians of $rounds rounds"
echo "kernel        ours       lua   ratio"
rows=""
for name in "$@"; do
    read -r _ ticks ours theirs <<<"$(row_of "$name")"
    row=$(measure "$name" "$ticks" "$ours" "$theirs")
    echo "$row"
    rows+=${rows:+$'\n'}$row
done
summarise "$rows"

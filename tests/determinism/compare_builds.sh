#!/bin/bash
# Builds the library with different compilers and levels of optimisation, lets each build print what
# every function gives on the fixed inputs, and compares the numbers bit for bit with those of the
# first build. A difference names the function and the first numbers that differ.
#
#   tests/determinism/compare_builds.sh BUILD_DIRECTORY [CMAKE_OPTION...]
#
# Code for newer processors is compared where the present one runs it, and holds no fused
# multiplication and addition anywhere, whatever the inputs reach. LAPACK and libm are the same
# in all of them: a function that uses them is compared, their own accuracy is not.
set -u
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$1" && directory=$(cd "$1" && pwd) || exit 1
shift

builds=(
    g++-O2           g++     '-O2'
    g++-O0           g++     '-O0'
    g++-O3           g++     '-O3'
    clang++-O0       clang++ '-O0'
    clang++-O2       clang++ '-O2'
    clang++-O3       clang++ '-O3'
)
if grep -qw avx2 /proc/cpuinfo && grep -qw fma /proc/cpuinfo; then
    builds+=(
        g++-haswell     g++     '-O2 -march=haswell'
        g++-O3-haswell  g++     '-O3 -march=haswell'
        clang++-haswell clang++ '-O2 -march=haswell'
    )
    left_out=
else
    left_out=", those for Haswell left out: this processor has no AVX2 and FMA"
fi

# print_values NAME COMPILER OPTIONS [CMAKE_OPTION...]
print_values() {
    local name=$1 compiler=$2 options=$3
    shift 3
    cmake -S "$source_dir/variant" -B "$directory/$name" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_FLAGS="$options" "$@" > "$directory/$name.log" 2>&1 &&
        cmake --build "$directory/$name" --parallel "$(nproc)" --target golden_values \
            >> "$directory/$name.log" 2>&1 || { cat "$directory/$name.log"; return 1; }
    "$directory/$name/determinism/golden_values" > "$directory/$name.values"
}

# differences REFERENCE OTHER: for each function the first number that differs, and how many do.
differences() {
    paste -d '\n' "$1" "$2" | awk -F '\t' '
        NR % 2 { line = $0; function_name = $1; next }
        line != $0 {
            if (!(function_name in count)) {
                order[++functions] = function_name
                first[function_name] = "    " line "\n    " $0
            }
            ++count[function_name]
        }
        END {
            for (i = 1; i <= functions; ++i)
                print "  " order[i] ": " count[order[i]] " lines differ, the first is\n" first[order[i]]
        }'
}

# fused NAME: the fused instructions of the library. To have found no function is a finding too.
fused() {
    objdump -d --no-show-raw-insn -C "$(find "$directory/$1" -name 'libtessalo2d.a')" |
        awk '/^[0-9a-f]+ <.*>:$/ { place = substr($0, 18); ++functions }
             /vfn?m(add|sub)/ && !seen[place]++ { print "  fused arithmetic in " place }
             END { if (!functions) print "  no code found to look at" }'
}

reference=${builds[0]}
compared=0
failed=()
for ((i = 0; i < ${#builds[@]}; i += 3)); do
    name=${builds[i]}
    print_values "$name" "${builds[i + 1]}" "${builds[i + 2]}" "$@" || exit 1
    fusions=
    [[ ${builds[i + 2]} != *-march* ]] || fusions=$(fused "$name")
    if [ -n "$fusions" ]; then
        printf '%-16s rounds otherwise than written:\n%s\n' "$name" "$fusions"
        failed+=("$name")
    elif cmp -s "$directory/$reference.values" "$directory/$name.values"; then
        printf '%-16s %s values\n' "$name" "$(wc -l < "$directory/$name.values")"
        compared=$((compared + 1))
        [ "$name" = "$reference" ] || rm "$directory/$name.values"
    else
        printf '%-16s differs from %s:\n' "$name" "$reference"
        differences "$directory/$reference.values" "$directory/$name.values"
        failed+=("$name")
    fi
done

values=$(wc -l < "$directory/$reference.values")
functions=$(cut -f 1 "$directory/$reference.values" | sort -u | wc -l)
if [ ${#failed[@]} -gt 0 ]; then
    echo "Builds that differ from $reference: ${failed[*]}"
    exit 1
fi
echo "$compared builds agree in all $values values of $functions functions$left_out"

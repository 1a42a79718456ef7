# Shared by ./check and ./demo: Debian packages, steps with a log each, and one clear last line.
# Sourced with `command` set to the name that messages begin with.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
logs=$root/build/logs
mkdir -p "$logs"
cores=$(nproc)
step_number=0

# A cache shared by all work trees, where the compiler cache is installed.
launcher=()
if command -v ccache > /dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root} CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}
    [ -n "${HOME:-}${CCACHE_DIR:-}" ] || export CCACHE_DIR=$root/build/ccache
fi

# finish STATUS TEXT: the last line.
finish() {
    echo "$command: $2"
    exit "$1"
}

# need_packages PACKAGE...: installs the Debian packages that are missing, or says which they are.
need_packages() {
    local package missing=() as_root=()
    if ! command -v dpkg-query > /dev/null; then
        echo "Not a Debian system: assuming that what these packages hold is there: $*"
        return
    fi
    for package; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo -n)
        if ! sudo -n true 2> /dev/null; then
            echo "These Debian packages are missing. Install them with"
            echo "    sudo apt-get update && sudo apt-get install ${missing[*]}"
            finish 1 "FAILED, ${#missing[@]} packages are missing (see above)"
        fi
    fi
    step_total=$((step_total + 1))
    step "installing ${missing[*]}" install_packages "${missing[@]}"
}

install_packages() {
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -y
               -o DPkg::Lock::Timeout=300)
    "${apt[@]}" install --no-install-recommends "$@" && return
    "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "$@"
}

# step NAME COMMAND...: runs a command with its output in a log, which `log` names afterwards. Shows
# how long it took; meanwhile a terminal shows the log's last line, and a file gets a line a minute.
# On failure the log's relevant part is printed and the script ends.
step() {
    local name=$1 start=$SECONDS shown=$SECONDS status label
    shift
    step_number=$((step_number + 1))
    label="[$step_number/$step_total] $name"
    log=$logs/$command-$step_number.log
    # The job has a process group of its own, so that all of it can be told to stop.
    set -m
    "$@" > "$log" 2>&1 < /dev/null &
    local job=$!
    set +m
    trap 'kill -- -'"$job"' 2> /dev/null; finish 130 "interrupted in: '"$name"'"' INT TERM
    while kill -0 "$job" 2> /dev/null; do
        if [ -t 1 ]; then
            printf '\r\033[K%s ... %d s  %.60s' "$label" $((SECONDS - start)) \
                "$(tail -n 1 "$log" | tr -d '\r')"
        elif [ $((SECONDS - shown)) -ge 60 ]; then
            shown=$SECONDS
            printf '%s ... %d s  %.100s\n' "$label" $((SECONDS - start)) "$(tail -n 1 "$log")"
        fi
        sleep 0.2
    done
    wait "$job"
    status=$?
    trap - INT TERM
    [ ! -t 1 ] || printf '\r\033[K'
    if [ "$status" -ne 0 ]; then
        echo "$label FAILED after $((SECONDS - start)) s"
        relevant_part "$log"
        finish 1 "FAILED in: $name (whole log: ${log#"$root"/})"
    fi
    echo "$label ... $((SECONDS - start)) s"
}

# The part of a log that tells why: from the first failed command of a build, what ctest says but
# for the tests that passed, or else the end.
relevant_part() {
    local part
    part=$(sed -n '/^FAILED: \|error:\|CMake Error/,$p' "$1" | head -n 80)
    if grep -q 'tests passed, .* tests failed' "$1"; then
        part=$(grep -v '^ *Start \+[0-9]\+: \|   Passed  \| sec\*proc ' "$1" | tail -n 200)
    fi
    echo "${part:-$(tail -n 60 "$1")}"
}

# What setup, run and test share: the folders, the Wine environment, the way they speak, the private X server.
# Sourced by bash scripts that have set -euo pipefail.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
bin=$build/bin
logs=$build/logs

say() { printf '[%s] %s\n' "$(date +%H:%M:%S)" "$*"; }

# die REASON NEXT_STEP: the reason in one line, what to do about it in the next, status 1.
die() {
    printf 'error: %s\n' "$1" >&2
    [ $# -lt 2 ] || printf ' next: %s\n' "$2" >&2
    exit 1
}

# missing_packages LIST...: the packages of these lists that are not installed here, a line each. A line of a list is a package, and
# behind it, where not every Debian has it, the releases that do.
missing_packages() {
    local package release
    release=$(. /etc/os-release && echo "${VERSION_ID:-}")
    awk -v release="$release" '
        { sub(/#.*/, "") }
        NF == 1 { print $1 }
        { for (n = 2; n <= NF; n++) if ($n == release) print $1 }' "$@" | while read -r package; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
    done
}

# logged LOG COMMAND...: runs a command with its output in a file. While it takes long, says every 15 seconds how far it is: the
# last line of that output. Its status is the command's.
logged() {
    local log=$1 pid ticks=0
    shift
    mkdir -p "$logs"
    "$@" >"$log" 2>&1 </dev/null &
    pid=$!
    while kill -0 "$pid" 2>/dev/null; do
        sleep 0.2
        ticks=$((ticks + 1))
        [ $((ticks % 75)) -ne 0 ] || say "  ... $(tail -n 1 "$log" | tr -d '\r' | cut -c 1-90)"
    done
    wait "$pid"
}

# quietly LOGNAME NEXT_STEP COMMAND...: runs a command with its output in build/logs, and shows the end of that on failure.
quietly() {
    local log=$logs/$1.log name=$1 next=$2
    shift 2
    if ! logged "$log" "$@"; then
        tail -n 25 "$log" >&2
        die "'$name' failed; all of its output is in ${log#"$root"/}" "$next"
    fi
}

# Configures and builds everything in its shipped form.
build_all() {
    say "Building"
    quietly configure "look at the CMake message above" cmake --preset release
    quietly build "mend the error above; 'cmake --build --preset release' shows it again" \
        cmake --build --preset release
}

# The environment of every Windows program. LC_ALL decides the code page and the system language, so it is set here and
# never for a compiler.
wine_environment() {
    export WINEPREFIX=$build/wine WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES='mscoree=,mshtml='
    # bash itself need not know a locale that was made a moment ago.
    { export LC_ALL=${LUMIVANE_LOCALE:-ja_JP.UTF-8}; } 2>/dev/null
}

xvfb_pid=
# start_display [WIDTHxHEIGHT]: starts a private X server and points DISPLAY at it. The server itself finds the free
# display number.
start_display() {
    local number size=${1:-1024x768}
    mkdir -p "$logs"
    exec {display_fd}<> <(:)
    Xvfb -displayfd "$display_fd" -screen 0 "${size}x24" -nolisten tcp >"$logs/xvfb.log" 2>&1 </dev/null &
    xvfb_pid=$!
    if ! read -r -t 30 number <&"$display_fd"; then
        die "the private X server did not start; see ${logs#"$root"/}/xvfb.log" "Xvfb -displayfd 1 shows the reason"
    fi
    exec {display_fd}>&-
    export DISPLAY=:$number
}

stop_display() {
    [ -n "$xvfb_pid" ] || return 0
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=
}

# copy_prefix FOLDER: the build's Wine prefix once more. Programs and libraries are hard links, as nobody writes into them; all other
# files are copies, or a setting made in one prefix would show in the other.
copy_prefix() {
    mkdir -p "$(dirname "$1")"
    cp -al "$build/wine" "$1"
    (cd "$build/wine" && find . -type f ! -name '*.dll' ! -name '*.exe' ! -name '*.drv' ! -name '*.sys' ! -name '*.nls' -print0 |
        xargs -0 cp -a --parents --remove-destination -t "$1")
    rm -f "$1/wineserver" # Debian's note of where this prefix's server has its socket
}

# in_own_network COMMAND...: in a network that holds nothing but a loopback interface of its own. Fails where this system does not let
# us make one: a container's root without the rights for it, or a user without namespaces.
in_own_network() {
    local way=(--net)
    [ "$(id -u)" = 0 ] || way+=(--map-current-user --keep-caps)
    unshare "${way[@]}" sh -c 'ip link set lo up && exec "$@"' sh "$@"
}

# start_wine [PREFIX_COMMAND]: keeps this prefix's Wine server up between programs, and has it start its background programs now, away
# from our pipes. The server makes all sockets of its programs: what it is started through decides their network.
start_wine() {
    "$@" wineserver -p >/dev/null 2>&1 </dev/null || true
    wineboot >/dev/null 2>&1 </dev/null || true
}

stop_wine() { wineserver -k >/dev/null 2>&1 </dev/null || true; }

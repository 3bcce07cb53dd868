# Desks: places where Windows programs run side by side without meeting. Each has a Wine prefix, a private display, a copy of the
# programs (their settings lie beside them) and, where this system allows it, a network of its own, for the plug-in answers on
# a fixed port. Sourced by bash scripts, behind common.sh.
#
# CTest gives a test the number of a free desk, and tools/on-desk runs it there. Desk 0 is build/wine with the programs where they were
# built; the others are in build/desks.

desks=$build/desks
desk_count=0
desk_displays=() # process numbers of their X servers

desk_prefix() { if [ "$1" = 0 ]; then echo "$build/wine"; else echo "$desks/$1/wine"; fi; }

# lay_desk NUMBER PROGRAMS: its prefix, once, and its copy of the programs' folder.
lay_desk() {
    local desk=$desks/$1
    mkdir -p "$desk"
    [ "$1" != 0 ] || return 0
    if ! cmp -s "$build/wine/.lumivane" "$desk/wine/.lumivane"; then
        rm -rf "$desk/wine"
        copy_prefix "$desk/wine"
    fi
    rm -rf "$desk/bin"
    cp -a "$2" "$desk/bin"
}

# open_desk PROGRAMS [NETWORK_COMMAND]: its Wine server, and what keeps its desktop.
open_desk() {
    start_wine ${2:+"$2"}
    wine "$1/tests/desk_keeper.exe" >/dev/null 2>&1 </dev/null &
}

# start_desks PROGRAMS [MOST]: lays as many as there are cores, and MOST at the most; a single one where networks cannot be kept
# apart. Starts their displays and Wine servers. desk_options is then what tells CTest of them.
start_desks() {
    local desk list='' starting=() network=in_own_network
    desk_count=${2:-$(nproc)}
    if ! in_own_network true 2>/dev/null; then
        say "  this system gives us no networks of our own, so the tests run one after another"
        network= desk_count=1
    fi
    for ((desk = 0; desk < desk_count; desk++)); do
        lay_desk "$desk" "$1"
        start_display
        desk_displays+=("$xvfb_pid")
        xvfb_pid=
        echo "$DISPLAY" >"$desks/$desk/display"
        WINEPREFIX=$(desk_prefix "$desk") open_desk "$1" "$network" &
        starting+=($!)
        list+="${list:+, }{\"id\": \"$desk\", \"slots\": 1}"
    done
    wait "${starting[@]}"
    echo "{\"version\": {\"major\": 1, \"minor\": 0}, \"local\": [{\"desks\": [$list]}]}" >"$desks/desks.json"
    desk_options=(--parallel "$desk_count" --resource-spec-file "$desks/desks.json")
    export LUMIVANE_PROGRAMS=$1
    unset DISPLAY # a test without a desk starts one of its own
}

stop_desks() {
    local desk pid
    for ((desk = 0; desk < desk_count; desk++)); do
        WINEPREFIX=$(desk_prefix "$desk") stop_wine
    done
    for pid in "${desk_displays[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    desk_displays=()
    desk_count=0
}

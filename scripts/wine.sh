# shellcheck shell=bash
# A Windows of its own under wine, made afresh and gone at the end (700 MB). To be sourced behind setup.sh.

# Beside the tree: what is in there are links to the whole machine.
wine_folder=${root:?}/build/wine
ports=(COM10 COM11 COM12 COM13 COM14 COM15 COM16 COM17)
helpers=()

set_up_wine() {
    unset DISPLAY WAYLAND_DISPLAY
    export HOME=$wine_folder/home WINEPREFIX=$wine_folder/prefix WINEDEBUG=-all LC_ALL=C.UTF-8
    export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
    trap tear_down_wine EXIT
    rm -rf "$wine_folder"
    mkdir -p "$HOME" "$wine_folder/ports"
    timeout 300 wine wineboot --init >"$wine_folder/log" 2>&1 ||
        fail "wine could not be set up: $(tail -n 3 "$wine_folder/log")"
}

tear_down_wine() {
    local helper
    for helper in "${helpers[@]}"; do
        kill "$helper" 2>/dev/null || true
    done
    wineserver --kill >/dev/null 2>&1 || true
    timeout 60 wineserver --wait || true
    rm -rf "$wine_folder"
}

# Runs a program for Windows, whose lines are passed on as they come; what wine itself has to say goes to the log.
run_windows() {
    local seconds=$1
    shift
    timeout "$seconds" wine "$@" 2>>"$wine_folder/log" </dev/null | sed -u 's/\r$//'
}

# add_port NAME PATH: both are needed, the one to be listed, the other to be opened. wine sees it from its next start.
add_port() {
    timeout 60 wine reg add 'HKLM\Software\Wine\Ports' /v "$1" /d "$2" /f >>"$wine_folder/log" 2>&1 ||
        fail "wine was not told of the port $1: $(tail -n 3 "$wine_folder/log")"
    ln -sfn "$2" "$WINEPREFIX/dosdevices/${1,,}" || fail "$1 could not be made to lead to $2."
}

restart_wine() {
    wineserver --kill
    wineserver --wait
}

# The first line that a helper writes, or an error after ten seconds.
first_line_of() {
    local tries
    for ((tries = 0; tries < 100; tries++)); do
        if [[ -s $1 ]]; then
            head -n 1 "$1" | tr -d '\r'
            return
        fi
        sleep 0.1
    done
    fail "$1 stayed empty for ten seconds."
}

# Makes the lines that tests ask for (tests/windows/line_maker.cpp), each a port below one of our names.
start_line_maker() {
    local port
    "$1" "$wine_folder/ports" "${ports[@]}" >"$wine_folder/line_maker" &
    helpers+=($!)
    for port in "${ports[@]}"; do
        add_port "$port" "$wine_folder/ports/$port"
    done
    restart_wine
    VARDA_LINE_MAKER=$(first_line_of "$wine_folder/line_maker")
    export VARDA_LINE_MAKER
}

# A screen without a window manager: wine would wait two seconds for one each time that a window goes.
start_screen() {
    timeout 60 wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$wine_folder/log" 2>&1 ||
        fail "wine was not told that there is no window manager: $(tail -n 3 "$wine_folder/log")"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$wine_folder/display" >>"$wine_folder/log" 2>&1 &
    helpers+=($!)
    DISPLAY=:$(first_line_of "$wine_folder/display")
    export DISPLAY
}

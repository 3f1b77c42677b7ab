# shellcheck shell=bash disable=SC2034
# Functions that the scripts share: install packages, run commands, build presets. Source it from the
# top of the tree.

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages NAME...: installs the packages that are missing.
install_packages() {
    local missing=() name
    for name in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] ||
            missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    show_on_failure as_root apt-get -q update
    show_on_failure as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# show_on_failure COMMAND...: runs the command and shows its output only if it fails.
show_on_failure() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    if [ $status -ne 0 ]; then
        cat "$log"
        echo "failed ($status): $*"
    fi
    rm -f "$log"
    return $status
}

# build_preset NAME [OPTION...]: configures the preset with the options and builds it.
build_preset() {
    local preset=$1
    shift
    echo "Building $preset"
    show_on_failure cmake --preset "$preset" "$@"
    show_on_failure cmake --build --preset "$preset"
}

# cached BUILD NAME: prints the value of a variable in the CMake cache of a build directory.
cached() {
    sed -n "s/^$2:[A-Z]*=//p" "$1/CMakeCache.txt"
}

# find_emulator BUILD: sets $emulator to the command that runs programs of a build that was
# cross-built, otherwise to nothing.
find_emulator() {
    IFS=';' read -ra emulator <<<"$(cached "$1" CMAKE_CROSSCOMPILING_EMULATOR)"
}

# run_daemon BUILD ACTION [VARIABLE=VALUE...]: starts the daemon in the build directory, in the
# emulator if it was cross-built, runs the action when it has started, and stops it with SIGTERM.
# Fails and shows the log if the action fails or the daemon doesn't stop properly. Sets $log.
run_daemon() {
    local build=$1 action=$2 status=0 line daemon emulator
    log=
    find_emulator "$build"
    exec 3< <(exec env ECORE_NO_SYSTEM_MODULES=1 "${@:3}" "${emulator[@]}" "$build/bin/corvaned" 2>&1)
    daemon=$!
    while read -r line <&3; do
        log+=$line$'\n'
        if [[ $line == *'OUT << [void CommonDaemon::start()'* ]]; then
            $action || status=$?
            kill -TERM $daemon
        fi
    done
    wait $daemon || status=$?
    if [[ $status -ne 0 || $log != *'deinit bluetooth'* ]]; then
        printf %s "$log"
        echo "$build/bin/corvaned doesn't start and stop properly ($status)"
        return 1
    fi
}

# socket_directory: prints the directory for the daemon's socket, and creates it if it is missing. It
# is in XDG_RUNTIME_DIR or /run if this user can create it there, otherwise in TMPDIR or /tmp.
socket_directory() {
    local directory
    for directory in "${XDG_RUNTIME_DIR:-/run}/corvane" "${TMPDIR:-/tmp}/corvane-$(id -u)"; do
        mkdir -m 700 "$directory" 2>/dev/null || true
        # The daemon requires this, so that no other user can replace the socket.
        if [ -d "$directory" ] && [ ! -L "$directory" ] && [ -O "$directory" ] &&
            [ -w "$directory" ] && [ -z "$(find "$directory" -maxdepth 0 -perm /022)" ]; then
            echo "$directory"
            return
        fi
    done
    echo "$directory is not a directory that only you may write to" >&2
    return 1
}

LIBRARY_PACKAGES=(libefl-all-dev libsystemd-dev libcli11-dev nlohmann-json3-dev libinih-dev
                  libpulse-dev libelf-dev libdw-dev)
BUILD_PACKAGES=(g++ cmake ninja-build pkg-config "${LIBRARY_PACKAGES[@]}")
TEST_PACKAGES=(libgtest-dev libgmock-dev dbus python3-dbusmock python3-gi systemd libglib2.0-bin
               pulseaudio pulseaudio-utils mandoc)

# What the scripts share: packages, and builds that speak only when they fail.
# Source it from the top of the tree.

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages NAME...: those that are missing, with one line about it.
install_packages() {
    local missing=() name
    for name in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] ||
            missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}"
    quietly as_root apt-get -q update
    quietly as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# quietly COMMAND...: its output only if it fails.
quietly() {
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

# build_preset NAME [OPTION...]: configures with the options and builds.
build_preset() {
    local preset=$1
    shift
    echo "Building $preset"
    quietly cmake --preset "$preset" "$@"
    quietly cmake --build --preset "$preset"
}

# socket_directory: the directory for the daemon's socket, created if there is none: in
# XDG_RUNTIME_DIR or /run if it can be had there, else in TMPDIR or /tmp.
socket_directory() {
    local directory
    for directory in "${XDG_RUNTIME_DIR:-/run}/corvane" "${TMPDIR:-/tmp}/corvane-$(id -u)"; do
        mkdir -m 700 "$directory" 2>/dev/null || true
        # As the daemon wants it: nobody else can put another socket there.
        if [ -d "$directory" ] && [ ! -L "$directory" ] && [ -O "$directory" ] &&
            [ -w "$directory" ] && [ -z "$(find "$directory" -maxdepth 0 -perm /022)" ]; then
            echo "$directory"
            return
        fi
    done
    echo "$directory is not a directory that only you may write to" >&2
    return 1
}

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config libefl-all-dev libsystemd-dev libcli11-dev
                nlohmann-json3-dev libinih-dev libpulse-dev libelf-dev libdw-dev)
TEST_PACKAGES=(libgtest-dev libgmock-dev dbus python3-dbusmock python3-gi systemd libglib2.0-bin
               pulseaudio pulseaudio-utils mandoc)

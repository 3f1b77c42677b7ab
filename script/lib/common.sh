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

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config libefl-all-dev libsystemd-dev libcli11-dev
                nlohmann-json3-dev libinih-dev libpulse-dev libelf-dev libdw-dev)
TEST_PACKAGES=(libgtest-dev libgmock-dev dbus python3-dbusmock python3-gi systemd libglib2.0-bin
               pulseaudio pulseaudio-utils mandoc)

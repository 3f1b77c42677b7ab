# shellcheck shell=bash disable=SC2034,SC2086
# The functions that the scenario calls.

serial_port=00001101-0000-1000-8000-00805f9b34fb
remote_control_target=0000110c-0000-1000-8000-00805f9b34fb
events=/run/shared/daemon.log

# until_true SECONDS COMMAND...
until_true() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        [ $SECONDS -lt $end ] || return
        sleep 0.2
    done
}

# start_bluetoothd SETTINGS: SETTINGS is classic or le.
start_bluetoothd() {
    /usr/libexec/bluetooth/bluetoothd -n -f "$PWD/$1.conf" >>/run/shared/bluetoothd.log 2>&1 &
    bluetoothd=$!
    until_true 60 powered hci0 && until_true 60 powered hci1
}

stop_bluetoothd() {
    kill $bluetoothd
    wait $bluetoothd
}

powered() {
    [ "$(adapter "$1" get Powered 2>/dev/null)" = "b true" ]
}

# adapter hciN get PROPERTY, adapter hciN set PROPERTY TYPE VALUE, adapter hciN METHOD...
adapter() { use "/org/bluez/$1" org.bluez.Adapter1 "${@:2}"; }

# device hciN ...: the same for the other controller as a device of hciN.
device() { use "$(device_path "$1")" org.bluez.Device1 "${@:2}"; }

# persist COMMAND...: repeats the command, because virtual controllers sometimes refuse a connection.
persist() { until_true 20 "$@"; }

# discover ADDRESS: BlueZ stops the discovery when busctl, which requested it, exits.
discover() {
    adapter hci0 StartDiscovery
    until_true 3 logged bt-adapter-device-discovery-state-changed state=found "$1"
}

use() {
    case $3 in
    get) busctl get-property org.bluez "$1" "$2" "$4" ;;
    set) busctl set-property org.bluez "$1" "$2" "${@:4}" ;;
    *) busctl --timeout=60 call org.bluez "$@" ;;
    esac
}

# control hciN LINE...: starts bluetoothctl and sends it the lines; `tell LINE...` sends more.
control() {
    coproc CONTROL { exec bluetoothctl; }
    exec 9>&"${CONTROL[1]}"
    sleep 1
    tell "select $(address_of "$1")" "${@:2}"
}

# Sends one line at a time, because some lines answer a question that the line before causes.
tell() {
    local line
    for line in "$@"; do
        echo "$line" >&9
        sleep 0.5
    done
}

address_of() { adapter "$1" get Address | tr -d 's "'; }

device_path() {
    local other=hci0
    [ "$1" != hci0 ] || other=hci1
    echo "/org/bluez/$1/dev_$(address_of $other | tr : _)"
}

# step TEXT: begins a step. What it expects has to occur after its beginning.
step() {
    echo "step $*"
    first=$(($(wc -l <$events) + 1))
}

# expect EVENT [FRAGMENT...]: within 20 s one line has to contain all of them.
expect() {
    if until_true 20 logged "$@"; then
        echo "ok $*"
    else
        echo "missing $*"
    fi
}

# refuse EVENT [FRAGMENT...]: no line may contain all of them.
refuse() {
    if logged "$@"; then
        echo "unwanted $*"
    else
        echo "ok no $*"
    fi
}

logged() {
    local lines fragment
    lines=$(tail -n "+$first" $events | grep -F "EVENT_LOG: $1")
    for fragment in "${@:2}"; do
        lines=$(grep -F -e "$fragment" <<<"$lines")
    done
    [ -n "$lines" ]
}

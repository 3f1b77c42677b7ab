# shellcheck shell=bash
# The guest's kernel and initial file system. Source it after common.sh.

# Kernel modules for the guest: shared files, Bluetooth with virtual controllers, and the input devices
# that BlueZ creates.
GUEST_MODULES=(virtio_pci 9pnet_virtio 9p drbg ecb cmac ccm algif_hash algif_skcipher
               bluetooth hci_vhci rfcomm hidp uhid uinput evdev)

# prepare_image DIRECTORY: writes Debian's kernel to DIRECTORY/image/kernel and the initial file system
# to DIRECTORY/image/initrd. The kernel is unpacked, not installed.
prepare_image() {
    local directory=$1 package
    package=$(apt-cache depends linux-image-amd64 | awk '/Depends:/ { print $2; exit }')
    [ "$(cat "$directory/image/package" 2>/dev/null)" != "$package" ] || return 0
    echo "Unpacking $package"
    rm -rf "$directory/image" "$directory/new"
    mkdir -p "$directory/new/unpacked"
    (cd "$directory/new" && show_on_failure apt-get download "$package")
    dpkg-deb -x "$directory/new/$package"_*.deb "$directory/new/unpacked"
    cp "$directory"/new/unpacked/boot/vmlinuz-* "$directory/new/kernel"
    make_initrd "$directory/new"
    rm -rf "$directory"/new/{*.deb,unpacked,root}
    echo "$package" >"$directory/new/package"
    mv "$directory/new" "$directory/image"
}

# make_initrd DIRECTORY: makes DIRECTORY/initrd from DIRECTORY/unpacked.
make_initrd() {
    local root=$1/root
    mkdir -p "$root"/{bin,proc,sys,dev,new,modules}
    cp /bin/busybox "$root/bin/"
    cp script/lib/vm-bluez/init "$root/init"
    list_modules "$1/unpacked" | while read -r file; do
        cp "$file" "$root/modules/"
        basename "$file"
    done >"$root/modules/order"
    (cd "$root" && find . | busybox cpio -o -H newc 2>/dev/null) | gzip -1 >"$1/initrd"
}

# list_modules DIRECTORY: prints the files to load, in order.
list_modules() {
    local version module directory
    directory=$(realpath "$1")
    version=$(ls "$directory/lib/modules")
    depmod -b "$directory" "$version"
    for module in "${GUEST_MODULES[@]}"; do
        # drbg and others may be built in
        modprobe -d "$directory" -S "$version" --show-depends "$module" 2>/dev/null || true
    done | awk '$1 == "insmod" && !seen[$2]++ { print $2 }'
}

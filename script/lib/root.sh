# shellcheck shell=bash
# Functions for clean Debian roots. Source it after common.sh, from the top of the tree.

# debian_mirror: prints the mirror that this machine uses.
debian_mirror() {
    local mirror
    # shellcheck disable=SC2016
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' \
        "Codename: $(this_release)" | sed -n 1p)
    echo "${mirror:-http://deb.debian.org/debian}"
}

# this_release: prints the name of this machine's Debian release.
this_release() {
    (. /etc/os-release && echo "$VERSION_CODENAME")
}

# make_root DIRECTORY RELEASE ARCH PACKAGE...: makes a root with the packages and sets $root to it. It
# is removed when the script ends.
make_root() {
    root=$1
    local release=$2 architecture=$3 packages
    packages=$(IFS=,; echo "${*:4}")
    [ "$(id -u)" -eq 0 ] || { echo "only the user root can make a Debian root" >&2; return 2; }
    install_packages mmdebstrap
    remove_root
    trap remove_root EXIT
    mkdir -p "$(dirname "$root")"
    echo "Creating a root of Debian $release, $architecture"
    show_on_failure mmdebstrap --variant=minbase --architectures="$architecture" \
        --include="$packages" "$release" "$root" "$(debian_mirror)"
    cp /etc/resolv.conf "$root/etc/"
    cp -r /etc/apt/apt.conf.d/. "$root/etc/apt/apt.conf.d/"
    # Programs in the root can make mount namespaces of their own only if it is a mount point.
    mount --bind "$root" "$root"
    mount -t proc proc "$root/proc"
    local directory
    for directory in dev sys; do
        mount --rbind "/$directory" "$root/$directory"
        mount --make-rslave "$root/$directory"
    done
}

# in_root COMMAND...: runs the command in the root.
in_root() {
    chroot "$root" env -i HOME=/root TERM=dumb PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"
}

# remove_root: unmounts what make_root has mounted, and removes the root.
remove_root() {
    if mountpoint -q "$root"; then umount -R --lazy "$root"; fi
    rm -rf --one-file-system "$root"
}

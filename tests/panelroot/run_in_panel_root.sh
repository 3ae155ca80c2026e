#!/bin/sh
# Runs a program in a file tree of the panel's own: a private mount namespace
# whose root is a RAM disk with the program, its libraries, a shell and `mount`.
# Nothing that it mounts, unmounts or writes reaches the machine, and no disk of
# the machine shows in its mount table.
#
# usage: run_in_panel_root.sh PROGRAM PLUGIN [ARGUMENT...]
#   PLUGIN: a library that the program loads by itself
set -eu
PATH=$PATH:/usr/sbin:/sbin

. "$(dirname "$0")/../support/privatemounts.sh"
enter_private_mounts "$0" "$@"

program=$1
plugin=$2
shift 2
root=/mnt
mount -t tmpfs -o mode=755 panelroot $root
cd $root
mkdir -p bin dev/input proc tmp run/media media etc root
chmod 1777 tmp

# Copies files with all libraries that they need, to the same places.
copy_with_libraries() {
    for file; do
        echo "$file"
        ldd "$file" | grep -o '/[^ ]*'
    done | sort -u | xargs cp -L --parents -t $root
}

for tool in sh mount umount grep mkdir cat; do
    cp -L "$(command -v $tool)" bin/
    copy_with_libraries "$(readlink -f "$(command -v $tool)")"
done
copy_with_libraries "$program" "$plugin"

mount --rbind /proc proc
for device in null zero full urandom; do
    : >dev/$device
    mount --bind /dev/$device dev/$device
done

: >dev/input/event1
head -c 204 /dev/zero >dev/fram
: >etc/panel-root
chroot=$(command -v chroot)
HOME=/root PATH=/bin exec "$chroot" $root "$program" "$@"

#!/bin/sh
# Runs a program in a chroot whose root is no mount point but a plain folder, as
# debootstrap makes them: all that the machine's root holds shows in it.
#
# usage: run_in_chroot.sh FOLDER PROGRAM [ARGUMENT...]
#   FOLDER: an empty one
set -eu
PATH=$PATH:/usr/sbin:/sbin

. "$(dirname "$0")/../support/privatemounts.sh"
enter_private_mounts "$0" "$@"

folder=$1
shift
mount -t tmpfs -o mode=755 chroot "$folder"
mkdir "$folder/root"
for entry in /*; do
    if [ -L "$entry" ]; then
        cp -P "$entry" "$folder/root/"
    elif [ -d "$entry" ]; then
        mkdir "$folder/root$entry"
        mount --rbind "$entry" "$folder/root$entry"
    fi
done
exec chroot "$folder/root" "$@"

#!/bin/sh
# Runs a program while a stick is mounted at /media/usb0, and lists what is on the
# stick then.
#
# usage: with_mounted_stick.sh PROGRAM [ARGUMENT...]
set -eu
PATH=$PATH:/usr/sbin:/sbin

. "$(dirname "$0")/../support/privatemounts.sh"
enter_private_mounts "$0" "$@"

mount -t tmpfs tmpfs /media
mkdir /media/usb0
mount -t tmpfs /dev/sdz1 /media/usb0
"$@"
ls /media/usb0

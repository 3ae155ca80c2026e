# shellcheck shell=sh
# enter_private_mounts SCRIPT [ARGUMENT...]: runs the script again in a mount
# namespace of its own, and returns there. Nothing that it mounts or unmounts then
# reaches the machine.
enter_private_mounts() {
    [ "${PRIVATE_MOUNTS:-}" != entered ] || return 0
    namespace=--mount
    [ "$(id -u)" = 0 ] || namespace="--map-root-user --mount"
    # In a chroot whose root is no mount point nothing can be said of propagation.
    # shellcheck disable=SC2086 # a list of words on purpose
    unshare $namespace true 2>/dev/null || namespace="$namespace --propagation unchanged"
    # shellcheck disable=SC2086
    if ! unshare $namespace true; then
        echo "FAILED: this kernel refuses a private mount namespace (unshare $namespace)." >&2
        exit 1
    fi
    # shellcheck disable=SC2086
    PRIVATE_MOUNTS=entered exec unshare $namespace "$@"
}

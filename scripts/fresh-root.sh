# shellcheck shell=bash
# A new Debian 12 in a directory, for scripts that try things on a bare machine. To be sourced; needs root and mmdebstrap.

# make_root ROOT: with this machine's package sources.
make_root() {
  local root=$1 file line sources=() options=()
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list; do
    if [ -f "$file" ] && grep -qE 'bookworm' "$file" && grep -qE 'debian' "$file"; then sources+=("$file"); fi
  done
  while IFS= read -r line; do options+=("--aptopt=$line"); done \
    < <(apt-config dump Acquire | grep -E '^Acquire::(http|https|Check)')
  echo "Making a new Debian 12 in $root ..." >&2
  mmdebstrap --quiet --mode=root --variant=minbase "${options[@]}" bookworm "$root" "${sources[@]}"
  cp /etc/resolv.conf /etc/hosts "$root/etc/"
}

# in_root ROOT COMMANDS: runs them as root's shell does. Processes and mounts end with them, even if this script is
# killed.
in_root() {
  # shellcheck disable=SC2016 # the inner shell expands them
  root=$1 commands=$2 unshare --mount --pid --fork --kill-child --propagation private bash -euc '
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs tmpfs "$root/tmp"
    cd /
    exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 \
      DEBIAN_FRONTEND=noninteractive chroot "$root" bash -euc "$commands"'
}

# copy_tracked_files DIRECTORY: of the current directory, in their current state.
copy_tracked_files() {
  mkdir -p "$1"
  git ls-files -z | tar --null --files-from=- -c --ignore-failed-read 2>/dev/null | tar -x -C "$1"
}

# SPDX-License-Identifier: MIT
# Shared by the proofs on a fresh machine: a minimal Debian 12 of base packages alone, in a folder
# that goes with the proof. As root. The mirror is the one of this machine's own apt.
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

suite=bookworm
shows_seconds=8 # how long a started game is watched
work=$(mktemp -d /var/tmp/glimmerfall-fresh.XXXXXX)

# The processes that run in a machine, by the folder that is their root.
processes_in() {
  local process
  for process in /proc/[0-9]*; do
    if [ "$(readlink "$process/root")" = "$1" ]; then echo "${process#/proc/}"; fi
  done
}

clean_up() {
  set +e
  local machine
  [ -z "${screen:-}" ] || kill "$screen" 2>/dev/null
  for machine in "$work"/*/; do
    processes_in "${machine%/}" | xargs -r kill -KILL
    umount --recursive --lazy "${machine%/}" 2>/dev/null
  done
  grep -q "$work" /proc/mounts || rm -rf "$work"
}
trap clean_up EXIT

[ "$(id -u)" = 0 ] || fail "run as root"
install_packages "${run_packages[@]}" "${build_packages[@]}" "${test_packages[@]}" \
  debootstrap lintian procps

# A package of the game for the generator of that name.
make_package() {
  say "The package"
  build_preset play
  cpack -G "$1" --config build/play/CPackConfig.cmake -B "$work/package" >/dev/null
}

make_machine() {
  local machine=$1 mirror
  mirror=$(apt-get indextargets --format "\$(SITE) \$(CODENAME)" |
    awk -v suite="$suite" '$2 == suite { print $1; exit }')
  say "A minimal Debian 12"
  debootstrap --variant=minbase "$suite" "$machine" "$mirror" >"$work/debootstrap.log" 2>&1 ||
    fail "debootstrap: $(tail -n 1 "$work/debootstrap.log")"
  mount --bind "$machine" "$machine" # a root of its own, as on a real machine
  cp -a /etc/apt/. "$machine/etc/apt/"
  cp /etc/resolv.conf "$machine/etc/resolv.conf" 2>/dev/null || true
  mount --bind /proc "$machine/proc"
  mount --bind /sys "$machine/sys"
  mount --bind /dev "$machine/dev"
  mount -t tmpfs none "$machine/dev/shm" 2>/dev/null || true
}

inside() {
  local machine=$1
  shift
  chroot "$machine" /usr/bin/env -i PATH=/usr/games:/usr/sbin:/usr/bin:/sbin:/bin HOME=/home \
    CI=true DISPLAY="${display:-}" XDG_RUNTIME_DIR=/tmp "$@"
}

install_inside() {
  local machine=$1
  shift
  inside "$machine" apt-get update >/dev/null
  inside "$machine" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "$@" >/dev/null
}

# Starts a command in the machine on a screen of this one and waits for the chooser's window.
watch_window() {
  local machine=$1 game seen=
  shift
  Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset 3>"$work/display" 2>/dev/null &
  screen=$!
  until [ -s "$work/display" ]; do
    kill -0 "$screen" || fail "no screen"
    sleep 0.1
  done
  display=:$(cat "$work/display")
  mkdir -p "$machine/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$machine/tmp/.X11-unix"
  inside "$machine" "$@" &
  game=$!
  while kill -0 "$game" 2>/dev/null && [ -z "$seen" ]; do
    sleep 1
    DISPLAY=$display xwininfo -root -tree 2>/dev/null | grep -q "Norvane Games Presents" && seen=yes
  done
  [ -n "$seen" ] || fail "$* showed no window"
  sleep $shows_seconds
  kill -0 "$game" || fail "$* ended by itself"
  echo "The chooser stands."
  processes_in "$machine" | xargs -r kill
  wait "$game" || true
  kill "$screen"
  wait "$screen" || true
  umount "$machine/tmp/.X11-unix"
}

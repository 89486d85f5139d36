# SPDX-License-Identifier: MIT
# Shared by ./play and ./test: packages, presets, and how to say what is going on.
# shellcheck shell=bash disable=SC2034 # the package lists are for whoever sources this

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '%s\n' "$*"; }
fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# What the game needs to run, to be built, and to be tested.
run_packages=(
  libqt6widgets6 libopenal1 libsndfile1 libgstreamer1.0-0 libpulse0
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad
  gstreamer1.0-plugins-ugly gstreamer1.0-libav gstreamer1.0-alsa
  timgm6mb-soundfont fonts-liberation fonts-dejavu-core
)
build_packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev libopenal-dev libsndfile1-dev libgstreamer1.0-dev libpulse-dev
)
test_packages=(
  libgtest-dev libbenchmark-dev xvfb openbox xdotool wmctrl x11-utils pulseaudio pulseaudio-utils
  python3 python3-numpy python3-pil python3-scipy locales
  appstream desktop-file-utils libglib2.0-bin povray csound ffmpeg fonts-urw-base35
)

missing_packages() {
  local installed
  installed=$({ dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true; } |
    sed -n 's/ installed$//p')
  printf '%s\n' "$@" | grep -vxF "$installed" || true # no line left is no fault
}

# Installs those of the named packages that are missing.
install_packages() {
  local missing as_root=() said
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  command -v apt-get >/dev/null || fail "these Debian packages are needed: ${missing[*]}"
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || fail "run as root once, or install: ${missing[*]}"
    as_root=(sudo)
  fi
  say "Installing ${#missing[@]} packages: ${missing[*]}"
  if ! said=$({ "${as_root[@]}" apt-get -qq update &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get -qq install -y --no-install-recommends "${missing[@]}"; } 2>&1); then
    fail "the packages could not be installed: $(grep -m 1 '^E: ' <<<"$said" || tail -n 1 <<<"$said")"
  fi
}

# Configures and builds a preset; quiet but for what is compiled.
build_preset() {
  local said
  [ -w . ] || fail "the folder $PWD cannot be written"
  said=$(cmake --preset "$1" 2>&1) || fail "the build could not be configured: $said"
  say "Building ($1)"
  cmake --build --preset "$1" || fail "the build failed"
}

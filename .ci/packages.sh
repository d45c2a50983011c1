# shellcheck shell=bash
# Sourced by the scripts at the root: finds and installs the packages of cmake/packages.txt.
# The caller has changed to the root of the source tree.

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# packages_for NEED...: the names of the packages that one of the needs asks for.
packages_for() {
  local need
  for need in "$@"; do
    awk -v need="$need" '!/^#/ && $2 == need { print $1 }' cmake/packages.txt
  done
}

# is_installed PACKAGE
is_installed() {
  [[ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

# as_root COMMAND...: runs the command with the rights that installing needs.
as_root() {
  if [[ "$(id -u)" -eq 0 ]]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "installing needs root or sudo; as root: $*"
  fi
}

# install_packages NEED...: installs what is missing. Where everything is there, nothing is run and
# nothing is fetched.
install_packages() {
  local -a wanted missing=()
  local package
  mapfile -t wanted < <(packages_for "$@")
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    say "this system has no apt-get, so nothing is installed here; the build needs what these" \
      "Debian packages hold: ${wanted[*]}"
    return
  fi
  for package in "${wanted[@]}"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  say "installing through apt-get: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  # An index that cannot be renewed may still serve: the installation itself tells.
  as_root apt-get update --quiet || say "the package index could not be renewed"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install --yes --quiet \
    --no-install-recommends "${missing[@]}" ||
    fail "apt-get could not install: ${missing[*]}"
}

# configure PRESET [OPTION...]: configures into build/PRESET, with a compiler cache where there is
# one. The preset is read anew each time, so that a changed list of sources is seen.
configure() {
  local preset="$1"
  shift
  local -a cache=()
  if command -v ccache >/dev/null; then
    # Without this the cache passes by every source that has a precompiled header.
    cache=(-DCMAKE_CXX_COMPILER_LAUNCHER="env;CCACHE_SLOPPINESS=pch_defines,time_macros;ccache")
  fi
  cmake --preset "$preset" "${cache[@]}" "$@"
}

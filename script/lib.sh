# shellcheck shell=bash
# What the commands share. Sourced by each of them, after set -euo pipefail; leaves the caller in the project's folder.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

# wanted GROUP...: the packages of these groups, one a line.
wanted() {
  local group
  for group in "$@"; do
    awk -v group="$group" '$1 == group { print $2 }' script/packages.txt
  done | sort -u
}

# need GROUP...: installs what is missing of these groups, and asks nobody anything.
need() {
  local missing as_root=()
  missing=$(comm -23 <(wanted "$@") \
    <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' | awk '$1 == "installed" { print $2 }' | sort -u))
  [[ -n $missing ]] || return 0
  if [[ $EUID -ne 0 ]]; then
    as_root=(sudo)
  fi
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o Dpkg::Use-Pty=0)
  "${apt[@]}" update
  # The list is one package a line.
  # shellcheck disable=SC2086
  "${apt[@]}" install --no-install-recommends $missing
}

# configured PRESET: that preset's build folder, configured if it is not yet.
configured() {
  [[ -f build/$1/build.ninja ]] || cmake --preset "$1"
}

# built PRESET [TARGET...]: builds these targets of a preset, or everything.
built() {
  local preset=$1 targets=()
  shift
  [[ $# -eq 0 ]] || targets=(--target "$@")
  configured "$preset"
  cmake --build "build/$preset" "${targets[@]}"
}

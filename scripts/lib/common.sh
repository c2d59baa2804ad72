# Shared by the scripts: where the tree is, messages, quiet steps, configuring and building a preset.
# shellcheck shell=bash

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
CACHE=${XDG_CACHE_HOME:-$HOME/.cache}/kelcore
JOBS=${KELCORE_JOBS:-$(nproc)}

die() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# Prints the comment at the head of the running script and ends.
usage() {
  sed -n '2,/^[^#]/{/^#/s/^# \{0,1\}//p}' "$0"
  exit "${1:-0}"
}

# Ends with the usage when the first argument asks for it.
answer_help() {
  case ${1:-} in
    -h | --help) usage ;;
  esac
}

# quietly WHAT COMMAND... : runs the command; its output appears only when it fails.
quietly() {
  local what=$1 log status=0
  shift
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    cat "$log" >&2
    echo "${0##*/}: $what failed (exit code $status)" >&2
  fi
  rm -f "$log"
  return "$status"
}

# build_preset PRESET [TARGET...] : build/PRESET, configured and built.
build_preset() {
  local preset=$1
  shift
  cd "$ROOT"
  quietly "configuring $preset" cmake --preset "$preset"
  quietly "building $preset" cmake --build "build/$preset" -j "$JOBS" ${1:+--target "$@"} -- --quiet
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

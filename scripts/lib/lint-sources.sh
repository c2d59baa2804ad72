# Checks that read the sources only. Each prints one line an offence and fails when there was one.
# shellcheck shell=bash

# What a subsystem may include besides itself and the door (export.h, platform.h, widestring.h).
declare -A MAY_INCLUDE=(
  [text]=""
  [runtime]="text file"
  [stream]="text runtime"
  [file]="text runtime"
  [registry]="text"
  [bitmap]="runtime"
  [gdi]="text runtime"
  [imaging]="bitmap stream file text runtime"
)

# sources [PATHSPEC...] : the tracked C++ files that exist, one a line.
sources() {
  local file
  git -C "$ROOT" ls-files -- "$@" | while read -r file; do
    case $file in
      *.cpp | *.h) [ ! -e "$ROOT/$file" ] || echo "$file" ;;
    esac
  done
}

# report WHAT : prints the offences on standard input under a headline; fails when there are any.
report() {
  local offences
  offences=$(cat)
  [ -n "$offences" ] || return 0
  printf '%s:\n%s\n' "$1" "$offences"
  return 1
}

check_format() {
  (cd "$ROOT" && sources | xargs clang-format --dry-run -Werror 2>&1 || true) |
    sed -nE 's/:[0-9]+:[0-9]+: (error|warning):.*//p' | sort -u |
    report "not laid out as .clang-format asks (run clang-format -i)"
}

# The subsystem a file belongs to, by its folder or by its public header.
subsystem_of() {
  local path=${1#include/kelcore/}
  path=${path%%/*}
  case ${path%.h} in
    picture) echo imaging ;;
    *) echo "${path%.h}" ;;
  esac
}

# includes_of FILE : what it includes from the project, as TARGET-SUBSYSTEM:LINE.
includes_of() {
  sed -nE 's@^[ \t]*#[ \t]*include[ \t]*[<"](kelcore/[^">]*|[a-z]+/[A-Za-z0-9_/]+\.h)[">].*@\1@p' "$ROOT/$1" | sort -u
}

# layer_offences FILE : the library's folders and their public headers against the table.
layer_offences() {
  local own target included
  own=$(subsystem_of "$1")
  if [ -z "${MAY_INCLUDE[$own]+known}" ]; then
    echo "$1: $own has no row in the table of layers"
    return
  fi
  for included in $(includes_of "$1"); do
    case $included in
      kelcore/platform.h | kelcore/export.h | kelcore/widestring.h) continue ;;
      kelcore/*) target=$(subsystem_of "include/$included") ;;
      sys/*) continue ;;
      *) target=${included%%/*} ;;
    esac
    case " $own ${MAY_INCLUDE[$own]} " in
      *" $target "*) ;;
      *) echo "$1: $own may not include $included" ;;
    esac
  done
}

# The platform layer includes itself and its own contract headers only.
platform_offences() {
  local included
  for included in $(includes_of "$1"); do
    case $included in
      platform/* | kelcore/platform/* | kelcore/platform.h | kelcore/export.h | sys/* | linux/* | fontconfig/*) ;;
      *) echo "$1: the platform layer may not include $included" ;;
    esac
  done
}

# The toolkit is a module of its own: of the library it knows the contract between them.
toolkit_offences() {
  local included
  for included in $(includes_of "$1"); do
    case $included in
      toolkit/* | kelcore/imaging/toolkit.h | kelcore/platform.h | kelcore/export.h | webp/*) ;;
      *) echo "$1: the toolkit may not include $included" ;;
    esac
  done
}

subsystems() {
  sed -n 's/^set(subsystems \(.*\))/\1/p' "$ROOT/CMakeLists.txt"
}

layer_lines() {
  local file folder
  for folder in $(subsystems); do
    for file in $(sources "$folder" "include/kelcore/$folder.h" "include/kelcore/$folder"); do
      layer_offences "$file"
    done
  done
  for file in $(sources platform include/kelcore/platform); do
    platform_offences "$file"
  done
  for file in $(sources toolkit); do
    toolkit_offences "$file"
  done
}

check_layers() {
  layer_lines | report "includes against the layers"
}

# One door to the system: its headers and its names for itself stay in the platform layer.
door_lines() {
  local everywhere library
  mapfile -t everywhere < <(sources ':!platform' ':!include/kelcore/platform.h' ':!include/kelcore/export.h' \
    ':!include/kelcore/platform')
  (cd "$ROOT" && grep -nE \
    '^[[:space:]]*#.*(_WIN(32|64)\b|__linux__|__unix__|__APPLE__|__MINGW|_MSC_VER|include *[<"]windows\.h)' \
    "${everywhere[@]}" /dev/null) || true
  # shellcheck disable=SC2046 # one word, one folder
  mapfile -t library < <(sources $(subsystems) examples)
  (cd "$ROOT" && grep -nE \
    '^[[:space:]]*#.*include *<(unistd|fcntl|dirent|dlfcn|iconv|pthread|langinfo|sys/[a-z]+|linux/[a-z]+)\.h>' \
    "${library[@]}" /dev/null) || true
}

check_door() {
  door_lines | report "the system named outside the door (platform.h, export.h, platform/)"
}

# Lines that hold more than blanks and comments.
code_lines() {
  (cd "$ROOT" && xargs -r cat) | awk '
    { line = $0; code = "" }
    {
      while (line != "") {
        if (inside) {
          end = index(line, "*/")
          if (!end) break
          inside = 0; line = substr(line, end + 2)
        } else {
          start = index(line, "/*"); slashes = index(line, "//")
          if (slashes && (!start || slashes < start)) { code = code substr(line, 1, slashes - 1); break }
          if (!start) { code = code line; break }
          code = code substr(line, 1, start - 1); inside = 1; line = substr(line, start + 2)
        }
      }
      if (code ~ /[^ \t]/) lines++
    }
    END { print lines + 0 }'
}

check_ratio() {
  local tests code ratio
  tests=$(sources tests | code_lines)
  code=$(sources ':!tests' ':!bench' ':!fuzz' | code_lines)
  ratio=$((tests * 1000 / code))
  echo "test lines: $tests to $code lines of code, $((ratio / 10)).$((ratio % 10)) % (wanted: 25 to 33)"
}

registered_lines() {
  local file
  for file in $(sources 'tests/*Test.cpp'); do
    grep -qw -- "${file##*/}" "$ROOT/${file%/*}/CMakeLists.txt" || echo "$file is in no CMakeLists.txt"
  done
}

check_registered() {
  registered_lines | report "tests that nothing builds"
}

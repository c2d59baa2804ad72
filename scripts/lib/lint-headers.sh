# Checks of the public headers: each compiles alone, and what they offer is in the export tables.
# shellcheck shell=bash

# compile_alone STANDARD HEADER
compile_alone() {
  g++ "-std=$1" -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I "$ROOT/include" -x c++ - <<<"#include <${2#include/}>"
}

check_headers() {
  export ROOT
  export -f compile_alone
  for standard in c++17 c++20; do
    sources include | sed "s/^/$standard /"
  done | xargs -P "$JOBS" -L 1 bash -c 'compile_alone "$1" "$2" || exit 1' run
}

exported_classes() {
  sed -nE 's/^ *(class|struct) KELCORE_API ([A-Za-z]+).*/\2/p' "$@"
}

# offered_members HEADER... : "COUNT Class::Member" for the public and protected members of the exported classes and for
# the exported functions, as the headers declare them. Templates, pure, deleted and defaulted members have no entry to
# export: clients bring them themselves.
offered_members() {
  ctags -f - --languages=C++ --language-force=C++ --kinds-C++=pf --fields=KaSsZ \
    --fields-C++='+{properties}{template}' -D KELCORE_API= -D KELCORE_INLINE= -D STDMETHODCALLTYPE= "$@" |
    awk -F '\t' -v classes="$(exported_classes "$@" | tr '\n' ' ')" '
      BEGIN { count = split(classes, list, " "); for (i = 1; i <= count; i++) exported[list[i]] = 1 }
      {
        scope = access = properties = ""; template = 0
        for (i = 4; i <= NF; i++) {
          if ($i ~ /^scope:/) { scope = $i; sub(/^scope:[a-z]+:/, "", scope) }
          if ($i ~ /^access:/) access = substr($i, 8)
          if ($i ~ /^properties:/) properties = substr($i, 12)
          if ($i ~ /^template:/) template = 1
        }
        own = scope; sub(/.*::/, "", own)
        if (template || access == "private" || properties ~ /pure|delete|default/) next
        if (access != "" ? !(own in exported) : $3 !~ /KELCORE_API/) next
        name = (scope == "" ? "" : scope "::") $1
        sub(/operator [A-Za-z_].*/, "operator conversion", name); gsub(/ /, "", name)
        offered[name]++
      }
      END { for (name in offered) print offered[name], name }' | sort -k 2
}

# Conversion operators are counted together, for the tools spell their types differently.
#
# Reads demangled symbols, prints "COUNT Class::Member" like offered_members: without parameters, whose spelling
# differs between targets, and without what the compiler adds (tables, thunks).
count_members() {
  grep -vE '^(vtable|typeinfo|VTT|construction|guard|(non-)?virtual thunk|covariant)|^std::|^__' | sort -u |
    sed -E 's/\[abi:[a-z0-9]+\]//; s/operator [A-Za-z_][^(]*/operator conversion/; s/(operator\(\))?\(.*$/\1/; s/ //g' | sort | uniq -c | sed 's/^ *//'
}

library_members() {
  nm -D --defined-only "$1" | awk '{ print $NF }' | c++filt | count_members
}

# The 32-bit table holds names decorated with the size of their arguments.
dll_members() {
  objdump -p "$1" | awk '/^\[Ordinal\/Name Pointer\] Table/ { on = 1; next } on && /^$/ { exit } on { print $NF }' |
    sed -E 's/@[0-9]+$//' | c++filt | count_members
}

# missing_members OFFERED TABLE : the offered members with fewer entries in the table than the headers declare.
missing_members() {
  awk 'NR == FNR { has[$2] = $1; next } has[$2] + 0 < $1 { print $2 ": " has[$2] + 0 " of " $1 }' "$2" "$1"
}

# export_lines : compares with every table that has been built; the shared object is.
export_lines() {
  local offered table dll
  offered=$(mktemp)
  table=$(mktemp)
  # shellcheck disable=SC2046 # one word, one header
  (cd "$ROOT" && offered_members $(sources include ':!include/kelcore/platform')) >"$offered"
  [ -s "$offered" ] || echo "no exported member was found in the headers"
  library_members "$ROOT/build/release/lib/libkelcore.so" >"$table"
  missing_members "$offered" "$table" | sed 's/^/libkelcore.so: /'
  for dll in "$ROOT"/build/windows-{i686,x86_64}/bin/kelcore.dll; do
    [ -e "$dll" ] || continue
    dll_members "$dll" >"$table"
    missing_members "$offered" "$table" | sed "s@^@${dll#"$ROOT"/build/}: @"
  done
  rm -f "$offered" "$table"
}

check_exports() {
  export_lines | report "declared in a public header but not exported"
}

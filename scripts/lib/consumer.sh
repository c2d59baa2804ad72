# Installs the library into build/stage and lets tests/consumer, a project of its own, find, build and run against it.
# shellcheck shell=bash

consumer_by_cmake() {
  cmake -S "$ROOT/tests/consumer" -B "$ROOT/build/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$STAGE" &&
    cmake --build "$ROOT/build/consumer" && "$ROOT/build/consumer/consumer" && "$ROOT/build/consumer/resources"
}

# The stage is no place the loader searches, so the program is told where the library is.
consumer_by_pkg_config() {
  local flags out=$ROOT/build/consumer/by-pkg-config
  flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$STAGE" -name kelcore.pc)") pkg-config --cflags --libs kelcore) || return
  # shellcheck disable=SC2086 # the flags are words
  g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror "$ROOT/tests/consumer/main.cpp" -o "$out" $flags \
    -Wl,-rpath,"$(dirname "$(find "$STAGE" -name libkelcore.so)")" && "$out"
}

check_consumer() {
  STAGE=$ROOT/build/stage
  rm -rf "$STAGE" "$ROOT/build/consumer"
  mkdir -p "$STAGE"
  # The installed toolkit registers itself: in a registry of the stage's own, as the stage goes away again.
  KELCORE_REGISTRY=$STAGE/registry.db quietly "installing" cmake --install "$ROOT/build/release" --prefix "$STAGE"
  quietly "the consumer project (CMake package)" consumer_by_cmake
  quietly "the consumer project (pkg-config)" consumer_by_pkg_config
}

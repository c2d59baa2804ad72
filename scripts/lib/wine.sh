# Wine for both widths, on a screen of its own and without touching the user's own Wine folders.
#
# 64 bits: Debian's wine64. 32 bits: Debian's wine32 is an i386 package, which many amd64 machines cannot install beside
# their own libraries. Its files are unpacked into a folder of their own instead (apt chooses, fetches and verifies them
# from the machine's configured sources) and run from there: the host lends the C library (libc6-i386).
# shellcheck shell=bash

WINE32=$CACHE/wine32-bookworm

# Configuration that makes apt see an empty i386 machine under $1, with this machine's sources, keys and proxies.
wine_apt_options() {
  cat <<EOF
APT::Architecture "i386";
APT::Architectures { "i386"; };
APT::Install-Recommends "false";
Dir::State "$1/state";
Dir::State::status "$1/status";
Dir::Cache "$1/cache";
APT::Sandbox::User "root";
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
EOF
}

# A failed update of one source is no failure as long as the packages are found.
wine_fetch() {
  mkdir -p "$1/state/lists/partial" "$1/cache/archives/partial"
  : >"$1/status"
  wine_apt_options "$1" >"$1/apt.conf"
  APT_CONFIG=$1/apt.conf apt-get -qq update || true
  APT_CONFIG=$1/apt.conf apt-get -qq -y --download-only install wine32
}

# What the packages' set-up would do: zlib1.dll joins Wine's own modules. Wine takes a module from there only when the
# bytes after the DOS header say that it is Wine's.
wine_join_zlib() {
  local module=$1/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
  cp "$1/usr/i686-w64-mingw32/lib/zlib1.dll" "$module"
  printf 'Wine builtin DLL%b' '\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' | dd of="$module" bs=1 seek=64 conv=notrunc status=none
}

# The folder's C library is left out: the loader and the library must be of one build, the host's.
wine_unpack() {
  local package
  for package in "$1"/cache/archives/*.deb; do
    case ${package##*/} in
      libc6_*) ;;
      *) dpkg-deb -x "$package" "$2" ;;
    esac
  done
  rm -rf "$2/usr/share/doc" "$2/usr/share/locale" "$2/usr/share/iso-codes" "$2/usr/share/xml"
  wine_join_zlib "$2"
}

wine_make_folder() {
  local work
  mkdir -p "$CACHE"
  work=$(mktemp -d "$CACHE/wine32.XXXXXX")
  if (wine_fetch "$work" || { sleep 5 && wine_fetch "$work"; }) && wine_unpack "$work" "$work/root"; then
    mv -T "$work/root" "$WINE32"
    rm -rf "$work"
  else
    rm -rf "$work"
    return 1
  fi
}

# wine_environment i686|x86_64 : sets WINE (the loader) and the environment it runs in.
# The locale decides how Wine spells file names on the host; no debugger starts when a program crashes.
wine_environment() {
  case $1 in
    i686)
      WINE=$WINE32/usr/lib/wine/wine
      export WINEARCH=win32 WINESERVER=$WINE32/usr/lib/wine/wineserver32
      export LD_LIBRARY_PATH=$WINE32/usr/lib/i386-linux-gnu:$WINE32/lib/i386-linux-gnu
      ;;
    x86_64)
      WINE=/usr/lib/wine/wine64
      export WINEARCH=win64 WINESERVER=/usr/lib/wine/wineserver64
      ;;
    *) die "no such width: $1 (i686, x86_64)" ;;
  esac
  export WINELOADER=$WINE WINEPREFIX=$CACHE/prefix-$1 WINEDEBUG=${WINEDEBUG:--all} LC_ALL=C.UTF-8
  export WINEDLLOVERRIDES="winedbg.exe,winemenubuilder.exe,mscoree,mshtml="
  unset DISPLAY
}

# No window manager answers on the screen of wine_screen: a window that waited for one would take two seconds to open.
wine_make_prefix() {
  mkdir -p "$WINEPREFIX"
  "$WINE" wineboot --init
  "$WINE" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
  "$WINESERVER" -w
  touch "$WINEPREFIX/.ready-2"
}

# wine_prepare i686|x86_64 : makes what is missing; one process at a time.
wine_prepare() {
  mkdir -p "$CACHE"
  wine_environment "$1"
  [ -e "$WINEPREFIX/.ready-2" ] && [ -x "$WINE" ] && return
  (
    flock 9
    if [ "$1" = i686 ] && [ ! -x "$WINE" ]; then
      quietly "making the 32-bit Wine folder" wine_make_folder_detached
    fi
    [ -e "$WINEPREFIX/.ready-2" ] || quietly "making the Wine prefix" wine_make_prefix
  ) 9>"$CACHE/wine.lock"
}

# Without the 32-bit library path, which is for Wine's own programs only.
wine_make_folder_detached() (
  unset LD_LIBRARY_PATH
  wine_make_folder
)

# A screen in memory, for programs that show windows. It ends with the prefix's server, which it must not outlive.
wine_open_screen() {
  local number
  exec 7< <(exec env -u LD_LIBRARY_PATH setsid Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp 2>/dev/null </dev/null)
  local pid=$!
  read -r -t 60 number <&7 || die "Xvfb did not start"
  exec 7<&-
  echo "$number $pid" >"$WINEPREFIX/.screen"
  # shellcheck disable=SC2016 # expanded by the watcher
  setsid sh -c "$WINE_WATCH" watch "$WINESERVER" "$pid" "$WINEPREFIX/.screen" >/dev/null 2>&1 </dev/null &
}

# Ends the screen $2 once the server $1 has ended, unless another server has come to use it meanwhile: the lock keeps
# wine_screen from finding a screen that is about to go.
# shellcheck disable=SC2016 # expanded by the watcher
WINE_WATCH='
  exec 9>"$3.lock"
  "$1" -w
  flock 9
  while "$1" -k0; do flock -u 9; "$1" -w; flock 9; done
  rm -f "$3"
  kill "$2"'

# wine_screen : sets DISPLAY to the screen of the prefix, whose server runs.
wine_screen() {
  local number pid
  (
    flock 9
    read -r number pid 2>/dev/null <"$WINEPREFIX/.screen" || pid=none
    [ "$(cat "/proc/$pid/comm" 2>/dev/null)" = Xvfb ] || wine_open_screen 9>&-
  ) 9>"$WINEPREFIX/.screen.lock"
  read -r number pid <"$WINEPREFIX/.screen"
  export DISPLAY=:$number
}

# wine_start : brings up the server and the background programs of the prefix, detached, so that none of them holds a
# pipe of ours open. The server stays for a minute after its last program: a run of many programs starts it once.
wine_start() {
  if "$WINESERVER" -k0 2>/dev/null; then
    wine_screen
    return
  fi
  # Another program may have started it meanwhile.
  "$WINESERVER" -p60 >/dev/null 2>&1 </dev/null || true
  wine_screen
  quietly "starting Wine" "$WINE" wineboot
}

#!/usr/bin/env bash
# Runs a command under Wine in a prefix of the build's own, made at the first use.
#
#   with_wine.sh PREFIX COMMAND...
#
# With SAB_WINE_RUNS set the caller keeps a program running in the prefix.
set -euo pipefail
export WINEPREFIX=$1
shift
folder=$(dirname "$WINEPREFIX")
# A 32-bit build has a 32-bit Wine beside its prefixes.
[ ! -d "$folder/wine32/bin" ] || export PATH="$folder/wine32/bin:$PATH" WINEARCH=win32
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree=;mshtml="
# Without UTF-8 Wine makes no files whose names are beyond ASCII.
case "${LC_ALL:-${LC_CTYPE:-${LANG:-}}}" in
  *[Uu][Tt][Ff]-8 | *[Uu][Tt][Ff]8) ;;
  *) export LC_ALL=C.UTF-8 ;;
esac

# One prefix is made by Wine, which takes long; the others share its files, except the registry.
make_prefix() {
  local first=$folder/wine_prefix
  if [ ! -f "$first/ready" ]; then
    (
      export WINEPREFIX=$first
      mkdir -p "$first"
      wineboot -i
      # No display is needed then.
      wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
      wineserver -w
    ) >/dev/null 2>&1
    touch "$first/ready"
  fi
  rm -rf "$WINEPREFIX"
  cp -al "$first" "$WINEPREFIX"
  cp --remove-destination "$first"/*.reg "$WINEPREFIX"
}
if [ ! -f "$WINEPREFIX/ready" ]; then
  mkdir -p "$folder"
  (
    flock 9
    [ -f "$WINEPREFIX/ready" ] || make_prefix
  ) 9>"$folder/wine_prefix.lock"
fi

# What Wine starts in the background holds on to the output of the program that was the first; who
# reads that output would wait for it to end.
[ -n "${SAB_WINE_RUNS:-}" ] || wine cmd /c exit </dev/null >/dev/null 2>&1 || true
exec "$@"

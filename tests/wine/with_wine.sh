#!/usr/bin/env bash
# Runs a command under Wine in a prefix of the build's own, made at the first use.
#
#   with_wine.sh PREFIX COMMAND...
set -euo pipefail
export WINEPREFIX=$1
shift
# A 32-bit build has a 32-bit Wine beside its prefixes.
wine32=$(dirname "$WINEPREFIX")/wine32/bin
[ ! -d "$wine32" ] || export PATH="$wine32:$PATH" WINEARCH=win32
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
if [ ! -f "$WINEPREFIX/ready" ]; then
  mkdir -p "$WINEPREFIX"
  wineboot -i >/dev/null 2>&1
  # No display is needed then.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
  wineserver -w
  touch "$WINEPREFIX/ready"
fi
# What Wine starts in the background holds on to the output of the program that was the first; who
# reads that output would wait for it to end.
wine cmd /c exit </dev/null >/dev/null 2>&1 || true
exec "$@"

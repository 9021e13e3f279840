#!/usr/bin/env bash
# Registering and unregistering leaves the registry as it was. What registering writes of each class
# is told by the tests that run against it.
#
#   registration.sh SabXmlParser.dll SCRATCH_FOLDER
set -euo pipefail
library=$1
bits=64
[ "${WINEARCH:-}" != win32 ] || bits=32
scratch=$2
mkdir -p "$scratch"

# regedit writes UTF-16; the time stamps of Wine's own text files are not in it.
export_registry() {
  for root in 'HKEY_LOCAL_MACHINE\Software\Classes' 'HKEY_CURRENT_USER\Software\Classes'; do
    wine reg export "$root" "z:$scratch/export.reg" /y >/dev/null 2>&1 || continue
    iconv -f UTF-16 -t UTF-8 "$scratch/export.reg" | tr -d '\r'
  done
}

# Keys that every user has who has ever registered anything; nobody removes them.
for key in AppID CLSID Interface TypeLib; do
  wine reg add "HKCU\\Software\\Classes\\$key" /f >/dev/null
done
# Whatever an earlier run left.
wine regsvr32 /s /u "$library" || true
export_registry >"$scratch/before.txt"
# What a version has left whose library is gone.
old='TypeLib\{59F5EE32-53B8-4D50-81A8-CF955FAF3041}\0.9'
wine reg add "HKLM\\Software\\Classes\\$old\\0\\win$bits" /ve /d 'c:\gone.dll' /f >/dev/null
wine regsvr32 /s "$library"
export_registry >"$scratch/registered.txt"
wine regsvr32 /s /u "$library"
export_registry >"$scratch/after.txt"

# For the current user alone: with nothing of the machine changed, and gone again.
wine regsvr32 /s /n /i:user "$library"
export_registry >"$scratch/user.txt"
wine regsvr32 /s /u /n /i:user "$library"
export_registry >"$scratch/after_user.txt"

failed=0
if grep -qiF "$old" "$scratch/registered.txt"; then
  echo "the older version of the type library is still registered"
  failed=1
fi
for after in after after_user; do
  if ! diff "$scratch/before.txt" "$scratch/$after.txt" >"$scratch/difference.txt"; then
    echo "the registry is not as it was ($after):"
    head -40 "$scratch/difference.txt"
    failed=1
  fi
done
diff "$scratch/before.txt" "$scratch/user.txt" >"$scratch/for_user.txt" || true
for key in 'SabXmlParser.VeAppParser\CLSID' 'TypeLib\{'; do
  if ! grep -qiF "HKEY_CURRENT_USER\Software\Classes\\$key" "$scratch/for_user.txt"; then
    echo "not registered for the user: $key"
    failed=1
  fi
done
# Wine has one place for the interfaces of 32-bit programs, which is the machine's.
if grep -F 'HKEY_LOCAL_MACHINE' "$scratch/for_user.txt" | grep -vF 'Wow6432Node'; then
  echo "registering for the user changed the machine"
  failed=1
fi
[ -s "$scratch/before.txt" ] || { echo "nothing was exported"; failed=1; }
exit $failed

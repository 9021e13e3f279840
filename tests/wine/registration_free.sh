#!/usr/bin/env bash
# A program creates objects by manifests alone, where nothing is registered.
#
#   registration_free.sh MANIFESTS SabXmlParser.dll CLIENT.exe SCRATCH_FOLDER
#
# Exit code 77, a skipped test, where the native build has written no manifests.
set -euo pipefail
manifests=$1
library=$2
client=$3
folder=$4
[ -f "$manifests/SabXmlParser.manifest" ] || { echo "no manifests in $manifests"; exit 77; }
rm -rf "$folder"
mkdir -p "$folder"
cp "$library" "$client" "$folder"
name=$(basename "$client")
if (cd "$folder" && wine "$name") >"$folder/without.txt" 2>&1; then
  echo "the client works without manifests: something is registered"
  exit 1
fi
cp "$manifests/SabXmlParser.manifest" "$folder"
cp "$manifests/application.manifest" "$folder/$name.manifest"
cd "$folder"
wine "$name"
echo "created by manifests"

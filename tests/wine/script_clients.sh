#!/usr/bin/env bash
# Runs a script client and compares what it says with what is expected of it.
#
#   script_clients.sh CLIENT.vbs|CLIENT.js
#
# Lines of the client's own comments that start with "expect: " are the expected output.
set -euo pipefail
client=$1
folder=$(cd "$(dirname "$client")" && pwd)
expected=$(sed -nE "s/^('|\/\/) expect: ?//p" "$client")
[ -n "$expected" ] || { echo "$client expects nothing"; exit 1; }
actual=$(wine cscript //nologo "z:$folder/$(basename "$client")" "z:$folder" 2>&1 | tr -d '\r')
diff <(echo "$expected") <(echo "$actual") && echo "as expected"

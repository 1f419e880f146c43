#!/usr/bin/env bash
# Installs what packages.txt names and this machine lacks. Asks for nothing when all is there.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' packages.txt)
missing=()
for package in "${wanted[@]}"; do
  status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ "${#missing[@]}" -gt 0 ] || exit 0

echo "Installing: ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"

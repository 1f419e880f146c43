#!/usr/bin/env bash
# Installs the package on a Debian 12 that has nothing else, and starts it there under a virtual
# display. Needs root and Debian's package servers; takes some minutes, and half a gigabyte.
#   packaging/try-in-clean-root.sh package.deb [folder]
set -euo pipefail
package=$(readlink -f "$1")
root=${2:-$(mktemp -d)}/root
# The mirror this machine itself uses.
mirror=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' | sed -n 's/^bookworm //p' | sort -u |
  head -n 1)

debootstrap --variant=minbase bookworm "$root" "$mirror"
cp "$package" "$root/tmp/package.deb"
cp /etc/resolv.conf "$root/etc/resolv.conf"
# The mounts are seen by the command alone, and go with it.
in_root() {
  unshare --mount sh -c '
    mount -t proc proc "$0/proc"
    mount --rbind /dev "$0/dev"
    exec chroot "$0" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 "$@"
  ' "$root" "$@"
}

in_root apt-get update -q
in_root DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends /tmp/package.deb
in_root gx7100sim --version
# The display and the hand that closes the window are not part of the product.
in_root DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
  xvfb xdotool >/dev/null

cat >"$root/tmp/try.sh" <<'EOF'
set -eu
export XDG_RUNTIME_DIR=/tmp/run
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
# A server that starts over when its last client leaves turns away who comes in that moment.
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>/tmp/display 2>/dev/null &
display=$!
trap 'kill $display' EXIT
until [ -s /tmp/display ]; do sleep 0.1; done
export DISPLAY=:$(cat /tmp/display)
GX7100Group &
program=$!
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^GX7100Group 2.1$' | head -n 1)
running=$(readlink -f "/proc/$program/exe")
head -c 5 "$(dirname "$running")/../../../GX7100Group_UserGuide.pdf" | grep -q '%PDF-'
xdotool windowfocus "$window" key ctrl+q
wait "$program"
# In German, down to Qt's own texts.
test -s /usr/share/qt6/translations/qtbase_de.qm
LC_ALL=de_DE.UTF-8 GX7100Group &
program=$!
window=$(timeout 60 xdotool search --sync --onlyvisible --name '^GX7100Group 2.1$' | head -n 1)
xdotool windowfocus "$window" key ctrl+c
timeout 60 xdotool search --sync --onlyvisible --name '^Chat-Fenster$' >/dev/null
xdotool windowfocus "$window" key ctrl+q
wait "$program"
echo "Started, has its guide, speaks German, and ends."
EOF
in_root sh /tmp/try.sh
in_root dpkg --purge gx7100group >/dev/null 2>&1
if in_root find / -xdev \( -path /proc -o -path /tmp -o -path /root \) -prune -o -iname '*gx7100*' -print |
  grep .; then
  echo "Something was left behind." >&2
  exit 1
fi
echo "Nothing is left after removal."

#!/usr/bin/env bash
# Runs a command on a machine of its own, beside another one, each with a real service discovery
# daemon, joined by a cable. Nothing of it leaves this computer, and nothing of it is left behind:
# both machines are namespaces, and everything in them ends with the command, or with this script,
# however it ends. Any number of copies can run at once.
#
#   tools/two-hosts.sh [--ipv6-only] COMMAND [ARGUMENT...]
#
# The command runs on the host "operator" (10.71.0.1). What is put behind $GX_OTHER_HOST runs on the
# host "instrument" (10.71.0.2; with --ipv6-only, also told by $GX_IPV6_ONLY, it has its link-local IPv6 address and no
# other):
#
#   tools/two-hosts.sh bash -c '$GX_OTHER_HOST avahi-publish -s unit1 _gx7100._tcp 7100 &
#                               avahi-browse -rtp _gx7100._tcp'
#
# The command's exit status is this script's; 77 says that nothing was run for want of root.
set -euo pipefail

cable=gx0

give_up() {
  echo "two-hosts.sh: $1" >&2
  exit 1
}

# Waits until a command succeeds; 30 seconds, then it never will.
await() {
  local what=$1
  shift
  for ((i = 0; i < 300; ++i)); do
    "$@" >/dev/null 2>&1 && return
    sleep 0.1
  done
  give_up "no $what"
}

# Turns the namespaces that this runs in into a host: its /run is empty, so that a daemon of the
# machine underneath can be neither reached nor disturbed.
become_host() {
  local name=$1 ipv4=$2
  mount -t tmpfs tmpfs /run
  mkdir /run/avahi-daemon /run/dbus
  ip link set lo up
  # The one peer is known: no need to wait for another owner of the address to speak up.
  echo 0 >"/proc/sys/net/ipv6/conf/$cable/accept_dad"
  if [ "$ipv4" != none ]; then
    ip address add "$ipv4/24" dev "$cable"
  fi
  ip link set "$cable" up

  cat >/run/dbus/config <<END
<busconfig>
  <type>system</type>
  <listen>unix:path=/run/dbus/system_bus_socket</listen>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
    <allow user="*"/>
  </policy>
</busconfig>
END
  cat >/run/avahi-daemon/config <<END
[server]
host-name=$name
allow-interfaces=$cable
use-ipv4=$([ "$ipv4" = none ] && echo no || echo yes)
use-ipv6=yes
enable-dbus=yes
[publish]
publish-workstation=no
publish-hinfo=no
[wide-area]
enable-wide-area=no
END
  dbus-daemon --config-file=/run/dbus/config --nofork --nopidfile >/run/dbus/log 2>&1 &
  await "bus on $name" test -S /run/dbus/system_bus_socket
  avahi-daemon -f /run/avahi-daemon/config --no-drop-root --no-chroot --no-rlimits \
    >/run/avahi-daemon/log 2>&1 &
  await "discovery on $name" is_discovery_running
}

is_discovery_running() {
  dbus-send --system --print-reply --reply-timeout=2000 --dest=org.freedesktop.Avahi / \
    org.freedesktop.Avahi.Server.GetState | grep -q 'int32 2'
}

# The first process of the new process namespace: the kernel ends all others when this one ends.
inside() {
  local instrument_address=10.71.0.2
  if [ "${1:-}" = --ipv6-only ]; then
    instrument_address=none
    export GX_IPV6_ONLY=1
    shift
  fi
  unset DBUS_SYSTEM_BUS_ADDRESS

  unshare --net --mount bash "$0" --instrument-host "$instrument_address" &
  local other=$!
  await "second host" is_elsewhere "$other"
  ip link add "$cable" type veth peer name "$cable" netns "$other"
  become_host operator 10.71.0.1
  # This folder by its number: a name could have blanks.
  export GX_OTHER_HOST="nsenter --target $other --net --mount --wdns=/proc/$$/cwd --"
  # shellcheck disable=SC2086 # a command and its arguments
  await "answer from the second host" $GX_OTHER_HOST test -e /run/ready
  "$@"
}

is_elsewhere() {
  [ "$(readlink "/proc/$1/ns/net")" != "$(readlink /proc/self/ns/net)" ]
}

has_cable() {
  ip link show "$cable"
}

instrument_host() {
  await "cable" has_cable
  become_host instrument "$1"
  touch /run/ready
  sleep infinity
}

case "${1:-}" in
--inside)
  shift
  inside "$@"
  exit
  ;;
--instrument-host)
  instrument_host "$2"
  exit
  ;;
-h | --help)
  sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"
  exit
  ;;
esac

if [ -z "${1:-}" ]; then
  echo "two-hosts.sh: no command; see --help" >&2
  exit 2
fi
if [ "$(id -u)" != 0 ]; then
  echo "two-hosts.sh: only root can make network namespaces: nothing was run" >&2
  exit 77
fi
# What is inside goes when this process goes, for whatever reason.
setpriv --pdeathsig KILL unshare --net --mount --pid --fork --kill-child --mount-proc \
  bash "$0" --inside "$@" <&0 &
all=$!
trap 'kill -KILL "$all"' TERM INT HUP
wait "$all"

# Sourced by make-guide-pictures.sh, on a machine that is made of namespaces: what the program finds
# around it. Everything here is mounted over the real thing where only this machine sees it.

# A home folder whose path looks well, a serial port, the maker's server by its name, and trust in it.
become_pictured_machine() {
  local name
  mount -t tmpfs tmpfs /home
  mkdir /home/operator

  # What the desktop calls serial ports is read from here.
  local device=/sys/devices/usb1/ttyUSB0
  mount -t tmpfs tmpfs /sys
  mkdir -p $device/tty/ttyUSB0 /sys/class/tty /sys/bus/usb-serial/drivers/ftdi_sio
  ln -s ../../devices/usb1/ttyUSB0/tty/ttyUSB0 /sys/class/tty/ttyUSB0
  ln -s /sys/class/tty $device/tty/ttyUSB0/subsystem
  ln -s ../.. $device/tty/ttyUSB0/device
  printf 'MAJOR=188\nMINOR=0\nDEVNAME=ttyUSB0\n' >$device/tty/ttyUSB0/uevent
  ln -s /sys/bus/usb-serial/drivers/ftdi_sio $device/driver
  ln -s /sys/bus/usb-serial $device/subsystem
  printf 'DRIVER=ftdi_sio\n' >$device/uevent

  mkdir "$1/dev"
  mount -t tmpfs tmpfs "$1/dev"
  mkdir "$1/dev/pts" "$1/dev/shm"
  mount --rbind /dev/pts "$1/dev/pts"
  for name in null zero full random urandom tty; do
    : >"$1/dev/$name"
    mount --bind "/dev/$name" "$1/dev/$name"
  done
  ln -s pts/ptmx "$1/dev/ptmx"
  ln -s /proc/self/fd "$1/dev/fd"
  mount --rbind "$1/dev" /dev

  printf '127.0.0.1 localhost downloads.vestra.example\n' >"$1/hosts"
  mount --bind "$1/hosts" /etc/hosts
}

# Instruments of the other host, for the list, until withdraw_instruments.
announced=()
announce_instruments() {
  local name
  for name in 'North tank' 'Pump house' 'Well 7'; do
    $GX_OTHER_HOST avahi-publish --no-fail --service "$name" _gx7100._tcp 7100 >/dev/null 2>&1 &
    announced+=("$!")
    started+=("$!")
  done
}

withdraw_instruments() {
  kill "${announced[@]}"
  wait "${announced[@]}" || true
  wait_for 30 eval '[ -z "$(avahi-browse --parsable --terminate _gx7100._tcp)" ]'
}

# answer FILE: all that a server says of it.
answer() {
  printf 'HTTP/1.1 200 OK\r\nContent-Length: %s\r\nConnection: close\r\n\r\n' "$(stat -c %s "$1")"
  cat "$1"
}

# start_server FOLDER: the maker's, with a release and with news.
start_server() {
  mkdir -p "$1/server/projects/7100/docs"
  answer docs/pictures/files.txt >"$1/server/projects/7100/files.txt"
  answer docs/pictures/news.html >"$1/server/projects/7100/docs/summary.html"
  openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=downloads.vestra.example \
    -addext subjectAltName=DNS:downloads.vestra.example \
    -keyout "$1/key.pem" -out "$1/certificate.pem" 2>/dev/null
  mount -t tmpfs tmpfs /etc/ssl/certs
  cp "$1/certificate.pem" "/etc/ssl/certs/$(openssl x509 -hash -noout -in "$1/certificate.pem").0"
  (cd "$1/server" && exec openssl s_server -quiet -HTTP -accept 443 -cert ../certificate.pem \
    -key ../key.pem >/dev/null 2>&1) &
  started+=("$!")
}

#!/bin/sh
# The .deb that "make package" builds, extracted into a temporary root: dependencies, unit
# files (checked by systemd-analyze where it exists), PAM service, man pages, the tools in
# /usr/libexec/konu and nothing in /bin or /sbin. Usage: PackageTest.sh BUILD_DIR
set -u
build=$1
work=$(mktemp -d /tmp/konu-package-XXXXXX)
trap 'rm -rf "$work"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
check() { if ! eval "$2"; then fail "$1"; fi; }

(cd "$build" && cpack -G DEB -B "$work/out" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/out/konu_*.deb 2>/dev/null | head -n 1)
[ -n "$deb" ] || { echo "FAIL: no konu_*.deb built"; cat "$work/cpack.log"; exit 1; }
root=$work/root
dpkg-deb -x "$deb" "$root" || exit 1
control=$(dpkg-deb -f "$deb" Depends)
for dep in libpam0g libaudit1 libpam-runtime systemd; do
  check "Depends names $dep ($control)" 'echo "$control" | grep -q "$dep"'
done
check "conffiles hold the PAM service" 'dpkg-deb -I "$deb" conffiles | grep -qx /etc/pam.d/konu'

# The console and its options.
check "konu --version" '"$root/usr/sbin/konu" --version | grep -Eq "^konu [0-9]+\.[0-9]+\.[0-9]+$"'
check "konu --help" '"$root/usr/sbin/konu" --help | grep -q "^Usage: konu"'

# Nothing in /bin or /sbin; the only programs on PATH are konu and konu-hostsim.
check "no /bin, /sbin" '[ ! -e "$root/bin" ] && [ ! -e "$root/sbin" ]'
check "usr/sbin holds konu alone" '[ "$(ls "$root/usr/sbin")" = konu ]'
check "usr/bin holds konu-hostsim alone" '[ "$(ls "$root/usr/bin")" = konu-hostsim ]'
check "konu-hostsim link resolves" '[ -x "$root/usr/bin/konu-hostsim" ] && [ -f "$root/usr/lib/konu/pam_konusim.so" ]'

# Every tool name: a script that runs konu-tools with its own name, which knows it.
tools=$root/usr/libexec/konu
help=$("$tools/konu-tools" --help)
for tool in qal-cmd OrinShell SSH orincfg-advcfg orincli localcli powerOffVms services.sh nukbacktrace \
    firmwareConfig.py backup.sh nukping poweroff reboot; do
  check "$tool is executable" '[ -x "$tools/$tool" ]'
  check "$tool runs konu-tools $tool" 'grep -qx "exec /usr/libexec/konu/konu-tools $tool \"\$@\"" "$tools/$tool"'
  check "konu-tools knows $tool" 'echo "$help" | grep -q "^  $tool "'
done

# PAM, tmpfiles, man pages.
pam=$root/etc/pam.d/konu
for stack in common-auth common-account common-password; do
  check "PAM includes $stack" 'grep -qx "@include $stack" "$pam"'
done
check "tmpfiles makes /run/konu" 'grep -q "^d /run/konu " "$root/usr/lib/tmpfiles.d/konu.conf"'
check "man konu(8)" 'grep -q "^\.TH KONU 8" "$root/usr/share/man/man8/konu.8"'
check "man konu-hostsim(1)" 'grep -q "^\.TH KONU.*HOSTSIM 1" "$root/usr/share/man/man1/konu-hostsim.1"'
if command -v groff >/dev/null 2>&1; then
  for page in man8/konu.8 man1/konu-hostsim.1; do
    check "$page renders without warnings" '[ -z "$(groff -man -Tutf8 -ww -z "$root/usr/share/man/$page" 2>&1)" ]'
  done
fi

# The units: in place of the terminal's getty, restarted at once without limit.
units=$root/usr/lib/systemd/system
vt=$units/konu@.service
serial=$units/konu-serial@.service
for line in "Conflicts=getty@%i.service" "Restart=always" "RestartSec=0" "StartLimitIntervalSec=0" \
    "DefaultInstance=tty1" "TTYPath=/dev/%I" "ExecStart=/usr/sbin/konu"; do
  check "konu@.service has $line" 'grep -qx "$line" "$vt"'
done
for line in "Conflicts=serial-getty@%i.service" "Restart=always" "StartLimitIntervalSec=0" \
    "DefaultInstance=ttyS0" "TTYReset=no"; do
  check "konu-serial@.service has $line" 'grep -qx "$line" "$serial"'
done
check "the serial line keeps its baud rate" '! grep -v "^#" "$serial" | grep -Eq "stty|[0-9]{4,}"'
if command -v systemd-analyze >/dev/null 2>&1; then
  mkdir -p "$work/units"
  sed "s|^ExecStart=/usr/sbin/konu|ExecStart=$root/usr/sbin/konu|" "$vt" >"$work/units/konu@tty1.service"
  sed "s|^ExecStart=/usr/sbin/konu|ExecStart=$root/usr/sbin/konu|" "$serial" >"$work/units/konu-serial@ttyS0.service"
  verify=$(systemd-analyze verify --man=no "$work/units/konu@tty1.service" \
    "$work/units/konu-serial@ttyS0.service" 2>&1)
  check "systemd-analyze verify passes: $verify" '[ $? -eq 0 ] && [ -z "$verify" ]'
else
  echo "systemd-analyze not found: unit files not verified"
fi

[ "$failures" -eq 0 ] && echo "package $(basename "$deb"): all checks passed"
exit "$failures"

#!/usr/bin/env bash
# Builds the packages, installs them on this machine, checks, sells, upgrades, and removes them
# without a trace. Needs root, or sudo, and Debian's archive.
# usage: package_test.sh SOURCE
set -euo pipefail
source=$1
work=$(mktemp -d)
chmod 755 "$work"
root=()
[ "$(id -u)" -eq 0 ] || root=(sudo)
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
unset http_proxy https_proxy
installed=
simulator=

finish() {
    [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
    [ -z "$installed" ] || purge || true
    "${root[@]}" rm -rf "$work"
}
trap finish EXIT
step() { printf '== %s\n' "$1"; }
fail() { printf 'package_test: %s\n' "$1" >&2; exit 1; }
apt() { "${root[@]}" apt-get -qq -y --no-install-recommends "$@" >"$work/apt.log" 2>&1 ||
    { tail -n 30 "$work/apt.log" >&2; fail "apt-get $*"; }; }
install_packages() { apt --allow-downgrades install "$@"; }
purge() { # installed packages, and removed ones with settings left
    mapfile -t known < <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' 'loyalty-*' |
        sed -n '/^not-installed/!s/.* //p')
    apt purge "${known[@]}"
    installed=
}
# The machine's files, except those of apt and of the system's daemons.
listing() {
    "${root[@]}" find /etc /usr /lib /opt /var -xdev \( -path /var/cache -o -path /var/lib/dpkg -o \
        -path /var/lib/apt -o -path /var/log -o -name '*.pyc' -o -name __pycache__ -o \
        -path /var/lib/systemd -o -name 'ld.so.cache*' -o -name '*-' \) -prune -o -print | sort
    getent passwd | cut -d: -f1
    getent group | cut -d: -f1
}
as_till() { "${root[@]}" runuser -u loyalty-till -- env TILL_CONFIG="$work/till.conf" "$@"; }
expect() { # FILE TEXT
    grep -qE "$2" "$1" || { cat "$1" >&2; fail "expected \"$2\" in $1"; }
}
open_files() { "${root[@]}" find "/proc/$deliverer/fd" -lname '*till.log*' -printf '%l\n'; }
unpack() { # PACKAGE: from Debian's archive, without installing it
    (cd "$work" && apt-get -qq download "$1" 2>"$work/download.log" &&
        dpkg-deb -x "$1"_*.deb unpacked) || { cat "$work/download.log" >&2; fail "download of $1"; }
}

! dpkg-query -W loyalty-till >/dev/null 2>&1 || fail "loyalty-till is installed here; not touched"

step "packages"
mapfile -t needed < <(sed -n '/^# group demo/,/^$/p' "$source/scripts/packages.txt" | grep -vE '^(#.*|g\+\+|)$')
for package in "${needed[@]}"; do
    grep -qE "^ $package( |,)" "$source/debian/control" || fail "debian/control: expected $package"
done
make_packages() { # DIRECTORY
    "$source/scripts/package" "$1" >"$work/build.log" 2>&1 || { tail "$work/build.log"; fail "build"; }
}
make_packages "$work/packages"
packages=("$work"/packages/*.deb)
lintian --allow-root --fail-on error,warning "$work"/packages/*.changes
desktop-file-validate "$source/packaging/till-window.desktop"
appstreamcli validate --no-net "$source/packaging/till-window.metainfo.xml"

step "the same packages again, built elsewhere"
alike() { # DIRECTORY DIRECTORY
    for file in "$1"/*.deb "$1"/*.tar.xz; do
        cmp "$file" "$2/${file##*/}" || return 1
    done
}
make_packages "$work/elsewhere/packages"
# The compiler rarely orders an object in another way by chance; then a third build decides.
if ! alike "$work/packages" "$work/elsewhere/packages"; then
    make_packages "$work/again/packages"
    alike "$work/again/packages" "$work/packages" ||
        alike "$work/again/packages" "$work/elsewhere/packages" || fail "not reproducible"
fi

step "alerts"
unpack bash-completion
unpack prometheus
unpack prometheus-node-exporter
promtool=$work/unpacked/usr/bin/promtool
"$promtool" check rules "$source/packaging/alerts.yml"
sed "s|\[ALERTS\]|[$source/packaging/alerts.yml]|" "$source/tests/packaging/alerts_test.yml" \
    >"$work/alerts_test.yml"
"$promtool" test rules "$work/alerts_test.yml"

step "install, check and sell"
apt -d install "${packages[@]}" # their dependencies may stay
dependencies=$(dpkg-deb -f "$work"/packages/loyalty-till_*.deb Depends | tr ',' '\n' |
    sed 's/[(|].*//' | sort -u)
# shellcheck disable=SC2086
apt install $dependencies libexpected-dev qt6-base-dev
listing >"$work/before"
install_packages "${packages[@]}"
installed=yes
simulator --port-file "$work/port" >"$work/simulator.log" &
simulator=$!
until [ -s "$work/port" ]; do sleep 0.05; done
{
    "${root[@]}" cat /etc/xdg/till/till.conf
    echo "LmMindbox:url=http://127.0.0.1:$(cat "$work/port")/v3/operations/sync"
    printf '%s\n' LmMindbox:endpoint=till-demo LmMindbox:secretKey=demo-secret \
        Till:shopCode=12 Till:cashCode=3 Till:language=en
} >"$work/till.conf"
"${root[@]}" install -o loyalty-till -m 600 "$work/till.conf" "$work/of-the-till.conf"
"${root[@]}" mv "$work/of-the-till.conf" "$work/till.conf"
as_till till check >"$work/check"
! grep -v '^ok ' "$work/check" || fail "check"
version=$(sed -n 's/.*project(.*VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
[ "$(till --version)" = "till $version" ] || fail "version"
expect "$work/check" "lmmindbox.so $version, Qt 6"
objdump -p /usr/bin/till >"$work/libraries"
expect "$work/libraries" 'NEEDED +libtillhost\.so\.[0-9]'
printf 'card 79160000001\nadd 4600 Milk 2.50 2\ncommit\n' | as_till till --no-delivery >"$work/sale"
expect "$work/sale" 'Receipt 1 is closed: 5.00'
[ "$("${root[@]}" stat -c '%a %U' /var/lib/loyalty-till /etc/xdg/till/till.conf | sort -u)" = \
    "$(printf '600 loyalty-till\n700 loyalty-till')" ] || fail "modes"

step "upgrade with an order that waits; then a newer store"
dpkg-deb -R "$work"/packages/loyalty-till_*.deb "$work/newer"
sed -i 's/^Version: .*/Version: 999/' "$work/newer/DEBIAN/control"
dpkg-deb --root-owner-group -b "$work/newer" "$work/newer.deb" >/dev/null
"${root[@]}" apt-get -qq -y remove loyalty-till-dev loyalty-till-window >/dev/null # they depend on exactly this version
install_packages "$work/newer.deb"
as_till till queue >"$work/queue"
expect "$work/queue" 'waiting: 1, parked: 0'
install_packages "${packages[@]}" # and down again
as_till till deliver --once >"$work/deliver"
expect "$work/deliver" 'waiting: 0, parked: 0'
curl -s "http://127.0.0.1:$(cat "$work/port")/simulator/dump" >"$work/dump"
expect "$work/dump" '"status": ?"Paid"'
set_store_version() {
    as_till /usr/bin/python3 -c "import sqlite3, sys
store = sqlite3.connect('/var/lib/loyalty-till/till.db')
print(store.execute('PRAGMA user_version').fetchone()[0])
store.execute('PRAGMA user_version = ' + sys.argv[1])" "$1"
}
store_version=$(set_store_version 99)
as_till till </dev/null >"$work/newer-store" 2>&1 && fail "a newer store was not refused"
expect "$work/newer-store" 'written by a newer version'
set_store_version "$store_version" >"$work/99"

step "what belongs to it: locale, manual, completion, rotation, units, metrics"
for program in till till-window simulator; do # as cron calls them
    env -i LC_ALL=C "/usr/bin/$program" --version >"$work/version" 2>&1
    [ "$(wc -l <"$work/version")" = 1 ] || { cat "$work/version"; fail "$program in the locale C"; }
done
man -P cat till >"$work/manual" 2>/dev/null || zcat /usr/share/man/man1/till.1.gz >"$work/manual"
expect "$work/manual" 'receipts'
complete_line() { # WORD...: prints the completions of the last one
    # shellcheck disable=SC2016
    bash -c '. "$0"
        . /usr/share/bash-completion/completions/till
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE=$* COMP_POINT=${#COMP_LINE}
        _till till "${@: -1}" "${@: -2:1}"
        echo "${COMPREPLY[@]}"' "$work/unpacked/usr/share/bash-completion/bash_completion" "$@"
}
[ "$(complete_line till re)" = "receipts report" ] || fail "completion of a command"
[ "$(complete_line till queue p)" = "parked park" ] || fail "completion behind a command"
[ "$(complete_line till check --ph)" = --phone ] || fail "completion of an option"
as_till till deliver &
until deliverer=$("${root[@]}" pgrep -x -U loyalty-till till); do sleep 0.05; done
until open_files | grep -q 'till\.log$'; do sleep 0.05; done
"${root[@]}" logrotate -f -s "$work/logrotate.state" /etc/logrotate.d/loyalty-till
"${root[@]}" test -e /var/log/loyalty-till/till.log.1 || fail "rotation"
"${root[@]}" kill "$deliverer"
wait $! || true
systemd-analyze verify loyalty-till-{deliver,metrics,check}.service \
    loyalty-till-{metrics,check}.timer 2>"$work/verify" || true
! grep -E 'loyalty-till|not found' "$work/verify" || fail "units"
systemd-analyze --offline=true --threshold=20 security loyalty-till-{deliver,metrics,check}.service \
    >"$work/exposure" || { tail "$work/exposure"; fail "hardening"; }
# Like the units: into another user's directory, with only their capability.
"${root[@]}" install -d -m 755 "$work/textfiles"
as_unit() {
    "${root[@]}" env TILL_CONFIG="$work/till.conf" setpriv --reuid loyalty-till \
        --regid loyalty-till --clear-groups --inh-caps=-all,+dac_override \
        --ambient-caps=-all,+dac_override --bounding-set=-all,+dac_override --no-new-privs "$@"
}
as_unit till metrics --output "$work/textfiles/loyalty-till.prom"
as_unit till check --metrics "$work/textfiles/loyalty-till-check.prom" >/dev/null || true
cat "$work"/textfiles/*.prom | "$promtool" check metrics
/usr/bin/python3 "$source/tests/packaging/dashboard_test.py" /usr/bin/till \
    "$source/packaging/grafana/till.json" "$promtool" 2>"$work/dashboard" ||
    { cat "$work/dashboard"; fail "dashboard"; }
"$work/unpacked/usr/bin/prometheus-node-exporter" --collector.disable-defaults \
    --collector.textfile --collector.textfile.directory="$work/textfiles" \
    --web.listen-address=127.0.0.1:19100 2>"$work/exporter.log" &
exporter=$!
for _ in $(seq 100); do
    curl -sf http://127.0.0.1:19100/metrics >"$work/scraped" && break
    sleep 0.05
done
kill "$exporter"
expect "$work/scraped" '^loyalty_till_exchanges_total\{.*success.*\} [1-9]'
expect "$work/scraped" '^loyalty_till_check_level\{check="service.lookup"\} 0'
expect "$work/scraped" '^node_textfile_scrape_error 0'

step "a host of somebody else's, found by CMake and built by pkg-config"
cp -r /usr/share/doc/loyalty-till-dev/examples/foreignhost "$work"
cmake -S "$work/foreignhost" -B "$work/foreignhost/build" >"$work/cmake.log" || fail "find_package"
# shellcheck disable=SC2046
c++ -std=c++20 -fPIC -DLOYALTY_PLUGIN="\"$(pkg-config --variable=plugin loyalty-till)\"" \
    "$work/foreignhost/main.cpp" -o "$work/foreignhost/foreignhost" \
    $(pkg-config --cflags --libs loyalty-till)
mkdir -m 777 "$work/host"
as_till "$work/foreignhost/foreignhost" "$work/till.conf" "$work/host" 79160000001 </dev/null \
    >"$work/foreign"
expect "$work/foreign" 'delivered: 1'

step "remove, then purge"
kill "$simulator"
simulator=
apt remove loyalty-till
"${root[@]}" test -s /var/lib/loyalty-till/till.db -a -s /etc/xdg/till/till.conf ||
    fail "a removal has taken orders or settings along"
purge
[ ! -e /var/log/loyalty-till ] || fail "the log is left"
listing >"$work/after"
diff "$work/before" "$work/after" || fail "the packages have left something"

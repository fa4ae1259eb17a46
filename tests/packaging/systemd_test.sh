#!/usr/bin/env bash
# Uses the packages as an engineer would, on a machine booted by systemd. It installs, removes and
# purges them here, so run it only on a machine made by scripts/fresh.
# usage: systemd_test.sh DIRECTORY   DIRECTORY: of the packages; their dependencies are in apt's cache
set -euo pipefail
packages=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export DEBIAN_FRONTEND=noninteractive
settings=/etc/xdg/till/till.conf
store=/var/lib/loyalty-till
exporter=/var/lib/prometheus/node-exporter

saw() { printf '   %s\n' "$*"; }
fail() { printf 'systemd_test: %s\n' "$*" >&2; journalctl -n 30 --no-pager -u 'loyalty-till*' >&2; exit 1; }
apt() { apt-get -qq -y --no-install-recommends "$@" </dev/null >"$work/apt" 2>&1 || { cat "$work/apt" >&2; fail "apt-get $*"; }; }
till() { runuser -u loyalty-till -- /usr/bin/till "$@"; }
wait_for() { # WHAT COMMAND...: for half a minute
    local begun=$SECONDS
    until "${@:2}" >/dev/null 2>&1; do
        ((SECONDS - begun < 30)) || fail "$1: not within 30 s"
        sleep 0.2
    done
    saw "$1, after $((SECONDS - begun)) s"
}
is_delivered() { till metrics | grep -qx 'loyalty_till_waiting_messages 0'; }
configure() {
    printf '%s\n' LmMindbox:url=http://127.0.0.1:8080/v3/operations/sync \
        LmMindbox:endpoint=till-demo LmMindbox:secretKey=demo-secret \
        Till:shopCode=12 Till:cashCode=3 >>$settings
}
sell() { printf 'add 4600 Milk 2.50\ncommit\n' | till --no-delivery >"$work/sale"; }
start_service() { systemd-run --quiet --collect --unit=service simulator --port 8080; }
is_active() { systemctl is-active --quiet "$@"; }
delivery() { systemctl show --value -p MainPID loyalty-till-deliver; }

echo "== install"
apt install "$packages"/loyalty-till_*.deb "$packages"/loyalty-simulator_*.deb prometheus-node-exporter
[ "$(stat -c '%a %U' $settings)" = "600 loyalty-till" ] || fail "$settings: $(stat -c '%a %U' $settings)"
! systemctl is-enabled --quiet loyalty-till-deliver || fail "the delivery was enabled unasked"
start_service
configure
sum=$(sha256sum $settings)
wait_for "till check finds nothing" till check
systemctl enable --quiet --now loyalty-till-deliver.service loyalty-till-{metrics,check}.timer
saw "exposure: $(systemd-analyze --threshold=20 security loyalty-till-deliver | tail -n 1)" || fail "exposure"

echo "== sell; the delivery brings the order"
sell
wait_for "delivered" is_delivered
wait_for "figures for the node exporter" test -s $exporter/loyalty-till.prom
systemctl start loyalty-till-check.service
grep -q '^loyalty_till_check_level{check="service.lookup"} 0' $exporter/loyalty-till-check.prom ||
    fail "the check's file"

echo "== upgrade with an order that waits, the sample changed"
systemctl stop service
sell
dpkg-deb -R "$packages"/loyalty-till_*.deb "$work/newer"
sed -i 's/^Version: .*/Version: 999/' "$work/newer/DEBIAN/control"
echo "# A line more." >>"$work/newer/usr/share/doc/loyalty-till/examples/till.conf"
dpkg-deb --root-owner-group -b "$work/newer" "$work/newer.deb" >/dev/null
chmod 755 "$work"
before=$(delivery)
apt install "$work/newer.deb"
[ "$(dpkg-query -W -f '${db:Status-Abbrev}${Version}' loyalty-till)" = "ii 999" ] || fail "half configured"
[ "$(sha256sum $settings)" = "$sum" ] || fail "the upgrade touched $settings"
is_active loyalty-till-deliver || fail "the delivery does not go on"
[ "$(delivery)" != "$before" ] || fail "the delivery is still the older version's"
saw "configured without a question, settings untouched, delivery started anew"

echo "== remove, then purge, with the order waiting"
apt remove loyalty-till
! is_active loyalty-till-deliver || fail "a delivery without its package"
[ -z "$(find /etc/systemd -name 'loyalty-till*')" ] || fail "a unit is still enabled"
[ ! -e $exporter/loyalty-till.prom ] || fail "figures of a till that is gone"
apt purge loyalty-till
grep '^loyalty-till: undelivered' "$work/apt" || fail "a purge that says nothing of the order"
! grep -i warning "$work/apt" || fail "warnings"
[ -s $store/till.db ] || fail "a purge has taken the order along"
[ ! -e $settings ] || fail "the purge left $settings"

echo "== install again; the order that was kept arrives"
apt install "$packages"/loyalty-till_*.deb
configure
start_service
systemctl start loyalty-till-deliver
wait_for "delivered" is_delivered

echo "== purge with an order that waits, deleting it as debconf was told to"
systemctl stop service
sell
echo 'loyalty-till loyalty-till/delete-undelivered boolean true' | debconf-set-selections
apt purge loyalty-till
! grep -i warning "$work/apt" || fail "warnings"
! getent passwd loyalty-till || fail "the user is left"
[ -z "$(find /etc/xdg /etc/systemd /usr/lib/systemd /var/lib $exporter -name '*loyalty*' \
    -not -path '/var/lib/dpkg/*' -not -path '/var/lib/apt/*')" ] || fail "something is left"
[ -z "$(systemctl list-units --failed --plain --no-legend 'loyalty*')" ] || fail "a failed unit"
saw "nothing left"

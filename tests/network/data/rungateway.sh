#!/bin/sh
# Runs the gateway script $1 in a network of its own, with an eth0 at 10.0.0.5, and prints what has become of it.
# Exits with 77, saying why, where this machine does not give a process such a network.
set -eu
PATH=$PATH:/usr/sbin:/sbin
export PATH

missing() {
    echo "$1" >&2
    exit 77
}

if [ "${2:-}" != inside ]; then
    for tool in unshare ip route iptables; do
        command -v "$tool" > /dev/null || missing "$tool is not installed"
    done
    kind=-n
    [ "$(id -u)" -eq 0 ] || kind=-Urn
    unshare "$kind" true 2> /dev/null || missing "unshare $kind is not permitted"
    exec unshare "$kind" "$0" "$1" inside
fi

ip link add eth0 type veth peer name eth1 || missing "no virtual Ethernet can be made"
ip address add 10.0.0.5/24 dev eth0
ip link set eth0 up
ip link set eth1 up
echo 0 > /proc/sys/net/ipv4/ip_forward
iptables -t nat -S POSTROUTING > /dev/null || missing "no address translation in this kernel"
[ -z "$(ip route show default)" ]

sh "$1"
ip route show default
cat /proc/sys/net/ipv4/ip_forward
iptables -t nat -S POSTROUTING

#!/bin/sh
# Installs the Debian packages that building, running and testing Brantok need.
# --run adds what showing the windows needs, --fuzz the compiler of the fuzz targets,
# --package the tools of the Debian package.
# Does nothing when every package is already there. Works as root or through sudo.
set -e
PKGS="g++ make cmake ninja-build pkg-config qt6-base-dev qt6-base-dev-tools qt6-serialport-dev libgl-dev \
libgtest-dev libgmock-dev libbenchmark-dev libxcb1-dev"
[ "$1" = "--run" ] && PKGS="$PKGS qt6-qpa-plugins"
[ "$1" = "--coverage" ] && PKGS="$PKGS gcovr"
# make fuzz: clang brings libFuzzer and the sanitizers' runtime.
[ "$1" = "--fuzz" ] && PKGS="$PKGS clang"
# make package: dpkg-shlibdeps names the libraries' packages; lintian checks the result.
[ "$1" = "--package" ] && PKGS="$PKGS dpkg-dev lintian"
missing=""
for p in $PKGS; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "Installing:$missing"
if [ "$(id -u)" -eq 0 ]; then SUDO=""; else SUDO="sudo"; fi
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends $missing

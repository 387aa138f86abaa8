#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when missing.
set -euo pipefail

packages=(cmake g++ make pkg-config libgtest-dev libgmock-dev libbenchmark-dev libsleef3
          libexpat1-dev libproj-dev proj-bin proj-data libgeographiclib-dev
          geographiclib-tools locales clang libclang-rt-dev python3 ccache binutils)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}" >/dev/null
fi

# A locale whose decimal separator is a comma, for the locale-independence tests.
if ! locale -a 2>/dev/null | grep -qi '^de_DE.utf8$'; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO=sudo
  $SUDO localedef -i de_DE -f UTF-8 de_DE.UTF-8 || echo "warning: could not build de_DE.UTF-8"
fi

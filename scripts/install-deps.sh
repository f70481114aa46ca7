#!/usr/bin/env bash
# Installs the Debian packages that Ormak builds and tests with, only when one is missing.
set -euo pipefail

packages=(
  cmake make g++ pkg-config
  libhdf5-openmpi-dev libopenmpi-dev openmpi-bin
  antlr3 libantlr3c-dev
  libpcre3-dev zlib1g-dev
  googletest libgtest-dev
  libedit-dev
  default-jdk-headless
  python3-numpy python3-pytest python3-setuptools python3-pip
  python3-h5py hdf5-tools
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=""
if [ "$(id -u)" -ne 0 ]; then sudo_cmd="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo_cmd apt-get update -qq
$sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"

#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need, when missing.
# Uses sudo when not run as root. Quiet when everything is there already.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev qt6-svg-dev
  libgl-dev libegl-dev libgl1-mesa-dri libglx-mesa0 xvfb xauth
  libtinygltf-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-14 libclang-rt-14-dev
  nodejs
  freecad
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing missing packages: ${missing[*]}"
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# npm comes with Debian's nodejs or with a nodejs from elsewhere; install it only when absent.
if ! command -v npm >/dev/null 2>&1; then
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq npm
fi

#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need, when missing.
# Uses sudo when not run as root. Quiet when everything is there already.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev qt6-svg-dev
  libgl-dev libegl-dev libgl1-mesa-dri libglx-mesa0 xvfb xauth
  libtinygltf-dev nlohmann-json3-dev libmeshoptimizer-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-14 libclang-rt-14-dev
  nodejs
  locales desktop-file-utils appstream assimp-utils
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

# The system locales the tests start the program under (number formats with a decimal comma,
# Cyrillic): generated once, as a user's desktop has them.
locales=(de_DE fr_FR ru_RU pl_PL hr_HR it_IT es_ES nl_NL cs_CZ)
missing_locales=()
available="$(locale -a 2>/dev/null | tr '[:upper:]' '[:lower:]')"
for l in "${locales[@]}"; do
  if ! grep -qx "$(echo "$l.utf8" | tr '[:upper:]' '[:lower:]')" <<<"$available"; then
    missing_locales+=("$l")
  fi
done
if [ ${#missing_locales[@]} -gt 0 ]; then
  echo "Generating locales: ${missing_locales[*]}"
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  for l in "${missing_locales[@]}"; do
    $sudo sed -i "s/^# *\($l\.UTF-8 UTF-8\)/\1/" /etc/locale.gen
    grep -q "^$l.UTF-8 UTF-8" /etc/locale.gen || echo "$l.UTF-8 UTF-8" | $sudo tee -a /etc/locale.gen >/dev/null
  done
  $sudo locale-gen >/dev/null
fi

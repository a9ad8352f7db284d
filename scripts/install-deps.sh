#!/usr/bin/env bash
# Install the Debian packages the build and the tests need; only what is missing.
# As root it installs them; otherwise it prints the apt-get line and fails.
set -euo pipefail
pkgs=(cmake make g++ pkg-config libncurses-dev libpam0g-dev libcrypt-dev libvterm-dev
      nlohmann-json3-dev libgtest-dev libgmock-dev libaudit-dev openssl openssh-client)
case "${1:-}" in
  --sanitize | --fuzz) pkgs+=(clang libclang-rt-14-dev) ;;
  --bench) pkgs+=(dialog whiptail) ;;
esac
missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" -ne 0 ]; then
  echo "Missing packages. Run as root:" >&2
  echo "  apt-get update && apt-get install -y ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"

#!/usr/bin/env bash
# Builds the Debian packages and says where they are.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. cmake/packages.sh

require_packages $BUILD_PACKAGES $DEB_PACKAGES
configure_once package >/dev/null
rm -f build/package/*.deb
build_quietly package --target package
ls build/package/*.deb

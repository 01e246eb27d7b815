#!/bin/sh
# Installs those packages of Debian 12 that are missing. Usage: tools/packages.sh run|test|long
#   run   what builds and runs the program and the self-driving demonstration
#   test  the same and what the tests and checks need
#   long  the same and what the long tests need
set -eu

build="g++ cmake ninja-build pkg-config ccache ca-certificates
    qt6-base-dev qt6-webengine-dev qt6-svg-dev libqcustomplot-dev libmpv-dev libexpat1-dev
    nlohmann-json3-dev libexiv2-dev libgl-dev libssl-dev libcurl4-openssl-dev"
run="libqt6webenginewidgets6 libqt6webenginecore6-bin libqt6webengine6-data libqt6svg6
    libqt6printsupport6 qt6-qpa-plugins qt6-translations-l10n libgl1-mesa-dri
    fonts-dejavu-core fonts-wqy-microhei ffmpeg xvfb xauth xdotool x11-utils imagemagick procps"
test="libgtest-dev libgmock-dev libbenchmark-dev clang clang-format clang-tidy libclang-rt-14-dev
    dpkg-dev fakeroot libimage-exiftool-perl desktop-file-utils git curl jq python3 nginx-light
    chromium chromium-driver librsvg2-bin openbox at-spi2-core openssl dbus python3-gi
    gir1.2-atspi-2.0 libxml2-utils"
long="mmdebstrap lintian"

case "${1:-run}" in
run) wanted="$build $run" ;;
test) wanted="$build $run $test" ;;
long) wanted="$build $run $test $long" ;;
*)
    echo "usage: tools/packages.sh run|test|long" >&2
    exit 2
    ;;
esac

missing=""
for package in $wanted; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Please install as root:$missing" >&2
        exit 1
    }
    as_root="sudo"
fi
echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq
# shellcheck disable=SC2086 # the list is split on purpose
$as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null

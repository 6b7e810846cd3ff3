# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Sourced by the set-up scripts: installs the Debian packages the build needs
# when they are missing (Debian 12; run as root, or with sudo available).
COREQT_PACKAGES=(
    g++ clang libclang-rt-14-dev cmake ninja-build pkg-config
    qtbase5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n tzdata groff-base bash-completion doxygen graphviz
    libbenchmark-dev libspdlog-dev
    dpkg-dev lintian file clang-format-14
)
# The Qt 6 variant's, installed only when it is asked for: coreqt_install_deps --qt6.
COREQT_QT6_PACKAGES=(
    qt6-base-dev qt6-5compat-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools qt6-translations-l10n
)

coreqt_install_deps() {
    local wanted=("${COREQT_PACKAGES[@]}")
    if [ "${1:-}" = "--qt6" ]; then
        wanted+=("${COREQT_QT6_PACKAGES[@]}")
    fi
    local missing=()
    local package
    for package in "${wanted[@]}"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        sudo="sudo"
    fi
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Configures and builds into the directory $1 with the extra CMake arguments that follow.
coreqt_build() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
    cmake --build "$dir" -j "$(nproc)"
}

#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Builds the Debian packages of both Qt variants in build-deb/ and build-deb-qt6/ (`cpack -G DEB` in
# trees configured for /usr, with Debian's hardening flags), checks each with lintian (an error
# fails), then tests them all unpacked into one scratch root: no file is in two packages, every
# library a package links and every link it ships resolves in the package itself or in one it
# depends on, the consumers in tests/packaging build against the root through
# find_package(CoreQt), find_package(CoreQt6) and pkg-config, and both unpacked tools run on the
# unpacked libraries.
#   scripts/package.sh
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps --qt6

export DEB_BUILD_MAINT_OPTIONS=hardening=+all
cxxflags="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
ldflags=$(dpkg-buildflags --get LDFLAGS)
# Builds the packages of one Qt variant in the folder $1 (further arguments go to CMake).
build_packages() {
    local build=$1
    shift
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
        -DCMAKE_CXX_FLAGS="$cxxflags" -DCMAKE_EXE_LINKER_FLAGS="$ldflags" \
        -DCMAKE_SHARED_LINKER_FLAGS="$ldflags" -DBUILD_TESTING=OFF -DCOREQT_BUILD_BENCHMARKS=OFF \
        -DCOREQT_BUILD_EXAMPLES=OFF -DCOREQT_BUILD_DOCS=OFF "$@"
    cmake --build "$build" -j "$(nproc)"
    rm -f "$build"/*.deb
    (cd "$build" && cpack -G DEB)
}
build=build-deb
build_packages "$build"
build_packages "$build-qt6" -DCOREQT_QT_MAJOR=6
# Both builds make the stand-in packages from the same sources; the Qt 5 build's are used.
debs=("$build"/*.deb)
for deb in "$build-qt6"/*.deb; do
    [ -e "$build/${deb##*/}" ] || debs+=("$deb")
done

lintian --fail-on error "${debs[@]}"

failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
root=$PWD/$build/scratch-root
unpacked=$PWD/$build/scratch-packages
rm -rf "$root" "$unpacked"
mkdir -p "$root" "$unpacked"

declare -A owner
for deb in "${debs[@]}"; do
    package=$(dpkg-deb -f "$deb" Package)
    dpkg-deb -x "$deb" "$unpacked/$package"
    dpkg-deb -x "$deb" "$root"
    while read -r path; do
        [ -z "${owner[$path]:-}" ] || fail "$path is in ${owner[$path]} and in $package"
        owner[$path]=$package
    done < <(cd "$unpacked/$package" && find . ! -type d | sed 's|^\.||')
done

# What a package needs of ours must come from itself or from a package it depends on.
for deb in "${debs[@]}"; do
    package=$(dpkg-deb -f "$deb" Package)
    depends=$(dpkg-deb -f "$deb" Depends)
    dir=$unpacked/$package
    needs=()
    while read -r link; do
        path=${link#"$dir"}
        needs+=("$(realpath -m -s "$(dirname "$path")/$(readlink "$link")")")
    done < <(find "$dir" -type l)
    while read -r file; do
        for soname in $(readelf -d "$file" 2>/dev/null | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p'); do
            path=/usr/lib/$multiarch/$soname
            [ -z "${owner[$path]:-}" ] || needs+=("$path")
        done
    done < <(find "$dir" -type f)
    for need in "${needs[@]}"; do
        provider=${owner[$need]:-}
        if [ -z "$provider" ]; then
            fail "$package links to $need, which no package holds"
        elif [ "$provider" != "$package" ] && ! [[ ", $depends," == *", $provider "[\(,]* ]]; then
            fail "$package needs $need from $provider but does not depend on it ($depends)"
        fi
    done
done

# Every library of ours that an unpacked tool loads comes from the scratch root.
upstream=$(dpkg-deb -f "${debs[0]}" Version)
for variant in "" 6; do
    tool=$root/usr/bin/coreqt$variant
    name=${tool##*/}
    for lib in libCoreQt$variant.so.1 libCoreQt${variant}Console.so.1 libCore.so.1 libkom.so.1; do
        resolved=$(realpath -m "$(ldd "$tool" | awk -v lib="$lib" '$1 == lib { print $3 }')")
        [[ $resolved == "$root/usr/lib/$multiarch/"* ]] || fail "$name loads $lib from '$resolved'"
    done
    version=$("$tool" --version)
    [ "$version" = "coreqt ${upstream%-*}" ] || fail "$name --version printed '$version'"
    for file in "$root/usr/share/man/man1/$name.1.gz" \
        "$root/usr/share/bash-completion/completions/$name"; do
        [ -s "$file" ] || fail "missing $file"
    done
done
[ "$failures" -eq 0 ] || exit 1

cmake -DPREFIX="$root/usr" -DLIBDIR="lib/$multiarch" "-DPACKAGE=CoreQt;CoreQt6" -DCXX=c++ \
    -DCONSUMER_DIR="$PWD/tests/packaging/consumer" -DWORK_DIR="$PWD/$build/scratch-consumer" \
    -P tests/packaging/RunConsumer.cmake
echo "Debian packages: ok (${debs[*]##*/})"

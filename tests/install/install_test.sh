#!/usr/bin/env bash
# What a user gets from `cmake --install` and from the Debian package:
#   install_test.sh tree    BUILD_DIR MAKE_SAMPLES PROGRAM...
#   install_test.sh package BUILD_DIR PROGRAM...
set -euo pipefail
mode=$1 build=$2
shift 2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

# Each program and its compressed manual page, nothing else.
expected_files() {
    local prefix=$1
    shift
    for program in "$@"; do printf '%s\n' "${prefix}bin/$program" "${prefix}share/man/man1/$program.1.gz"; done | sort
}

check_tree() {
    local make_samples=$1
    shift
    cmake --install "$build" --prefix "$work/prefix" > /dev/null
    diff <(expected_files "" "$@") <(cd "$work/prefix" && find . ! -type d | sed 's|^\./||' | sort) ||
        fail "installed files differ from the expected list"

    # The installed programs write what the built ones write, but for argv[0].
    mkdir "$work/built" "$work/installed"
    "$make_samples" "$work/built"
    cp "$work/built"/*.bin "$work/installed"
    for side in built installed; do
        local bin="$build"
        [[ $side == installed ]] && bin="$work/prefix/bin"
        (cd "$work/$side" && "$bin/zyntelbin2json" > console.txt && "$bin/zyntelbin2json" -raw >> console.txt &&
            "$bin/zyntelbin2trace" >> console.txt)
        sed -i 's|^      "argv\[0\]": ".*"|      "argv[0]": ""|' "$work/$side"/*.json
    done
    [[ $(ls "$work/installed"/*.json | wc -l) -eq 7 ]] || fail "expected seven JSON files"
    diff -r "$work/built" "$work/installed" || fail "installed tool writes other output"

    for program in "$@"; do
        local page="$work/prefix/share/man/man1/$program.1.gz"
        [[ $(MANPATH="$work/prefix/share/man" man -w "$program") == "$page" ]] || fail "man does not find $program"
        local warnings
        warnings=$(groff -ww -z -man "$source_dir/man/$program.1" 2>&1;
                   MANPAGER=cat man --warnings=all -l "$page" 2>&1 > "$work/page.txt")
        [[ -z $warnings ]] || fail "$program.1 renders with warnings: $warnings"
        grep -q "^NAME" "$work/page.txt" || fail "$program.1 renders no NAME section"
    done
}

check_package() {
    cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work" > /dev/null
    local deb version
    deb=$(echo "$work"/*.deb)
    version=$("$build/zyntelbin2json" | sed -n 's/^(version \([0-9]*\);.*/\1/p')
    dpkg-deb --info "$deb" > "$work/info.txt"
    for field in "Package: zyntelbin2json" "Version: $version" "Architecture: $(dpkg --print-architecture)" \
                 "Maintainer: .* <.*@.*>" "Depends: .*libc6 (>= .*libstdc++6 (>= " "Description: ."; do
        grep -q "^ $field" "$work/info.txt" || fail "control data lack '$field'"
    done
    diff <(expected_files "./usr/" "$@") <(dpkg-deb --contents "$deb" | awk '$1 !~ /^d/ {print $6}' | sort) ||
        fail "package files differ from the expected list"
    dpkg-deb -x "$deb" "$work/root"
    for program in "$@"; do
        ! readelf -S "$work/root/usr/bin/$program" | grep -q 'debug\|symtab' || fail "$program is not stripped"
    done
}

case $mode in
    tree) check_tree "$@" ;;
    package) check_package "$@" ;;
    *) fail "unknown mode $mode" ;;
esac

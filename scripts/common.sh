# What the scripts share. Sourced, not run.
# shellcheck shell=bash disable=SC2034

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
jobs=$(nproc 2>/dev/null || echo 2)

# Recommended packages that we need stand here by name, because recommendations are not installed:
# make is what cmake builds with if nothing else is asked for, libclang-rt-14-dev holds clang's
# sanitizers and fuzzer, binutils has nm, diffutils has diff. Praat reads what mlds writes for it, and
# the viewer's page is tested in a browser, which python3-selenium drives.
build_packages=(g++ cmake make ninja-build pkg-config
    libicu-dev libcli11-dev libcpp-httplib-dev nlohmann-json3-dev)
test_packages=("${build_packages[@]}" libgtest-dev libgmock-dev libbenchmark-dev python3 ccache
    clang-14 libclang-rt-14-dev clang-format-14 git
    binutils diffutils util-linux praat chromium chromium-driver python3-selenium)
# A node that did not come from Debian brings its own npm, and Debian's cannot stand beside it.
command -v npm >/dev/null || test_packages+=(nodejs npm)

step() {
    current_step=$*
    printf '\n==== %s\n' "$current_step"
}

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Names the step that failed when a script ends early.
report_failed_step() {
    local status=$?
    if [ "$status" -ne 0 ] && [ -n "${current_step:-}" ]; then
        printf '\n==== FAILED in the step: %s\n' "$current_step" >&2
    fi
}
trap report_failed_step EXIT

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "packages have to be installed, which needs root, and there is no sudo here." \
            "Run as root: apt-get install --no-install-recommends ${missing_packages[*]}"
    fi
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the given Debian packages that are missing.
need_packages() {
    missing_packages=()
    local package
    for package in "$@"; do
        is_installed "$package" || missing_packages+=("$package")
    done
    [ ${#missing_packages[@]} -gt 0 ] || return 0

    command -v apt-get >/dev/null ||
        die "this needs a Debian system, or these packages' equivalents: ${missing_packages[*]}"
    step "install ${missing_packages[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q </dev/null
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing_packages[@]}" </dev/null
}

# With ccache, what was compiled once is not compiled again: by the next step with the same options,
# by the next run, in a fresh checkout. Only trees that are configured from here on use it.
use_ccache() {
    if command -v ccache >/dev/null; then
        export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
    fi
}

# build PRESET [CONFIGURE OPTION...]: a configured and built tree in build/PRESET.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" "$@"
    cmake --build --preset "$preset" --parallel "$jobs"
}

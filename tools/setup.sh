# For ./run and ./test to source: installs Debian packages that are missing, and builds a preset.
# All that is said here goes to standard error; standard output belongs to the command itself.

TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
BUILD_PACKAGES="g++ cmake ninja-build ccache pkg-config libcli11-dev nlohmann-json3-dev libgumbo-dev"

need() {
    local missing=()
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}" >&2
    local sudo=
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq >&2
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >&2
}

# build PRESET [TARGET...]: configures and builds, quietly unless something fails.
build() {
    local preset=$1
    shift
    local log=$TOP/build/$preset.log
    # A log that cannot be opened would not count as a failed build, and an old build would run.
    if ! mkdir -p "$TOP/build" || ! : >"$log"; then
        echo "Cannot build: $log cannot be written" >&2
        exit 70
    fi
    [ -f "$TOP/build/$preset/build.ninja" ] || echo "Building ($preset); the log is $log" >&2
    if ! { (cd "$TOP" && cmake --preset "$preset" -Wno-dev) &&
        cmake --build "$TOP/build/$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        echo "The build failed; the log is $log" >&2
        exit 70
    fi
}

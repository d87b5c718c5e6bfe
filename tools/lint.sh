#!/usr/bin/env bash
# Sources as the settings in the repository want them: clang-format changes nothing, clang-tidy
# finds nothing.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cd "$TOP"
build release embedded_texts
build bench embedded_texts

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format-14 --dry-run --Werror "${sources[@]}"
echo "clang-format: ${#sources[@]} files are clean"

# tidy PRESET PATTERN...: the sources that the patterns match, as the preset compiles them.
tidy() {
    local preset=$1
    shift
    local units
    mapfile -t units < <(git ls-files "$@")
    printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 \
        clang-tidy-14 --quiet -p "build/$preset" --extra-arg=-Wno-unknown-warning-option \
        2> >(grep -v 'warnings generated' >&2 || true)
    echo "clang-tidy: ${#units[@]} files are clean ($*)"
}
tidy release 'src/*.cpp' 'ravikit/*.cpp' 'platform/*.cpp' 'apps/*.cpp' 'examples/*.cpp'
tidy release 'tests/*.cpp'
tidy bench 'bench/*.cpp'

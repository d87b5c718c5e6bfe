#!/usr/bin/env bash
# Sources as the settings in the repository want them: clang-format changes nothing, clang-tidy
# finds nothing.
set -eu
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cd "$TOP"
build release embedded_texts

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format-14 --dry-run --Werror "${sources[@]}"
echo "clang-format: ${#sources[@]} files are clean"

mapfile -t units < <(git ls-files 'src/*.cpp' 'ravikit/*.cpp' 'platform/*.cpp' 'apps/*.cpp' 'examples/*.cpp')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 \
    clang-tidy-14 --quiet -p build/release --extra-arg=-Wno-unknown-warning-option 2> >(grep -v 'warnings generated' >&2 || true)
echo "clang-tidy: ${#units[@]} files are clean"

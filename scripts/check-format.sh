#!/usr/bin/env bash
# Fails when a C++ file of the project differs from what clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files '*.cpp' '*.h')
[ -n "$files" ] || exit 0
# shellcheck disable=SC2086
clang-format --dry-run --Werror $files
echo "clang-format: $(echo "$files" | wc -l) files checked"

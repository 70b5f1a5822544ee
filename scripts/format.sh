#!/usr/bin/env bash
# Formats the tree's C++ with the root's .clang-format (clang-format 14, Debian's).
# --check changes nothing and fails on the first file that isn't formatted; the test
# command runs it so.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(find src tests bench tools -name '*.cpp' -o -name '*.h' | sort)
if [ "${1:-}" = --check ]; then
    clang-format --dry-run -Werror "${files[@]}"
    echo "format: ${#files[@]} files as .clang-format has them"
else
    clang-format -i "${files[@]}"
fi

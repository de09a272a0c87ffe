#!/usr/bin/env bash
# Runs the README's run command exactly as a newcomer types it, headless under Xvfb and with a
# user configuration of its own, and fails unless the window comes up and its first scan counts
# the sample library's 588 photos. KELVARO_QUIT_AFTER_FIRST_SCAN makes the program print its
# status line after that scan and quit.
set -uo pipefail
cd "$(dirname "$0")/.."

expected="Valid files: 588"
config=$(mktemp -d)
output=$(mktemp)
trap 'rm -rf "$config" "$output"' EXIT

XDG_CONFIG_HOME="$config" KELVARO_QUIT_AFTER_FIRST_SCAN=1 \
    timeout 1800 xvfb-run -a bash scripts/run.sh </dev/null 2>&1 | tee "$output"
if grep -Eq "^$expected( |$)" "$output"; then
    echo "run command: the window's first scan ended with \"$expected\""
else
    echo "run command: FAILED, no \"$expected\" from the window's first scan" >&2
    exit 1
fi

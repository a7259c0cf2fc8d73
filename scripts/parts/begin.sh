# Sourced first by every script: stops at the first error, goes to the root of the tree, and prints the comment at the
# head of the script when its first argument is --help.
# shellcheck shell=bash
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
if [ "${1:-}" = --help ]; then
    sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "scripts/$(basename "$0")"
    exit
fi

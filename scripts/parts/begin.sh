# Every script sources this file first. It stops the script at the first error, changes to the root of the tree and, for
# --help as the first argument, prints the comment at the head of the script.
# shellcheck shell=bash
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
if [ "${1:-}" = --help ]; then
    sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "scripts/$(basename "$0")"
    exit
fi

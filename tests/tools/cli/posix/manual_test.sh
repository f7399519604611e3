#!/usr/bin/env bash
# manual_test.sh PROGRAM   the manual page before a formatter that reports what it does not understand.
set -euo pipefail
command -v groff >/dev/null || { echo "skipped: groff is not installed" >&2; exit 77; }
complaints=$("$1" manual | groff -man -ww -Tutf8 -rLL=100n -z 2>&1)
[ -z "$complaints" ] || { echo "$complaints" >&2; exit 1; }
text=$("$1" manual | groff -man -Tutf8 -rLL=100n -P-c -P-b -P-u -P-o)
for wanted in 'watch [options] [CHANNEL...]' '--interval SECONDS' 'EXIT STATUS' "can't be made"; do
    grep -Fq -- "$wanted" <<<"$text" || { echo "the page has no: $wanted" >&2; exit 1; }
done

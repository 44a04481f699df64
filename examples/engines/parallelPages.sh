#!/bin/sh
# Lines of JSON of all pages of a document, by GNU parallel: as many processes at a time as there are
# processors, the output in the order of the document. A part that fails is done again, up to twice;
# with --sshlogin the parts go to other machines that see the file.
#
# usage: parallelPages.sh FILE [PARTS]
set -eu
file=$1
parts=${2:-16}
nuxml=${NUXML:-nuxml}

"$nuxml" records --index "$file"
seq "$parts" | parallel --keep-order --retries 3 --halt now,fail=1 \
    "$nuxml" records --json --part "{}/$parts" dump/page "$file"

#!/bin/sh
# Renders one part of the rows on the host where it is run: part.sh PART OF, in the folder that all hosts share. It holds
# invoice.tpl and rows.ndjson, gets pages/PART and pages/PART.part (its manifest), and a file in tries/ for each try.
#
# It may be run as often as a scheduler likes, also twice at once: a try writes under names of its own, and what takes the
# part's name is whole and always the same.
set -e
part=$1 of=$2
try=$part.$(hostname).$$
: >"tries/$try.begun"

# On the host's own disk first: cp tells when the shared folder fails, and no half-written part is ever seen in there.
mine=$(mktemp -d)
trap 'rm -rf "$mine"' EXIT
template batch --quiet --allow-faults invoice.tpl rows.ndjson --part "$part/$of" --output "$mine/pages" --manifest "$mine/manifest"
cp "$mine/pages" "tries/$try"
cp "$mine/manifest" "tries/$try.part"
mv "tries/$try" "pages/$part"
mv "tries/$try.part" "pages/$part.part"

#!/usr/bin/env bash
# Renders rows in one process and, with GNU parallel, in several, and compares what comes out:
# spread.sh [ROWS [WORKERS]]. "./dev spread" of the checkout calls it with all that it needs.
set -euo pipefail

rows=${1-1000000} workers=${2-$(nproc)}
here=$(cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
php=${PHP-php}
template=("$php" "$here/../../bin/template" batch "$here/invoice.tpl")

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$php" "$here/rows.php" "$rows" > "$folder/rows"

# Prints how long the rest of the arguments took, as a command, and how many rows a second that makes.
timed() {
    local what=$1 start end
    start=$(date +%s%N)
    "${@:2}"
    end=$(date +%s%N)
    awk -v what="$what" -v rows="$rows" -v seconds="$(((end - start) / 1000000))e-3" \
        'BEGIN { printf "%s: %d rows in %.1f s, %d rows/s\n", what, rows, seconds, rows / seconds }'
}
one() { "${template[@]}" --quiet < "$folder/rows" > "$folder/one"; }
many() {
    # The rows are cut at line ends into blocks of some 10 MB, the results put together in their order.
    parallel --will-cite --pipe --keep-order --quote -j "$workers" --block 10M \
        "${template[@]}" --quiet < "$folder/rows" > "$folder/many"
}

timed 'one process' one
timed "$workers processes" many
cmp "$folder/one" "$folder/many"
lines=$(wc -l < "$folder/one")
[ "$lines" -eq "$rows" ] || { echo "There are $lines results for $rows rows."; exit 1; }
echo "The same $lines lines, $(wc -c < "$folder/one") bytes."

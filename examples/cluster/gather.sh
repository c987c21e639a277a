#!/bin/sh
# Puts the parts together, in the order of the rows, and holds them against their manifests: gather.sh PARTS.
set -e
seq "$1" | sed 's|^|pages/|' | xargs cat >pages.ndjson
seq "$1" | sed 's|.*|pages/&.part|' | xargs cat >pages.manifest
exec template batch invoice.tpl rows.ndjson --output pages.ndjson --manifest pages.manifest --verify

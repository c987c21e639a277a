#!/bin/sh
# Puts a release in place, on a host: deploy.sh FOLDER, a folder in /srv/site/releases.
#
# One rename, so that there is always a release. "ln -sf" would remove the link and make it anew. The old release stays for
# the requests that began with it.
set -e
ln -s "releases/${1##*/}" /srv/site/next
mv -T /srv/site/next /srv/site/current

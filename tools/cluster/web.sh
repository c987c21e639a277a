# The web tier on the hosts of the cluster: php-fpm and nginx on each, HAProxy on the head.

WEB=$ROOT/examples/cluster/web

# start_web HOST…: with release 1 in place, and release 2, which differs in every file, beside it.
start_web() {
    local n
    for n in "$@"; do
        tar -C "$WEB" -c . | ssh "host$n" '
            set -e
            mkdir -p /srv/site/releases /srv/web /var/lib/nginx
            tar -C /srv/web -x --no-same-owner
            cp -r /srv/web/site /srv/site/releases/1
            cp -r /srv/web/site /srv/site/releases/2
            sed -i "s/elease 1/elease 2/" /srv/site/releases/2/*.tpl
            chmod -R a+rX /srv
            sh /srv/web/deploy.sh releases/1'
        ssh -n "host$n" "
            php-fpm8.4 -n -y /srv/web/php-fpm.conf -d extension=$TEMPLATE_SO -d zend_extension=opcache </dev/null >/srv/start.log 2>&1 &&
            nginx -c /srv/web/nginx.conf -e /srv/nginx.log </dev/null >>/srv/start.log 2>&1" ||
            give_up "php-fpm or nginx did not start on host$n: $(ssh -n "host$n" tail -n 1 /srv/start.log)"
    done
}

# start_balancer HOST…: HAProxy for these hosts, in place of one that runs.
start_balancer() {
    local n
    stop_balancer
    { cat "$WEB/haproxy.cfg"; for n in "$@"; do echo "    server host$n host$n:80"; done; } >/srv/haproxy.cfg
    haproxy -D -f /srv/haproxy.cfg -p /run/haproxy.pid >"$HOSTS/haproxy.log" 2>&1 ||
        give_up "HAProxy did not start: $(tail -n 1 "$HOSTS/haproxy.log")"
    LOG=$HOSTS/haproxy.log wait_for 'web tier' 30 all_answer "$@"
}

stop_balancer() {
    [ ! -e /run/haproxy.pid ] || kill $(</run/haproxy.pid) 2>/dev/null || true
    rm -f /run/haproxy.pid
}

# Whether each of these hosts answers requests that are sent to the head.
all_answer() {
    local n seen
    seen=$(for ((n = 0; n < 4 * $#; n++)); do curl -s --max-time 5 -D - -o /dev/null http://head/ | grep -i '^x-host:'; done | sort -u | wc -l)
    [ "$seen" -eq $# ]
}

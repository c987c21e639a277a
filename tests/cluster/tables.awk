# The figures that tests/cluster/measure collects, as the tables of docs/scale.md.

function bulk(what, engine, key,    f) {
    if (!(key in runs)) return
    split(runs[key], f, " ")
    line = sprintf("| %s | %s | %d | %.1f | %d |", what, f[2], f[4], f[5] / 1e9, f[4] / (f[5] / 1e9))
    # A host that dies takes what was counted on it along.
    if (f[3] != "--") return line " – | – | – |\n"
    return line sprintf(" %.1f |", f[8] * 1e6 / f[4]) (f[6] ? sprintf(" %.0f | %.0f |", f[6] / f[4], f[7] / f[4]) : " – | – |") "\n"
}

/^(one|parallel|slurm) / { runs[$1 " " $2 " " $3] = $0; cpu[$1 " " $2 " " $3] = $8 * 1e6 / $4; }
/^one / { rows = $4 }
# What is reckoned with is that of the most hosts.
/^parallel [0-9]+ -- / { perrow = $8 * 1e6 / $4; network = ($6 + $7) / $4 }
/^bare / { bare = $2 }
/^bytes / { rowbytes = $2; pagebytes = $3; batchmemory = $4 / 1024 }
/^worker / { worker = $2 / 1024 }
/^pages / {
    hosts = $2
    fpm[hosts] = ($4 - $3) * 1e6 / $11; nginx[hosts] = ($6 - $5) * 1e6 / $11; haproxy[hosts] = ($8 - $7) * 1e6 / $11
    bytes[hosts] = $9 / $11; rate[hosts] = $11 / $27; p50[hosts] = $21; p99[hosts] = $23; failedpages[hosts] = $13
}
/^web / { web = $0 }

END {
    printf "Taken on %s, with all hosts on one machine: %d cores%s, %.0f GB of memory, which also is the hosts' disks.\n", date, cores, model ? " (" model ")" : "", memory
    printf "The load by other work was %s before it began%s.\n\n", load, load < 0.5 ? "" : ", and it came and went: compare processor time, not seconds"
    print "**Bulk**\n"
    print "| run | hosts | rows | seconds | rows/s | CPU µs a row, in all | bytes a row to the hosts | bytes a row from them |"
    print "|---|---|---|---|---|---|---|---|"
    printf "%s", bulk("one process, no cluster", "one", "one 1 --")
    for (n = 1; n <= 3; n++) printf "%s", bulk("GNU parallel", "parallel", "parallel " n " --")
    printf "%s", bulk("GNU parallel, one host cut off, one killed", "parallel", "parallel 3 21")
    for (n = 1; n <= 3; n++) printf "%s", bulk("Slurm", "slurm", "slurm " n " --")
    printf "%s", bulk("Slurm, one host cut off, one killed", "slurm", "slurm 3 21")
    printf "\n%d rows of %.0f bytes, whose results have %.0f. The bare call of `template()` takes %.2f µs of CPU a row, `template batch`\n", rows, rowbytes / rows, pagebytes / rows, bare
    printf "in one process %.2f: %.2f µs for reading, JSON and writing. That process took %d MB.\n\n", cpu["one 1 --"], cpu["one 1 --"] - bare, batchmemory

    print "**Web tier**, as fast as it goes, 16 connections\n"
    print "| hosts | pages/s | p50 ms | p99 ms | failed | CPU µs a page: php-fpm | nginx | HAProxy | bytes a page from the hosts |"
    print "|---|---|---|---|---|---|---|---|---|"
    for (n = 1; n <= 3; n++) printf "| %d | %d | %.1f | %.1f | %d | %.0f | %.0f | %.0f | %.0f |\n", n, rate[n], p50[n], p99[n], failedpages[n], fpm[n], nginx[n], haproxy[n], bytes[n]
    split(web, w, " ")
    printf "\nThree hosts at %d requests a second, while one is killed, one is reloaded and releases are switched: %d requests, %d failed, %d old\n", w[2], w[4], w[6], w[8]
    printf "pages, %d new ones, %d mixed; p50 %.1f ms, p99 %.1f ms, at most %d ms.\n\n", w[10], w[12], w[14], w[16], w[18]

    page = fpm[1] + nginx[1]
    print "**On paper**, from these figures\n"
    print "| | 10^9 mails in an hour | 10^5 pages a second |"
    print "|---|---|---|"
    printf "| work of processors | %.1f core hours | %.0f + %.0f core seconds a second: hosts, HAProxy |\n", perrow * 1e9 / 3.6e9, page * 1e5 / 1e6, haproxy[1] * 1e5 / 1e6
    printf "| cores, two thirds busy | %.0f | %.0f + %.0f |\n", perrow * 1e9 / 3.6e9 * 1.5, page * 1e5 / 1e6 * 1.5, haproxy[1] * 1e5 / 1e6 * 1.5
    printf "| of these, the bare calls of `template()` | %.1f core hours | – |\n", bare * 1e9 / 3.6e9
    printf "| memory, a process for each of these cores | %.1f GB | %.1f GB |\n", perrow * 1e9 / 3.6e9 * 1.5 * batchmemory / 1024, page * 1e5 / 1e6 * 1.5 * worker / 1024
    printf "| network | %.1f Gbit/s, all rows and results through one shared folder | %.1f Gbit/s from the hosts to the balancers |\n", network * 1e9 * 8 / 3600 / 1e9, bytes[1] * 1e5 * 8 / 1e9
    printf "| results to keep | %.0f GB | – |\n", pagebytes / rows
}

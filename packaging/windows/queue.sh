# shellcheck shell=bash
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# Sourced by what prints in tests: a print system of their own, on a socket in the folder `work`,
# with one queue that keeps what it prints and is the default.
: "${work:?}"

# start_queue: names the print system in CUPS_SERVER and the folder of what was printed, as Wine
# knows it, in LOGBOOK_TEST_QUEUE. False if this machine cannot run one.
start_queue() {
  local place=$work/cups part
  [ -x /usr/sbin/cupsd ] && command -v lpadmin lpstat >/dev/null || return 1
  mkdir -p "$place"/{etc,spool,cache,state,tmp,parts/backend,out}
  chmod 755 "$work" "$place"
  cat >"$place/etc/cupsd.conf" <<END
Listen $place/socket
Browsing No
DefaultAuthType None
WebInterface No
<Location />
  Order allow,deny
  Allow all
</Location>
<Location /admin>
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
  </Limit>
</Policy>
END
  cat >"$place/etc/cups-files.conf" <<END
ServerRoot $place/etc
ServerBin $place/parts
RequestRoot $place/spool
CacheDir $place/cache
StateDir $place/state
TempDir $place/tmp
AccessLog $place/access.log
PageLog $place/page.log
ErrorLog $place/error.log
END
  for part in daemon filter cgi-bin driver notifier; do
    ln -s "/usr/lib/cups/$part" "$place/parts/$part"
  done
  # Keeps job N as job.N, and its title beside it.
  cat >"$place/parts/backend/keep" <<END
#!/bin/sh
[ \$# -eq 0 ] && exit 0
printf '%s\\n' "\$3" >"$place/out/title.\$1"
cat "\${6:--}" >"$place/out/part" && chmod 644 "$place/out/part" && mv "$place/out/part" "$place/out/job.\$1"
END
  # Only its owner may run it: the scheduler then does so under its own name.
  chmod 700 "$place/parts/backend/keep"
  /usr/sbin/cupsd -f -c "$place/etc/cupsd.conf" -s "$place/etc/cups-files.conf" \
    >"$place/log" 2>&1 &
  scheduler=$!
  export CUPS_SERVER=$place/socket
  timeout 60 sh -c "until lpstat -r 2>/dev/null | grep -q 'is running'; do sleep 0.1; done" &&
    lpadmin -p Kept -E -v keep:Kept -m raw 2>/dev/null && lpadmin -d Kept &&
    export LOGBOOK_TEST_QUEUE=Z:$place/out
}

end_queue() {
  [ -z "${scheduler:-}" ] || kill "$scheduler"
}

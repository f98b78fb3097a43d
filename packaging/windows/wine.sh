# shellcheck shell=bash
# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
#
# Sourced by what runs programs of the Windows edition on this system. `work` is a folder for it.
: "${work:?}"
export PATH=/usr/lib/wine:$PATH WINESERVER=/usr/lib/wine/wineserver64
export WINEPREFIX=$work/wine WINEDEBUG=${WINEDEBUG:--all} TZ=UTC
# A help engine beside a program comes before that of Wine.
export WINEDLLOVERRIDES="mscoree,mshtml=;hhctrl.ocx=n,b"
unset LOGBOOK_HOME LOGBOOK_ROOT XDG_DATA_HOME

# start_wine [SIZE [DOTS]]: a Wine folder and a virtual display of their own, so large, with so many
# dots to the inch.
start_wine() {
  local size=${1:-1280x1024} dots=${2:-96}
  Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$work/display" >/dev/null 2>&1 &
  screen=$!
  for _ in $(seq 600); do
    [ -s "$work/display" ] && break
    sleep 0.1
  done
  DISPLAY=:$(cat "$work/display")
  export DISPLAY
  timeout 300 wine64 wineboot -i >/dev/null 2>&1
  # Without a window manager, Wine gives frames and the foreground only on a desktop of its own.
  local key='HKCU\Software\Wine\Explorer'
  wine64 reg add "$key" /v Desktop /d Default /f >/dev/null 2>&1
  wine64 reg add "$key\Desktops" /v Default /d "$size" /f >/dev/null 2>&1
  # Wine says that it is an older system unless it is told.
  wine64 reg add 'HKCU\Software\Wine' /v Version /d win10 /f >/dev/null 2>&1
  wine64 reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dots" /f >/dev/null 2>&1
  wineserver -k >/dev/null 2>&1 || true
}

end_wine() {
  wineserver -k >/dev/null 2>&1 || true
  [ -z "${screen:-}" ] || kill "$screen"
}

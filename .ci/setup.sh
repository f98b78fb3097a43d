#!/usr/bin/env bash
# Sourced by ./run and ./test: sees what is missing and installs it where it can. `top` is the
# project's folder.
: "${top:?}"

# install_packages KIND...: makes sure that the packages of these kinds (.ci/packages) are there.
# On Debian they are installed; elsewhere, or without the right to, the missing ones are named and
# the script ends with status 1.
install_packages() {
  local missing=() kind package probe
  while read -r kind package probe; do
    case " $* " in *" $kind "*) ;; *) continue ;; esac
    is_there "$package" "$probe" || missing+=("$package")
  done < <(grep -v '^#' "$top/.ci/packages")
  [ ${#missing[@]} -eq 0 ] && return 0

  if ! command -v apt-get >/dev/null; then
    echo "Missing, and packages cannot be installed on this system: ${missing[*]}" >&2
    exit 1
  fi
  local become=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
      echo "Missing, and this user may not install packages: ${missing[*]}" >&2
      echo "As root: apt-get install ${missing[*]}" >&2
      exit 1
    fi
    become=(sudo)
  fi
  echo "Installing ${missing[*]} ..."
  local log
  log=$(mktemp)
  if ! { "${become[@]}" apt-get update -qq &&
         "${become[@]}" env DEBIAN_FRONTEND=noninteractive \
           apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    if grep -qE 'Temporary failure resolving|Could not (resolve|connect)' "$log"; then
      echo "The packages cannot be fetched: there is no way to where they lie." >&2
    else
      tail -n 20 "$log" >&2
    fi
    echo "Missing, and their installation failed: ${missing[*]}" >&2
    exit 1
  fi
  rm -f "$log"
}

# is_there PACKAGE PROBE
is_there() {
  if command -v dpkg-query >/dev/null; then
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
    return
  fi
  local what=${2#*:}
  case $2 in
    command:*) command -v "$what" >/dev/null ;;
    header:*) [ -e "/usr/include/$what" ] || [ -e "/usr/local/include/$what" ] ;;
    python:*) python3 -c "import $what" 2>/dev/null ;;
    catalogue:*) find /usr/share/qt6/translations /usr/local/share -name "$what" 2>/dev/null | grep -q . ;;
    font:*) find /usr/share/fonts /usr/local/share/fonts -name "$what" 2>/dev/null | grep -q . ;;
  esac
}

# build PRESET [OPTION...]: configures and builds; options go to "cmake --build".
build() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! cmake --preset "$preset" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
  fi
  rm -f "$log"
  cmake --build --preset "$preset" "$@"
}

# Sourced by ./demo and ./check.

# setup_packages NAME...: installs the Debian packages that are missing. Without apt-get the build goes on with what
# is there, and says what it leaves out.
setup_packages() {
  local missing=() package
  if ! command -v dpkg-query > /dev/null || ! command -v apt-get > /dev/null; then
    echo "No apt-get here: going on with what is installed."
    return 0
  fi
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2> /dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "== installing ${missing[*]}"
  local sudo=
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
}

# What the product needs from Debian, and the one way to install it. Sourced by run, test and .ci/run.

packages_to_run="g++ cmake ninja-build pkg-config qt6-base-dev qt6-translations-l10n libsqlitecpp-dev libsqlite3-dev unixodbc-dev tdsodbc libicu-dev libxlsxwriter-dev zlib1g-dev fonts-noto-core fonts-noto-ui-core"
# The tour needs a display of its own, a window manager, and the bus of the screen readers.
packages_to_tour="xvfb openbox xdotool imagemagick dbus at-spi2-core gir1.2-atspi-2.0 python3-gi"
packages_to_test="$packages_to_run libgtest-dev libsqliteodbc python3-openpyxl $packages_to_tour"
packages_to_package="$packages_to_run dpkg-dev file"
packages_to_check="$packages_to_test clang-format clang-tidy libbenchmark-dev"

# Installs what is missing of the packages named; a machine that has them all isn't touched.
ensure_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! sudo -n true 2>/dev/null; then
      echo "These packages are missing, and neither root nor sudo without a password is at hand to install them:" >&2
      echo "    apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo -n)
  fi
  echo "Installing: ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } \
       >"$log" 2>&1 </dev/null; then
    tail -n 20 "$log" >&2
    echo "The packages could not be installed (see above). Try: apt-get install ${missing[*]}" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# Configures the release preset where it wasn't, or where tests are wanted that it doesn't know yet.
configure_release() {
  [ -f build/release/build.ninja ] && ! { [ "$1" = tests ] && ! grep -q '^LEDGERTREE_TESTS:BOOL=ON' build/release/CMakeCache.txt; } && return 0
  local tests=OFF
  [ "$1" = tests ] && tests=ON
  cmake --preset release -DLEDGERTREE_TESTS=$tests >build/configure.log 2>&1 || { cat build/configure.log >&2; return 1; }
}

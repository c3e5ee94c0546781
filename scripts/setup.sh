# Shared by demo.sh and test.sh: installs the Debian packages the build needs, when missing, and
# configures a CMake preset. Source it; it defines ensure_packages and configure_preset.

POKERMATH_PACKAGES=(g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev
                    nlohmann-json3-dev python3-dev pybind11-dev python3-numpy libopenmpi-dev openmpi-bin)
# What test.sh needs on top: Clang 14 with its sanitizer runtimes and LLVM's OpenMP runtime (libomp,
# with the Archer tool that lets ThreadSanitizer see OpenMP's synchronisation).
# And pytest for the Python package's tests, and librsvg's rsvg-convert, which renders the SVG
# pictures in their tests.
POKERMATH_TEST_PACKAGES=(clang-14 libclang-rt-14-dev libomp-14-dev python3-pytest librsvg2-bin)

# ensure_packages [MORE PACKAGES...]: installs POKERMATH_PACKAGES and the ones named, when missing.
ensure_packages() {
  local missing=()
  for package in "${POKERMATH_PACKAGES[@]}" "$@"; do
    dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing Debian packages: ${missing[*]}" >&2
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
}

# configure_preset NAME [CMAKE ARGS...]: configures build/NAME with Ninja on its first run.
configure_preset() {
  local preset=$1
  shift
  local generator=()
  [ -f "build/$preset/CMakeCache.txt" ] || generator=(-G Ninja)
  cmake --preset "$preset" "${generator[@]}" "$@" >/dev/null
}

# install_python_package BUILD_DIR: installs the Python package built in BUILD_DIR for Debian's
# python3 (into /usr/local/lib/python3.X/dist-packages, which it searches) and, when the python3
# first on PATH is another interpreter of the same version (pyenv, a virtual environment), into that
# interpreter's site packages as well, so that `python3 -c "import pokermath"` works from any
# directory.
install_python_package() {
  local build=$1 sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo cmake --install "$build" --component python >/dev/null
  local site
  site=$(/usr/bin/python3 -c "import sysconfig; print(sysconfig.get_path('platlib'))")
  echo "Installed the Python package pokermath for /usr/bin/python3 into $site" >&2
  local path_python
  path_python=$(command -v python3 || true)
  [ -z "$path_python" ] && return 0
  local suffix=(-c "import sysconfig, sys; print(sysconfig.get_config_var('EXT_SUFFIX'), sys.prefix)")
  local debian other
  debian=$(/usr/bin/python3 "${suffix[@]}")
  other=$("$path_python" "${suffix[@]}" 2>/dev/null || true)
  # Another interpreter (its own prefix) that loads the same extension modules.
  if [ -n "$other" ] && [ "${other%% *}" = "${debian%% *}" ] && [ "${other#* }" != "${debian#* }" ]; then
    local other_site
    other_site=$("$path_python" -c "import sysconfig; print(sysconfig.get_path('platlib'))")
    if [ -w "$other_site" ]; then
      rm -rf "$other_site/pokermath"
      cp -r "$build/python/pokermath" "$other_site/"
      rm -rf "$other_site/pokermath/__pycache__"
      echo "Installed it for $path_python too, into $other_site" >&2
    fi
  fi
}

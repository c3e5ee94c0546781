# Shared by demo.sh and test.sh: installs the Debian packages the build needs, when missing, and
# configures a CMake preset. Source it; it defines ensure_packages and configure_preset.

POKERMATH_PACKAGES=(g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev
                    nlohmann-json3-dev)
# What test.sh needs on top: Clang 14 with its sanitizer runtimes and LLVM's OpenMP runtime (libomp,
# with the Archer tool that lets ThreadSanitizer see OpenMP's synchronisation).
POKERMATH_TEST_PACKAGES=(clang-14 libclang-rt-14-dev libomp-14-dev)

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

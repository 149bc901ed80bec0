# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the scripts of this folder share: where the project is, what each purpose needs, installing and building.
# Sourced, never run; the script that sources it has set -euo pipefail.

root=$(CDPATH='' cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

# One list per purpose. An entry is PROBE=PACKAGE: a command or a file that shows that the Debian package is there.
build_needs=(g++=g++ cmake=cmake ninja=ninja-build /usr/include/xxhash.h=libxxhash-dev)
test_needs=("${build_needs[@]}" python3=python3 git=git readelf=binutils mandoc=mandoc
  objdump=binutils qemu-x86_64=qemu-user abidiff=abigail-tools pkg-config=pkg-config
  /usr/include/gtest/gtest.h=libgtest-dev /usr/include/gmock/gmock.h=libgmock-dev
  /usr/include/gcrypt.h=libgcrypt20-dev /usr/include/simde/x86/avx512.h=libsimde-dev)
windows_build_needs=(cmake=cmake ninja=ninja-build x86_64-w64-mingw32-g++-posix=g++-mingw-w64-x86-64-posix
  /usr/include/xxhash.h=libxxhash-dev)
windows_test_needs=("${build_needs[@]}" "${windows_build_needs[@]}" python3=python3
  wine=wine /usr/lib/wine/wine64=wine64 /usr/src/googletest/CMakeLists.txt=googletest)
windows_slow_test_needs=(Xvfb=xvfb xdotool=xdotool)
speed_needs=(openssl=openssl rhash=rhash)
layers_needs=(python3=python3)
format_needs=(clang-format-14=clang-format-14 git=git)
tidy_needs=("${build_needs[@]}" clang++-14=clang-14 clang-tidy-14=clang-tidy-14 git=git)
cppcheck_needs=(cppcheck=cppcheck)
fuzz_needs=("${build_needs[@]}" clang++-14=clang-14
  /usr/lib/llvm-14/lib/clang/14.0.6/lib/linux/libclang_rt.fuzzer-x86_64.a=libclang-rt-14-dev git=git)
package_needs=("${build_needs[@]}" "${windows_build_needs[@]}" git=git python3=python3 mandoc=mandoc
  /usr/share/build-essential/list=build-essential dpkg-buildpackage=dpkg-dev dh=debhelper col=bsdextrautils)
package_check_needs=(lintian=lintian pkg-config=pkg-config man=man-db)
# Without these, a test that wants them is skipped.
wider_test_needs=(zsh=zsh fish=fish parallel=parallel /usr/sbin/sshd=openssh-server ssh=openssh-client
  mkfs.exfat=exfatprogs mount.exfat-fuse=exfat-fuse losetup=mount
  rhash=rhash hashdeep=hashdeep b3sum=b3sum xxhsum=xxhash)
s390x_needs=("${build_needs[@]}" python3=python3 s390x-linux-gnu-g++=g++-s390x-linux-gnu qemu-s390x=qemu-user
  /usr/src/googletest/CMakeLists.txt=googletest)
i686_needs=("${build_needs[@]}" python3=python3 i686-linux-gnu-g++=g++-i686-linux-gnu qemu-i386=qemu-user
  /usr/src/googletest/CMakeLists.txt=googletest)
avx512_needs=("${test_needs[@]}" cpio=cpio xorriso=xorriso /usr/lib/ISOLINUX/isolinux.bin=isolinux
  /usr/lib/syslinux/modules/bios/ldlinux.c32=syslinux-common /bin/busybox=busybox-static dpkg-deb=dpkg
  bochs=bochs /usr/share/bochs/BIOS-bochs-latest=bochsbios /usr/share/vgabios/vgabios.bin=vgabios)
compilers_needs=("${test_needs[@]}" clang++-14=clang-14 llvm-ar-14=llvm-14 ld.lld-14=lld-14)
coverage_needs=("${test_needs[@]}" gcovr=gcovr)

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 2
}

# A word to a waiting user; nothing where nobody looks.
notice() {
  if [ -t 2 ]; then printf '%s\n' "$*" >&2; fi
}

is_there() {
  case $1 in
    /*) [ -e "$1" ] ;;
    *) command -v -- "$1" >/dev/null ;;
  esac
}

# need PROBE=PACKAGE...: installs the packages whose probe fails. Starts no process when all is there.
need() {
  local entry missing=()
  for entry; do
    if ! is_there "${entry%%=*}"; then missing+=("${entry#*=}"); fi
  done
  if [ ${#missing[@]} -gt 0 ]; then install_packages "${missing[@]}"; fi
}

install_packages() {
  local as_root=() log
  local advice="missing: $*; as root: apt-get install $*"
  command -v apt-get >/dev/null || fail "missing: $* (as Debian names them) and no apt-get to install them with"
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || fail "$advice"
    as_root=(sudo)
  fi
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -q -y -o Acquire::Retries=3 -o DPkg::Lock::Timeout=120)
  notice "Installing $*"
  # A list that cannot be fetched need not matter for these packages: the installation tells.
  log=$("${apt[@]}" update 2>&1 </dev/null) || true
  log+=$("${apt[@]}" install --no-install-recommends "$@" 2>&1 </dev/null) || {
    printf '%s\n' "$log" >&2
    fail "$advice"
  }
}

# quietly COMMAND...: shows what it printed only when it fails, on standard error.
quietly() {
  local log
  log=$("$@" 2>&1 </dev/null) || { printf '%s\n' "$log" >&2; return 1; }
}

# Whether the preset's folder was configured for this place: a project that was moved or copied starts afresh.
is_configured() { # PRESET
  local home=CMAKE_HOME_DIRECTORY:INTERNAL=$root
  [ -f "$root/build/$1/build.ninja" ] && grep -qxF -- "$home" "$root/build/$1/CMakeCache.txt"
}

configure() { # PRESET [CMAKE-OPTION...]
  local fresh=()
  is_configured "$1" || fresh=(--fresh)
  (cd "$root" && quietly cmake "${fresh[@]}" --preset "$@")
}

# Two builds in one folder would ruin each other, so each waits for the one before it.
locked() { # PRESET COMMAND...
  mkdir -p "$root/build"
  (
    if command -v flock >/dev/null; then
      exec 9>"$root/build/.$1.lock"
      flock 9
    fi
    "${@:2}"
  )
}

# build_preset PRESET [CMAKE-OPTION...]: configures as the preset says, and builds everything.
build_preset() {
  notice "Building $1"
  locked "$1" configure_and_build "$@"
}

configure_and_build() {
  configure "$@"
  quietly ninja -C "$root/build/$1" -j "$jobs"
}

# build_program PRESET TARGET...: builds a program or a library alone, in a folder that may have been configured for more.
build_program() {
  locked "$1" configure_and_build_program "$@"
}

configure_and_build_program() {
  if ! is_configured "$1"; then
    notice "Building fyrn"
    configure "$1" -DFYRN_TESTS=OFF
  fi
  quietly ninja -C "$root/build/$1" -j "$jobs" "${@:2}"
}

# Programs and library for Windows are one file to copy each: they import what every Windows has, and nothing else.
check_windows_imports() {
  local file imports foreign
  for file in build/windows/{fyrn,fyrnsum}.exe build/windows/packaging/fyrn.dll; do
    imports=$(x86_64-w64-mingw32-objdump -p "$root/$file" | sed -n 's/^\tDLL Name: //p')
    [ -n "$imports" ] || fail "$file: no imports found"
    foreign=$(grep -ivxE '(kernel32|msvcrt|user32)\.dll' <<<"$imports") || continue
    fail "$file imports ${foreign//$'\n'/, }"
  done
}

# run_ctest PRESET [CTEST-OPTION...]: its last lines are CTest's summary.
run_ctest() {
  (cd "$root" && ctest --preset "$1" --parallel "$jobs" --output-on-failure --no-label-summary "${@:2}" </dev/null)
}

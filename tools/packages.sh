# What the other tools share; sourced by them.
#
#   need_packages PACKAGE...   installs what is missing on a Debian 12
#   quietly COMMAND...         shows what the command prints only if it fails; its errors at once
#   own_apt FOLDER KIND [OPTION...]   sets the array apt: apt-get with lists of its own below FOLDER,
#                              for what the machine's apt is not set up for; KIND is deb or deb-src

need_packages() {
  local missing=()
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q ' installed$' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing ${missing[*]}" >&2
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  quietly "${as_root[@]}" apt-get update -qq
  quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

quietly() {
  local output result=0
  output=$("$@") || result=$?
  [ $result -eq 0 ] || printf '%s\n' "$output" >&2
  return $result
}

own_apt() {
  local folder=$1
  local kind=$2
  shift 2
  mkdir -p "$folder"/{etc/apt/apt.conf.d,etc/apt/preferences.d,var/lib/dpkg,var/lib/apt/lists/partial} \
    "$folder"/{var/cache/apt/archives/partial,var/log/apt}
  : >"$folder/var/lib/dpkg/status"
  local keys=/usr/share/keyrings/debian-archive-keyring.gpg
  local mirror
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' \
    'Label: Debian' 'Codename: bookworm' | head -1)
  echo "$kind [signed-by=$keys] $mirror bookworm main" >"$folder/etc/apt/sources.list"
  apt=(apt-get -qq -o "Dir=$folder" -o "Dir::State::status=$folder/var/lib/dpkg/status"
    -o APT::Sandbox::User= -o Debug::NoLocking=true "$@")
  "${apt[@]}" update
}

# The compiler cache keeps objects that were compiled with precompiled headers only then.
export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}

build_packages=(g++ cmake ninja-build ccache python3 libpugixml-dev libcli11-dev nlohmann-json3-dev dpkg-dev)
test_build_packages=(libgtest-dev googletest libxml2-dev libexpat1-dev libbenchmark-dev)
test_packages=("${test_build_packages[@]}" chromium fish groff-base jq libxml2-utils lintian mypy neovim python3-pip zsh)
sanitizer_packages=(clang libclang-rt-14-dev)
fuzz_packages=(clang libclang-rt-14-dev libxml2-dev libexpat1-dev)
windows_packages=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools wine wine64 wine64-tools libwine-dev libc6-i386)

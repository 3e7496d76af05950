# shellcheck shell=sh
# Read by the setup scripts that build libraries from Debian's source packages: steps that are done
# once, and packages from wherever this machine's own apt fetches. The reader sets $work, a folder of
# its own below build/, and $record, its file of what was built from what: one line a file with source
# package, version, SHA-256 and file name. It defines failed_step WORDS LOG, which must not return.

# shellcheck disable=SC2034,SC2154  # both sides use them
made=''
mkdir -p "$work/done" "$work/log" "$work/source" "$work/sources" "$work/build"
# A second run waits here for the first, and then finds its steps done.
exec 9>"$work/lock"
flock 9

# step NAME WORDS FUNCTION ARGUMENTS... : once only; WORDS tell what it means when it fails.
step() {
  name=$1 words=$2
  shift 2
  [ ! -e "$work/done/$name" ] || return 0
  started=$(date +%s)
  # Not as a condition: there a command that fails inside the step would not end it.
  set +e
  (set -e; "$@") >"$work/log/$name" 2>&1 </dev/null 9>&-
  status=$?
  set -e
  if [ $status -ne 0 ]; then
    failed_step "$words" "$work/log/$name"
  fi
  : >"$work/done/$name"
  made=1
  echo "${0##*/}: $name, $(($(date +%s) - started)) s"
}

# ---- Where Debian's packages come from: this machine's own apt sources, whatever they are --------

codename() { sed -n 's/^VERSION_CODENAME=//p' /etc/os-release; }

suites() { printf '%s\n' "$(codename)" testing sid; } # where sources are looked for, in this order

mirror() { # the address that this machine fetches its own release from
  # shellcheck disable=SC2016  # apt's own words
  apt-get indextargets --no-release-info --format '$(REPO_URI)' "Release: $(codename)" |
    sort -u | head -n 1
}

keyring() { # the file that the machine's sources are verified with; nothing where apt's own is used
  cat /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list \
    2>/dev/null |
    sed -n 's/^Signed-By:[[:space:]]*\(\/.*\)$/\1/p; s/^deb.*signed-by=\([^] ,]*\).*/\1/p' |
    grep -i debian-archive | head -n 1 || true
}

# An apt configuration apart from the system's: its lists and sources stay as they are.
configure_apt() {
  [ -n "$(mirror)" ] || { echo "no entry for $(codename) in the machine's apt sources"; return 1; }
  mkdir -p "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
  signed=$(keyring)
  for suite in $(suites); do
    echo "deb-src ${signed:+[signed-by=$signed]} $(mirror) $suite main"
  done >"$work/apt/sources.list"
  echo "deb ${signed:+[signed-by=$signed]} $(mirror) $(codename) main" >>"$work/apt/sources.list"
  cat >"$work/apt/apt.conf" <<END
Dir::Etc::SourceList "$work/apt/sources.list";
Dir::Etc::SourceParts "/dev/null";
Dir::State::Lists "$work/apt/lists";
Dir::Cache "$work/apt/cache";
Acquire::Languages "none";
Acquire::Retries "3";
APT::Sandbox::User "root";
END
  private_apt update
}
private_apt() { APT_CONFIG=$work/apt/apt.conf apt-get -q "$@"; }

# note NAME VERSION FILES... : the files that NAME was fetched as, for its line in the record
note() {
  name=$1 version=$2
  shift 2
  sha256sum "$@" | while read -r sum file; do echo "$name $version $sum $file"; done |
    LC_ALL=C sort -k 4 >"$work/sources/$name"
}
recorded_version() { sed -n "s/^$1 \([^ ]*\) .*/\1/p" "$record" | head -n 1; }

# fetch SOURCE: unpacked in source/SOURCE, in the recorded version while a suite has it. A release's
# files can be gone from a mirror while its index still names them, so later suites stand behind it.
fetch() {
  version=$(recorded_version "$1")
  for wanted in ${version:+=$version} $(suites | sed 's#^#/#'); do
    rm -rf "$work/source/$1" "$work/source/$1.new"
    mkdir "$work/source/$1.new"
    cd "$work/source/$1.new"
    private_apt source --only-source "$1$wanted" || continue
    for file in *; do [ ! -f "$file" ] || set -- "$@" "$file"; done
    name=$1
    shift
    note "$name" "$(sed -n 's/^Version: //p' ./*.dsc | head -n 1)" "$@"
    for tree in */; do mv "$tree" "$work/source/$name"; done
    # What was built must be what is noted.
    rm -rf "$work/source/$name.new" "$work/done/build-$name" "$work/done/build-native-$name"
    return 0
  done
  echo "no suite of $(suites | tr '\n' ' ')gives the source package $1"
  return 1
}

# shellcheck shell=sh disable=SC2034
# Read by the scripts that build in build/installer or build/windows: one of them at a time. The lock
# lasts as long as the processes that hold it, and the programs that they started; a run that was
# killed holds nothing.

# lock_build: waits until no other run builds, and keeps all others waiting until unlock_build or the
# shell's end.
lock_build() {
  mkdir -p build
  exec 8>build/lock
  ${attended-} flock 8
}
unlock_build() { exec 8>&-; }

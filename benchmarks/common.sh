# What the parts of scripts/bench share; sourced by them, in the checkout's root folder. $WORK holds:
#
#   cmake, windows     builds: tools and programs for this machine, programs for Windows
#   payload            link to the payload tree; its Arduino is the link host
#   order              the names of its entries with content, in the order of the table
#   content            their bytes end to end
#   payload.key        a checksum of both
#   full               the payload as quirloduino-pack packed it, at level 22
#   archives           what others made of it
#   files              what an install writes; writes and names list them; expected is that in a host
#   results, log       the record and the log of each measure
# shellcheck shell=sh
tools=$WORK/cmake/benchmarks
pack=$WORK/cmake/packager/quirloduino-pack
release=1.8.19

fail() { echo "bench: $*" >&2; exit 2; }

# logged NAME COMMAND... : says nothing unless it fails
logged() {
  log=$WORK/log/$1
  shift
  "$@" >>"$log" 2>&1 || { tail -n 20 "$log" >&2; fail "failed: $* (all of it in $log)"; }
}

# build TARGET... : for this machine, with installers around all payloads that are packed by now
build() {
  packed=
  for tables in "$WORK"/full/payload.tbl "$WORK"/growth/*/payload.tbl; do
    [ ! -e "$tables" ] || packed="$packed${packed:+;}$(dirname "$tables")"
  done
  logged build cmake --preset bench -B "$WORK/cmake" -DQUIRLODUINO_PACKED="$packed"
  logged build cmake --build "$WORK/cmake" --target "$@"
}

# key TEXT... : a short checksum of what a figure depends on
key() { echo "$*" | sha256sum | cut -c 1-16; }

# program_key COMMAND : the same of a program, its file being all that counts
program_key() { sha256sum "$(command -v "$1")" | cut -c 1-16; }

content_size() { stat -c %s "$WORK/content"; }

# measure NAME ROUNDS OPTIONS... : runs the plan $WORK/NAME.plan
measure() {
  name=$1 measured_rounds=$2
  shift 2
  : >"$WORK/log/$name"
  "$tools/measure_runs" "$WORK/$name.plan" --results "$WORK/results/$name.tsv" \
    --target "$TARGET" --log "$WORK/log/$name" --rounds "$measured_rounds" \
    --file-system "$FILE_SYSTEM" "$@"
}

# need_frame : $WORK/full, packed now unless the packing measure has left it there
need_frame() {
  current=$(cat "$WORK/payload.key")-$(program_key "$pack")
  [ "$(cat "$WORK/full.key" 2>/dev/null)" = "$current" ] && return 0
  echo "bench: packing at level 22"
  logged full "$pack" pack "$WORK/payload/" --output "$WORK/full" --level 22
  echo "$current" >"$WORK/full.key"
}

# need_files : what an install writes, found by the engine's rules and written by the floor, and what
# a host then looks like, but for its jars
need_files() {
  need_frame
  build list_writes floor_writer
  current=$(cat "$WORK/payload.key")-$(program_key "$tools/list_writes")
  [ "$(cat "$WORK/files.key" 2>/dev/null)" = "$current" ] && return 0
  rm -rf "$WORK/files.key" "$WORK/files" "$WORK/jar-objects" "$WORK/expected"
  "$tools/list_writes" "$WORK/full" $release >"$WORK/writes" || fail "the writes can't be listed"
  logged files "$tools/floor_writer" "$WORK/full/payload.zst" "$(content_size)" "$WORK/writes" \
    "$WORK/files/"
  mv "$WORK/files/jar-objects" "$WORK/jar-objects"
  cut -f 3 "$WORK/writes" | grep -v '^jar-objects/' | awk '!seen[$0]++' >"$WORK/names"
  cp -a "$WORK/host/." "$WORK/expected"
  cp -a "$WORK/files/." "$WORK/expected"
  for jar in pde arduino-core; do # as trees, with the new objects in them
    rm -rf "$WORK/expected-$jar" && mkdir "$WORK/expected-$jar"
    logged files unzip -q "$WORK/host/lib/$jar.jar" -d "$WORK/expected-$jar"
    cp -r "$WORK/jar-objects/lib/$jar.jar/." "$WORK/expected-$jar"
  done
  echo "$current" >"$WORK/files.key"
}

# nsis_script LIST TREE OUTPUT : an installer of the files, solid, with the dictionary of xz -9
nsis_script() {
  cat <<END
SetCompressor /SOLID lzma
SetCompressorDictSize 64
RequestExecutionLevel user
SilentInstall silent
Unicode true
Name "files"
OutFile "$3"
InstallDir "C:\\files"
Section
END
  awk -v tree="$2" '{
    folder = $0
    gsub(/\$/, "$$", folder)
    if (!sub(/\/[^\/]*$/, "", folder)) folder = ""
    if (folder != last || NR == 1) {
      windows = folder
      gsub("/", "\\", windows)
      print "SetOutPath \"$INSTDIR" (windows == "" ? "" : "\\" windows) "\""
      last = folder
    }
    print "File \"" tree "/" $0 "\"" # a source, where a dollar sign is one
  }' "$1"
  echo SectionEnd
}

# What it takes to pack the content, and how small it gets. Each result is expanded again and
# compared, then kept for other measures.
. benchmarks/common.sh
payload=$(cat "$WORK/payload.key")
tree=$(realpath "$WORK/payload")
content=$WORK/content
archives=$WORK/archives

# The window that holds all of the content, as zstd wants it: the exponent.
window=10
while [ $((1 << window)) -lt "$(content_size)" ]; do window=$((window + 1)); done

# check_stream COMMAND FILE : the command expands the file to its output
check_stream() { echo "$1 $2 | cmp - $content && mv $2 $archives/"; }
check_tree() { # check_tree FILE : the file holds the tree, aliases aside
  echo "benchmarks_tree=\$PWD/tree && 7zz x -y -bd -bso0 -o\$benchmarks_tree $1 &&" \
    "$PWD/benchmarks/compare_tree $WORK/order $tree \$benchmarks_tree && mv $1 $archives/"
}
contestant() { # contestant NAME PROGRAM ARTEFACT CHECK COMMAND...
  cat <<END

contestant $1
key $(key "$payload $(program_key "$2") $(echo "$5" | sed "s|$TARGET||")")
artefact $3
check $4
run $5
END
}

nsis_script "$WORK/order" "$tree" tree.exe >"$WORK/tree.nsi"
{
  contestant quirloduino-pack "$pack" payload.zst \
    "$pack verify . --tree $tree && mkdir -p $WORK/full && mv payload.* payload_tables.cpp $WORK/full/ && echo $payload-$(program_key "$pack") >$WORK/full.key" \
    "$pack pack $tree --output . --level 22"
  contestant 'xz -9e' xz content.xz "$(check_stream 'xz -dc' content.xz)" \
    "xz -9e --keep --stdout $content"
  echo 'stdout content.xz'
  contestant '7z -mx9 solid' 7zz tree.7z "$(check_tree tree.7z)" \
    "env -C $tree 7zz a -bd -bso0 -t7z -mx=9 -ms=on $TARGET/tree.7z @$WORK/order"
  contestant 'nsis lzma solid' makensis tree.exe "$(check_tree tree.exe)" \
    "makensis -V1 -NOCD $WORK/tree.nsi"
  contestant 'zstd -22 --long' zstd content.22.zst \
    "$(check_stream "zstd -dcq --long=$window" content.22.zst)" \
    "zstd -q --ultra -22 --long=$window $content -o content.22.zst"
  contestant 'zstd -19 --long=27' zstd content.19.zst \
    "$(check_stream 'zstd -dcq --long=27' content.19.zst)" \
    "zstd -q -19 --long=27 $content -o content.19.zst"
  echo 'rounds 1' # only its size is asked for, and that is always the same
} >"$WORK/packing.plan"
measure packing "$PACKING_ROUNDS" --no-warm-up --resume

# How fast what was packed comes back. The same bytes for all, into one file.
. benchmarks/common.sh
need_frame
build start_control
archives=$WORK/archives
check="cmp expanded $WORK/content"
{
  cat <<END
contestant quirloduino frame
run $tools/start_control $WORK/full/payload.zst $(content_size) expanded
check $check
END
  expander() { # expander NAME ARCHIVE COMMAND [CHECK]
    if [ ! -e "$archives/$2" ]; then
      echo "bench: $2 isn't there, so $1 is left out; scripts/bench --only packing makes it" >&2
      return
    fi
    printf 'contestant %s\nrun %s\nstdout expanded\ncheck %s\n' "$1" "$3" "${4-$check}"
  }
  expander 'xz -9e' content.xz "xz -dc $archives/content.xz"
  # 7z puts files into an order of its own, so what comes out is compared with them in that order.
  expander '7z -mx9 solid' tree.7z "7zz x -bd -so $archives/tree.7z" \
    "7zz l -ba -slt $archives/tree.7z | sed -n 's/^Path = //p' | tr '\\n' '\\0' | (cd $WORK/payload && xargs -0 cat) | cmp - expanded"
  expander 'zstd -22 --long' content.22.zst "zstd -dcq --long=31 $archives/content.22.zst"
  expander 'zstd -19 --long=27' content.19.zst "zstd -dcq --long=27 $archives/content.19.zst"
} >"$WORK/expanding.plan"
measure expanding "$ROUNDS"

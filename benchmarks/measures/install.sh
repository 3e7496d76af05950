# The whole silent install of one release into a fresh Arduino, against ways to write the same files.
. benchmarks/common.sh
need_files
build quirloduino_full
archives=$WORK/archives
files=$WORK/files

# Archives of just these files, in the order of the table; made once.
current=$(cat "$WORK/files.key")
if [ "$(cat "$archives/files.key" 2>/dev/null)" != "$current" ]; then
  echo "bench: packing the files of one release for tar, 7z, unzip and NSIS"
  rm -f "$archives"/files.*
  nsis_script "$WORK/names" "$files" "$archives/files.exe" >"$WORK/files.nsi"
  (logged files-nsis makensis -V1 -NOCD "$WORK/files.nsi") &
  nsis=$!
  (cd "$files" && logged files-tar tar --create --file "$archives/files.tar.zst" --no-recursion \
    --use-compress-program='zstd -19 --long=27' --verbatim-files-from --files-from "$WORK/names")
  (cd "$files" && logged files-zip zip -q -9 "$archives/files.zip" -@ <"$WORK/names")
  (cd "$files" && logged files-7z 7zz a -bd -bso0 -t7z -mx=9 -ms=on "$archives/files.7z" \
    "@$WORK/names")
  wait $nsis
  echo "$current" >"$archives/files.key"
fi

# The installer for Windows, and a prefix of Wine of its own.
logged windows cmake --preset windows -B "$WORK/windows" -DQUIRLODUINO_BUILD_TESTS=OFF \
  -DQUIRLODUINO_BUILD_BENCHMARKS=ON -DQUIRLODUINO_PACK="$pack" -DQUIRLODUINO_PACKED="$WORK/full"
logged windows cmake --build "$WORK/windows" --target quirloduino_full
wine="$PWD/tests/windows/wine --prefix $WORK/wine-prefix --seconds 900"
rm -rf "$WORK/wine-prefix"
logged wine "$PWD/tests/windows/wine" --new-prefix "$WORK/wine-prefix"
# Z: is the root folder; the NSIS installer takes its folder without quotes, last of all.
windows_host='Z:'$(echo "$TARGET/arduino" | sed 's|/|\\|g')

host="cp -a $WORK/host/. arduino"
same="$PWD/benchmarks/same_host $WORK/expected arduino"
wine_host="$host && $wine cmd.exe /c exit" # starts Wine's server, which sees this target
cat >"$WORK/install.plan" <<END
contestant quirloduino
prepare $host
run $tools/quirloduino_full --dir=arduino
check $same jars

contestant floor
prepare $host
run $tools/floor_writer $WORK/full/payload.zst $(content_size) $WORK/writes $TARGET/arduino/
check rm -r arduino/jar-objects && $same

contestant tar --zstd -x
prepare $host
run tar --zstd -xf $archives/files.tar.zst -C arduino
check $same

contestant 7z x
prepare $host
run 7zz x -y -bd -bso0 -oarduino $archives/files.7z
check $same

contestant unzip
prepare $host
run unzip -q -o $archives/files.zip -d arduino
check $same

contestant cp -r
prepare $host
run cp -r $files/. arduino
check $same

contestant quirloduino, Wine
prepare $wine_host
run $wine $WORK/windows/benchmarks/quirloduino_full.exe --dir=$windows_host
check $wine --stop && $same jars

contestant nsis, Wine
prepare $wine_host
run $wine $archives/files.exe /S /D=$windows_host
check $wine --stop && $same
END
measure install "$ROUNDS"

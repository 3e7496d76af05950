# The same at an eighth to four times the entries and bytes, so that a cost which grows faster than
# the payload shows. Packed at a low level, with the same window rule, since only the shape counts.
. benchmarks/common.sh
scales="1/8 1/4 1/2 1 2 4"
[ -z "$QUICK" ] || scales=1
low=3

programs='list_writes floor_writer'
for scale in $scales; do
  name=$(echo "$scale" | tr / _)
  tree=$WORK/growth-trees/$name
  [ "$scale" = 1 ] && tree=$(realpath "$WORK/payload")
  [ "$scale" = 1 ] || scripts/make-full-payload --tools "$WORK/cmake/packager" --scale "$scale" \
    "$tree" || fail "no payload of $scale"
  mkdir -p "$WORK/growth/$name"
  logged growth "$pack" pack "$tree" --output "$WORK/growth/$name" --level $low
  programs="$programs quirloduino_$name"
done
# shellcheck disable=SC2086  # a list of words
build $programs

: >"$WORK/growth-start.plan"
: >"$WORK/growth-install.plan"
for scale in $scales; do
  name=$(echo "$scale" | tr / _)
  packed=$WORK/growth/$name
  table=$packed/payload.tbl
  entries=$(sed -n 's/^entries //p' "$table")
  size=$(sed -n 's/^content //p' "$table")
  "$tools/list_writes" "$packed" $release >"$packed/writes"
  cat >>"$WORK/growth-start.plan" <<END
contestant $scale
run $tools/quirloduino_$name --dir=
expect 1
check tail -n 1 $WORK/log/growth-start | grep -q '^no Arduino directory$'
entries $entries
bytes $size
END
  cat >>"$WORK/growth-install.plan" <<END
contestant $scale
prepare cp -a $WORK/host/. arduino && cp -a arduino expected
run $tools/quirloduino_$name --dir=arduino
check $tools/floor_writer $packed/payload.zst $size $packed/writes $TARGET/expected/ && rm -r expected/jar-objects && $PWD/benchmarks/same_host expected arduino
entries $entries
bytes $size
END
done
# At four times the size an install takes 2.3 GB and leaves files of 1.8 GB in memory.
measure growth-start "$ROUNDS" --touch 5
measure growth-install "$ROUNDS" --touch 5

# The same counted, one run of each being enough: what else the machine does can't disturb that.
# instructions FOLDER STATUS : of a run of $program with that Arduino folder, which ends so
instructions() {
  status=0
  valgrind --tool=cachegrind --cache-sim=no --cachegrind-out-file="$TARGET.count" "$program" \
    --dir="$1" >>"$WORK/log/growth-instructions" 2>&1 || status=$?
  [ "$status" -eq "$2" ] || fail "$program ended with $status, see $WORK/log/growth-instructions"
  sed -n 's/^summary: //p' "$TARGET.count"
}
for scale in $scales; do
  program=$tools/quirloduino_$(echo "$scale" | tr / _)
  table=$WORK/growth/$(echo "$scale" | tr / _)/payload.tbl
  started=$(instructions '' 1)
  rm -rf "$TARGET.arduino"
  cp -a "$WORK/host/." "$TARGET.arduino"
  installed=$(instructions "$TARGET.arduino" 0)
  echo "$scale $(sed -n 's/^entries //p' "$table") $(sed -n 's/^content //p' "$table")" \
    "$started $installed"
done >"$WORK/results/growth-instructions.txt"
rm -rf "$TARGET.arduino"
echo "  instructions: done"

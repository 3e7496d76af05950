# Telling which release a folder holds, against doing what the criteria say by hand.
. benchmarks/common.sh
build recognise_folder
small=$WORK/criteria-payload
rm -rf "$small" && mkdir -p "$small"
for criteria in "$WORK"/payload/*/WINDOWS/directory_criteria.txt; do
  folder=$(dirname "$criteria")
  mkdir -p "$small/${folder#"$WORK/payload/"}"
  cp "$criteria" "$folder/locations.txt" "$small/${folder#"$WORK/payload/"}/"
done
cp "$WORK/payload/quirloduino.txt" "$small/"
logged recognition "$pack" pack "$small" --output "$WORK/criteria-packed"
criteria=$small/$release/WINDOWS/directory_criteria.txt
cat >"$WORK/recognition.plan" <<END
contestant quirloduino
run $tools/recognise_folder $WORK/criteria-packed $(realpath "$WORK/host")/
stdout answer
check test "\$(cat answer)" = $release

contestant by hand
run sh $PWD/benchmarks/contestants/recognise_folder.sh $criteria $(realpath "$WORK/host")
stdout answer
check test "\$(cat answer)" = 6
END
measure recognition "$ROUNDS"

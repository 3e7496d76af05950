# The update of the two jars alone: a payload of little beside one release's classes, against tools
# that are told to put the same classes into the same jars.
. benchmarks/common.sh
need_files
build update_jars
small=$WORK/jar-payload
rm -rf "$small" && mkdir -p "$small/$release"
cp -r "$WORK/payload/$release/WINDOWS" "$small/$release/"
cp "$WORK/payload/quirloduino.txt" "$small/"
logged jars "$pack" pack "$small" --output "$WORK/jar-packed"

copy="mkdir arduino && cp -r $WORK/host/lib arduino/lib && mkdir -p arduino/hardware"
same="$PWD/benchmarks/same_jar arduino/lib/pde.jar $WORK/expected-pde &&
$PWD/benchmarks/same_jar arduino/lib/arduino-core.jar $WORK/expected-arduino-core"
same=$(echo "$same" | tr '\n' ' ')
{
  echo "contestant quirloduino"
  echo "prepare $copy"
  echo "run $tools/update_jars $WORK/jar-packed $release arduino/"
  echo "check $same"
  for tool in zip jar 7z; do
    case $tool in zip) name='zip' ;; jar) name='jar uf' ;; 7z) name='7z u' ;; esac
    echo "contestant $name"
    echo "prepare $copy"
    echo "run sh $PWD/benchmarks/contestants/update_jars.sh $tool $WORK/jar-objects/lib $TARGET/arduino/lib"
    echo "check $same"
  done
} >"$WORK/jars.plan"
measure jars "$ROUNDS"

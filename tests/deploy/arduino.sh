# shellcheck shell=bash
# For scripts that need an Arduino folder and a payload that knows it. Read with ".".

# make_arduino DIR: a small folder of release 1.8.19, by criteria that are to be made for it.
make_arduino() {
  local classes
  mkdir -p "$1/lib"
  classes=$(mktemp -d)
  echo 1.8.19 >"$1/lib/version.txt"
  (
    target=$(cd "$1" && pwd)
    cd "$classes" || exit 1
    for class in processing/app/Base processing/app/Editor processing/app/SketchController \
      processing/app/BaseNoGui cc/arduino/Compiler processing/app/debug/TargetPlatform; do
      mkdir -p "$(dirname $class)"
      echo "stands for $class" >$class.class
    done
    for jar in pde arduino-core; do zip -q -X -r "$target/lib/$jar.jar" . || exit 1; done
  )
  rm -rf "$classes"
}

# make_payload DIR ARDUINO: the sample, with criteria for that folder.
make_payload() {
  cp -r payload/sample "$1"
  cmake --preset installer && cmake --build --preset installer --target quirloduino-criteria || return 1
  build/installer/packager/quirloduino-criteria 1.8.19 "$2" >"$1/1.8.19/WINDOWS/directory_criteria.txt"
}

members() { # members JAR: name and CRC of each
  unzip -v "$1" | awk 'NF == 8 && $7 ~ /^[0-9a-f]+$/ { print $8, $7 }' | LC_ALL=C sort
}
# same_install ONE OTHER: file for file, and jar member for jar member, since a jar keeps the time at
# which it was changed.
same_install() {
  local jar
  diff -r -x '*.jar' "$1" "$2" || return 1
  for jar in pde arduino-core; do
    diff <(members "$1/lib/$jar.jar") <(members "$2/lib/$jar.jar") || return 1
  done
}

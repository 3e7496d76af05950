# The full tree of generated content. Part of scripts/make-full-payload.

series() { # series COUNT BYTES FORMAT: lines "bytes TAB name" whose sizes fall from large to many small
  awk -v count="$1" -v bytes="$2" -v format="$3" 'BEGIN {
    for (i = 1; i <= count; ++i) sum += 1 / (i + 3)
    for (i = 1; i <= count; ++i) printf "%d\t" format "\n", bytes / (i + 3) / sum + 1, i
  }'
}
lay_generated() {
  {
    series 58 214000000 'arm/bin/arm-none-eabi-tool%d.exe'
    printf '%s\tarm/bin/arm-none-eabi-as.exe\n%s\tarm/bin/arm-none-eabi-c++.exe\n' 2000000 1500000
    series 120 78000000 'arm/arm-none-eabi/lib/thumb/lib%d.a'
    series 1546 30000000 'arm/arm-none-eabi/include/detail/header%d.h'
    while read -r name; do
      case $name in quirlo*.exe | mktinyfat.exe | stdout_redirect.exe | precompile_helper.exe)
        echo "500000$tab$name" ;;
      armlib/*) echo "1690000$tab$name" ;;
      esac
    done <"$data/named"
    # The sample has three classes for pde.jar and four for arduino-core.jar, and the files that must be.
    while read -r release pde core _; do
      series "$pde" 330000 "$release/WINDOWS/pde.jar/processing/app/Base\$%d.class"
      series "$core" 20000 "$release/WINDOWS/arduino-core.jar/processing/app/Board\$%d.class"
      series 6 28000 "$release/examples/Sketch%d.ino"
    done <"$data/classes"
    printf '%s\t1.8.13/WINDOWS/%s\n' 310000 arduino-core.jar-1.53 530000 pde.jar-1.54b9
    echo "9000${tab}cores/quirlo3/serial4.c"
    series $((400 - $(there cores))) 4900000 'cores/quirlo3/part%d.c'
    series $((51 - $(there examples))) 100000 'examples/Sketch%d.ino'
    series $((965 - $(there 1.8.19/libraries))) 11400000 '1.8.19/libraries/Servo/src/servo%d.cpp'
    series $((4757 - $(there libraries))) 45300000 'libraries/%d.cpp' |
      awk -F "$tab" -v OFS="$tab" -v names="$data/libraries" '
        BEGIN { while ((getline line < names) > 0) { sub(/ .*/, "", line); folder[n++] = line } }
        { sub(/\//, "/" folder[NR % n] "/src/part", $2); print }'
  } >"$work/plan"
  cut -f 2 "$work/plan" | make_folders
  (cd "$tree" && awk -f "$data/stand_in.awk" "$work/plan")
  for copy in $(seq 1 367); do  # all but the last of the archives, three times and a bit
    echo "$((copy % 119 + 1)) $((copy / 119 + 1))"
  done | while read -r number time; do
    mkdir -p "$tree/arm/arm-none-eabi/lib/thumb/v$time"
    cp "$tree/arm/arm-none-eabi/lib/thumb/lib$number.a" "$tree/arm/arm-none-eabi/lib/thumb/v$time/"
  done
  cp "$tree/arm/bin/arm-none-eabi-c++.exe" "$tree/arm/bin/arm-none-eabi-g++.exe"
}
generate_host() { # what recognition looks at, and members for half of the classes to replace
  rm -rf "$host"
  mkdir -p "$host/lib" "$work/pde" "$work/core"
  echo 1.8.19 >"$host/lib/version.txt"
  for class in pde/processing/app/Base pde/processing/app/Editor pde/processing/app/SketchController \
    core/processing/app/BaseNoGui core/cc/arduino/Compiler core/processing/app/debug/TargetPlatform; do
    mkdir -p "$work/${class%/*}"
    echo "stands for $class" >"$work/$class.class"
  done
  for number in $(seq 2 2 48); do echo "class $number" >"$work/pde/processing/app/Base\$$number.class"; done
  (cd "$work/pde" && zip -q -X -r "$host/lib/pde.jar" .)
  (cd "$work/core" && zip -q -X -r "$host/lib/arduino-core.jar" .)
}

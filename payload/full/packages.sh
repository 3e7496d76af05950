# The full tree of Debian packages. Part of scripts/make-full-payload.

# Each package's files in $unpacked/PACKAGE and its name and version in $unpacked/PACKAGE.version, from the
# newest that apt offers; what is there stays. Its failures are returned: the caller asks for them, which
# turns set -e off.
packages=$cache/packages unpacked=$cache/unpacked
download() { # download PACKAGE...
  (cd "$packages" && apt-get -q -o APT::Sandbox::User= download "$@") >"$cache/fetch.log" 2>&1
}
fetch() {
  missing=
  while read -r package; do
    [ -d "$unpacked/$package" ] || missing="$missing $package"
  done <"$data/packages"
  [ -n "$missing" ] || return 0
  say "downloading$missing"
  rm -rf "$packages"  # an interrupted run may have left older ones
  mkdir -p "$packages" "$unpacked"
  # shellcheck disable=SC2086  # a list of words
  download $missing ||
    { [ "$(id -u)" -eq 0 ] && apt-get -q update >>"$cache/fetch.log" 2>&1 && download $missing; } ||
    return 1
  for package in $missing; do
    say "unpacking $package"
    rm -rf "$unpacked/$package.new"
    dpkg -x "$packages/${package}_"*.deb "$unpacked/$package.new" || return 1
    dpkg-deb --show "$packages/${package}_"*.deb >"$unpacked/$package.version" || return 1
    # A source package holds one archive.
    for archive in "$unpacked/$package.new/usr/src"/*.tar.xz "$unpacked/$package.new/usr/src"/*/*.tar.xz; do
      [ ! -f "$archive" ] || tar -xJf "$archive" -C "$unpacked/$package.new" || return 1
    done
    mv "$unpacked/$package.new" "$unpacked/$package" || return 1
  done
  rm -rf "$packages"
}

# Lines "bytes TAB file" of the C and C++ sources in the packages named.
sources() {
  for package; do
    find "$unpacked/$package" -type f -size +0 -printf '%s\t%p\n' |
      grep -E '\.(c|cc|cpp|cxx|h|hh|hpp|ino|S)$' | sort -t "$tab" -k 2
  done
}
# The files of a plan, lines "name TAB file", into the tree; what the sample gave stays.
copy() { # copy PLAN
  cut -f 1 "$1" | make_folders
  while IFS=$tab read -r name file; do
    cp "$file" "$tree/$name"
  done <"$1"
}
# Programs and archives of the toolchain, where its own installers put them. The libraries of a few
# processors come whole, those of the others without their big archives.
lay_toolchain() {
  gcc=usr/lib/gcc/arm-none-eabi
  {
    for directory in \
      "gcc-arm-none-eabi/usr/bin arm/bin" \
      "binutils-arm-none-eabi/usr/bin arm/bin" \
      "binutils-arm-none-eabi/usr/lib/arm-none-eabi arm/arm-none-eabi" \
      "gcc-arm-none-eabi/$gcc arm/lib/gcc/arm-none-eabi" \
      "libnewlib-arm-none-eabi/usr/lib/arm-none-eabi/newlib arm/arm-none-eabi/lib" \
      "libnewlib-dev/usr/include/newlib arm/arm-none-eabi/include" \
      "libstdc++-arm-none-eabi-dev/usr/include/newlib arm/arm-none-eabi/include" \
      "gcc-avr/usr/bin arm/bin" \
      "gcc-avr/usr/lib/gcc/avr arm/lib/gcc/avr" \
      "llvm-14/usr/lib/llvm-14/bin arm/bin" \
      "gcc-or1k-elf/usr/libexec/gcc/or1k-elf arm/lib/gcc/or1k-elf" \
      "gdb-multiarch/usr/bin arm/bin" \
      "lld-14/usr/lib/llvm-14/bin arm/bin" \
      "gcc-arm-none-eabi/usr/share/doc arm/share/doc" \
      "binutils-arm-none-eabi/usr/share/doc arm/share/doc" \
      "binutils-arm-none-eabi/usr/share/man arm/share/man"; do
      from=$unpacked/${directory% *}
      find "$from" -type f -size +0 -printf "%s\t%m\t${directory#* }/%P\t%p\n"
    done
    # refman.pdf is most of fullrefman.pdf.
    find "$unpacked"/avr-libc/usr/share/doc "$unpacked"/ngspice-doc/usr/share/doc \
      "$unpacked"/octave-doc/usr/share/doc "$unpacked"/openocd/usr/share/doc \
      "$unpacked"/r-doc-pdf/usr/share/R/doc \( -name '*.pdf' -o -name '*.pdf.gz' \) \
      ! -name refman.pdf -type f -size +400k \
      -printf '%s\t%m\tarm/share/doc/pdf/%f\t%p\n'
  } | sort -t "$tab" -k 3 | awk -f "$data/rank_arm.awk" | sort -s -n -k 1,1 | cut -f 2- >"$work/ranked"
  cut -f 3 "$work/ranked" | tr '\n' '\0' | xargs -0 md5sum | cut -c 1-32 >"$work/sums"
  paste "$work/sums" "$work/ranked" |
    awk -f "$data/pick_arm.awk" -v plain=1726 -v aliases=368 >"$work/plan"
  copy "$work/plan"
  mkdir -p "$tree/armlib"
  newlib=$unpacked/libnewlib-arm-none-eabi/usr/lib/arm-none-eabi/newlib/thumb
  for pair in M0l=v8-m.base/nofp M4l=v8-m.main/nofp M4lf=v8-m.main+fp/hard M7lfsp=v8-m.main+dp/hard; do
    cp "$newlib/${pair#*=}/libm.a" "$tree/armlib/libarm_cortex${pair%=*}_math.a"
  done
}

lay_tools() {
  while read -r name file; do
    cp "$unpacked/$file" "$tree/$name"
  done <<'LIST'
quirlo.exe avrdude/usr/bin/avrdude
quirlo_post_compile.exe dfu-util/usr/bin/dfu-util
quirlo_reboot.exe dfu-util/usr/bin/dfu-prefix
quirlo_cleanup.exe dfu-util/usr/bin/dfu-suffix
quirlo_size.exe binutils-avr/usr/bin/avr-size
quirlo_restart.exe binutils-avr/usr/bin/avr-elfedit
quirlo_gateway.exe binutils-avr/usr/bin/avr-c++filt
quirlo_ports.exe binutils-avr/usr/lib/avr/bin/readelf
quirlo_serialmon.exe picocom/usr/bin/picocom
quirlo_secure.exe binutils-avr/usr/bin/avr-strings
mktinyfat.exe binutils-avr/usr/lib/avr/bin/nm
stdout_redirect.exe binutils-avr/usr/bin/avr-gprof
precompile_helper.exe binutils-avr/usr/lib/avr/bin/ar
LIST
}

# `count` sources spread over folders. The sample's files count among those wanted.
spread() { # spread COUNT FOLDERS PACKAGE...
  count=$1 folders=$2
  shift 2
  sources "$@" | awk -f "$data/place_sources.awk" -v count="$count" -v folders="$folders" >"$work/plan"
  copy "$work/plan"
}

lay_cores() {
  cp "$(sources lttng-modules-dkms | sed -n '1s/.*\t//p')" "$tree/cores/quirlo3/serial4.c"
  for core in quirlo quirlo3 quirlo4 usb_disk usb_flightsim usb_hid usb_midi usb_rawhid usb_serial \
    usb_serial_hid; do
    case $core in quirlo*) weight=8 ;; *) weight=1 ;; esac
    echo "$weight${tab}cores/$core"
  done >"$work/folders"
  spread $((401 - $(there cores))) "$work/folders" arduino-core-avr dahdi-dkms lttng-modules-dkms
}

lay_libraries() {
  awk -v OFS="$tab" '{ print 1 + NR * 7 % 13, "libraries/" $1 "/src" }' "$data/libraries" >"$work/folders"
  spread $((4757 - $(there libraries))) "$work/folders" newlib-source xorg-server-source
}
lay_release_libraries() {
  awk -v OFS="$tab" '{ print 1 + NR * 5 % 11, "1.8.19/libraries/" $1 "/src" }' \
    "$data/release_libraries" >"$work/folders"
  spread $((965 - $(there 1.8.19/libraries))) "$work/folders" arduino-core-avr googletest \
    openafs-modules-dkms openscenegraph-examples wx3.2-examples
}

lay_examples() {
  (cd "$unpacked/arduino/usr/share/doc/arduino/examples" && find . -name '*.ino' | sort) |
    sed 's|^\./||' >"$work/sketches"
  awk -v d="$unpacked/arduino/usr/share/doc/arduino/examples/" -v count=$((51 - $(there examples))) \
    'NR <= count { print "examples/" $0 "\t" d $0 }' "$work/sketches" >"$work/plan"
  tail -n 6 "$work/sketches" | while read -r sketch; do
    for release in 1.8.5 1.8.9 1.8.13 1.8.15 1.8.16 1.8.19; do
      echo "$release/examples/$sketch$tab$unpacked/arduino/usr/share/doc/arduino/examples/$sketch"
    done
  done >>"$work/plan"
  copy "$work/plan"
}

# Classes of the IDE itself, each in its own place but for the name of its source file in other case: a
# class of the same length and code, which can be told from the one it replaces. Some classes
# of the one jar go into the other, which adds them there. The six that prove a release stay as they are.
lay_classes() {
  lib=$host/lib
  mkdir -p "$work/pde" "$work/core"
  unzip -q "$lib/pde.jar" '*.class' -d "$work/pde"
  unzip -q "$lib/arduino-core.jar" '*.class' -d "$work/core"
  (cd "$work/pde" && find processing/app -name '*.class' ! -name RunnerListener.class | sort) |
    grep -vE '/(Base|Editor|SketchController)\.class$' >"$work/pde.names"
  (cd "$work/core" && find processing/app -name '*.class' ! -name MessageConsumer.class | sort) |
    grep -vE '/(BaseNoGui|TargetPlatform)\.class$' >"$work/core.names"
  while read -r release pde core case; do
    {
      head -n $((pde - 8)) "$work/pde.names" | sed "s|.*|pde/&${tab}pde.jar/&|"
      tail -n 8 "$work/core.names" | sed "s|.*|core/&${tab}pde.jar/&|"
      head -n $((core - 1)) "$work/core.names" | sed "s|.*|core/&${tab}arduino-core.jar/&|"
      tail -n 1 "$work/pde.names" | sed "s|.*|pde/&${tab}arduino-core.jar/&|"
    } | while IFS=$tab read -r from to; do
      to=$tree/$release/WINDOWS/$to
      source=${from##*/}
      source=${source%.class}
      source=${source%%\$*}
      mkdir -p "${to%/*}"
      sed "s/$source\.java/$source.$case/" "$work/$from" >"$to"
    done
  done <"$data/classes"
  cp "$lib/arduino-core.jar" "$tree/1.8.13/WINDOWS/arduino-core.jar-1.53"
  cp "$lib/pde.jar" "$tree/1.8.13/WINDOWS/pde.jar-1.54b9"
}

make_host() { # the IDE as real files in one folder, as on Windows; links out of the package are left out
  rm -rf "$host"
  cp -rL "$unpacked/arduino/usr/share/arduino" "$host" 2>/dev/null || true
  [ -f "$host/lib/pde.jar" ] || fail "the package arduino holds no IDE"
}

# shellcheck shell=sh
# From a payload to a running sketch, step by step: what scripts/demo --sketch shows and
# scripts/test-sketch tests. For sourcing in the project's folder; the caller defines say, which tells
# what is being done, and give_up, which says its words and ends the script.

sketch=$PWD/build/sketch
payload=$sketch/payload
installer=$sketch/quirloduino
home=$sketch/home
host="$home/My Documents/arduino-1.8.19" # with a blank, as on most computers
pictures=$sketch/pictures
work=$sketch/work
server=

# shellcheck source=scripts/clicks.sh
. scripts/clicks.sh

# One run at a time. A build that outlives a killed run holds the lock until it ends; what could stay for
# ever, display and wizard, doesn't hold it.
begin() {
  scripts/setup-sketch
  mkdir -p "$sketch" "$pictures" "$work"
  exec 9>"$sketch/lock"
  flock -n 9 || { say "another run works in $sketch; waiting for its end"; flock 9; }
  trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true' EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  start_display 1280x1024
}

make_installer() {
  say "making the payload"
  scripts/make-board-payload "$payload" 9>&- || give_up "there is no payload"
  say "packing it"
  scripts/make-installer --payload "$payload" --output "$installer" --level 9 9>&- ||
    give_up "there is no installer"
}

# A copy of the IDE in FOLDER as the host, in a home of its own, and started once: only an IDE that has
# been in use has preferences that an installer can edit.
lay_host() { # lay_host FOLDER
  say "copying the IDE"
  rm -rf "$home"
  mkdir -p "$home/.config" "${host%/*}"
  # shellcheck disable=SC2016  # the file's own $HOME
  echo 'XDG_DOCUMENTS_DIR="$HOME/My Documents"' >"$home/.config/user-dirs.dirs"
  cp -a "$1" "$host"
  mkdir -p "$host/portable"
  ide --save-prefs --pref update.check=false --pref editor.external=false >"$work/ide.log" 2>&1 ||
    { cat "$work/ide.log" >&2; give_up "the IDE doesn't start"; }
}

ide() { HOME=$home scripts/sketch/run-ide "$host" "$@"; }

preference() { # preference KEY: as the IDE reads it
  ide --get-pref "$1" 2>/dev/null | tr -d '\r'
}

# The wizard on the host, up to the page of folders; sets `window`. An Arduino that it knows is chosen
# there already; any other is clicked, the first folder in the list below the parent's.
open_wizard() {
  rm -f "$pictures"/*.png
  HOME=$home XDG_CONFIG_HOME='' XDG_DATA_HOME='' "$installer" 9>&- &
  find_wizard
  take welcome "$window"
  next && take driver "$window"
  next && take folder "$window"
  next_is_active || { click "$window" 60 141 && take folder "$window"; }
}
# The rest of its pages. A library is left out when its row of the list is given, from 0.
finish_wizard() { # finish_wizard ROW|all
  next && take libraries "$window"
  if [ "$1" != all ]; then
    click "$window" 60 $((111 + 17 * $1))
    take libraries "$window"
  fi
  next && take install "$window"
  next
  tries=0
  until [ -s "$host/lib/quirloduino.txt" ]; do
    tries=$((tries + 1))
    [ $tries -le 1200 ] || give_up "waited in vain for the install's end"
    sleep 0.1
  done
  take finished "$window"
  close_wizard
}
# The words behind "?" on the page of folders, as a picture, and the ends of its long lines as another.
take_refusal() {
  ask_why
  find_help
  xdotool mousemove --window "$help" 200 200 click --repeat 3 5 # down to the release that it nearly is
  take refused "$help"
  xdotool mousemove --window "$help" 341 288 click --repeat 40 --delay 20 1 # the arrow of its lower bar
  take refused-ends "$help"
  close_help
  close_wizard
}

# On Windows every file may be run and the store carries no such bits. Here programs need theirs.
set_execute_bits() { # prints how many
  find "$host/hardware/tools" -type f -size +0 -print0 |
    xargs -0 grep -lZ -m 1 -a -P '\A\x7fELF' | grep -zvE '\.(o|so)$' |
    xargs -0 sh -c 'chmod +x "$@" && echo $#' programs | awk '{ sum += $1 } END { print sum + 0 }'
}

board_file() { echo "$host/hardware/quirlo/avr/boards.txt"; }
boards() { sed -n 's/^\([A-Za-z0-9]*\)\.name=.*/\1/p' "$(board_file)"; }
board_value() { # board_value BOARD KEY
  sed -n "s/^$1\.$2=//p" "$(board_file)"
}
libraries() {
  find "$host/hardware/quirlo/avr/libraries" -mindepth 1 -maxdepth 1 -type d -printf '%f\n' | LC_ALL=C sort
}
# The sketch for a library: its first example, or one from here where it has none.
sketch_of() { # sketch_of LIBRARY
  example=$(find "$host/hardware/quirlo/avr/libraries/$1/examples" -name '*.ino' 2>/dev/null | sort | head -n 1)
  [ -n "$example" ] || example=$PWD/tests/sketch/sketches/Uses$1/Uses$1.ino
  [ -f "$example" ] || give_up "there is no sketch for the library $1"
  echo "$example"
}
blink() { echo "$host/examples/Quirlo/Blink/Blink.ino"; }
hello() { echo "$host/examples/Quirlo/Hello/Hello.ino"; }
all_sketches() {
  blink
  hello
  libraries | while read -r library; do sketch_of "$library"; done
}

# Builds every sketch named on standard input for a board, two at a time.
build_sketches() { # build_sketches BUILDS BOARD
  tr '\n' '\0' | HOME=$home xargs -0 -P 2 -n 1 scripts/sketch/verify "$host" "$1" "$2"
}
# One figure of a build, from what the IDE says: program or data, and its bound.
figure_of() { # figure_of LOG program|program-limit|data|data-limit
  case $2 in
    program) sed -n 's/^Sketch uses \([0-9]*\) bytes.*/\1/p' "$1" ;;
    program-limit) sed -n 's/^Sketch uses .* Maximum is \([0-9]*\) bytes.*/\1/p' "$1" ;;
    data) sed -n 's/^Global variables use \([0-9]*\) bytes.*/\1/p' "$1" ;;
    data-limit) sed -n 's/^Global variables use .* Maximum is \([0-9]*\) bytes.*/\1/p' "$1" ;;
  esac
}
# What is wrong with a build, in words; nothing if it is sound: built, without a warning, and no larger
# than the board.
fault_of() { # fault_of LOG
  if ! grep -qx 'status 0' "$1"; then echo "is not built"; return; fi
  if grep -qi 'warning' "$1"; then echo "builds with a warning"; return; fi
  for kind in program data; do
    size=$(figure_of "$1" $kind) limit=$(figure_of "$1" $kind-limit)
    if [ -z "$size" ] || [ -z "$limit" ]; then echo "has no size of $kind"; return; fi
    if [ "$size" -gt "$limit" ]; then echo "is larger than the board: $kind $size of $limit"; return; fi
  done
}

# Blink and Hello on a board, side by side, until the light has changed seven times, which is three
# seconds' work, and five lines have come, which is two. Leaves BOARD.blink and BOARD.hello in $work.
# The status is 0 if both came so far within a minute.
run_sketches() { # run_sketches BUILDS BOARD
  command=$(board_value "$2" emulator)
  scripts/sketch/emulate "$command" "$1/$2/Blink/Blink.ino.elf" "$work/$2.blink" 0 7 60 &
  blinking=$!
  hello=0 blink=0
  scripts/sketch/emulate "$command" "$1/$2/Hello/Hello.ino.elf" "$work/$2.hello" 5 0 60 || hello=1
  wait $blinking || blink=1
  [ $hello$blink = 00 ]
}
size_of() { # size_of FOLDER: its files and their bytes
  find "$1" -type f -printf '%s\n' |
    awk '{ bytes += $1 } END { printf "%d files, %.1f MB", NR, bytes / 1000000 }'
}

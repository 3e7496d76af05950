# shellcheck shell=sh
# shellcheck disable=SC2034,SC2154  # variables of the caller
# The wizard used by a script: a display of its own, clicks at the window's buttons, pictures of it. For
# sourcing; the caller sets `work`, a folder for what comes and goes, and `pictures`, where take() puts
# its own, and defines give_up, which says its words and ends the script.

# A display that nobody sees, for everything started afterwards; sets `server`, which the caller ends.
start_display() { # start_display WIDTHxHEIGHT
  rm -f "$work/display"
  Xvfb -displayfd 3 -screen 0 "$1x24" -noreset -wr 3>"$work/display" >"$work/xvfb.log" 2>&1 9>&- &
  server=$!
  wait_for "a display" test -s "$work/display"
  DISPLAY=:$(cat "$work/display")
  FLTK_BACKEND=x11  # also where Wayland is to be had
  export DISPLAY FLTK_BACKEND
}

wait_for() { # wait_for WHAT COMMAND...: until it succeeds, for 20 seconds at most
  what=$1 && shift
  tries=0
  until "$@" >/dev/null 2>&1; do
    tries=$((tries + 1))
    [ $tries -le 200 ] || give_up "waited in vain for $what"
    sleep 0.1
  done
}

# A page is complete when two looks at it show the same and it is not the page before.
settled() { # settled WINDOW
  import -silent -window "$1" "$work/now.png"
  now=$(identify -quiet -format '%#' "$work/now.png")
  [ "$now" = "${last-}" ] && [ "$now" != "${page-}" ] && return 0
  last=$now
  return 1
}
take() { # take NAME WINDOW
  wait_for "the picture $1" settled "$2"
  page=$last
  convert "$work/now.png" -strip -define png:compression-level=9 "$pictures/$1.png"
}
click() { # click WINDOW X Y
  xdotool mousemove --window "$1" "$2" "$3" click 1 mousemove 1000 700
}

# The wizard's window once it is there, and the buttons of its pages.
find_wizard() {
  wait_for "the wizard" xdotool search --onlyvisible --name ' Installer$'
  window=$(xdotool search --onlyvisible --name ' Installer$')
}
find_help() {
  wait_for "the help window" xdotool search --onlyvisible --name ' Help$'
  help=$(xdotool search --onlyvisible --name ' Help$')
}
# Next, or Install in its place, has a black label when it can be pressed, and a grey one when it can't.
next_is_active() {
  import -silent -window "$window" "$work/next.png"
  [ "$(convert "$work/next.png" -crop 40x12+265+330 -colorspace Gray -format '%[fx:minima<0.1]' info:)" = 1 ]
}
next() {
  wait_for "the button Next" next_is_active
  click "$window" 285 336
}
ask_why() { click "$window" 353 336; }
close_wizard() { click "$window" 435 336; }
close_help() { click "$help" 200 336; }

# Until the wizard's window stands on the display, drawn. The least that this can take is the bare
# read and expand, and then an empty window.
. benchmarks/common.sh
need_frame
build wizard_picture_full empty_window start_control
# A display of its own, which doesn't start anew when its last window goes.
display=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x1024x24 -noreset -nolisten tcp 3>"$display" >/dev/null 2>&1 &
server=$!
trap 'kill $server; rm -f "$display"' EXIT
tries=0
until [ -s "$display" ]; do
  tries=$((tries + 1))
  [ $tries -lt 100 ] || fail "no display"
  sleep 0.1
done
DISPLAY=:$(cat "$display")
export DISPLAY
mkdir -p "$WORK/home"
cat >"$WORK/picture.plan" <<END
contestant wizard
run env HOME=$WORK/home $tools/wizard_picture_full

contestant read and expand
run env HOME=$WORK/home $tools/start_control $WORK/full/payload.zst $(content_size)

contestant empty window
run env HOME=$WORK/home $tools/empty_window
END
measure picture "$ROUNDS"

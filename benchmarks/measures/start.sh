# From the start of the process until the payload is ready. The installer is given an empty folder
# name: it loads the payload, says so, and ends.
. benchmarks/common.sh
need_frame
build quirloduino_full start_control memcpy_control
frame=$WORK/full/payload.zst
cat >"$WORK/start.plan" <<END
contestant quirloduino
run $tools/quirloduino_full --dir=
expect 1
check tail -n 1 $WORK/log/start | grep -q '^no Arduino directory$'
bytes $(($(content_size) + $(stat -c %s "$frame")))

contestant read and expand
run $tools/start_control $frame $(content_size)
bytes $(($(content_size) + $(stat -c %s "$frame")))

contestant memcpy
run $tools/memcpy_control $WORK/content
bytes $(content_size)
END
measure start "$ROUNDS"

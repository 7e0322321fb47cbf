#!/usr/bin/env bash
# zvp filter on clips made here: an interlaced one whose progressive original is at hand, a noisy one, a still one.
#   filter.sh ZVP
set -euo pipefail
zvp=$1
command -v ffmpeg > /dev/null || { echo "skipped: ffmpeg is not installed"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() { echo "FAILED: $*"; exit 1; }
make() { ffmpeg -v error -y "$@" < /dev/null; }
# dB NAME WHICH: of the luma, from the output of the last run.
dB() { awk -v which="$1" '$1 == which { print ($3 == "inf" ? 999 : $3) }' printed; }
run() { "$zvp" filter "$@" > printed 2> messages || fail "zvp filter $*: $(cat messages)"; }
better() { # by at least this many dB
  local before after
  before=$(dB before) after=$(dB after)
  awk -v b="$before" -v a="$after" -v by="$1" 'BEGIN { exit !(a >= b + by) }' || fail "$2: luma $before dB before, $after dB after"
  echo "$2: luma $before dB before, $after dB after"
}

make -f lavfi -i mandelbrot=size=320x240:rate=50:end_pts=60 -frames:v 40 -pix_fmt yuv420p whole.y4m
make -i whole.y4m -vf "select='not(mod(n,2))'" -vsync passthrough top.y4m
make -i whole.y4m -vf "select='mod(n,2)'" -vsync passthrough bottom.y4m
make -i whole.y4m -vf tinterlace=interleave_top -pix_fmt yuv420p fields.y4m
for kind in triangle edge median blend motion; do
  run fields.y4m --field-order top --deinterlace=$kind --original top.y4m -o out.y4m --compare out.png
  [ $kind = triangle ] && gain=0.1 || gain=1  # it blurs both fields together
  better $gain "$kind, top field kept"
  [ "$(ffprobe -v error -count_frames -show_entries stream=nb_read_frames -of csv=p=0 out.y4m)" = 20 ] ||
    fail "$kind: not 20 frames"
  [ "$(head -c 8 out.png | tail -c 7)" = "$(printf 'PNG\r\n\032\n')" ] || fail "$kind: no picture"
  if [ $kind != triangle ]; then
    # The other order keeps the other field.
    run fields.y4m --field-order bottom --deinterlace=$kind --original bottom.y4m
    better 1 "$kind, bottom field kept"
  fi
done

# 4:2:2, planar and packed, and the order that the stream itself tells.
make -i fields.y4m -pix_fmt yuv422p -vf setfield=tff -c:v ffv1 fields422.mkv
make -i top.y4m -pix_fmt yuv422p top422.y4m
run fields422.mkv --deinterlace=blend --original top422.y4m
better 1 "blend of 4:2:2"
make -i fields422.mkv -pix_fmt yuyv422 -c:v rawvideo fieldsPacked.avi
run fieldsPacked.avi --field-order top --deinterlace=edge --original top422.y4m
better 1 "edge of packed 4:2:2"

make -i whole.y4m -vf noise=alls=8:allf=t:all_seed=7 noisy.y4m
run noisy.y4m --denoise=cast --original whole.y4m
better 1 "cast"
make -i whole.y4m -pix_fmt yuv422p whole422.y4m
make -i noisy.y4m -pix_fmt yuv422p noisy422.y4m
run noisy422.y4m --denoise=cast --packed --original whole422.y4m -o packed.yuv
better 1 "cast of packed 4:2:2"

# A still picture: the motion-adaptive member gives back what it got, and so do frames that are asked to stay few.
make -loop 1 -f lavfi -i color=c=0x406080:size=64x48:rate=25 -frames:v 5 -pix_fmt yuv420p still.y4m 2> /dev/null ||
  make -f lavfi -i color=c=0x406080:size=64x48:rate=25 -frames:v 5 -pix_fmt yuv420p still.y4m
run still.y4m --field-order top --deinterlace=motion --original still.y4m --frames 3
[ "$(dB after)" = 999 ] || fail "a still picture changes"
grep -q '^3 frames' messages || fail "--frames 3 gives $(cat messages)"

# What cannot be done is said.
for arguments in "still.y4m" "still.y4m --deinterlace=none" "missing.y4m --denoise=cast" "still.y4m --denoise=cast -o x.gif" \
                 "still.y4m --denoise=cast --packed" "still.y4m --denoise=cast --original whole.y4m"; do
  # shellcheck disable=SC2086
  if "$zvp" filter $arguments > printed 2> messages; then fail "no error: $arguments"; fi
  [ -s messages ] || fail "no message: $arguments"
done
echo "all right"

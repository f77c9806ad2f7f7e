#!/bin/sh
# film.sh FFMPEG ROOM_CLIP MOUNT FILE [SIZE]: ten seconds of the room, 25 pictures a second.
set -e
size=${5:-1024x1024}
"$2" "$3" "$size" 250 | "$1" -nostdin -v error -y -f rawvideo -pix_fmt rgb24 -s "$size" -r 25 -i pipe:0 \
    -vf scale=out_color_matrix=bt709 -pix_fmt yuv420p -colorspace bt709 -c:v libx264 -preset veryfast -crf 20 -g 50 -bf 0 \
    -metadata creation_time=2026-05-01T10:00:00Z -movflags +faststart -f mp4 "$4.part"
mv "$4.part" "$4"

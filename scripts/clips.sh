# Sourced by run-wall.sh: real H.264 clips, made once.

CLIP_FONT=/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf
CLIP_RATE=25
CLIP_SECONDS=20

# label NAME: the name and a running clock, as a camera writes them into its picture
label() {
    local style="fontfile=$CLIP_FONT:fontcolor=white:fontsize=h/22:box=1:boxcolor=black@0.45:boxborderw=6"
    printf 'drawtext=%s:text=%s:x=w/40:y=h-th-h/28,drawtext=%s:text=%s:x=w-tw-w/40:y=h-th-h/28' \
        "$style" "$1" "$style" "'%{pts\:hms}'"
}

# make_clip FILE NAME SOURCE SIZE [encoder option...]
make_clip() {
    local file=$1 name=$2 source=$3 size=$4
    shift 4
    [ -s "$file" ] && return
    echo "making the clip $(basename "$file")"
    ffmpeg -nostdin -v error -y -f lavfi -i "$source" "$@" -t "$CLIP_SECONDS" \
        -vf "fps=$CLIP_RATE,scale=${size/x/:},$(label "$name"),format=yuv420p" -c:v libx264 -preset veryfast -crf 27 -bf 0 -g $((2 * CLIP_RATE)) \
        -metadata creation_time=now -movflags +faststart -f mp4 "$file.part"
    mv "$file.part" "$file"
}

# make_clips FOLDER
make_clips() {
    mkdir -p "$1"
    local music='aevalsrc=0.12*sin(2*PI*t*(220+110*floor(mod(2*t\,4))))*exp(-2*mod(2*t\,1)):s=44100'
    make_clip "$1/gate.mp4" Gate "testsrc2=s=704x576:r=$CLIP_RATE" 704x576 -f lavfi -i "$music" -c:a aac -b:a 96k
    make_clip "$1/harbour.mp4" Harbour "mandelbrot=s=640x360:r=$CLIP_RATE:end_scale=0.002:end_pts=500" 960x540
    make_clip "$1/yard.mp4" Yard \
        "life=s=176x144:r=12:mold=20:ratio=0.12:seed=7:life_color=#8fd694:death_color=#3a5a78:mold_color=#101820" 704x576
    make_clip "$1/bridge.mp4" Bridge "gradients=s=640x480:r=$CLIP_RATE:nb_colors=6:seed=11:speed=0.04:type=spiral" 640x480
    make_reel "$1/bridge.mp4" "$1/bridge.h264"
}

# make_reel CLIP FILE: bare H.264 with delimiters, for the camera
make_reel() {
    [ -s "$2" ] && return
    ffmpeg -nostdin -v error -y -i "$1" -c:v copy -an -bsf:v h264_mp4toannexb,h264_metadata=aud=insert -f h264 "$2.part"
    mv "$2.part" "$2"
}

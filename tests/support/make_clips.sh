#!/bin/sh
# Makes the clips that the engine's tests play. Usage: make_clips.sh OUTDIR
# A clip that exists is kept, so a second run costs nothing; every clip comes out the same each time.
set -eu

out=${1:?usage: make_clips.sh OUTDIR}
mkdir -p "$out"
font=$(fc-match -f '%{file}' 'DejaVu Sans Mono:bold')

# make NAME.EXT FFMPEG-ARGUMENTS...: writes under another name first, so a broken run leaves no clip.
make() {
    name=$1
    shift
    if [ ! -s "$out/$name" ]; then
        ffmpeg -nostdin -v error -y "$@" -flags +bitexact -fflags +bitexact -map_metadata -1 \
            "$out/.part.$name"
        mv "$out/.part.$name" "$out/$name"
    fi
}

# picture SIZE SECONDS RATE / tone SECONDS: the sources, as ffmpeg arguments.
picture() { echo "-f lavfi -i testsrc=size=$1:duration=$2:rate=$3"; }
tone() { echo "-f lavfi -i sine=frequency=1000:sample_rate=44100:duration=$1"; }
small="$(picture 320x240 2 25) $(tone 2)"

make mpeg4-mp3.avi $small -c:v mpeg4 -q:v 4 -c:a libmp3lame -b:a 128k
make mjpeg-pcm.avi $small -c:v mjpeg -q:v 4 -pix_fmt yuvj420p -c:a pcm_s16le
make raw-pcm.avi $small -c:v rawvideo -pix_fmt bgr24 -vf vflip -c:a pcm_s16le
make mpeg1.mpg $small -c:v mpeg1video -q:v 4 -c:a mp2 -b:a 128k
make mpeg2.mpg $small -f vob -c:v mpeg2video -q:v 4 -c:a mp2 -b:a 128k
make wmv2.wmv $small -c:v wmv2 -q:v 4 -c:a wmav2 -b:a 128k
make h264-aac.mp4 $small -c:v libx264 -preset veryfast -pix_fmt yuv420p -c:a aac -b:a 128k
make tone.mp3 $(tone 2) -c:a libmp3lame -b:a 128k
make tone.wav $(tone 2) -c:a pcm_s16le
make tone.au $(tone 2) -c:a pcm_s16be
make tone-mulaw.au $(tone 2) -c:a pcm_mulaw
make silent.avi $(picture 320x240 2 25) -c:v mpeg4 -q:v 4
make odd-size.avi $(picture 321x181 2 25) $(tone 2) -c:v mjpeg -q:v 4 -pix_fmt yuvj444p \
    -c:a pcm_s16le
make full-hd.mp4 $(picture 1920x1080 1 25) $(tone 1) -c:v libx264 -preset ultrafast \
    -pix_fmt yuv420p -c:a aac -b:a 128k
make variable-rate.mp4 $(picture 320x240 2 50) $(tone 2) \
    -vf "select='if(lt(t,1),1,not(mod(n,5)))'" -vsync vfr \
    -c:v libx264 -preset veryfast -pix_fmt yuv420p -c:a aac -b:a 128k
make wide-pixels.mpg $small -vf setsar=16/9 -c:v mpeg2video -q:v 4 -f vob -c:a mp2 -b:a 128k
make short-sound.avi $(picture 320x240 2 25) $(tone 1) -c:v mjpeg -q:v 4 -pix_fmt yuvj420p \
    -c:a pcm_s16le
make short-picture.avi $(picture 320x240 1 25) $(tone 2) -c:v mjpeg -q:v 4 -pix_fmt yuvj420p \
    -c:a pcm_s16le
# A name that a person may give, and the sound of that clip alone.
make 'tone 音!.avi' $(picture 320x180 3 25) $(tone 3) -c:v mjpeg -q:v 4 -pix_fmt yuvj420p \
    -c:a pcm_s16le -ac 2
make 'tone 音!.wav' -i "$out/tone 音!.avi" -vn -c:a copy
make odd-sound.avi $(tone 1) -af aresample=8000,atrim=end_sample=801 -c:a pcm_u8
make odd-sound.wav -i "$out/odd-sound.avi" -c:a copy
make low-rate.avi $(tone 2) -ar 8000 -c:a pcm_u8
make ten-minutes.avi -f lavfi -i anullsrc=r=44100:cl=stereo:d=600 -c:a pcm_s16le

# timecode.avi: ten seconds at 25 frames/s. The background changes colour with every second; the
# row of eight squares at the top is the frame number in binary, white is 1, lowest bit first.
second_colours='red lime blue yellow magenta cyan maroon green navy gray'
filter=null
second=0
for colour in $second_colours; do
    filter="$filter,drawbox=color=$colour:t=fill:enable='eq(floor(n/25),$second)'"
    second=$((second + 1))
done
filter="$filter,drawbox=x=0:y=0:w=640:h=60:color=black:t=fill"
bit=0
while [ $bit -lt 8 ]; do
    filter="$filter,drawbox=x=$((bit * 80 + 20)):y=10:w=40:h=40:color=white:t=fill"
    filter="$filter:enable='mod(floor(n/$((1 << bit))),2)'"
    bit=$((bit + 1))
done
filter="$filter,drawtext=fontfile=$font:fontsize=72:fontcolor=white:box=1:boxcolor=black"
filter="$filter:boxborderw=12:x=(w-tw)/2:y=200:text='%{pts\\:hms}'"
make timecode.avi -f lavfi -i color=black:size=640x360:duration=10:rate=25 $(tone 10) \
    -vf "$filter" -c:v mjpeg -q:v 3 -pix_fmt yuvj420p -c:a pcm_s16le
make timecode.mp4 -i "$out/timecode.avi" -c:v libx264 -preset veryfast -g 25 -pix_fmt yuv420p \
    -c:a aac -b:a 128k

# Files that are damaged or no clips at all.
[ -s "$out/truncated.avi" ] || head -c 400000 "$out/timecode.avi" > "$out/truncated.avi"
[ -s "$out/text.avi" ] || printf 'This is a text, not a clip.\n' > "$out/text.avi"
: > "$out/empty.avi"
mkdir -p "$out/folder.avi"

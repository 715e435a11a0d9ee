#!/usr/bin/env bash
# Makes the media files of the tests anew (needs ffmpeg): a test picture and a tone, nothing from elsewhere.
set -euo pipefail
cd "$(dirname "$0")"

make() { ffmpeg -y -loglevel error "${@:1:$#-1}" -map_metadata -1 -fflags +bitexact -flags:v +bitexact -flags:a +bitexact "${@: -1}"; }
picture=(-f lavfi -i testsrc=size=160x90:rate=10)
tone=(-f lavfi -i sine=frequency=440:sample_rate=16000)
h264=(-c:v libx264 -pix_fmt yuv420p -preset veryslow -crf 32)

make "${picture[@]}" "${tone[@]}" -t 3 "${h264[@]}" -c:a aac -b:a 16k clip.mp4
make "${picture[@]}" -f lavfi -t 0.5 -i sine=frequency=440:sample_rate=16000 -t 3 "${h264[@]}" -c:a aac -b:a 16k short-sound.mp4
make "${picture[@]}" -t 2 "${h264[@]}" -an silent.mp4

# A song that carries a picture of its cover.
ffmpeg -y -loglevel error -f lavfi -i testsrc=size=64x64:rate=1 -frames:v 1 cover.jpg
make "${tone[@]}" -i cover.jpg -t 3 -map 0 -map 1 -c:a libmp3lame -b:a 24k -c:v copy -disposition:v attached_pic cover.mp3
rm cover.jpg

# What the media player control of a bare Windows machine, or of Wine, plays as well.
make -f lavfi -i sine=frequency=330:sample_rate=16000 -t 4 -c:a libvorbis -q:a 0 song.ogg
make -f lavfi -i testsrc=size=160x90:rate=5 "${tone[@]}" -t 4 -c:v mjpeg -q:v 20 -c:a pcm_u8 -ar 8000 film.avi

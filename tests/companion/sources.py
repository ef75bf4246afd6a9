"""The clips that fragments are cut out of: one for each container and each peculiarity."""

from __future__ import annotations

from fractions import Fraction

from marked_clip import NTSC, UNEVEN_SLOTS, Clip, Picture, Sound

H264 = ("libx264", "-preset", "veryfast", "-g", "60", "-bf", "2")
HEVC = ("libx265", "-preset", "ultrafast", "-x265-params", "keyint=60:bframes=3:log-level=none")
MPEG4 = ("mpeg4", "-q:v", "4", "-g", "60")
MPEG4_B = (*MPEG4, "-bf", "2")
AAC = ("aac", "-b:a", "160k")
MP3 = ("libmp3lame", "-b:a", "160k")
PCM = ("pcm_s16le",)
VP9 = ("libvpx-vp9", "-deadline", "realtime", "-cpu-used", "8", "-b:v", "800k", "-g", "60")
VP8 = ("libvpx", "-deadline", "good", "-cpu-used", "5", "-b:v", "800k", "-g", "60")

# The one that most tests use: B-frames, few key frames.
PLAIN = Clip("plain.mp4", Picture(H264), Sound(AAC))

PICTURE_CLIPS = (
    Clip("mpeg4-mp3.avi", Picture(MPEG4), Sound(MP3, 44100)),
    Clip("msmpeg4-pcm.avi", Picture(("msmpeg4", "-q:v", "4", "-g", "60")), Sound(PCM, 44100)),
    Clip("mjpeg.avi", Picture(("mjpeg", "-q:v", "4", "-pix_fmt", "yuvj420p")), None),
    PLAIN,
    Clip("hevc-aac.mp4", Picture(HEVC), Sound(AAC, 44100)),
    Clip("h264-pcm.mov", Picture(H264, NTSC), Sound(PCM)),
    Clip("prores-pcm.mov", Picture(("prores", "-pix_fmt", "yuv422p10le")), Sound(PCM)),
    Clip("h264-ac3.mkv", Picture(H264), Sound(("ac3", "-b:a", "384k"), channels=6)),
    Clip("hevc-opus.mkv", Picture(HEVC), Sound(("libopus", "-b:a", "128k"))),
    Clip("h264-vorbis.mkv", Picture(H264, NTSC), Sound(("libvorbis", "-q:a", "5"), 44100)),
    Clip("vp9-opus.webm", Picture(VP9), Sound(("libopus", "-b:a", "128k"))),
    Clip("vp8-vorbis.webm", Picture(VP8), Sound(("libvorbis", "-q:a", "5"), 44100)),
    Clip(
        "wmv2-wmav2.wmv",
        Picture(("wmv2", "-q:v", "4", "-g", "60")),
        Sound(("wmav2", "-b:a", "160k"), 44100),
    ),
    Clip(
        "mpeg1-mp2.mpg",
        Picture(("mpeg1video", "-q:v", "4", "-g", "15", "-bf", "2")),
        Sound(("mp2", "-b:a", "192k"), 44100),
    ),
    Clip(
        "mpeg2-mp2.mpg",
        Picture(("mpeg2video", "-q:v", "4", "-g", "15", "-bf", "2")),
        Sound(("mp2", "-b:a", "192k")),
        extra=("-f", "vob"),
    ),
    Clip("h264-aac.ts", Picture(H264), Sound(AAC)),
    Clip(
        "mpeg2-ac3.ts",
        Picture(("mpeg2video", "-q:v", "4", "-g", "15", "-bf", "2")),
        Sound(("ac3", "-b:a", "192k")),
    ),
    Clip("flv1-mp3.flv", Picture(("flv", "-q:v", "4", "-g", "60")), Sound(MP3, 44100)),
    Clip("h264-aac.flv", Picture(H264), Sound(AAC, 44100)),
)

SOUND_CLIPS = (
    Clip("sound.mp3", None, Sound(MP3, 44100)),
    Clip("sound.wav", None, Sound(PCM)),
    Clip("sound.flac", None, Sound(("flac",), 44100)),
    Clip("sound.ogg", None, Sound(("libvorbis", "-q:a", "5"), 44100)),
    Clip("sound.m4a", None, Sound(AAC)),
)

NTSC_CLIP = Clip("ntsc.mp4", Picture(H264, NTSC), Sound(AAC))
UNEVEN = Clip("uneven.mkv", Picture(H264, Fraction(50), slots=UNEVEN_SLOTS), Sound(PCM))
TURNED = {
    degrees: Clip(f"turned-{degrees}.mp4", Picture(H264, turned=degrees), Sound(AAC))
    for degrees in (90, 180, 270)
}
INTERLACED = Clip(
    "interlaced.mpg",
    Picture(("mpeg2video", "-q:v", "3", "-g", "15"), size=(320, 192), interlaced=True),
    Sound(("mp2", "-b:a", "192k")),
    extra=("-f", "vob"),
)
ANAMORPHIC = Clip(
    "anamorphic.mp4", Picture(H264, size=(240, 180), pixel_aspect=Fraction(4, 3)), Sound(AAC)
)
SURROUND = Clip("surround.mkv", Picture(H264), Sound(("ac3", "-b:a", "384k"), channels=6))
MONO = Clip("mono.mp4", Picture(H264), Sound(AAC, 44100, 1))
SILENT = Clip("silent.mp4", Picture(H264), None)
ONE_SECOND = Clip("second.mp4", Picture(H264), Sound(AAC), seconds=1.0)
# Tagged with the colours of high definition.
REC_709 = ("-colorspace", "bt709", "-color_primaries", "bt709", "-color_trc", "bt709")
TAGGED = Clip("tagged.mp4", Picture((*H264, *REC_709)), Sound(AAC))
LONG_PART = Clip("minute.mp4", Picture(MPEG4, size=(640, 360)), Sound(AAC), seconds=60.0)
COPYABLE_PART = Clip("minute.avi", Picture(MPEG4, size=(640, 360)), Sound(PCM), seconds=60.0)


def named(name: str) -> Clip:
    return next(clip for clip in (*PICTURE_CLIPS, *SOUND_CLIPS) if clip.name == name)

# SPDX-License-Identifier: Apache-2.0
"""Turns pictures into clips and clips into cuts, through ffmpeg, so that every run gives the same bytes."""

import subprocess

from .scenes import HEIGHT, WIDTH

FPS = 16
SAME = ["-fflags", "+bitexact", "-flags:v", "+bitexact", "-flags:a", "+bitexact", "-map_metadata", "-1", "-threads", "1"]
COLOURS = ["-color_primaries", "bt709", "-color_trc", "bt709", "-colorspace", "bt709", "-color_range", "tv"]
# Encoder notes inside the stream would tie the bytes to one build's wording; players do not need them.
QUIET = ["-bsf:v", "filter_units=remove_types=6"]
SCALE = "flags=bicubic+accurate_rnd+full_chroma_int+bitexact"


def ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-y", "-bitexact", "-filter_threads", "1", "-filter_complex_threads", "1",
                    *map(str, arguments)], check=True)


def photograph(scene, folder, name, seconds):
    """Renders a scene without loss; returns the file."""
    inputs, steps, frames = [], [], round(seconds * FPS)
    black = f"color=black:s={WIDTH}x{HEIGHT}:r={FPS}:d={seconds},format=gbrp"
    for index, (mode, canvas, x, y, strength) in enumerate(scene.layers):
        path = folder / f"{name}-{index}.png"
        path.write_bytes(canvas.png())
        inputs += ["-loop", "1", "-framerate", FPS, "-t", seconds, "-i", path]
        place = f"x='{x}':y='{y}':eval=frame"
        if index == 0:
            steps.append("[0]format=gbrp[p0]")
        elif mode == "picture":
            steps.append(f"[{index}]format=rgba[l{index}];[p{index - 1}][l{index}]overlay={place}:format=gbrp,format=gbrp[p{index}]")
        else:
            steps.append(f"{black}[b{index}];[{index}]format=rgba[l{index}];[b{index}][l{index}]overlay={place}:format=gbrp,format=gbrp[g{index}];"
                         f"[p{index - 1}][g{index}]blend=all_expr='255-(255-A)*(255-B*({strength}))/255'[p{index}]")
    start, end = scene.zoom
    zoom = f"{start}+({end - start:.4f})*on/{frames}"
    fx, fy = scene.focus
    steps.append(f"[p{len(scene.layers) - 1}]scale={WIDTH * 4}:{HEIGHT * 4}:{SCALE},zoompan=z='{zoom}':x='(iw-iw/zoom)*{fx}':y='(ih-ih/zoom)*{fy}'"
                 f":d=1:s={WIDTH}x{HEIGHT}:fps={FPS},format=gbrp[out]")
    target = folder / f"{name}.mkv"
    ffmpeg(*inputs, "-filter_complex", ";".join(steps), "-map", "[out]", "-frames:v", frames, "-c:v", "ffv1", *SAME, target)
    return target


def still(source, target, at=0.0, size=f"{WIDTH}:{HEIGHT}"):
    ffmpeg("-ss", at, "-i", source, "-frames:v", 1, "-vf", f"scale={size}:{SCALE},format=rgb24", "-pred", "mixed",
           "-compression_level", 9, *SAME, target)


def film(source, target, quality, size=f"{WIDTH}:{HEIGHT}", fades="", sound=None, captions=None, rate="48k"):
    """Encodes for ordinary players, with sound and captions when there are any."""
    inputs = ["-i", source]
    maps = ["-map", "0:v"]
    for extra, kind in ((sound, "a"), (captions, "s")):
        if extra:
            maps += ["-map", f"{len(inputs) // 2}:{kind}"]
            inputs += ["-i", extra]
    codecs = ["-c:v", "libx264", "-preset", "slower", "-tune", "animation", "-crf", quality, "-g", FPS * 3, "-pix_fmt", "yuv420p", "-r", FPS]
    if sound:
        codecs += ["-c:a", "aac", "-b:a", rate, "-ac", 1]
    if captions:
        codecs += ["-c:s", "mov_text", "-metadata:s:s:0", "language=eng"]
    picture = f"{fades}scale={size}:out_color_matrix=bt709:out_range=tv:{SCALE},format=yuv420p"
    ffmpeg(*inputs, *maps, "-vf", picture, *codecs, *COLOURS, *QUIET, *SAME, "-movie_timescale", FPS * 1000, "-movflags", "+faststart", target)


def join(sources, target):
    listing = target.with_suffix(".txt")
    listing.write_text("".join(f"file '{s}'\n" for s in sources), encoding="utf-8")
    ffmpeg("-f", "concat", "-safe", 0, "-i", listing, "-c", "copy", *SAME, target)


def music(source, target):
    ffmpeg("-i", source, "-c:a", "aac", "-b:a", "48k", "-ac", 1, *SAME, "-movflags", "+faststart", target)

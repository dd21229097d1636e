# SPDX-License-Identifier: Apache-2.0
"""Captions, receipts and reviews, all told from what was really made."""

import math

from .story import CAST, SHOTS, TITLE, TOTAL, heard, spoken, starts

NAMES = {c["id"]: c["name"] for c in CAST}


def _stamp(seconds, mark):
    whole = round(seconds * 1000)
    return f"{whole // 3600000:02d}:{whole // 60000 % 60:02d}:{whole // 1000 % 60:02d}{mark}{whole % 1000:03d}"


def srt():
    return "".join(f"{n}\n{_stamp(at, ',')} --> {_stamp(at + seconds, ',')}\n{record['text']}\n\n"
                   for n, (_, _, at, record, _, seconds) in enumerate(spoken(), 1))


def vtt():
    cues = "".join(f"\n{_stamp(at, '.')} --> {_stamp(at + seconds, '.')}\n<v {NAMES[record['speaker']]}>{record['text']}\n"
                   for _, _, at, record, _, seconds in spoken())
    return "WEBVTT\n" + cues


def _named(artifacts):
    return [{"path": a["path"], "sha256": a["sha256"]} for a in artifacts]


def captions(workspace):
    return {"title": TITLE, "language": "en", "cues": len(list(spoken())), "files": _named(workspace.of("subtitle-srt", "subtitle-vtt"))}


def block(name, shots, workspace):
    wanted = {f"clips/{s['id']}.mp4" for s in shots}
    return {"block": name, "shots": [s["id"] for s in shots], "durationSeconds": sum(s["durationSeconds"] for s in shots),
            "madeFrom": _named(a for a in workspace.of("shot-clip") if a["path"] in wanted)}


def peak_db(samples):
    return round(20 * math.log10(max(abs(s) for s in samples)), 1)


def dialogue_qc(voices):
    rows = [(s, n, at, seconds) for s, n, at, _, _, seconds in spoken()]
    overlaps = sum(1 for a, b in zip(rows, rows[1:]) if a[2] + a[3] > b[2])
    return {"passed": overlaps == 0, "overlappingLines": overlaps,
            "lines": [{"shotId": s["id"], "line": n, "startSeconds": at, "endSeconds": round(at + seconds, 4), "peakDb": peak_db(voices[s["id"], n])}
                      for s, n, at, seconds in rows]}


def sound_qc(effects, mixed):
    return {"passed": peak_db(mixed) < 0, "mixPeakDb": peak_db(mixed),
            "effects": [{"shotId": s["id"], "effect": n, "startSeconds": at, "levelDb": r["levelDb"], "peakDb": peak_db(effects[s["id"], n])}
                        for s, n, at, r, _ in heard()]}


def inspection(workspace, fps):
    sizes = {a["path"]: a["bytes"] for a in workspace.of("shot-clip")}
    return {"frameRate": fps, "clips": [{"shotId": s["id"], "startSeconds": at, "durationSeconds": s["durationSeconds"],
                                         "frames": round(s["durationSeconds"] * fps), "bytes": sizes[f"clips/{s['id']}.mp4"]} for s, at in starts()]}


def take_selection():
    return {"shots": [{"shotId": s["id"], "take": s["take"], "selectedCandidate": s["candidate"], "seed": s["chosen"] or s["seed"]} for s in SHOTS]}


def technical(workspace, fps, width, height, mixed):
    return {"passed": True, "width": width, "height": height, "frameRate": fps, "durationSeconds": TOTAL, "frames": round(TOTAL * fps),
            "mixPeakDb": peak_db(mixed), "checked": _named(workspace.of("final-master"))}


CREATIVE = {"passed": True, "strengths": ["Amber appears only where someone cares for someone", "The foghorn asks in shot 2 and is answered in shot 6"],
            "weaknesses": ["Noor has only three words — we would gladly hear more of her"]}


def readiness(workspace):
    ready = {kind: len(workspace.of(kind)) for kind in ("shot-keyframe", "shot-clip", "dialogue", "sound-effect", "score")}
    return {"ready": ready["shot-keyframe"] == ready["shot-clip"] == len(SHOTS), "counts": ready}


def human(workspace):
    return {"decision": "approved", "reviewer": "Irène Vasseur", "reviewedAt": "2026-03-14T11:43:00Z",
            "note": "I counted along with them. “Seven!” — leave everything as it is.", "watched": _named(workspace.of("final-master"))}


def delivery(workspace):
    return {"title": TITLE, "deliveredAt": "2026-03-14T11:48:00Z", "recipient": "Festival office",
            "files": _named(workspace.of("delivery-master", "subtitle-srt", "subtitle-vtt", "poster", "thumbnail"))}


def package():
    """A page for a browser: the whole film and every shot beside its purpose."""
    rows = "".join(f'<figure><video src="../clips/{s["id"]}.mp4" poster="../frames/{s["id"]}.png" controls width="480"></video>'
                   f'<figcaption>{s["id"]} · {s["durationSeconds"]:g} s · {s["purpose"]}</figcaption></figure>\n' for s in SHOTS)
    return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><title>{TITLE} — review</title>\n'
            '<style>body{background:#0b1024;color:#f3e4c4;font:16px sans-serif;max-width:480px;margin:2em auto}figure{margin:1.5em 0}</style></head>\n'
            f'<body><h1>{TITLE}</h1>\n<video src="../masters/final-master.mp4" poster="../poster.png" controls width="480"></video>\n{rows}</body></html>\n')

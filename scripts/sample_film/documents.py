# SPDX-License-Identifier: Apache-2.0
"""The JSON documents of the workspace: treatment, plan, run manifest and the state of the project."""

from .moving import FPS
from .scenes import HEIGHT, WIDTH
from .story import CAST, IDEA, LOCATIONS, PROJECT, SHOTS, TITLE, TOTAL

RUN = "run-2026-03-14-seven-lamps"
STARTED, ENDED = "2026-03-14T09:30:00Z", "2026-03-14T11:50:00Z"
TARGET = {"aspectRatio": "16:9", "audience": "Families", "durationSeconds": TOTAL, "fps": FPS, "height": HEIGHT, "language": "en",
          "platform": "festival", "rating": "G", "usage": "short film", "width": WIDTH}

TREATMENT = {
    "title": TITLE,
    "logline": "On a foggy island an old lamplighter and a girl with a bicycle bring the last ferry home with a borrowed light.",
    "synopsis": "Every evening Aurélien lights the seven lamps of Brèmes. Tonight the seventh will not catch, fog closes in — and the "
                "Bonne Étoile is still at sea, looking for exactly that light. Noor, nine years old and always in a hurry, stops for once "
                "and unscrews the lamp of her bicycle. “Borrow mine?” The gas takes the spark, the beam finds the ferry, and the quay "
                "counts to seven again.",
    "theme": "A small light, lent at the right moment, is enough.",
    "beats": ["Six lamps lit, one dark", "The ferry slows, blind in the fog", "The lamp refuses the flame", "A bicycle lamp comes on", "“Borrow mine?”",
              "The seventh lamp answers the foghorn", "Home: seven lamps, seven reflections"],
    "visualLanguage": "Paper-cut silhouettes against indigo night; amber is kept for lamps, windows and kindness. Sixteen frames a second, like an "
                      "old hand-cranked picture.",
    "soundLanguage": "A music box over slow chords, waves, one foghorn that asks and one that answers. Voices hum their lines without words.",
}


def plan():
    shots = []
    for s in SHOTS:
        chosen = {"selectedCandidate": s["candidate"], "selectedSeed": s["chosen"]} if s["candidate"] is not None else {}
        shots.append({"id": s["id"], "purpose": s["purpose"], "framePrompt": s["framePrompt"], "prompt": s["prompt"],
                      "durationSeconds": s["durationSeconds"], "seed": s["seed"], "characters": s["characters"], "location": s["location"],
                      "dialogue": [d[0] for d in s["dialogue"]], "soundEffects": [e[0] for e in s["effects"]],
                      "transition": s["transition"], "status": "accepted", "take": s["take"], **chosen})
    return {"contractVersion": "quexrun/film-production-plan.v1", "projectId": PROJECT, "title": TITLE, "createdAt": "2026-03-14T09:34:00Z",
            "target": TARGET, "scorePrompt": "Music-box lullaby in D major over slow warm chords, ending on the high note",
            "cast": CAST, "locations": LOCATIONS, "shots": shots, "plannedDurationSeconds": TOTAL}


def run_manifest():
    steps = ("plan", "keyframes", "clips", "sound", "assembly", "captions", "inspection", "review", "delivery")
    return {"contractVersion": "quexrun/run.v1", "runId": RUN, "tool": "film", "projectId": PROJECT, "title": TITLE, "createdAt": STARTED,
            "finishedAt": ENDED, "status": "completed", "project": "film-project.json", "steps": [{"name": n, "status": "completed"} for n in steps]}


def project(artifacts):
    return {"contractVersion": "quexrun/film-project.v1", "projectId": PROJECT, "title": TITLE, "idea": IDEA, "createdAt": STARTED,
            "updatedAt": ENDED, "status": "completed", "phase": "delivered", "brief": _brief(), "approvals": _approvals(),
            "departments": _departments(), "shots": _shots(), "reviewRequests": _reviews(), "jobs": _jobs(), "production": _production(),
            "artifacts": artifacts, "proof": {step: True for step in ("creation", "clips", "assembly", "dialogue", "sound", "captions",
                                                                     "inspection", "review", "humanReview", "delivery")},
            "issues": [{"code": "score-rings-past-the-end", "blocking": False, "recordedAt": "2026-03-14T11:29:00Z",
                        "message": "The music box’s last note still rings when the picture ends; the closing fade covers it."}]}


def _brief():
    return {"target": {"audience": "Families", "durationSeconds": TOTAL, "language": "en", "platform": "festival", "rating": "G"},
            "creative": {"genre": "Fable", "tone": "Tender, a little funny", "mustHaves": ["Seven lamps", "A ferry that answers"],
                         "exclusions": ["Villains", "Rain"]},
            "usage": "Sample film", "references": ["Paper theatre", "Harbour lights seen from a late boat"],
            "openQuestions": ["Should the captain be seen in a longer version?"]}


def _approvals():
    def gate(summary, asked, given, who, note=None):
        record = {"status": "approved", "summary": summary, "requestedAt": f"2026-03-14T{asked}:00Z", "approvedAt": f"2026-03-14T{given}:00Z",
                  "approvedBy": who}
        return {**record, "note": note} if note else record
    return {"treatment": gate("Fable in seven beats", "09:33", "09:35", "Irène Vasseur", "Keep the girl’s line short — three words at most."),
            "production-plan": gate(f"{len(SHOTS)} shots, {TOTAL:g} seconds", "09:37", "09:41", "Irène Vasseur"),
            "keyframes": gate("One key frame for each shot", "10:01", "10:03", "Tomás Quiroga", "Shot 7 is the poster in disguise."),
            "rough-cut": gate("Picture locked after one retake", "11:19", "11:26", "Irène Vasseur"),
            "final-master": gate("Mix and captions checked", "11:30", "11:43", "Irène Vasseur"),
            "delivery": gate("Festival file with captions", "11:45", "11:46", "Tomás Quiroga")}


def _departments():
    rows = (("story", "writer", "planning", (), 1), ("direction", "director", "planning", ("story",), 1),
            ("camera", "cinematographer", "generation", ("direction",), 2), ("voices", "casting", "generation", ("direction",), 1),
            ("sound", "sound designer", "generation", ("direction",), 1), ("music", "composer", "generation", ("story",), 1),
            ("edit", "editor", "assembly", ("camera", "voices", "sound", "music"), 1), ("quality", "supervisor", "review", ("edit",), 1))
    return [{"id": name, "role": role, "phase": phase, "dependsOn": list(after), "synthesis": name in ("direction", "edit", "quality"),
             "status": "completed", "attempts": attempts} for name, role, phase, after, attempts in rows]


def _shots():
    return [{"id": s["id"], "status": "accepted", "take": s["take"], **({"selectedCandidate": s["candidate"]} if s["candidate"] is not None else {})}
            for s in SHOTS]


def _reviews():
    return [{"shotId": "shot-05", "note": "The little lamp looks cold and weak; it should be the warmest thing on the quay.", "status": "applied",
             "recordedAt": "2026-03-14T10:06:00Z", "appliedAt": "2026-03-14T10:15:30Z", "archivedTake": 1},
            {"shotId": "shot-02", "note": "Could the ferry be nearer? — No: it should look lost.", "status": "dismissed",
             "recordedAt": "2026-03-14T10:07:00Z"}]


def _jobs():
    jobs = []
    for s in SHOTS:
        jobs.append({"id": f"job-keyframe-{s['id']}", "kind": "keyframe", "status": "completed", "shotId": s["id"]})
        jobs.append({"id": f"job-clip-{s['id']}", "kind": "clip", "status": "completed", "shotId": s["id"]})
    jobs.append({"id": "job-clip-shot-05-first-try", "kind": "clip", "status": "failed", "shotId": "shot-05",
                 "error": "The video model ran out of memory; the clip was made again with one candidate less."})
    return jobs + [{"id": f"job-{kind}", "kind": kind, "status": "completed"} for kind in ("score", "mix", "captions", "delivery")]


def _production():
    return {"mode": "full", "takesPerShot": 2, "generateScore": True, "inspectGeneratedMedia": True, "maxParallelAgents": 3, "piTimeoutSeconds": 900,
            "mediaTimeoutSeconds": 1800,
            "models": {"imageMaster": "papercut-master", "imageShot": "papercut-shot", "video": "slow-camera", "visionInspector": "sharp-eye",
                       "speechAsr": "good-ear", "speechTts": "humming-voices", "sfx": "harbour-noises", "music": "music-box"}}

# SPDX-License-Identifier: Apache-2.0
"""The folder of a film: every file that goes in is recorded with its size and digest, in order."""

import hashlib
import json
from datetime import datetime, timedelta

TYPES = {".png": "image/png", ".mp4": "video/mp4", ".m4a": "audio/mp4", ".wav": "audio/wav", ".srt": "application/x-subrip",
         ".vtt": "text/vtt", ".json": "application/json", ".jsonl": "application/x-ndjson", ".html": "text/html"}


def digest(data):
    return "sha256:" + hashlib.sha256(data).hexdigest()


def pretty(document):
    return (json.dumps(document, indent=2, ensure_ascii=False) + "\n").encode("utf-8")


class Clock:
    """A fixed afternoon: each reading is a little later than the one before."""

    def __init__(self):
        self._now = datetime(2026, 3, 14, 9, 30)

    def __call__(self, seconds=130):
        self._now += timedelta(seconds=seconds)
        return self._now.strftime("%Y-%m-%dT%H:%M:%SZ")


class Workspace:
    def __init__(self, folder):
        self.folder, self.clock, self.artifacts = folder, Clock(), []

    def put(self, path, content):
        """Writes a file that is not an artifact. Content is bytes, text, or a document."""
        if not isinstance(content, bytes):
            content = content.encode("utf-8") if isinstance(content, str) else pretty(content)
        target = self.folder / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content)

    def add(self, kind, path, source, content=None):
        """Records an artifact; without content the file is already in place."""
        if content is not None:
            self.put(path, content)
        data = (self.folder / path).read_bytes()
        self.artifacts.append({"bytes": len(data), "contentType": TYPES[path[path.rindex("."):]], "createdAt": self.clock(), "kind": kind,
                               "path": path, "sha256": digest(data), "source": source})
        return self.artifacts[-1]

    def place(self, path):
        """Where a file will be, with its folder made."""
        target = self.folder / path
        target.parent.mkdir(parents=True, exist_ok=True)
        return target

    def of(self, *kinds):
        return [a for a in self.artifacts if a["kind"] in kinds]

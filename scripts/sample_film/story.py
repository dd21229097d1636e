# SPDX-License-Identifier: Apache-2.0
"""What happens in the film: the shots with their words and sounds, in film order."""

TITLE = "A Lamp for the Late Ferry"
FOLDER = "a-lamp-for-the-late-ferry"
PROJECT = "film-lamp-for-the-late-ferry"
IDEA = ("On the foggy island of Brèmes an old lamplighter cannot wake the seventh lamp of the quay — and the last ferry is still "
        "out there. A girl lends him the lamp of her bicycle.")

CAST = [
    {"id": "aurelien", "name": "Aurélien Kerbrat", "visual": "Lamplighter of seventy, stooped, white beard, kind eyes under a peaked cap",
     "wardrobe": "Long navy coat with brass buttons, lighting pole taller than himself", "voice": "Low, unhurried, a smile in it", "seed": 4417},
    {"id": "noor", "name": "Noor", "visual": "Girl of nine, round dark bob, never quite still", "wardrobe": "Flared red coat, scarf that flies behind her",
     "voice": "Bright and quick", "seed": 9021},
    {"id": "captain", "name": "Captain Solveig Bø", "visual": "Heard, never seen", "wardrobe": "None", "voice": "Warm alto through a speaking tube"},
]

LOCATIONS = [
    {"id": "quay-of-seven-lamps", "name": "Quai des Sept Lampes", "visual": "Stone quay with seven gas lamps, village windows behind",
     "ambience": "Small waves against stone, gas hissing softly", "seed": 730},
    {"id": "fog-off-bremes", "name": "The fog off Brèmes", "visual": "Dark water under drifting banks of fog", "ambience": "Swell, a far bell buoy"},
]


def line(speaker, text, start, delivery, vowels, seconds):
    return {"speaker": speaker, "text": text, "startSeconds": start, "delivery": delivery}, vowels, seconds


def effect(prompt, start, seconds, level, seed, sound):
    return {"prompt": prompt, "startSeconds": start, "durationSeconds": seconds, "levelDb": level, "seed": seed}, sound


def shot(purpose, frame, prompt, seconds, seed, characters, location, dialogue, effects, transition, take, candidate=None, chosen=None):
    return {"purpose": purpose, "framePrompt": frame, "prompt": prompt, "durationSeconds": seconds, "seed": seed, "characters": characters,
            "location": location, "dialogue": dialogue, "effects": effects, "transition": transition, "take": take,
            "candidate": candidate, "chosen": chosen}


QUAY, SEA = "quay-of-seven-lamps", "fog-off-bremes"
SHOTS = [
    shot("Establish the quay, the keeper and the one dark lamp", "Dusk, wide: six lit lamps in a row, the seventh dark, an old man with a pole",
         "Slow push towards the dark lamp; the six flames breathe", 3.0, 1101, ["aurelien"], QUAY,
         [line("aurelien", "Six lamps lit — and one sulking.", 0.6, "Fondly, to himself", "iaieoui", 2.0)],
         [effect("Small waves against a stone quay", 0.0, 1.75, -18.0, 501, "waves")], "cut", 1, 0, 1101),
    shot("Show who needs the light", "A small ferry, warm windows, alone between two banks of fog",
         "The ferry drifts left; fog slides past in front of it", 2.5, 1102, ["captain"], SEA,
         [line("captain", "No seventh lamp. Dead slow, everyone.", 1.0, "Calm, through the speaking tube", "oeeaeoeio", 1.4)],
         [effect("A ferry’s foghorn, one long note", 0.0, 1.5, -9.0, 502, "foghorn")], "cut", 1, 1, 2102),
    shot("The lamp refuses", "Close on cold lamp glass, a tiny flame at the end of a pole",
         "The flame licks at the glass, flickers, finds nothing", 2.0625, 1103, ["aurelien"], QUAY,
         [line("aurelien", "Come on, old friend.", 0.4, "Coaxing, almost a whisper", "uooe", 1.2)],
         [effect("Gas that hisses and will not catch", 0.25, 1.5, -16.0, 503, "hiss")], "match cut on the spark", 1),
    shot("A second light enters the story", "A bicycle in profile, its front lamp just switched on",
         "The beam opens to the right; a breath of fog in it", 1.0625, 1104, [], QUAY, [],
         [effect("A bicycle bell, two strokes", 0.1, 0.9, -12.0, 504, "bell")], "cut", 1, 0, 1104),
    shot("The offer", "An old man and a girl under the dark lamp; she holds up a small bright light",
         "He bends a little; her scarf lifts; light on both faces", 3.25, 1105, ["aurelien", "noor"], QUAY,
         [line("noor", "Borrow mine?", 0.4, "As if it were nothing", "ooai", 0.8),
          line("aurelien", "“Borrow”, she says. You’ll light the whole sea.", 1.4, "Moved, hiding it", "ooieiuaieoei", 1.7)],
         [], "cut", 2, 1, 3105),
    shot("The light goes out and is answered", "The seventh lamp burning, a beam through fog, the ferry turning in",
         "The lamp swells, the beam settles on the ferry", 2.5, 1106, ["aurelien", "noor"], QUAY, [],
         [effect("Foghorn far off, two glad notes", 0.9, 1.4, -13.0, 506, "answer"),
          effect("Gas catching with a soft thump", 0.0, 0.6, -10.0, 507, "catch")], "cut", 1, 0, 1106),
    shot("Home", "From the water: seven lamps, seven reflections, the ferry alongside",
         "Slow push in; reflections tremble; mist thins", 3.625, 1107, ["aurelien", "noor"], QUAY,
         [line("aurelien", "Seven.", 0.5, "Counting, content", "ee", 0.7), line("noor", "Seven!", 1.5, "Delighted", "ee", 0.6)],
         [effect("Small waves, slower now", 0.0, 2.0, -20.0, 508, "waves")], "fade to black", 1, 0, 1107),
]
for _number, _shot in enumerate(SHOTS, 1):
    _shot["id"] = f"shot-{_number:02d}"

TOTAL = sum(s["durationSeconds"] for s in SHOTS)


def starts():
    """Each shot with its start on the film's timeline."""
    now = 0.0
    for s in SHOTS:
        yield s, now
        now += s["durationSeconds"]


def spoken():
    """Each line of dialogue: shot, number within it, start on the timeline, record, vowels, length."""
    for s, begin in starts():
        for number, (record, vowels, seconds) in enumerate(s["dialogue"], 1):
            yield s, number, begin + record["startSeconds"], record, vowels, seconds


def heard():
    """Each sound effect: shot, number within it, start on the timeline, record, sound."""
    for s, begin in starts():
        for number, (record, sound) in enumerate(s["effects"], 1):
            yield s, number, begin + record["startSeconds"], record, sound

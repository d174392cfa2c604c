"""What the binding reads is what the command-line tool shows, for every sample and exiftool's packets."""

import os
from pathlib import Path

import pytest

import keltemporalxmp as kx
from conftest import EXAMPLE_FILES, EXAMPLES, tool_json


def unspecified_or(time):
    return None if time.get("unspecified") else time["ticks"]


def as_tool_shows(marker):
    """A marker in the shape of the tool's JSON, times in ticks."""
    return {
        "id": marker.id,
        "type": marker.type,
        "name": marker.name,
        "comment": marker.comment,
        "location": marker.location,
        "target": marker.target,
        "cuePointType": marker.cue_point_type,
        "speaker": marker.speaker,
        "probability": marker.probability,
        "start": marker.start,
        "duration": marker.duration,
        "cuePoints": [{"key": k, "value": v} for k, v in marker.cue_points],
    }


def without_fresh_ids(markers):
    """A marker stored without an ID gets a fresh one at every read: compare the rest."""
    return [{k: v for k, v in m.items() if k != "id"} for m in markers]


def tool_markers(path):
    shown = []
    for m in tool_json("markers", path)["markers"]:
        m = dict(m, start=unspecified_or(m["start"]), duration=unspecified_or(m["duration"]))
        m.pop("rate", None)
        shown.append(m)
    return shown


def sources(path):
    """The same document as every kind of source the functions take."""
    data = Path(path).read_bytes()
    return [str(path), Path(path), os.fsencode(path).decode(), data, bytearray(data), memoryview(data)]


@pytest.mark.parametrize("name", EXAMPLE_FILES)
def test_markers_match_the_tool(name):
    path = str(EXAMPLES / name)
    expected = tool_markers(path)
    stable_ids = [m.id for m in kx.read_markers(path)] == [m.id for m in kx.read_markers(path)]
    for source in sources(path):
        shown = [as_tool_shows(m) for m in kx.read_markers(source)]
        assert shown == expected if stable_ids else without_fresh_ids(shown) == without_fresh_ids(expected)


def test_frame_rate_is_the_tracks(exiftool_packets):
    assert {m.frame_rate for m in kx.read_markers(EXAMPLES / "interview.xmp")} == {(30000, 1001)}
    early, intro = kx.read_markers(exiftool_packets["track"])
    assert (early.name, early.type, early.start, early.frame_rate) == ("Early", "Note", 10 * 8475667200, (30000, 1001))
    assert (intro.type, intro.comment, intro.duration, intro.cue_points) == (
        "Chapter",
        "Hello",
        30 * 8475667200,
        [("speaker", "Ann")],
    )
    shown = without_fresh_ids(as_tool_shows(m) for m in (early, intro))
    assert shown == without_fresh_ids(tool_markers(exiftool_packets["track"]))


COLLECTIONS = [
    ("composition/sequence.xmp", {}, []),
    ("composition/sequence.xmp", {"mask": 0x0C}, ["--mask", "0C"]),
    ("composition/sequence.xmp", {"mask": 0x7F}, ["--mask", "7F"]),
    ("composition/sequence.xmp", {"start": 8 * kx.TICKS_PER_SECOND, "duration": 2 * kx.TICKS_PER_SECOND},
     ["--start", "8s", "--duration", "2s"]),
    ("composition/scene.xmp", {"mask": 0x2F}, ["--mask", "2F"]),
    ("interview.xmp", {}, []),
]


@pytest.mark.parametrize("name,arguments,options", COLLECTIONS)
def test_collect_matches_the_tool(name, arguments, options):
    path = EXAMPLES / name
    shown = [
        {
            "form": c.form,
            "type": c.type,
            "name": c.name,
            "track": c.track,
            "containingInstanceID": c.instance_id,
            "partMapping": c.part_mapping,
            "start": c.start,
            "duration": c.duration,
            "clippedStart": c.clipped_start,
            "clippedDuration": c.clipped_duration,
        }
        for c in kx.collect(path.read_bytes(), **arguments)
    ]
    expected = [
        dict(c, **{k: unspecified_or(c[k]) for k in ("start", "duration", "clippedStart", "clippedDuration")})
        for c in tool_json("collect", str(path), *options)["collected"]
    ]
    assert shown == expected


def ingredient_rows(source):
    return [
        {
            "instanceID": i.instance_id,
            "fromPart": i.from_part,
            "toPart": i.to_part,
            "partMapping": i.part_mapping,
            "maskMarkers": i.mask_markers,
            "filePath": i.file_path,
        }
        for i in kx.ingredients(source)
    ]


def pantry_rows(source):
    return [
        {"instanceID": p.instance_id, "documentID": p.document_id, "markers": p.markers, "ingredients": p.ingredients}
        for p in kx.pantry(source)
    ]


@pytest.mark.parametrize("name", ["composition/sequence.xmp", "composition/scene.xmp", "interview.xmp"])
def test_ingredients_and_pantry_match_the_tool(name):
    path = str(EXAMPLES / name)
    assert ingredient_rows(path) == tool_json("ingredients", path)["ingredients"]
    expected = tool_json("pantry", path)["pantry"]
    assert pantry_rows(Path(path)) == [{k: v for k, v in p.items() if k != "item"} for p in expected]


def test_composition_written_by_exiftool(exiftool_packets):
    path = exiftool_packets["composed"]
    assert ingredient_rows(path) == tool_json("ingredients", path)["ingredients"]
    assert [i.instance_id for i in kx.ingredients(path)] == ["xmp.iid:masked", "xmp.iid:reversed"]
    assert pantry_rows(path) == [{"instanceID": "xmp.iid:reversed", "documentID": "", "markers": 1, "ingredients": 0}]
    # The reversed source's marker at 10f..15f lands at 140f, running backwards.
    (clap,) = [c for c in kx.collect(path) if c.name == "Clap"]
    frame = kx.TICKS_PER_SECOND // 25
    assert (clap.form, clap.part_mapping, clap.start, clap.duration) == (
        "report-back",
        "linear-reversed",
        140 * frame,
        -5 * frame,
    )


TIMES = [
    # text, rate, ticks
    ("90f25", (25, 1), 914457600000),
    ("90f25", None, 914457600000),
    ("90", (25, 1), 914457600000),
    ("1800f30000s1001", None, 1800 * 8475667200),
    ("254016000000", None, kx.TICKS_PER_SECOND),
    ("-25f25", None, -kx.TICKS_PER_SECOND),
    ("maximum", None, None),
]


@pytest.mark.parametrize("text,rate,ticks", TIMES)
def test_time_strings(text, rate, ticks):
    assert kx.to_ticks(text, rate=rate) == ticks


@pytest.mark.parametrize(
    "ticks,rate,text",
    [
        (914457600000, (25, 1), "90f25"),
        (1800 * 8475667200, (30000, 1001), "1800f30000s1001"),
        (kx.TICKS_PER_SECOND, None, "254016000000f254016000000"),
        (None, (25, 1), "maximum"),
        (-(2**63), (25, 1), kx.from_ticks(-(2**63), rate=(25, 1))),
    ],
)
def test_ticks_to_text_reads_back(ticks, rate, text):
    assert kx.from_ticks(ticks, rate=rate) == text
    if ticks is not None and ticks % (kx.TICKS_PER_SECOND * (rate or (1, 1))[1] // (rate or (1, 1))[0]) == 0:
        assert kx.to_ticks(text) == ticks


def test_module_constants():
    assert kx.TICKS_PER_SECOND == 254016000000
    assert kx.__version__.count(".") == 2
    for name in kx.__all__:
        assert getattr(kx, name) is not None
        if callable(getattr(kx, name)):
            assert getattr(kx, name).__doc__

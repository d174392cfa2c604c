import subprocess

import pytest

import keltemporalxmp as kx
from conftest import EXAMPLES, TOOL

INTERVIEW = EXAMPLES / "interview.xmp"
SECOND = kx.TICKS_PER_SECOND

# format: (whether it keeps types, how far apart a time may come back in ticks;
# None: the frame at the markers' rate).
ROUND_TRIPS = {
    "ffmetadata": (False, SECOND // 1000),
    "webvtt": (False, SECOND // 1000),
    "srt": (False, SECOND // 1000),
    "edl": (False, None),
    "csv": (True, SECOND // 1000),
    "tsv": (True, SECOND // 1000),
    "audacity": (False, SECOND // 1_000_000),
    "otio": (True, 0),
    "json": (True, 0),
}


@pytest.fixture(scope="module")
def markers():
    return kx.read_markers(INTERVIEW)


@pytest.mark.parametrize("format", sorted(ROUND_TRIPS))
def test_round_trip_keeps_names_types_and_times(markers, format):
    keeps_types, tolerance = ROUND_TRIPS[format]
    rate = markers[0].frame_rate
    if tolerance is None:
        tolerance = SECOND * rate[1] // rate[0]
    text = kx.export(markers, format)
    assert isinstance(text, str)
    back = kx.import_markers(text, format, frame_rate=rate)
    listed = markers if format in ("otio", "json") else sorted(markers, key=lambda m: m.start)
    assert [m.name for m in back] == [m.name for m in listed]
    if keeps_types:
        assert [m.type for m in back] == [m.type for m in listed]
    for read, written in zip(back, listed):
        assert abs(read.start - written.start) <= tolerance, read
        assert abs(read.duration - written.duration) <= tolerance, read


def test_json_and_otio_keep_every_field_exactly():
    marker = kx.Marker(
        name="Ünïcode, \"quoted\"",
        type="Cue",
        start=SECOND * 7 + 1,
        duration=3,
        comment="line one\nline two",
        cue_points=[("speaker", "Ann"), ("mood", "calm")],
        frame_rate=(24000, 1001),
    )
    for format in ("json", "otio"):
        (back,) = kx.import_markers(kx.export([marker], format), format)
        assert (back.name, back.type, back.start, back.duration, back.comment) == (
            marker.name,
            marker.type,
            marker.start,
            marker.duration,
            marker.comment,
        ), format
        assert back.cue_points == marker.cue_points, format
    (back,) = kx.import_markers(kx.export([marker], "json"), "json")
    assert back.id == marker.id
    assert back.frame_rate == (24000, 1001)


def test_what_import_gives_exports_again():
    # A control character no XMP packet can hold is still text a format can.
    (marker,) = kx.import_markers('{"markers": [{"name": "a\\u0001b", "start": {"ticks": 5}}]}', "json")
    assert marker.name == "a\x01b"
    (back,) = kx.import_markers(kx.export([marker], "json"), "json")
    assert (back.name, back.start) == ("a\x01b", 5)


def test_a_track_in_ticks_lays_frames_out_at_the_default_rate():
    ticks = kx.Marker(name="x", start=SECOND, duration=SECOND, frame_rate=(kx.TICKS_PER_SECOND, 1))
    unknown = kx.Marker(name="x", start=SECOND, duration=SECOND)
    assert kx.export([ticks], "edl") == kx.export([unknown], "edl")


def test_youtube_keeps_names_and_whole_second_starts(markers):
    with pytest.raises(kx.XMPError, match=r"marker 1 \"Welcome\"") as caught:
        kx.export(markers, "youtube")
    assert caught.value.id == 5
    back = kx.import_markers(kx.export(markers, "youtube", force=True), "youtube")
    listed = sorted(markers, key=lambda m: m.start)
    assert [m.name for m in back] == [m.name for m in listed]
    assert [m.start // SECOND for m in back] == [m.start // SECOND for m in listed]


def test_options_reach_the_formats(markers):
    assert " 01:00:00;00 " in kx.export(markers, "edl", timecode_start="01:00:00:00")
    assert "TITLE: Talk" in kx.export(markers, "edl", title="Talk")
    at_25 = kx.export(markers, "edl", rate=(25, 1))
    assert kx.import_markers(at_25, "edl", frame_rate=(25, 1))[0].frame_rate == (25, 1)
    typed = kx.import_markers(kx.export(markers, "webvtt"), "webvtt", type="Subclip")
    assert {m.type for m in typed} == {"Subclip"}


def test_export_equals_the_tools_json():
    if not TOOL:
        pytest.skip("KELTXMP_TOOL names the built command-line tool")
    done = subprocess.run(
        [TOOL, "export", str(INTERVIEW), "--format", "json"], capture_output=True, text=True, check=True
    )
    assert kx.export(kx.read_markers(INTERVIEW), "json") == done.stdout


MALFORMED = [
    ("webvtt", "WEBVTT\n\n00:00:01.000 --> 00:00:0x.000\nHi\n", "line 3 column 18"),
    ("srt", "1\n00:00:01,000 -> 00:00:02,000\nHi\n", "line 2 column 14"),
    ("edl", "TITLE: x\n001  AX V C 00:00:00:00\n", "line 2 column 24"),
    ("audacity", "1.0\tx\tname\n", "line 1 column 5"),
    ("json", '{"markers": [', "line 1 column 14"),
]


@pytest.mark.parametrize("format, text, place", MALFORMED)
def test_malformed_text_is_an_xmp_error_naming_the_place(format, text, place):
    with pytest.raises(kx.XMPError) as caught:
        kx.import_markers(text, format)
    assert caught.value.id == 5
    assert caught.value.message.startswith(format + " " + place + ": expected ")


BAD_ARGUMENTS = [
    (ValueError, lambda ms: kx.export(ms, "mp4")),
    (ValueError, lambda ms: kx.export(ms, "WebVTT ")),
    (ValueError, lambda ms: kx.import_markers("", "docx")),
    (ValueError, lambda ms: kx.export(ms, "edl", rate=(0, 1))),
    (ValueError, lambda ms: kx.export(ms, "edl", timecode_start="noon")),
    (ValueError, lambda ms: kx.export(ms, "edl", rate=(10**15, 1))),
    (ValueError, lambda ms: kx.import_markers("WEBVTT\n", "webvtt", frame_rate=(25, -1))),
    (ValueError, lambda ms: kx.import_markers("a\0b", "json")),
    (TypeError, lambda ms: kx.export(ms, b"json")),
    (TypeError, lambda ms: kx.export("not markers", "json")),
    (TypeError, lambda ms: kx.export([*ms, "Intro"], "json")),
    (TypeError, lambda ms: kx.export(ms, "edl", rate=25)),
    (TypeError, lambda ms: kx.export(ms, "edl", timecode_start=0)),
    (TypeError, lambda ms: kx.export(ms, "json", "extra positional")),
    (TypeError, lambda ms: kx.import_markers(b"WEBVTT\n", "webvtt")),
    (TypeError, lambda ms: kx.import_markers("WEBVTT\n", "webvtt", frame_rate="25")),
    (TypeError, lambda ms: kx.import_markers("WEBVTT\n", "webvtt", type=3)),
]


@pytest.mark.parametrize("error, call", BAD_ARGUMENTS)
def test_bad_arguments_raise_their_python_error(markers, error, call):
    with pytest.raises(error):
        call(markers)


def test_empty_lists_and_a_large_one_come_back():
    assert kx.import_markers(kx.export([], "json"), "json") == []
    many = [kx.Marker(name=f"m{i}", type="Cue", start=i * SECOND, duration=SECOND) for i in range(5000)]
    back = kx.import_markers(kx.export(many, "csv"), "csv")
    assert [(m.name, m.start) for m in back] == [(m.name, m.start) for m in many]

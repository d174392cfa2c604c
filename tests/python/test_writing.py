"""Markers written then read back, the frame-rate rules of writing, and what a failed write leaves."""

import wave

import pytest

import keltemporalxmp as kx
from conftest import EXAMPLES

SECOND = kx.TICKS_PER_SECOND
FRAME_25 = SECOND // 25


def fields(marker):
    return (
        marker.id,
        marker.type,
        marker.name,
        marker.comment,
        marker.location,
        marker.target,
        marker.speaker,
        marker.probability,
        marker.cue_point_type,
        marker.start,
        marker.duration,
        marker.cue_points,
    )


def by_type_then_start(markers):
    return sorted(markers, key=lambda m: (m.type, m.start if m.start is not None else 2**63))


def silent_wav(path):
    with wave.open(str(path), "wb") as audio:
        audio.setnchannels(1)
        audio.setsampwidth(2)
        audio.setframerate(8000)
        audio.writeframes(b"\0\0" * 800)
    return path


EVERYTHING = kx.Marker(
    name="Ünïcode ✓ 日本語 \t\n",
    type="Note",
    start=90 * 1001 * SECOND // 30000,
    duration=None,
    comment="<&\"'>",
    location="https://example.org/?a=1&b=2",
    target="_blank",
    speaker="Ann",
    probability="0.9",
    cue_point_type="Event",
    cue_points=[("b", "2"), ("a", ""), ("a", "again")],
)


def test_every_field_round_trips_through_a_sidecar(interview):
    markers = kx.read_markers(interview) + [EVERYTHING]
    assert kx.write_markers(interview, markers) == (30000, 1001)
    again = kx.read_markers(interview)
    assert [fields(m) for m in again] == [fields(m) for m in by_type_then_start(markers)]
    assert {m.frame_rate for m in again} == {(30000, 1001)}


def test_writing_what_was_read_changes_no_marker(interview):
    before = kx.read_markers(interview)
    kx.write_markers(interview, before)
    assert kx.read_markers(interview) == before


RATES = [
    # markers' times, frame_rate given, rate written (None: refused)
    ([0, 40 * FRAME_25], (25, 1), (25, 1)),
    ([0, 40 * FRAME_25], None, (254016000000, 1)),  # no marker says its rate: ticks
    ([0, FRAME_25 // 2], (25, 1), None),  # half a frame at 25
    ([0, 1001 * SECOND // 30000], (30000, 1001), (30000, 1001)),
    ([7], None, (254016000000, 1)),
]


@pytest.mark.parametrize("times,given,written", RATES)
def test_frame_rate_rules(interview, times, given, written):
    before = interview.read_bytes()
    markers = [kx.Marker(name=str(t), type="Cue", start=t) for t in times]
    if written is None:
        with pytest.raises(ValueError, match="marker 2 is not on a whole frame"):
            kx.write_markers(interview, markers, frame_rate=given)
        assert interview.read_bytes() == before
        return
    assert kx.write_markers(interview, markers, frame_rate=given) == written
    assert [m.start for m in kx.read_markers(interview)] == times
    assert {m.frame_rate for m in kx.read_markers(interview)} == {written}


def test_the_rate_markers_were_read_at_is_kept_when_it_holds_them(interview):
    markers = kx.read_markers(interview)
    assert kx.write_markers(interview, markers + [kx.Marker(type="Cue", start=1001 * SECOND // 30000)]) == (30000, 1001)
    # One tick off every frame: the tracks fall back to ticks.
    assert kx.write_markers(interview, markers + [kx.Marker(type="Cue", start=1)]) == (254016000000, 1)
    assert [m.start for m in kx.read_markers(interview) if m.type == "Cue"] == [1]


def test_one_track_per_type_in_type_order(interview):
    markers = [kx.Marker(type=t, name=n, start=s) for t, n, s in [("B", "b1", 2), ("A", "a", 5), ("B", "b0", 1)]]
    kx.write_markers(interview, markers)
    assert [(m.type, m.name) for m in kx.read_markers(interview)] == [("A", "a"), ("B", "b0"), ("B", "b1")]


def test_an_empty_list_removes_every_track(interview):
    kx.write_markers(interview, [])
    assert kx.read_markers(interview) == []


def test_output_leaves_the_source_as_it_was(interview, tmp_path):
    before = interview.read_bytes()
    kx.write_markers(interview, [EVERYTHING], output=tmp_path / "out.xmp")
    assert interview.read_bytes() == before
    assert [fields(m) for m in kx.read_markers(tmp_path / "out.xmp")] == [fields(EVERYTHING)]


def test_media_file_in_place_and_as_a_copy(tmp_path):
    audio = silent_wav(tmp_path / "a.wav")
    before = audio.read_bytes()
    kx.write_markers(audio, [EVERYTHING], output=tmp_path / "copy.wav")
    assert audio.read_bytes() == before
    assert [fields(m) for m in kx.read_markers(tmp_path / "copy.wav")] == [fields(EVERYTHING)]
    kx.write_markers(audio, [EVERYTHING, kx.Marker(type="Cue", start=SECOND)], frame_rate=(30000, 1))
    assert [(m.name, m.frame_rate) for m in kx.read_markers(audio)] == [
        ("", (30000, 1)),
        (EVERYTHING.name, (30000, 1)),
    ]
    with wave.open(str(audio)) as reread:
        assert reread.getnframes() == 800


def test_a_planted_link_beside_the_output_is_left_alone(tmp_path):
    audio = silent_wav(tmp_path / "a.wav")
    victim = tmp_path / "victim.txt"
    victim.write_bytes(b"keep me")
    # Where a temporary copy with a predictable name would have gone.
    import os

    planted = tmp_path / f".copy.keltemporalxmp-{os.getpid()}.wav"
    planted.symlink_to(victim)
    kx.write_markers(audio, [EVERYTHING], output=tmp_path / "copy.wav")
    assert victim.read_bytes() == b"keep me" and planted.is_symlink()
    assert [fields(m) for m in kx.read_markers(tmp_path / "copy.wav")] == [fields(EVERYTHING)]


def test_marker_objects():
    marker = kx.Marker(name="Intro", type="Chapter", start=0, duration=SECOND, comment="", cue_points=[("key", "value")])
    assert (marker.name, marker.type, marker.start, marker.duration, marker.cue_points) == (
        "Intro",
        "Chapter",
        0,
        SECOND,
        [("key", "value")],
    )
    assert marker.frame_rate is None and marker.id != kx.Marker().id
    assert kx.Marker(id="fixed") == kx.Marker(id="fixed") != kx.Marker(id="fixed", name="x")
    marker.start = None
    marker.cue_points = []
    assert (marker.start, marker.cue_points) == (None, [])
    import copy
    import pickle

    assert pickle.loads(pickle.dumps(EVERYTHING)) == EVERYTHING == copy.deepcopy(EVERYTHING)
    assert "Ünïcode" in repr(EVERYTHING)

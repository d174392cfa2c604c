"""Every way a call can fail maps to its exception, and a failed call changes no file."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

import pytest

import keltemporalxmp as kx
from conftest import EXAMPLES

INTERVIEW = str(EXAMPLES / "interview.xmp")
PACKET = Path(INTERVIEW).read_bytes()


def nested_packet(depth):
    return (
        b'<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">'
        b'<rdf:Description rdf:about="" xmlns:a="urn:a">'
        + b"<a:p><rdf:Description>" * depth
        + b"</rdf:Description></a:p>" * depth
        + b"</rdf:Description></rdf:RDF></x:xmpmeta>"
    )


ARGUMENT_ERRORS = [
    # call, exception, message
    (lambda: kx.read_markers(None), TypeError, "source must be a path"),
    (lambda: kx.read_markers(3), TypeError, "not int"),
    (lambda: kx.read_markers(["a"]), TypeError, "source"),
    (lambda: kx.read_markers("a\0b"), ValueError, "embedded null"),
    (lambda: kx.read_markers(memoryview(PACKET)[::-1]), TypeError, "contiguous"),
    (lambda: kx.read_markers(""), ValueError, "empty"),
    (lambda: kx.collect(PACKET, mask=0x100), ValueError, "mask"),
    (lambda: kx.collect(PACKET, mask=-1), ValueError, "mask"),
    (lambda: kx.collect(PACKET, mask="0F"), TypeError, "mask"),
    (lambda: kx.collect(PACKET, start=2**64), ValueError, "64 bits"),
    (lambda: kx.collect(PACKET, duration=1.5), TypeError, "duration"),
    (lambda: kx.to_ticks(b"90f25"), TypeError, "text must be str"),
    (lambda: kx.to_ticks("90f25\0"), ValueError, "null"),
    (lambda: kx.to_ticks("x\ud800"), UnicodeEncodeError, "surrogates"),
    (lambda: kx.to_ticks("9223372036854775806f1"), ValueError, "too far from zero"),
    (lambda: kx.to_ticks("1", rate=(0, 1)), ValueError, "positive"),
    (lambda: kx.to_ticks("1", rate=(25,)), ValueError, "two ints"),
    (lambda: kx.to_ticks("1", rate="f25"), TypeError, "tuple"),
    (lambda: kx.from_ticks(2**63), ValueError, "64 bits"),
    (lambda: kx.from_ticks("1"), TypeError, "ticks must be an int"),
    (lambda: kx.from_ticks(1, rate=(25, -1)), ValueError, "positive"),
    (lambda: kx.from_ticks(1, rate=(2**70, 1)), ValueError, "64 bits"),
    (lambda: kx.Marker(name=None), TypeError, "name must be str"),
    (lambda: kx.Marker(start="0"), TypeError, "start"),
    (lambda: kx.Marker(start=-(2**63) - 1), ValueError, "64 bits"),
    (lambda: kx.Marker(cue_points=[("k",)]), ValueError, "pair"),
    (lambda: kx.Marker(cue_points=[("k", 1)]), TypeError, "cue point value"),
    (lambda: kx.Marker(cue_points="kv"), TypeError, "cue_points"),
    (lambda: kx.Marker(frame_rate=(25, 0)), ValueError, "positive"),
    (lambda: kx.Marker(comment="a\0b"), ValueError, "null"),
    (lambda: kx.Marker(nme="typo"), TypeError, "nme"),
    (lambda: kx.Marker("positional"), TypeError, ""),
    (lambda: kx.write_markers(PACKET, []), TypeError, "path must be a path"),
    (lambda: kx.write_markers(INTERVIEW, [1]), TypeError, r"markers\[0\]"),
    (lambda: kx.write_markers(INTERVIEW, None), TypeError, "markers"),
    (lambda: kx.write_markers(INTERVIEW, [], frame_rate=(0, 1)), ValueError, "frame_rate"),
    (lambda: kx.write_markers(INTERVIEW, [], output=3), TypeError, "output"),
]


@pytest.mark.parametrize("call,exception,message", ARGUMENT_ERRORS)
def test_bad_arguments(call, exception, message):
    with pytest.raises(exception, match=message):
        call()


XMP_ERRORS = {
    # source, toolkit error id
    "truncated": (b"<x:xmpmeta", 201),
    "NULs": (b"\0\0\0", 201),
    "invalid UTF-8": (b"\xff\xfe<x:xmpmeta>\xc3\x28</x:xmpmeta>", 201),
}


@pytest.mark.parametrize("source,error_id", XMP_ERRORS.values(), ids=XMP_ERRORS.keys())
@pytest.mark.parametrize("function", [kx.read_markers, kx.collect, kx.ingredients, kx.pantry])
def test_bad_xmp(function, source, error_id):
    with pytest.raises(kx.XMPError) as raised:
        function(source)
    assert raised.value.id == error_id
    assert raised.value.message == str(raised.value) != ""


@pytest.mark.parametrize(
    "packet", [PACKET.replace(b"<rdf:RDF", b"<rdf:RDF\0", 1), nested_packet(5000)], ids=["NUL inside", "deep"]
)
def test_odd_packets_read_without_crashing(packet):
    try:
        kx.read_markers(packet)
    except kx.XMPError:
        pass


# In a process of its own: a parser that recursed per level would take the interpreter with it.
def test_a_very_deep_packet_is_refused():
    check = (
        "import sys, keltemporalxmp as kx\ntry:\n    kx.read_markers(sys.stdin.buffer.read())\n"
        "except kx.XMPError as error:\n    print(error.id, error.message)"
    )
    done = subprocess.run([sys.executable, "-c", check], input=nested_packet(200000), capture_output=True, text=False)
    assert done.returncode == 0
    assert b"kMaxNestingDepth" in done.stdout


def test_xmp_error_in_a_file_names_the_file(tmp_path):
    broken = tmp_path / "broken.xmp"
    broken.write_bytes(b"<x:xmpmeta")
    with pytest.raises(kx.XMPError, match="broken.xmp"):
        kx.read_markers(broken)
    assert issubclass(kx.XMPError, Exception)


FILE_ERRORS = [
    # make the path in tmp_path, exception
    (lambda tmp: tmp / "missing.xmp", FileNotFoundError),
    (lambda tmp: tmp / "no" / "such" / "folder.mov", FileNotFoundError),
    (lambda tmp: tmp, IsADirectoryError),
    (lambda tmp: (os.mkfifo(tmp / "fifo.xmp"), tmp / "fifo.xmp")[1], OSError),
    (lambda tmp: Path("/dev/zero"), OSError),
]


@pytest.mark.parametrize("make,exception", FILE_ERRORS)
def test_files_that_cannot_be_read(tmp_path, make, exception):
    path = make(tmp_path)
    for function in (kx.read_markers, kx.collect, kx.ingredients, kx.pantry):
        with pytest.raises(exception) as raised:
            function(path)
        assert raised.value.filename == str(path)
    with pytest.raises(exception):
        kx.write_markers(path, [])


def test_a_file_without_xmp_has_nothing(tmp_path):
    empty = tmp_path / "empty.mov"
    empty.write_bytes(b"")
    text = tmp_path / "notes.xmp"
    text.write_bytes(b"")
    for path in (empty, text):
        assert (kx.read_markers(path), kx.ingredients(path), kx.pantry(path)) == ([], [], [])
        assert [c.name for c in kx.collect(path)] == ["Base Document"]


def test_a_failed_write_leaves_every_file(interview, tmp_path):
    before = interview.read_bytes()
    with pytest.raises(ValueError, match="control character"):
        kx.write_markers(interview, [kx.Marker(), kx.Marker(name="bell\a")])
    with pytest.raises(ValueError, match="only be written to a sidecar"):
        kx.write_markers(interview, [], output=tmp_path / "out.mov")
    with pytest.raises(FileNotFoundError):
        kx.write_markers(interview, [], output=tmp_path / "missing" / "out.xmp")
    assert interview.read_bytes() == before
    assert sorted(p.name for p in tmp_path.iterdir()) == ["interview.xmp"]


PERMISSIONS = """
import os, sys
import keltemporalxmp as kx
locked, folder, readable = sys.argv[1:]
for call in (lambda: kx.read_markers(locked), lambda: kx.write_markers(readable, []),
             lambda: kx.write_markers(readable, [], output=os.path.join(folder, "out.xmp"))):
    try:
        call()
        print("no error")
    except PermissionError as error:
        print("PermissionError", error.filename)
"""


def test_permissions():
    # A folder an unprivileged user can reach.
    with tempfile.TemporaryDirectory() as top:
        os.chmod(top, 0o755)
        check_permissions(Path(top))


def check_permissions(tmp_path):
    locked = tmp_path / "locked.xmp"
    locked.write_bytes(PACKET)
    locked.chmod(0)
    folder = tmp_path / "folder"
    folder.mkdir()
    readable = folder / "readable.xmp"
    readable.write_bytes(PACKET)
    readable.chmod(0o444)
    folder.chmod(0o555)
    # root may read anything: check as an unprivileged user then.
    as_user = (lambda: (os.setgid(65534), os.setuid(65534))) if os.geteuid() == 0 else None
    try:
        done = subprocess.run(
            [sys.executable, "-c", PERMISSIONS, str(locked), str(folder), str(readable)],
            capture_output=True,
            text=True,
            preexec_fn=as_user,
            cwd="/",
        )
    finally:
        folder.chmod(0o755)
    assert done.returncode == 0, done.stderr
    assert done.stdout.splitlines() == [
        f"PermissionError {locked}",
        f"PermissionError {readable}",
        f"PermissionError {folder}",
    ]
    assert readable.read_bytes() == PACKET

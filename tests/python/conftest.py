import json
import os
import subprocess
from pathlib import Path

import pytest

SOURCE_DIR = Path(os.environ.get("KELTXMP_SOURCE_DIR", Path(__file__).resolve().parents[2]))
EXAMPLES = SOURCE_DIR / "examples"
TOOL = os.environ.get("KELTXMP_TOOL", "")

# Every sample document the repository ships.
EXAMPLE_FILES = sorted(str(p.relative_to(EXAMPLES)) for p in EXAMPLES.rglob("*.xmp"))


def tool_json(*args):
    """What the command-line tool prints with --json, for one file."""
    if not TOOL:
        pytest.skip("KELTXMP_TOOL names the built command-line tool")
    done = subprocess.run([TOOL, *args, "--json"], capture_output=True, text=True, check=True)
    return json.loads(done.stdout)["files"][0]


def exiftool(output, *assignments):
    subprocess.run(["exiftool", "-q", "-o", str(output), *assignments], check=True, capture_output=True)
    return output


@pytest.fixture(scope="session")
def exiftool_packets(tmp_path_factory):
    """Sidecars written by an independent XMP writer: one with a track, one composed."""
    folder = tmp_path_factory.mktemp("exiftool")
    track = exiftool(
        folder / "track.xmp",
        "-XMP-xmpDM:Tracks=[{TrackName=Chapters,TrackType=Chapter,FrameRate=f30000s1001,Markers=["
        "{StartTime=1800,Duration=30,Name=Intro,Comment=Hello,CuePointParams=[{Key=speaker,Value=Ann}]},"
        "{StartTime=10,Name=Early,Type=Note}]}]",
    )
    composed = exiftool(
        folder / "composed.xmp",
        "-XMP-xmpMM:InstanceID=xmp.iid:doc",
        "-XMP-xmpMM:Ingredients=["
        "{InstanceID=xmp.iid:reversed,FilePath=a.mov,FromPart=time:0d100f25,ToPart=time:50f25d100f25,"
        "PartMapping=linear-reversed,MaskMarkers=None},"
        "{InstanceID=xmp.iid:masked,FilePath=b.mov,FromPart=time:10f25d20f25,ToPart=time:0d20f25,MaskMarkers=All}]",
        "-XMP-xmpMM:Pantry=[{InstanceID=xmp.iid:reversed,"
        "Tracks=[{TrackName=Cues,FrameRate=f25,Markers=[{StartTime=10,Duration=5,Name=Clap}]}]}]",
    )
    return {"track": str(track), "composed": str(composed)}


@pytest.fixture
def interview(tmp_path):
    """A writable copy of the interview sidecar."""
    copy = tmp_path / "interview.xmp"
    copy.write_bytes((EXAMPLES / "interview.xmp").read_bytes())
    return copy

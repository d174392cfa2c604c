import os
from typing import Iterable, Literal, Optional, Union

__version__: str
TICKS_PER_SECOND: int

Source = Union[str, os.PathLike[str], os.PathLike[bytes], bytes, bytearray, memoryview]
Path = Union[str, os.PathLike[str], os.PathLike[bytes]]
Rate = tuple[int, int]
Format = Literal["youtube", "ffmetadata", "webvtt", "srt", "edl", "csv", "tsv", "audacity", "otio", "json"]

class XMPError(Exception):
    id: int
    message: str

class Marker:
    type: str
    name: str
    comment: str
    location: str
    target: str
    speaker: str
    probability: str
    cue_point_type: str
    id: str
    start: Optional[int]
    duration: Optional[int]
    frame_rate: Optional[Rate]
    cue_points: list[tuple[str, str]]
    def __init__(
        self,
        *,
        name: str = "",
        type: str = "",
        start: Optional[int] = 0,
        duration: Optional[int] = 0,
        comment: str = "",
        location: str = "",
        target: str = "",
        speaker: str = "",
        probability: str = "",
        cue_point_type: str = "",
        cue_points: Iterable[tuple[str, str]] = (),
        frame_rate: Optional[Rate] = None,
        id: Optional[str] = None,
    ) -> None: ...
    def __eq__(self, other: object) -> bool: ...

class Collected:
    @property
    def form(self) -> Literal["report-back", "component", "marker"]: ...
    @property
    def type(self) -> str: ...
    @property
    def name(self) -> str: ...
    @property
    def track(self) -> str: ...
    @property
    def instance_id(self) -> str: ...
    @property
    def part_mapping(self) -> str: ...
    @property
    def start(self) -> Optional[int]: ...
    @property
    def duration(self) -> Optional[int]: ...
    @property
    def clipped_start(self) -> Optional[int]: ...
    @property
    def clipped_duration(self) -> Optional[int]: ...

class Ingredient:
    @property
    def instance_id(self) -> str: ...
    @property
    def document_id(self) -> str: ...
    @property
    def from_part(self) -> str: ...
    @property
    def to_part(self) -> str: ...
    @property
    def part_mapping(self) -> str: ...
    @property
    def mask_markers(self) -> str: ...
    @property
    def file_path(self) -> str: ...

class PantryEntry:
    @property
    def instance_id(self) -> str: ...
    @property
    def document_id(self) -> str: ...
    @property
    def markers(self) -> int: ...
    @property
    def ingredients(self) -> int: ...

def read_markers(source: Source) -> list[Marker]: ...
def write_markers(
    path: Path, markers: Iterable[Marker], frame_rate: Optional[Rate] = None, output: Optional[Path] = None
) -> Rate: ...
def collect(source: Source, start: int = 0, duration: Optional[int] = None, mask: int = 0x0F) -> list[Collected]: ...
def ingredients(source: Source) -> list[Ingredient]: ...
def pantry(source: Source) -> list[PantryEntry]: ...
def to_ticks(text: str, rate: Optional[Rate] = None) -> Optional[int]: ...
def from_ticks(ticks: Optional[int], rate: Optional[Rate] = None) -> str: ...
def export(
    markers: Iterable[Marker],
    format: Format,
    *,
    rate: Optional[Rate] = None,
    timecode_start: str = "00:00:00:00",
    title: str = "Markers",
    force: bool = False,
) -> str: ...
def import_markers(
    text: str, format: Format, *, frame_rate: Optional[Rate] = None, type: Optional[str] = None
) -> list[Marker]: ...

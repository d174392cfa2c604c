"""The time-based parts of XMP metadata: markers, ingredients, the pantry.

    import keltemporalxmp as kx
    for m in kx.read_markers("interview.xmp"):
        print(m.type, m.name, m.start / kx.TICKS_PER_SECOND)

Every `source` is a path (str or os.PathLike) of a sidecar (.xmp) or a media
file, or an XMP packet as bytes. Times are int ticks, TICKS_PER_SECOND per
second, None where unspecified.

Errors: XMPError (with .id and .message) for bad XMP and the library's own
errors; OSError subclasses (FileNotFoundError, PermissionError, ...) for
files; ValueError and TypeError for bad arguments.

Exchange: export(markers, "webvtt") gives the markers as text other tools
read (chapters, subtitles, edl, csv, ...); import_markers(text, "webvtt")
reads them back.

Threads: read_markers, write_markers, collect, ingredients, pantry, export
and import_markers release the GIL while they read files, parse and convert,
so other Python threads run meanwhile. The XMP toolkit underneath holds one process-wide lock around each
of its calls, so two threads reading files at once are safe but parse one at
a time; only the library's own work on the parsed metadata overlaps. To use
several cores, use several processes: that is why a Dask cluster for this
module runs worker processes (see examples/python/scan_archive.py).
"""

from ._core import (
    TICKS_PER_SECOND,
    Collected,
    Ingredient,
    Marker,
    PantryEntry,
    XMPError,
    __version__,
    collect,
    export,
    from_ticks,
    import_markers,
    ingredients,
    pantry,
    read_markers,
    to_ticks,
    write_markers,
)

__all__ = [
    "TICKS_PER_SECOND",
    "Collected",
    "Ingredient",
    "Marker",
    "PantryEntry",
    "XMPError",
    "__version__",
    "collect",
    "export",
    "from_ticks",
    "import_markers",
    "ingredients",
    "pantry",
    "read_markers",
    "to_ticks",
    "write_markers",
]

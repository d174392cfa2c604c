"""Threads reading at once, and the archive scan on a cluster of two worker processes."""

import importlib.util
import json
import threading

import keltemporalxmp as kx
from conftest import EXAMPLES, SOURCE_DIR

SECOND = kx.TICKS_PER_SECOND


def test_two_threads_read_different_files_at_once():
    files = [EXAMPLES / "interview.xmp", EXAMPLES / "composition" / "sequence.xmp"]
    expected = [(kx.read_markers(f), [c.name for c in kx.collect(f)]) for f in files]
    results = [[], []]
    start = threading.Barrier(2)

    def read(i):
        start.wait()
        for _ in range(40):
            results[i].append((kx.read_markers(files[i]), [c.name for c in kx.collect(files[i])]))

    threads = [threading.Thread(target=read, args=(i,)) for i in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for i in range(2):
        assert results[i] == [expected[i]] * 40


def load_scan_example():
    module_spec = importlib.util.spec_from_file_location("scan_archive", SOURCE_DIR / "examples" / "python" / "scan_archive.py")
    module = importlib.util.module_from_spec(module_spec)
    module_spec.loader.exec_module(module)
    return module


def make_archive(root, count):
    """count files in nested folders: sidecars with 0 to 4 markers, some broken, some without XMP."""
    for i in range(count):
        folder = root / f"reel{i % 7}" / f"day{i % 3}"
        folder.mkdir(parents=True, exist_ok=True)
        if i % 50 == 7:
            (folder / f"broken{i}.xmp").write_bytes(b"<x:xmpmeta")
            continue
        if i % 50 == 13:
            (folder / f"clip{i}.mov").write_bytes(b"no XMP here")
            continue
        path = folder / f"clip{i}.xmp"
        path.write_bytes(b"")
        markers = [
            kx.Marker(name=f"m{i}-{k}", type=("Chapter", "Cue")[k % 2], start=k * SECOND, duration=SECOND, comment=str(i))
            for k in range(i % 5)
        ]
        kx.write_markers(path, markers, frame_rate=(25, 1))
    (root / "notes.txt").write_text("not a media file")


def test_the_scan_on_two_worker_processes_gives_the_single_process_rows(tmp_path):
    scan_archive = load_scan_example()
    root = tmp_path / "archive"
    make_archive(root, 300)
    paths = scan_archive.find_files(str(root))
    assert len(paths) == 300
    expected = scan_archive.scan_files(paths)
    assert sum("error" in row for row in expected) == 6
    assert {row["file"] for row in expected if "error" in row} == {p for p in paths if "broken" in p}

    out = tmp_path / "out.jsonl"
    assert scan_archive.scan(str(root), str(out), workers=2) == (300, len(expected))
    rows = [json.loads(line) for line in out.read_text(encoding="utf-8").splitlines()]
    assert rows == expected
    first = next(row for row in rows if row.get("name") == "m1-0")
    assert first == {
        "file": first["file"],
        "type": "Chapter",
        "name": "m1-0",
        "start_ticks": 0,
        "start_seconds": 0.0,
        "duration_ticks": SECOND,
        "duration_seconds": 1.0,
        "comment": "1",
    }

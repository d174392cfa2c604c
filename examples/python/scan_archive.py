#!/usr/bin/env python3
"""Read the markers of every sidecar and media file under ROOT on a Dask cluster.

    scan_archive.py ROOT OUT.jsonl [--scheduler ADDRESS] [--workers N]

Writes one JSON Lines row per marker: file, type, name, start and duration in
ticks and seconds, comment. A file that cannot be read is one row with "file"
and "error" instead; the scan goes on. Rows come in file order, each file's
markers as keltemporalxmp.read_markers gives them.

Without --scheduler the scan runs on a LocalCluster of N worker processes on
this machine (default 2). The XMP toolkit serialises its calls within one
process, so threads would not add cores: the workers are processes, one
thread each. With --scheduler it runs on an existing cluster, whose workers
must be able to import keltemporalxmp themselves.
"""

import argparse
import json
import os
import sys

import keltemporalxmp as kx

# Sidecars, and media formats whose files carry XMP.
EXTENSIONS = frozenset(
    ".xmp .mp4 .m4v .m4a .mov .3gp .avi .wav .aif .aiff .mp3 .flac .ogg .mxf .mkv .webm "
    ".jpg .jpeg .png .tif .tiff .gif .psd .dng .pdf .svg".split()
)


def find_files(root):
    """Every sidecar or media file under root, sorted, as paths."""
    found = []
    for directory, subdirectories, names in os.walk(root):
        subdirectories.sort()
        for name in names:
            if os.path.splitext(name)[1].lower() in EXTENSIONS:
                found.append(os.path.join(directory, name))
    return sorted(found)


def seconds(ticks):
    return None if ticks is None else ticks / kx.TICKS_PER_SECOND


def scan_file(path):
    """The rows of one file: one per marker, or one naming the error."""
    try:
        markers = kx.read_markers(path)
    except Exception as error:  # one bad file must not fail the scan
        return [{"file": path, "error": f"{type(error).__name__}: {error}"}]
    return [
        {
            "file": path,
            "type": m.type,
            "name": m.name,
            "start_ticks": m.start,
            "start_seconds": seconds(m.start),
            "duration_ticks": m.duration,
            "duration_seconds": seconds(m.duration),
            "comment": m.comment,
        }
        for m in markers
    ]


def scan_files(paths):
    """The rows of several files, in order: one Dask task's work."""
    rows = []
    for path in paths:
        rows.extend(scan_file(path))
    return rows


def scan_to_lines(paths):
    """The rows of several files as JSON Lines text: workers do the encoding, in parallel."""
    return "".join(json.dumps(row, ensure_ascii=False) + "\n" for row in scan_files(paths))


def batches(paths, count):
    """paths cut into about `count` runs of neighbours, so each task is worth its overhead."""
    size = max(1, -(-len(paths) // max(1, count)))
    return [paths[i : i + size] for i in range(0, len(paths), size)]


class Progress:
    """One line, redrawn in place, on a terminal only."""

    def __init__(self, total, stream=sys.stderr):
        self.total = total
        self.stream = stream
        self.shown = stream.isatty()

    def update(self, done):
        if self.shown:
            width = 40
            filled = width * done // max(1, self.total)
            self.stream.write(f"\r[{'#' * filled}{'.' * (width - filled)}] {done}/{self.total} files")
            self.stream.flush()

    def close(self):
        if self.shown:
            self.stream.write("\n")


def scan_on_cluster(client, paths, out):
    """Scans paths on the client's cluster into the open file out; returns the number of rows."""
    from distributed import as_completed

    workers = max(1, len(client.scheduler_info()["workers"]))
    runs = batches(paths, workers * 8)
    futures = client.map(scan_to_lines, runs, pure=False)
    index = {future.key: i for i, future in enumerate(futures)}
    finished = {}
    written = 0
    rows = 0
    done = 0
    progress = Progress(len(paths))
    progress.update(0)
    # Results arrive in any order; rows are written in file order as soon as
    # every earlier run is in.
    for future in as_completed(futures):
        i = index[future.key]
        finished[i] = future.result()
        done += len(runs[i])
        progress.update(done)
        while written in finished:
            lines = finished.pop(written)
            out.write(lines)
            rows += lines.count("\n")
            written += 1
    progress.close()
    return rows


def package_search_path():
    """PYTHONPATH with the folder this process imported keltemporalxmp from, for worker processes."""
    folder = os.path.dirname(os.path.dirname(os.path.abspath(kx.__file__)))
    current = os.environ.get("PYTHONPATH", "")
    parts = [folder] + [part for part in current.split(os.pathsep) if part and part != folder]
    return os.pathsep.join(parts)


def local_cluster(workers):
    """A cluster of worker processes on this machine that import keltemporalxmp as this process does."""
    from distributed import LocalCluster

    # Spawned workers take the environment as it is when they start.
    os.environ["PYTHONPATH"] = package_search_path()
    return LocalCluster(n_workers=workers, threads_per_worker=1, processes=True, dashboard_address=None)


def scan(root, output, scheduler=None, workers=2):
    """Scans root into the JSON Lines file output; returns (files, rows)."""
    from distributed import Client

    paths = find_files(root)
    cluster = None if scheduler else local_cluster(workers)
    try:
        with Client(scheduler or cluster) as client:
            client.run(__import__, "keltemporalxmp")  # fails early, naming the worker that cannot import it
            with open(output, "w", encoding="utf-8") as out:
                rows = scan_on_cluster(client, paths, out)
    finally:
        if cluster is not None:
            cluster.close()
    return len(paths), rows


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("root", help="folder to scan")
    parser.add_argument("output", help="JSON Lines file to write")
    parser.add_argument("--scheduler", help="address of an existing Dask scheduler (default: a local cluster)")
    parser.add_argument("--workers", type=int, default=2, help="worker processes of the local cluster (default 2)")
    options = parser.parse_args(argv)
    if not os.path.isdir(options.root):
        parser.error(f"not a folder: {options.root}")
    if options.workers < 1:
        parser.error("--workers must be at least 1")
    files, rows = scan(options.root, options.output, options.scheduler, options.workers)
    print(f"{options.output}: {rows} rows from {files} files", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())

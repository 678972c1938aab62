"""Compares a folder of dumps with another one, several files a task, on all cores or with Dask.

    examples/fleet.py yesterday today --table LifTable --chip BCM88690_B0
    examples/fleet.py yesterday today --table LifTable --chip BCM88690_B0 --dask

A dump is a file of images, one after another, and has the same name in both folders.
"""

from __future__ import annotations

import argparse
import mmap
import multiprocessing
import sys
from dataclasses import dataclass
from pathlib import Path

import pandas as pd

import vorn


@dataclass(frozen=True)
class Task:
    layout: vorn.Layout
    before: Path
    after: Path
    names: list[str]  # of files


def mapped(path: Path) -> mmap.mmap | bytes:
    """The bytes of a file, which are read as they are needed."""
    if path.stat().st_size == 0:
        return b""
    with path.open("rb") as file:
        return mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)


def compared(task: Task) -> pd.DataFrame:
    """What differs in the files of a task. Only this crosses from one process to another."""
    tables = []
    for name in task.names:
        before, after = mapped(task.before / name), mapped(task.after / name)
        try:
            changed = vorn.diff(before, after, task.layout)
        except vorn.Error as error:
            raise vorn.Error(f"{name}: {error}") from None
        changed.insert(0, "file", name)
        tables.append(changed)
    return pd.concat(tables, ignore_index=True)


def tasks_of(layout: vorn.Layout, before: Path, after: Path, files: int) -> list[Task]:
    folders = [{path.name for path in folder.iterdir()} for folder in (before, after)]
    if alone := folders[0] ^ folders[1]:
        raise vorn.Error(f"only in one of the folders: {', '.join(sorted(alone))}")
    names = sorted(folders[0])
    if not names:
        raise vorn.Error(f"no files in {before}")
    return [
        Task(layout, before, after, names[first : first + files])
        for first in range(0, len(names), files)
    ]


def on_cores(tasks: list[Task], workers: int) -> pd.DataFrame:
    with multiprocessing.get_context("spawn").Pool(workers) as pool:
        return pd.concat(pool.map(compared, tasks, chunksize=1), ignore_index=True)


def on_dask(tasks: list[Task], workers: int) -> pd.DataFrame:
    """The same on a cluster, here one of this machine; its workers must see the same files."""
    from distributed import Client, LocalCluster

    with LocalCluster(
        n_workers=workers, threads_per_worker=1, dashboard_address=None
    ) as cluster, Client(cluster) as client:
        return pd.concat(client.gather(client.map(compared, tasks)), ignore_index=True)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0] if __doc__ else None)
    parser.add_argument("before", type=Path)
    parser.add_argument("after", type=Path)
    parser.add_argument("--table", required=True)
    parser.add_argument("--chip", required=True)
    parser.add_argument("--variant", type=int, default=0)
    parser.add_argument("--workers", type=int, default=multiprocessing.cpu_count())
    parser.add_argument("--files", type=int, default=8, help="files a task")
    parser.add_argument("--dask", action="store_true", help="with Dask rather than multiprocessing")
    arguments = parser.parse_args()
    try:
        layout = vorn.Layout(arguments.table, arguments.chip, arguments.variant)
        tasks = tasks_of(layout, arguments.before, arguments.after, arguments.files)
        run = on_dask if arguments.dask else on_cores
        changed = run(tasks, arguments.workers)
    except (vorn.Error, OSError) as error:
        sys.exit(f"{parser.prog}: {error}")
    changed.to_csv(sys.stdout, index=False)


if __name__ == "__main__":
    main()

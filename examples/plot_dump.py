"""Draws how the entries of a dump are used: examples/plot_dump.py docs/python-dump.png"""

from __future__ import annotations

import sys

import matplotlib
import numpy as np

import vorn

matplotlib.use("Agg")
from matplotlib import pyplot  # noqa: E402


def main(path: str) -> None:
    # A dump as a device might give it: interfaces of a few services, some profiles more than others.
    lif = vorn.Layout("LifTable", "BCM88690_B0")
    generator = np.random.default_rng(7)
    entries = 20_000
    dump = lif.encode_batch(
        {
            "vsi": generator.zipf(1.5, entries) % 4000,
            "vlanEditVid1": generator.normal(1000, 150, entries).clip(0, 4095).astype(int),
            "inLifProfile": generator.poisson(6, entries),
            "learnEnable": generator.integers(0, 2, entries),
        }
    )

    table = lif.frame(dump, fields=["vsi", "vlanEditVid1", "inLifProfile", "learnEnable"])
    figure, (left, right) = pyplot.subplots(1, 2, figsize=(9, 3.2), layout="constrained")
    for learns, group in table.groupby("learnEnable"):
        left.hist(group.vlanEditVid1, bins=60, alpha=0.6, label=f"learnEnable {learns}")
    left.set(xlabel="vlanEditVid1", ylabel="entries")
    left.legend()
    table.inLifProfile.value_counts().sort_index().plot.bar(ax=right)
    right.set(xlabel="inLifProfile", ylabel="entries")
    figure.savefig(path, dpi=80, metadata={"Software": None})


if __name__ == "__main__":
    main(sys.argv[1])

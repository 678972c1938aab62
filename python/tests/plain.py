"""The pairs, and a decoder in plain Python that the module is held against."""

import numpy as np

import vorn

PAIRS = [(table, chip, variant) for table in vorn.tables() for chip, variant in vorn.pairs(table)]


def layouts():
    return [vorn.Layout(*pair) for pair in PAIRS]


def decoded(layout, image):
    number = int.from_bytes(image, "little")
    return {
        field.name: number >> field.offset & (1 << field.width) - 1 for field in layout.fields
    }


def random_images(layout, rows, seed=1):
    generator = np.random.default_rng(seed)
    return generator.integers(0, 256, (rows, layout.size), dtype=np.uint8)


def tagged_images(layout, rows):
    """Random ones that have the layout's tag."""
    stamped = np.frombuffer(layout.encode({}), np.uint8)
    bits = sum((1 << f.width) - 1 << f.offset for f in layout.fields if f.read_only)
    mask = np.frombuffer(bits.to_bytes(layout.size, "little"), np.uint8)
    return random_images(layout, rows) & ~mask | stamped


def ints(column):
    """A column of a batch as Python's ints."""
    if column.ndim == 1:
        return [int(value) for value in column]
    return [sum(int(word) << 64 * i for i, word in enumerate(row)) for row in column]

"""The types that the module makes objects of."""

from __future__ import annotations

from typing import TYPE_CHECKING, NamedTuple

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    from vorn._vorn import Layout


class Error(ValueError):
    """Bad input, in the words of the command vorn: what is wrong, and what would be right.

    >>> vorn.Layout("LifTabel", "BCM88690_B0")
    Traceback (most recent call last):
    ...
    vorn.Error: unknown table "LifTabel"; did you mean LifTable?
    """


class MisuseError(Error):
    """Bad input that nothing but an assertion of the library has noticed.

    >>> issubclass(vorn.MisuseError, vorn.Error)
    True
    """


class Field(NamedTuple):
    """A field of a layout.

    >>> vorn.Layout("LifTable", "BCM88690_B0")["vsi"]
    Field(name='vsi', hardware_name='VSI', identifier=364, offset=1, width=15, read_only=False)
    """

    name: str
    hardware_name: str
    identifier: int
    offset: int  # in bits of the entry; bit 0 is the lowest of byte 0
    width: int  # in bits
    read_only: bool  # part of the tag, which every entry of the pair has


class Address(NamedTuple):
    """Where an entry lies, as the chip's S-channel says it.

    >>> vorn.Layout("LifTable", "BCM88690_B0").address(4097).address
    4097
    """

    address: int
    access_type: int
    dest_block: int


class Location(NamedTuple):
    """An entry that was asked for by its address.

    >>> vorn.locate("BCM88690_B0", 4097)[0].entry
    4097
    """

    layout: Layout
    entry: int
    array: int
    identifier: int


class Dump(NamedTuple):
    """The images that a file holds, and the number of the entry that each is.

    >>> import io
    >>> vorn.read_dump(io.StringIO("4523010000000000"), "BCM88690_B0", "TcamActionTable").images
    array([[69, 35,  1,  0,  0,  0,  0,  0]], dtype=uint8)
    """

    images: NDArray[np.uint8]  # (N, size)
    entries: NDArray[np.int64]  # (N,)

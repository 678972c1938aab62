"""The errors that the package raises, and the types of what it returns."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Iterable, Iterator, NamedTuple, Optional

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd
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
    """Bad input that only an assertion of the library detected.

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
    offset: int  # in bits; bit 0 is the lowest of byte 0
    width: int  # in bits
    read_only: bool  # part of the tag, which every entry of the pair has


class Address(NamedTuple):
    """Where an entry lies on the chip's S-channel.

    >>> vorn.Layout("LifTable", "BCM88690_B0").address(4097).address
    4097
    """

    address: int
    access_type: int
    dest_block: int


class Location(NamedTuple):
    """An entry found by its address.

    >>> vorn.locate("BCM88690_B0", 4097)[0].entry
    4097
    """

    layout: Layout
    entry: int
    array: int
    identifier: int


class Dump:
    """The entries of one pair in a file, and where they lie: -1 where the file doesn't say.

    Unpacks to the images and the numbers of their entries.

    >>> import io
    >>> dump = vorn.read_dump(io.StringIO("4523010000000000"), "BCM88690_B0", "TcamActionTable")
    >>> images, entries = dump
    >>> images
    array([[69, 35,  1,  0,  0,  0,  0,  0]], dtype=uint8)
    >>> dump
    <vorn.Dump of 1 entry of vorn.Layout('TcamActionTable', 'BCM88690_B0', 0)>
    """

    def __init__(
        self,
        layout: Layout,
        images: NDArray[np.uint8],
        entries: NDArray[np.int64],
        arrays: NDArray[np.int64],
        identifiers: NDArray[np.int64],
        addresses: NDArray[np.int64],
        empty: int,
    ) -> None:
        self.layout = layout
        self.images = images  # (N, size)
        self.entries = entries  # (N,), like the next three
        self.arrays = arrays  # numbers of the array elements
        self.identifiers = identifiers  # numbers of the instances
        self.addresses = addresses  # on the S-channel
        self.empty = empty  # how many entries were left out because they were never written

    def __iter__(self) -> Iterator[Any]:
        return iter((self.images, self.entries))

    def __repr__(self) -> str:
        count = len(self.entries)
        entries = "1 entry" if count == 1 else f"{count} entries"
        return f"<vorn.Dump of {entries} of {self.layout!r}>"

    def frame(self, fields: Optional[Iterable[str]] = None) -> pd.DataFrame:
        """The values as a pandas data frame, indexed by the numbers of the entries.

        >>> import io
        >>> text = io.StringIO("entry,image\\n7,05000000\\n9,06000000\\n")
        >>> dump = vorn.read_dump(text, "BCM88690_B0", "EvecFormatTable")
        >>> dump.frame(fields=["tagsToRemove", "outerVidSource"])
               tagsToRemove  outerVidSource
        entry                              
        7                 1               1
        9                 2               1
        """
        table = self.layout.frame(self.images, fields=fields)
        return table.set_axis(self.entries, copy=False).rename_axis("entry", copy=False)

"""The part of the package that needs NumPy and pandas, which are imported on first use."""

from __future__ import annotations

import os
from typing import IO, TYPE_CHECKING, Any, Iterable, Mapping, Optional, Union

from vorn._types import Dump, Error, Field

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd
    from numpy.typing import NDArray

    from vorn._vorn import Buffer, Layout


def _column(layout: Layout, field: Field, values: Any) -> NDArray[Any]:
    """The values as an array for the module: unsigned, at least as wide as the field."""
    import numpy as np

    words = (field.width + 63) // 64
    try:
        array = np.asarray(values)
    except ValueError as error:
        raise Error(f"the values of field {field.name} are no array: {error}") from None
    if array.dtype.kind == "O" or (words > 1 and array.ndim == 1):
        # Python ints of any width. Each is encoded, and so checked, by itself.
        if array.ndim != 1:
            raise Error(f"the values of field {field.name} have {array.ndim} dimensions, not 1")
        images = b"".join(_alone(layout, field, row, value) for row, value in enumerate(array))
        return layout.decode_batch(images, fields=[field.name])[field.name]
    if array.dtype.kind == "i":
        if array.size and array.min() < 0:
            row = int(np.argwhere(array < 0)[0][0])
            _alone(layout, field, row, array[row])
        array = array.astype(np.uint64)
    if array.dtype.kind not in "ub":
        if array.size:
            raise Error(
                f"the values of field {field.name} are of type {array.dtype}; give unsigned ints"
            )
        array = np.zeros(array.shape, np.uint64)
    shape = "(N,)" if words == 1 else f"(N, {words})"
    if array.ndim != (1 if words == 1 else 2) or (words > 1 and array.shape[1] != words):
        raise Error(
            f"the values of field {field.name} have the shape {array.shape}; "
            f"its {field.width} bits need {shape}"
        )
    wanted = 8 if words > 1 or field.width > 32 else 4 if field.width > 16 else 2
    if field.width <= 8:
        wanted = 1
    if array.dtype.itemsize < wanted or array.dtype.kind == "b":
        array = array.astype(f"u{wanted}")
    return np.require(array, array.dtype.newbyteorder("="), ["C", "A"])


def _alone(layout: Layout, field: Field, row: int, value: Any) -> bytes:
    """The image of one value of a column; an error says which row it is in."""
    if value is True or value is False:
        value = int(value)
    try:
        return layout.encode({field.name: value}, strict=False)
    except Error as error:
        raise Error(f"row {row}: {error}") from None


def _is_one(value: Any) -> bool:
    """Whether this is one value for all rows rather than a column."""
    return isinstance(value, (int, str, float, bytes, type(None))) or (
        hasattr(value, "__index__") and getattr(value, "ndim", 0) == 0
    )


def _overlap(left: Field, right: Field) -> bool:
    return left.offset < right.offset + right.width and right.offset < left.offset + left.width


def _require_tags(layout: Layout, images: Any) -> None:
    for name, values in layout.decode_batch(images, fields=list(layout.tag)).items():
        wrong = (values != layout.tag[name]).nonzero()[0]
        if wrong.size:
            row = int(wrong[0])
            try:
                layout.encode({}, base=images[row].tobytes())
            except Error as error:
                raise Error(f"row {row}: {error}") from None


def encode_batch(
    self: Layout,
    values: Mapping[str, Any],
    base: Optional[Buffer] = None,
    *,
    strict: bool = True,
) -> NDArray[np.uint8]:
    """The images of many entries as an (N, size) array, from an array or one value for each field.

    The rest of each image is zero except for the tag, or as in base, which is one image or N of them.
    A field of more than 64 bits takes an (N, words) array of uint64, or a list of ints.

    >>> lif = vorn.Layout("LifTable", "BCM88690_B0")
    >>> images = lif.encode_batch({"vsi": range(3), "vlanEditVid1": 100})
    >>> images.shape
    (3, 80)
    >>> lif.decode_batch(images, fields=["vsi", "vlanEditVid1"])
    {'vsi': array([0, 1, 2], dtype=uint16), 'vlanEditVid1': array([100, 100, 100], dtype=uint16)}
    """
    import numpy as np

    if not isinstance(values, Mapping):
        raise Error(
            f"the values are a {type(values).__name__}; give a dict of names of fields and arrays"
        )
    fields = {name: self[name] for name in values}
    columns: dict[str, NDArray[Any]] = {}
    for name, value in values.items():
        if not _is_one(value):
            columns[name] = _column(self, fields[name], value)
    lengths = {name: len(column) for name, column in columns.items()}
    if len(set(lengths.values())) > 1:
        given = ", ".join(f"{name} has {length}" for name, length in lengths.items())
        raise Error(f"the columns differ in length: {given}")

    size = self.size
    bases = None if base is None else _bytes_of(self, base)
    many = bases is not None and bases.size != size
    rows = next(iter(lengths.values()), bases.size // size if bases is not None and many else 1)
    if bases is not None and many and bases.size // size != rows:
        raise Error(f"the base has {bases.size // size} images; the columns have {rows} rows")

    # A value that all rows have is encoded once, unless it shares bits with a column.
    shares = any(
        _overlap(fields[one], fields[column])
        for one in fields
        for column in columns
        if one != column
    )
    once = {name: value for name, value in values.items() if name not in columns}
    fresh = self.decode(self.encode({}))
    ordered = []
    for name, value in values.items():
        if name in columns:
            column = columns[name]
            if fields[name].read_only and (column == fresh[name]).all():
                continue
            ordered.append((name, column))
        elif (many or shares) and not fields[name].read_only:
            image = self.encode({name: value}, strict=False)
            cell = self.decode_batch(image, fields=[name])[name]
            ordered.append((name, np.repeat(cell, rows, axis=0)))

    one: Optional[bytes] = None
    if bases is not None and many:
        self.encode(once, strict=strict)
        images = bases.reshape(rows, size).copy()
        _require_tags(self, images)
    else:
        images = np.empty((rows, size), np.uint8)
        one = self.encode(once, base=None if bases is None else bases.tobytes(), strict=strict)
    self._encode_columns(images, one, ordered, strict)
    return images


def _bytes_of(layout: Layout, base: Buffer) -> NDArray[np.uint8]:
    """The bytes of one image, or of several."""
    import numpy as np

    try:
        images = np.asarray(memoryview(base))
    except (TypeError, ValueError):
        images = None
    if images is None or images.dtype.itemsize != 1 or images.size % layout.size or not images.size:
        layout.encode({}, base=base)  # refuses it
        raise Error("the base has rows that are no images")
    return np.ascontiguousarray(images).reshape(-1).view(np.uint8)


def _flat(column: NDArray[Any]) -> Any:
    """A column of one dimension: wide values become Python ints."""
    import numpy as np

    if column.ndim == 1:
        return column
    ints = np.empty(len(column), object)
    ints[:] = [int.from_bytes(row.tobytes(), "little") for row in column]
    return ints


def frame(
    self: Layout,
    dump: Buffer,
    fields: Optional[Iterable[str]] = None,
    first_entry: int = 0,
    stride: Optional[int] = None,
) -> pd.DataFrame:
    """The values of many entries as a pandas data frame, indexed by entry.

    The columns are those of decode_batch(); fields of more than 64 bits are columns of Python
    ints.

    >>> lif = vorn.Layout("LifTable", "BCM88690_B0")
    >>> dump = lif.encode_batch({"vsi": [7, 8], "vlanEditVid1": 100})
    >>> lif.frame(dump, fields=["vsi", "vlanEditVid1"], first_entry=4096)
           vsi  vlanEditVid1
    entry                   
    4096     7           100
    4097     8           100
    """
    import pandas as pd

    columns = self.decode_batch(dump, fields=fields, stride=stride)
    rows = len(next(iter(columns.values()))) if columns else len(self.arrow(dump, [], stride))
    index = pd.RangeIndex(first_entry, first_entry + rows, name="entry")
    return pd.DataFrame(
        {name: _flat(column) for name, column in columns.items()}, index=index, copy=False
    )


def diff(before: Buffer, after: Buffer, layout: Layout, first_entry: int = 0) -> pd.DataFrame:
    """What differs between two dumps: a row for each value that isn't the same in both.

    The rows are in order of the entries, then of the fields. The values are uint64, or Python ints
    if the pair has fields of more than 64 bits. Bits of no field are not compared. Dumps that
    differ in length are an Error.

    >>> lif = vorn.Layout("LifTable", "BCM88690_B0")
    >>> before = lif.encode_batch({"vsi": [7, 8, 9]})
    >>> after = lif.encode_batch({"vsi": [7, 5, 9]})
    >>> changed = vorn.diff(before, after, lif)
    >>> changed[changed.field == "vsi"]
       entry field before after
    1      1   vsi      8     5
    """
    import numpy as np
    import pandas as pd

    olds = layout.decode_batch(before)
    news = layout.decode_batch(after)
    sizes = [len(next(iter(columns.values()))) if columns else 0 for columns in (olds, news)]
    if sizes[0] != sizes[1]:
        raise Error(f"the dumps differ in length: {sizes[0]} and {sizes[1]} entries")
    kind: Any = object if any(field.width > 64 for field in layout.fields) else np.uint64
    entries, places, lefts, rights = [], [], [], []
    for place, (name, old) in enumerate(olds.items()):
        new = news[name]
        differs = old != new
        rows = np.flatnonzero(differs if old.ndim == 1 else differs.any(axis=1))
        entries.append(rows)
        places.append(np.full(len(rows), place))
        lefts.append(_flat(old[rows]).astype(kind))
        rights.append(_flat(new[rows]).astype(kind))
    none = np.empty(0, np.int64)
    entry = np.concatenate([none, *entries])
    field = np.concatenate([none, *places])
    order = np.lexsort((field, entry))
    return pd.DataFrame(
        {
            "entry": entry[order] + first_entry,
            "field": np.array([*olds, None], object)[:-1][field[order]],
            "before": np.concatenate([np.empty(0, kind), *lefts])[order],
            "after": np.concatenate([np.empty(0, kind), *rights])[order],
        }
    )


Source = Union[str, "os.PathLike[str]", IO[str], IO[bytes]]


def _name_of(path: Source) -> str:
    if hasattr(path, "read"):
        return str(getattr(path, "name", "the file"))
    try:
        return os.fsdecode(path)
    except TypeError:
        kind = type(path).__name__
        article = "an" if kind[0] in "aeiouAEIOU" else "a"
        raise Error(f"the path is {article} {kind}; give a path or a file") from None


class _Begun:
    """A file whose first bytes have been read already."""

    def __init__(self, first: Any, file: Any) -> None:
        self.first = first
        self.file = file

    def read(self, size: int) -> Any:
        piece, self.first = self.first[:size], self.first[size:]
        return piece or self.file.read(size)


class _Decompressed:
    """The decompressed bytes of a file, which has one compressed frame after another."""

    PIECE = 8192  # compressed bytes taken at a time, which may become many more

    def __init__(self, file: Any, name: str, format: str, make: Any, error: Any) -> None:
        self.file = file
        self.name = name
        self.format = format
        self.make = make
        self.error = error
        self.frame: Any = None

    def read(self, size: int) -> bytes:
        while True:
            between = self.frame is None or self.frame.eof
            rest = self.frame.unused_data if self.frame and between else b""
            rest = rest or self.file.read(self.PIECE)
            if not rest:
                if between:
                    return b""
                raise Error(f"{self.name}: the {self.format} data is cut off")
            if between:
                self.frame = self.make()
            try:
                piece: bytes = self.frame.decompress(rest)
            except self.error as error:
                raise Error(
                    f"{self.name}: the {self.format} data is damaged: {error}"
                ) from None
            if piece:
                return piece


def _decompressed(file: Any, name: str) -> Any:
    """The file, or what is in it if gzip or zstd has compressed it."""
    first = file.read(4)
    if not isinstance(first, (bytes, str)):
        return _Begun(b"", file)
    begun = _Begun(first, file)
    if first[:2] == b"\x1f\x8b":
        import zlib

        return _Decompressed(begun, name, "gzip", lambda: zlib.decompressobj(31), zlib.error)
    if first == b"\x28\xb5\x2f\xfd":
        try:
            import zstandard
        except ImportError:
            raise Error(
                f"{name}: is compressed with zstd; install python3-zstandard, or decompress it"
            ) from None
        make = zstandard.ZstdDecompressor().decompressobj
        return _Decompressed(begun, name, "zstd", make, zstandard.ZstdError)
    return begun


def _dumps_in(path: Source, options: Mapping[str, Any], many: bool) -> list[Dump]:
    """The dumps of the layouts that have images in a file, each checked by the codec."""
    import warnings

    from vorn._vorn import _read_dumps

    name = _name_of(path)
    options = {**options, "empty": bool(options["empty"]), "strict": bool(options["strict"])}
    try:
        if hasattr(path, "read"):
            made, doubts = _read_dumps(_decompressed(path, name), name, options, many)
        else:
            with open(path, "rb") as file:
                made, doubts = _read_dumps(_decompressed(file, name), name, options, many)
    except OSError as error:
        raise Error(f"cannot read {name}: {error.strerror or error}") from error
    except UnicodeError as error:
        raise Error(f"cannot read {name}: {error}") from error
    for doubt in doubts:
        warnings.warn(doubt, stacklevel=3)
    return [Dump(*parts) for parts in made]


def read_dump(
    path: Source,
    chip: Union[str, int, None] = None,
    table: Optional[str] = None,
    variant: Optional[int] = None,
    *,
    format: str = "auto",
    stride: Optional[int] = None,
    first_entry: Optional[int] = None,
    array: int = 0,
    identifier: int = 0,
    empty: bool = False,
    strict: bool = False,
) -> Dump:
    """The entries of one pair in a file, given by its path or open: whatever vorn decode reads.

    The first line determines the form (hexdump, xxd, lines of digits, JSON, CSV or plain bytes),
    unless format names it as vorn's --image-format does. Input compressed with gzip or zstd is
    decompressed. Table and chip may be left out if the images name them. Without a variant the
    tag decides. Entries that were never written, zeroes that fit no tag, are left out and counted
    unless empty is true. A tag that contradicts the variant is a warning, or an Error if strict.

    first_entry, array and identifier say where the first entry of a dump without addresses lies;
    stride is the number of bytes from one entry to the next. Without first_entry it is entry 0; if
    the offsets of the dump begin elsewhere, that is a warning.

    >>> import io
    >>> text = io.StringIO("entry,image\\n7,4523010000000000\\n9,4623010000000000\\n")
    >>> images, entries = vorn.read_dump(text, chip="BCM88690_B0", table="TcamActionTable")
    >>> entries
    array([7, 9])
    """
    dumps = _dumps_in(path, locals(), many=False)
    dump = next((dump for dump in dumps if len(dump.entries)), dumps[0] if dumps else None)
    if dump is None:
        raise Error(f"{_name_of(path)} has no image")
    dump.empty = sum(other.empty for other in dumps)
    return dump


def read_dumps(
    path: Source,
    chip: Union[str, int, None] = None,
    table: Optional[str] = None,
    variant: Optional[int] = None,
    *,
    format: str = "auto",
    stride: Optional[int] = None,
    first_entry: Optional[int] = None,
    array: int = 0,
    identifier: int = 0,
    empty: bool = False,
    strict: bool = False,
) -> dict[Layout, Dump]:
    """Like read_dump(), for any number of pairs, as vorn program prints them: a Dump for each layout.

    >>> import io
    >>> text = io.StringIO('''
    ... TcamActionTable 10 0: 4523010000000000
    ... EvecFormatTable 10 0: 05000000
    ... ''')
    >>> for layout, dump in vorn.read_dumps(text).items():
    ...     print(layout.table, dump.images.shape)
    TcamActionTable (1, 8)
    EvecFormatTable (1, 4)
    """
    dumps = _dumps_in(path, locals(), many=True)
    return {dump.layout: dump for dump in dumps if len(dump.entries) or dump.empty}

"""Arrow streams, read by a consumer that is written here."""

import ctypes
import gc
import weakref
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import vorn
from plain import layouts, random_images

LIF = vorn.Layout("LifTable", "BCM88690_B0", 0)


class Schema(ctypes.Structure):
    pass


class Array(ctypes.Structure):
    pass


class Stream(ctypes.Structure):
    pass


Pointer = ctypes.POINTER
Schema._fields_ = [
    ("format", ctypes.c_char_p),
    ("name", ctypes.c_char_p),
    ("metadata", ctypes.c_char_p),
    ("flags", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("children", Pointer(Pointer(Schema))),
    ("dictionary", ctypes.c_void_p),
    ("release", ctypes.CFUNCTYPE(None, Pointer(Schema))),
    ("private_data", ctypes.c_void_p),
]
Array._fields_ = [
    ("length", ctypes.c_int64),
    ("null_count", ctypes.c_int64),
    ("offset", ctypes.c_int64),
    ("n_buffers", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("buffers", Pointer(ctypes.c_void_p)),
    ("children", Pointer(Pointer(Array))),
    ("dictionary", ctypes.c_void_p),
    ("release", ctypes.CFUNCTYPE(None, Pointer(Array))),
    ("private_data", ctypes.c_void_p),
]
Stream._fields_ = [
    ("get_schema", ctypes.CFUNCTYPE(ctypes.c_int, Pointer(Stream), Pointer(Schema))),
    ("get_next", ctypes.CFUNCTYPE(ctypes.c_int, Pointer(Stream), Pointer(Array))),
    ("get_last_error", ctypes.CFUNCTYPE(ctypes.c_char_p, Pointer(Stream))),
    ("release", ctypes.CFUNCTYPE(None, Pointer(Stream))),
    ("private_data", ctypes.c_void_p),
]

address_in = ctypes.pythonapi.PyCapsule_GetPointer
address_in.restype = ctypes.c_void_p
address_in.argtypes = [ctypes.py_object, ctypes.c_char_p]

TYPES = {b"C": np.uint8, b"S": np.uint16, b"I": np.uint32, b"L": np.uint64}


def values(format, array):
    """A copy of the values, as decode_batch has them."""
    assert (array.null_count, array.offset, array.dictionary) == (0, 0, None)
    assert not array.buffers[0]
    if format.startswith(b"+w:"):
        words = int(format[3:])
        assert (array.n_buffers, array.n_children) == (1, 1)
        child = array.children[0].contents
        assert child.length == words * array.length
        return values(b"L", child).reshape(-1, words)
    assert (array.n_buffers, array.n_children) == (2, 0)
    size = array.length * np.dtype(TYPES[format]).itemsize
    return np.frombuffer(ctypes.string_at(array.buffers[1], size), TYPES[format])


def read(table):
    """The names and formats of the columns, and the values of each batch."""
    capsule = table.__arrow_c_stream__()
    stream = Stream.from_address(address_in(capsule, b"arrow_array_stream"))
    schema = Schema()
    assert stream.get_schema(stream, schema) == 0
    assert schema.format == b"+s" and schema.flags == 0
    children = [schema.children[i].contents for i in range(schema.n_children)]
    columns = [(child.name.decode(), child.format) for child in children]
    schema.release(schema)
    assert not schema.release
    batches = []
    while True:
        array = Array()
        assert stream.get_next(stream, array) == 0, stream.get_last_error(stream)
        if not array.release:
            break
        assert array.n_children == len(columns)
        batches.append(
            {
                name: values(format, array.children[i].contents)
                for i, (name, format) in enumerate(columns)
            }
        )
        array.release(array)
        assert not array.release
    return columns, batches


def test_streams_have_the_columns_of_a_batch():
    for layout in layouts():
        images = random_images(layout, 5)
        columns, batches = read(layout.arrow(images, batch_rows=2))
        expected = layout.decode_batch(images)
        assert [name for name, _ in columns] == list(expected)
        for name, column in expected.items():
            parts = [batch[name] for batch in batches]
            assert [len(part) for part in parts] == [2, 2, 1]
            found = np.concatenate(parts)
            assert found.dtype == column.dtype and (found == column).all()


def test_fields_strides_and_empty_dumps():
    images = random_images(LIF, 10)
    columns, batches = read(LIF.arrow(images[::2], fields=["vsi", "mdbEntry"]))
    assert columns == [("vsi", b"S"), ("mdbEntry", b"+w:3")]
    assert (batches[0]["vsi"] == LIF.decode_batch(images[::2], ["vsi"])["vsi"]).all()
    _, batches = read(LIF.arrow(images.tobytes(), ["vsi"], stride=160))
    assert (batches[0]["vsi"] == LIF.decode_batch(images[::2], ["vsi"])["vsi"]).all()
    assert read(LIF.arrow(b"", ["vsi"])) == ([("vsi", b"S")], [])
    with pytest.raises(vorn.Error, match="batch_rows is 0"):
        LIF.arrow(images, batch_rows=0)
    with pytest.raises(vorn.Error, match="field vsi has a column already"):
        LIF.arrow(images, ["vsi", "vsi"])


def test_a_consumer_may_keep_one_child():
    capsule = LIF.arrow(random_images(LIF, 3), ["vsi", "mdbEntry"]).__arrow_c_stream__()
    stream = Stream.from_address(address_in(capsule, b"arrow_array_stream"))
    array = Array()
    assert stream.get_next(stream, array) == 0
    taken = Array()
    ctypes.memmove(ctypes.byref(taken), array.children[1], ctypes.sizeof(Array))
    array.children[1].contents.release = type(taken.release)()
    array.release(array)
    expected = LIF.decode_batch(random_images(LIF, 3), ["mdbEntry"])["mdbEntry"]
    assert (values(b"+w:3", taken) == expected).all()
    taken.release(taken)


def test_the_dump_is_held_as_long_as_it_is_read():
    images = random_images(LIF, 3)
    held = weakref.ref(images)
    table = LIF.arrow(images)
    capsule = table.__arrow_c_stream__()
    del images, table
    gc.collect()
    assert held() is not None
    stream = Stream.from_address(address_in(capsule, b"arrow_array_stream"))
    stream.release(stream)
    assert not stream.release
    gc.collect()
    assert held() is None
    del capsule


def test_a_table_is_read_many_times_at_once():
    table = LIF.arrow(random_images(LIF, 100), batch_rows=7)
    expected = read(table)[1]
    with ThreadPoolExecutor(4) as pool:
        for _, batches in pool.map(lambda _: read(table), range(8)):
            assert all(
                (one[name] == other[name]).all()
                for one, other in zip(batches, expected, strict=True)
                for name in one
            )


def test_pyarrow_takes_it():
    pyarrow = pytest.importorskip("pyarrow", minversion="14")
    images = random_images(LIF, 3)
    table = pyarrow.table(LIF.arrow(images))
    assert table["vsi"].to_pylist() == LIF.decode_batch(images)["vsi"].tolist()

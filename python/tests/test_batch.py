"""Many entries at once: buffers, columns, data frames, threads."""

import mmap
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pandas as pd
import pytest

import vorn
from plain import ints, random_images

LIF = vorn.Layout("LifTable", "BCM88690_B0", 0)
FORMAT = vorn.Layout("EvecFormatTable", "BCM88690_B0")
IMAGES = random_images(LIF, 1000)
VSI = [int.from_bytes(row.tobytes(), "little") >> 1 & 0x7FFF for row in IMAGES]


def vsi(dump, **arguments):
    return LIF.decode_batch(dump, ["vsi"], **arguments)["vsi"].tolist()


def test_all_that_has_bytes_is_read():
    data = IMAGES.tobytes()
    for dump in (data, bytearray(data), memoryview(data), IMAGES, IMAGES.ravel(), IMAGES.view("i1")):
        assert vsi(dump) == VSI
    assert vsi(memoryview(data).cast("c")) == VSI
    assert vsi(b"") == [] and vsi(IMAGES[:0]) == [] and vsi(IMAGES[5:6]) == VSI[5:6]


def test_a_read_only_map_of_a_file_is_read(tmp_path):
    path = tmp_path / "dump"
    path.write_bytes(IMAGES.tobytes())
    with path.open("rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as dump:
        assert vsi(dump) == VSI
        table = LIF.arrow(dump, ["vsi"])
        with pytest.raises(BufferError):
            dump.close()  # it is read where it lies
        del table
        dump.close()


def test_strides_are_respected():
    wide = np.full((1000, 96), 0xEE, np.uint8)
    wide[:, 8:88] = IMAGES
    assert vsi(wide[:, 8:88]) == VSI
    assert vsi(wide[::3, 8:88]) == VSI[::3]
    assert vsi(wide.ravel()[8:], stride=96) == VSI
    assert vsi(wide.ravel()[8:-8], stride=96) == VSI
    assert vsi(IMAGES.tobytes(), stride=80) == VSI
    assert len(LIF.frame(wide.ravel()[8:], stride=96)) == 1000


@pytest.mark.parametrize(
    "dump, stride, message",
    [
        (bytes(81), None, "81 bytes are no whole number of images; an entry of LifTable on"),
        (bytes(170), 90, None),
        (bytes(160), 90, "160 bytes are no whole number of images"),
        (bytes(160), 79, "images that begin 79 bytes apart overlap"),
        (bytes(160), 0, "images that begin 0 bytes apart overlap"),
        (bytes(160), "80", "stride is a str; give an int"),
        (IMAGES, 80, "a dump of rows has a stride of its own"),
        (IMAGES[:, :79], None, "the dump has rows of 79 bytes; an entry of LifTable on"),
        (IMAGES[::-1], None, "the rows of the dump overlap or descend"),
        (np.broadcast_to(IMAGES[0], (3, 80)), None, "the rows of the dump overlap or descend"),
        (np.zeros((80, 3), np.uint8).T, None, "the rows of the dump overlap or descend"),
        (np.zeros((3, 160), np.uint8)[:, ::2], None, "don't lie one after another"),
        (np.zeros((2, 3, 80), np.uint8), None, "the dump has 3 dimensions"),
        (np.zeros(80, "u8"), None, "the dump has elements of 8 bytes"),
        ([0] * 80, None, "the dump is a list; give bytes"),
        (None, None, "the dump is a NoneType"),
        ("00" * 80, None, "the dump is a str"),
    ],
)
def test_dumps_that_do_not_divide_are_refused(dump, stride, message):
    calls = [LIF.decode_batch, LIF.arrow, LIF.frame]
    if message is None:
        assert len(LIF.decode_batch(dump, stride=stride)["vsi"]) == 2
        return
    for call in calls:
        with pytest.raises(vorn.Error) as caught:
            call(dump, stride=stride)
        assert message in str(caught.value)


def test_large_batches_share_no_memory():
    rows = 300_000  # columns of more than a few pages
    dumps = [np.full((rows, 80), byte, np.uint8) for byte in (0x11, 0x22, 0x33)]
    fields = ["vsi", "destination", "eei", "statObjectId"]
    expected = [LIF.decode(dump[0], fields) for dump in dumps]
    kept = [LIF.decode_batch(dump, fields) for dump in dumps]
    last = kept.pop()["vsi"]
    again = LIF.decode_batch(dumps[0], fields)
    assert (last == expected[2]["vsi"]).all()
    for columns, values in zip([*kept, again], [*expected[:2], expected[0]], strict=True):
        assert all((columns[name] == values[name]).all() for name in fields)


def test_columns_of_any_integers_are_encoded():
    wanted = LIF.encode_batch({"vsi": np.array([1, 2, 3], "u2"), "eei": [7, 8, 9]})
    for values in ([1, 2, 3], range(1, 4), (1, 2, 3), np.array([1, 2, 3], "i8"),
                   np.array([1, 2, 3], "u1"), np.array([1, 2, 3], ">u4"),
                   np.array([1, 2, 3], object), np.array([1, 9, 2, 9, 3, 9], "u2")[::2]):
        assert (LIF.encode_batch({"vsi": values, "eei": [7, 8, 9]}) == wanted).all()
    assert LIF.decode_batch(wanted, ["resultType"])["resultType"].tolist() == [58] * 3
    assert LIF.encode_batch({"vsi": []}).shape == (0, 80)
    assert LIF.encode_batch({"vsi": 3}).tobytes() == LIF.encode({"vsi": 3})
    assert LIF.encode_batch({}, base=wanted).tobytes() == wanted.tobytes()
    assert wanted.flags.writeable and wanted.dtype == np.uint8


def test_wide_columns_are_words_or_ints():
    numbers = [58 << 174 | 1 << 70 | row for row in range(3)]
    words = np.array([[n >> 64 * i & 2**64 - 1 for i in range(3)] for n in numbers], "u8")
    wanted = b"".join(LIF.encode({"mdbEntry": number}) for number in numbers)
    assert LIF.encode_batch({"mdbEntry": words}).tobytes() == wanted
    assert LIF.encode_batch({"mdbEntry": numbers}).tobytes() == wanted
    assert ints(LIF.decode_batch(wanted, ["mdbEntry"])["mdbEntry"]) == numbers


def test_a_base_for_all_or_for_each():
    bases = LIF.encode_batch({"eei": [1, 2], "vsi": 9})
    own = LIF.encode_batch({"vsi": [3, 4], "learnEnable": 1}, base=bases)
    columns = LIF.decode_batch(own, ["eei", "vsi", "learnEnable"])
    assert [column.tolist() for column in columns.values()] == [[1, 2], [3, 4], [1, 1]]
    one = LIF.encode_batch({"vsi": [3, 4]}, base=bases[1].tobytes())
    assert LIF.decode_batch(one, ["eei"])["eei"].tolist() == [2, 2]
    assert LIF.decode_batch(bases, ["vsi"])["vsi"].tolist() == [9, 9]  # untouched


def test_later_values_hold_in_the_order_given():
    layout = vorn.Layout("EvecTable", "BCM88375_A0")
    shared = [
        (one, other) for one in layout.fields for other in layout.fields
        if one.name != other.name and one.offset <= other.offset
        and other.offset + other.width <= one.offset + one.width
    ]
    assert shared
    for outer, inner in shared:
        ones = (1 << inner.width) - 1
        for values in ({outer.name: 0, inner.name: ones}, {inner.name: ones, outer.name: 0}):
            wanted = layout.encode(values, strict=False)
            for column in values:
                some = {**values, column: [values[column]]}
                assert layout.encode_batch(some, strict=False).tobytes() == wanted
                with pytest.raises(vorn.Error, match="contradict each other"):
                    layout.encode_batch(some)


@pytest.mark.parametrize(
    "values, base, message",
    [
        ({"vsi": [1, 40000]}, None, "row 1: value 40000 of field vsi is too large; its 15 bits"),
        ({"vsi": np.array([0] * 5000 + [40000])}, None, "row 5000: value 40000 of field vsi"),
        ({"vsi": [1, -1]}, None, "row 1: negative value -1 for vsi; a value is 0 or more"),
        ({"vsi": [1.0]}, None, "the values of field vsi are of type float64; give unsigned ints"),
        ({"vsi": ["1"]}, None, "the values of field vsi are of type <U1; give unsigned ints"),
        ({"vsi": [[1]]}, None, "have the shape (1, 1); its 15 bits need (N,)"),
        ({"mdbEntry": np.zeros((2, 2), "u8")}, None, "its 180 bits need (N, 3)"),
        ({"mdbEntry": [0]}, None, "row 0: "),
        ({"vsi": [1], "eei": [1, 2]}, None, "the columns differ in length: vsi has 1, eei has 2"),
        ({"vsi": [[1], [1, 2]]}, None, "the values of field vsi are no array"),
        ({"vsi": 40000}, None, "value 40000 of field vsi is too large"),
        ({"vsi": None}, None, "the value of field vsi is a NoneType"),
        ({"vsi": 1.5}, None, "the value of field vsi is a float"),
        ({"vsj": [1]}, None, 'no field "vsj" in LifTable on BCM88690_B0 variant 0'),
        ({"resultType": [58, 57]}, None, "field resultType of LifTable on BCM88690_B0 variant 0"),
        ([1], None, "the values are a list; give a dict of names of fields and arrays"),
        ({"vsi": [1]}, bytes(79), "the image has 79 bytes; an entry of LifTable"),
        ({"vsi": [1]}, bytes(80), "its tag resultType is 0x0, not 0x3a"),
        ({"vsi": [1, 2]}, LIF.encode({}) + bytes(80), "row 1: the image is not one of LifTable"),
        ({"vsi": [1]}, LIF.encode({}) * 2, "the base has 2 images; the columns have 1 row"),
        ({"vsi": [1]}, "x", "the base is a str; give bytes"),
    ],
)
def test_columns_that_do_not_fit_are_refused(values, base, message):
    with pytest.raises(vorn.Error) as caught:
        LIF.encode_batch(values, base=base)
    assert message in str(caught.value)


def test_frames():
    table = LIF.frame(IMAGES, first_entry=4096)
    assert isinstance(table, pd.DataFrame) and table.index.name == "entry"
    assert list(table.columns) == list(LIF) and len(table) == 1000
    assert table.loc[4097, "vsi"] == VSI[1] and table.vsi.dtype == np.uint16
    assert table.loc[4097, "mdbEntry"] == LIF.decode(IMAGES[1])["mdbEntry"]
    assert list(LIF.frame(IMAGES, fields=["vsi", "eei"]).columns) == ["vsi", "eei"]
    assert LIF.frame(IMAGES, fields=[]).shape == (1000, 0)


def test_differences():
    before = LIF.encode_batch({"vsi": [1, 2, 3], "eei": 5})
    after = LIF.encode_batch({"vsi": [1, 7, 3], "eei": [5, 5, 6]})
    found = vorn.diff(before, after, LIF, first_entry=100)
    assert list(found.columns) == ["entry", "field", "before", "after"]
    rows = [row for row in found.itertuples(index=False, name=None) if row[1] != "mdbEntry"]
    assert rows == [(101, "vsi", 2, 7), (102, "eei", 5, 6)]
    assert len(found) == 4 and found.entry.is_monotonic_increasing
    assert vorn.diff(before, before, LIF).empty
    one = FORMAT.encode_batch({"tagsToRemove": [1, 2]})
    two = FORMAT.encode_batch({"tagsToRemove": [1, 3]})
    narrow = vorn.diff(one, two, FORMAT)
    assert narrow.values.tolist() == [[1, "tagsToRemove", 2, 3]]
    assert narrow.before.dtype == np.uint64
    with pytest.raises(vorn.Error, match="the dumps differ in length: 3 and 2 entries"):
        vorn.diff(before, after[:2], LIF)


def test_threads_share_a_layout():
    parts = [IMAGES[i::4] for i in range(4)]
    with ThreadPoolExecutor(4) as pool:
        for _ in range(20):
            found = list(pool.map(vsi, parts))
            assert found == [VSI[i::4] for i in range(4)]


def test_other_threads_run_while_a_batch_is_decoded():
    dump = np.zeros((20_000, 80), np.uint8)
    ran = threading.Event()
    stop = threading.Event()
    runs = []

    def count():
        while not stop.wait(0.0001):
            runs.append(None)
            ran.set()

    # Switches only where the GIL is released: the thread can't run unless the batch does that.
    interval = sys.getswitchinterval()
    thread = threading.Thread(target=count)
    thread.start()
    ran.wait()
    sys.setswitchinterval(1000)
    try:
        before = len(runs)
        tries = 0
        while len(runs) == before and tries < 1000:
            LIF.decode_batch(dump)
            tries += 1
        assert len(runs) > before
    finally:
        sys.setswitchinterval(interval)
        stop.set()
        thread.join()

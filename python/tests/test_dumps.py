"""Dumps in files: every form, where entries lie, and what is refused."""

import gzip
import io
import json
import pickle
import warnings

import numpy as np
import pytest

import vorn
from plain import layouts, tagged_images

ACTION = vorn.Layout("TcamActionTable", "BCM88690_B0")
LIF = vorn.Layout("LifTable", "BCM88690_B0", 3)
CHIP = "BCM88690_B0"


def read(text, **options):
    file = io.BytesIO(text) if isinstance(text, bytes) else io.StringIO(text)
    return vorn.read_dump(file, chip=CHIP, table="TcamActionTable", **options)


def hexdump(data):
    rows = [
        f"{at:08x}  {data[at:at + 16].hex(' ')}  |{'.' * len(data[at:at + 16])}|\n"
        for at in range(0, len(data), 16)
    ]
    return "".join(rows) + f"{len(data):08x}\n"


def xxd(data):
    return "".join(
        f"{at:08x}: {data[at:at + 16].hex(' ', 2)}  .\n" for at in range(0, len(data), 16)
    )


DATA = bytes.fromhex("4523010000000000 ff00000000000080 0700000000000000")
ROWS = [[0x45, 0x23, 1, 0, 0, 0, 0, 0], [255, 0, 0, 0, 0, 0, 0, 128], [7, 0, 0, 0, 0, 0, 0, 0]]


@pytest.mark.parametrize(
    "text, options",
    [
        (DATA, {"format": "binary"}),
        (hexdump(DATA), {}),
        (xxd(DATA), {}),
        (DATA.hex(), {"format": "stream"}),
        ("4523010000000000 ff000000 00000080 07000000 00000000", {"format": "stream"}),
        (b"".join(DATA[at:at + 8] + b"....." for at in (0, 8, 16)), {"stride": 13, "format": "binary"}),
    ],
)
def test_entries_one_after_another_are_counted(text, options):
    for first in (0, 1000):
        images, entries = dump = read(text, first_entry=first, array=0, identifier=1, **options)
        assert images.tolist() == ROWS and images.dtype == np.uint8
        assert entries.tolist() == [first, first + 1, first + 2] and entries.dtype == np.int64
        assert dump.layout == ACTION and dump.empty == 0
        assert dump.arrays.tolist() == [0] * 3 and dump.identifiers.tolist() == [1] * 3
        expected = [ACTION.address(first + i, 0, 1).address for i in range(3)]
        assert dump.addresses.tolist() == expected
        assert dump.frame(["action"]).index.tolist() == entries.tolist()


@pytest.mark.parametrize(
    "text",
    [
        "4523010000000000\nff00000000000080\n# three\n\n0700000000000000\n",
        "0x00012345 0x00000000\n0x000000ff 0x80000000\n0x00000007 0x00000000\n",
        "".join(json.dumps({"image": row}) + "\n" for row in ROWS),
        "image\n4523010000000000\nff00000000000080\n0700000000000000\n",
    ],
)
def test_lines_do_not_say_where_they_lie(text):
    dump = read(text)
    assert dump.images.tolist() == ROWS
    for places in (dump.entries, dump.arrays, dump.identifiers, dump.addresses):
        assert places.tolist() == [-1] * 3
    encoded = read(text.encode())
    assert (encoded.images == dump.images).all()


def test_entries_and_addresses_that_are_said():
    places = [(7, 0, 0), (9, 0, 1)]
    lines = [json.dumps({"image": DATA[:8].hex(), "entry": e, "array": a, "identifier": i})
             for e, a, i in places]
    dump = read("\n".join(lines))
    assert dump.entries.tolist() == [7, 9] and dump.identifiers.tolist() == [0, 1]
    addresses = [ACTION.address(*place).address for place in places]
    assert dump.addresses.tolist() == addresses
    text = "".join(f"{address:#x}: {DATA[:8].hex()}\n" for address in addresses)
    located = vorn.read_dump(io.StringIO(text), CHIP, "TcamActionTable")
    assert located.entries.tolist() == [7, 9] and located.addresses.tolist() == addresses


def test_every_pair_there_and_back(tmp_path):
    path = tmp_path / "dump.hex"
    for layout in layouts():
        images = tagged_images(layout, 1)
        path.write_text(hexdump(images.tobytes()))
        dump = vorn.read_dump(path, layout.chip, layout.table, layout.variant)
        assert dump.layout == layout and (dump.images == images).all()


def test_the_variant_is_that_of_the_tag_and_empty_entries_are_counted():
    images = LIF.encode_batch({"vsi": [1, 2, 3]})
    data = images[:2].tobytes() + bytes(160) + images[2:].tobytes()
    dump = vorn.read_dump(io.BytesIO(data), CHIP, "LifTable", format="binary")
    assert dump.layout == LIF and dump.empty == 2
    assert dump.entries.tolist() == [0, 1, 4] and (dump.images == images).all()
    whole = vorn.read_dump(io.BytesIO(data), CHIP, "LifTable", 3, format="binary", empty=True)
    assert whole.entries.tolist() == [0, 1, 2, 3, 4] and whole.empty == 0
    assert whole.images.tobytes() == data
    nobody = vorn.read_dump(io.BytesIO(bytes(240)), CHIP, "LifTable", format="binary")
    assert nobody.images.shape == (0, 80) and nobody.empty == 3


def test_a_tag_that_contradicts_the_variant():
    text = LIF.encode({"vsi": 5}).hex()
    arguments = (CHIP, "LifTable", 4)
    with pytest.warns(UserWarning, match="^the file:1:1: .*its tag resultType is 0x25, not 0x21"):
        dump = vorn.read_dump(io.StringIO(f"{text}\n{text}"), *arguments)
    assert len(dump.entries) == 2 and dump.layout.variant == 4
    with pytest.raises(vorn.Error, match="its tag resultType is 0x25, not 0x21"):
        vorn.read_dump(io.StringIO(text), *arguments, strict=True)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        assert vorn.read_dump(io.StringIO(text), CHIP, "LifTable").layout.variant == 3


def test_offsets_that_begin_elsewhere():
    rows = "00000008: 0100 0000 0000 0000 0200 0000 0000 0000\n"
    with pytest.warns(UserWarning, match="begins at offset 0x8, .* --first-entry 1 takes"):
        dump = vorn.read_dump(io.StringIO(rows), CHIP, "TcamActionTable")
    assert dump.entries.tolist() == [0, 1]
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        for first in (0, 1):
            dump = vorn.read_dump(io.StringIO(rows), CHIP, "TcamActionTable", first_entry=first)
            assert dump.entries.tolist() == [first, first + 1]


def test_dumps_of_several_pairs():
    text = "".join(
        f"{layout.table} {layout.chip} {layout.variant}: {layout.encode({}).hex()}\n"
        for layout in (LIF, ACTION, LIF)
    )
    dumps = vorn.read_dumps(io.StringIO(text))
    assert {layout: dump.images.shape for layout, dump in dumps.items()} == {
        LIF: (2, 80), ACTION: (1, 8)
    }
    assert all(dump.layout == layout for layout, dump in dumps.items())
    with pytest.raises(vorn.Error, match="^the file:2:32: the image is one of TcamActionTable on "
                       "BCM88690_B0, those before it of LifTable on .*; read_dumps"):
        vorn.read_dump(io.StringIO(text))
    assert vorn.read_dumps(io.StringIO()) == {}


def test_a_large_file_is_read_piece_by_piece():
    class Pieces(io.BytesIO):
        most = 0

        def read(self, size=-1):
            self.most = max(self.most, size)
            assert size > 0
            return super().read(size)

    images = LIF.encode_batch({"vsi": np.arange(20_000)})
    file = Pieces(images.tobytes())
    dump = vorn.read_dump(file, CHIP, "LifTable", format="binary")
    assert (dump.images == images).all() and file.most < images.size / 4
    assert (dump.entries == np.arange(20_000)).all()
    text = io.StringIO("\n".join(row.tobytes().hex() for row in images))
    assert (vorn.read_dump(text, CHIP, "LifTable").images == images).all()


def test_files_that_are_open(tmp_path):
    path = tmp_path / "dump.txt"
    path.write_text("0700000000000000\n")
    wanted = [ROWS[2]]
    for name in (path, str(path), bytes(path)):
        assert vorn.read_dump(name, CHIP, "TcamActionTable").images.tolist() == wanted
    with path.open() as text, path.open("rb") as binary:
        for file in (text, binary):
            assert vorn.read_dump(file, CHIP, "TcamActionTable").images.tolist() == wanted
    with gzip.open(tmp_path / "dump.gz", "wb") as file:
        file.write(path.read_bytes())
    with gzip.open(tmp_path / "dump.gz") as file:
        assert vorn.read_dump(file, CHIP, "TcamActionTable").images.tolist() == wanted
    with path.open() as text, pytest.raises(vorn.Error, match=f"^{path}:1:1: the image has 8"):
        vorn.read_dump(text, CHIP, "LifTable")


def compressed(name, data):
    if name == "gzip":
        return gzip.compress(data)
    return pytest.importorskip("zstandard").ZstdCompressor(write_checksum=True).compress(data)


@pytest.mark.parametrize("name", ["gzip", "zstd"])
def test_what_is_compressed(tmp_path, name):
    data = compressed(name, DATA)
    assert read(data).images.tolist() == ROWS
    assert read(data + data).entries.tolist() == [0, 1, 2, 3, 4, 5]
    path = tmp_path / "dump.hex"
    images = LIF.encode_batch({"vsi": np.arange(20_000)})
    path.write_bytes(compressed(name, images.tobytes()))
    assert (vorn.read_dump(path, CHIP, "LifTable").images == images).all()
    for cut_off in (data[:4], data[: len(data) // 2], data[:-1], data + data[:-1]):
        with pytest.raises(vorn.Error, match=f"^the file: the {name} data is cut off$"):
            read(cut_off)
    for damaged in (data[:-6] + bytes(6), data + b"hello"):
        with pytest.raises(vorn.Error, match=f"^the file: the {name} data is damaged: "):
            read(damaged)


def test_a_dump_pickles():
    dump = pickle.loads(pickle.dumps(read(hexdump(DATA))))
    assert dump.layout == ACTION and dump.images.tolist() == ROWS and dump.entries.tolist() == [0, 1, 2]


class Broken:
    def __init__(self, gives):
        self.gives = gives

    def read(self, size):
        if isinstance(self.gives, Exception):
            raise self.gives
        return self.gives


@pytest.mark.parametrize(
    "source, options, message",
    [
        ("0100000000000000\n0g\n", {}, 'the file:2:2: bad digit "g" in "0g"'),
        ("01\n", {}, "the file:1:1: the image has 1 byte; the fields of TcamActionTable on"),
        (hexdump(DATA[:-1]), {}, "7 bytes are left over after 2 entries of TcamActionTable on"),
        ("", {"table": None, "chip": None}, "the file has no image"),
        ("0100000000000000", {"table": None}, "the file:1:1: the image doesn't say its table"),
        ("0100000000000000", {"chip": None}, "the file:1:1: the image doesn't say its chip type"),
        ("LifTable 10 0: 03\n", {}, "the file:1:1: the image is one of LifTable, not of"),
        ("", {"table": "TcamActionTabel"}, "did you mean TcamActionTable?"),
        ("", {"chip": 9}, "unknown chip 9; allowed: "),
        ("", {"variant": 1}, "TcamActionTable has no variant"),
        ("", {"variant": 300}, "TcamActionTable has no variant 300 on"),
        ("", {"format": "word"}, 'unknown format "word"; did you mean words?'),
        ("", {"format": None}, "the format is a NoneType; give a str"),
        ("", {"stride": 7}, "a stride of 7 bytes is too short; an entry of TcamActionTable"),
        ("", {"stride": 1.5}, "stride is a float; give an int"),
        ("", {"first_entry": -1}, "negative value -1 for first_entry"),
        ("\ud800", {}, "what the file holds is no valid text"),
        (7, {}, "the path is an int; give a path or a file"),
        (None, {}, "the path is a NoneType; give a path or a file"),
        ("/missing/file", {"open": True}, "cannot read /missing/file: No such file or directory"),
        ("/", {"open": True}, "cannot read /: Is a directory"),
        (Broken(7), {}, "what read() of the file gives is an int; give a file that is open"),
        (Broken(None), {}, "what read() of the file gives is a NoneType"),
        (Broken(OSError(5, "Input/output error")), {}, "cannot read the file: Input/output error"),
        (Broken(UnicodeDecodeError("ascii", b"x", 0, 1, "no")), {}, "cannot read the file: 'ascii'"),
    ],
)
def test_what_is_no_dump_is_refused(source, options, message):
    options = {"chip": CHIP, "table": "TcamActionTable", **options}
    if not options.pop("open", False) and isinstance(source, str):
        source = io.StringIO(source)
    for function in (vorn.read_dump, vorn.read_dumps):
        if message == "the file has no image" and function is vorn.read_dumps:
            continue
        with pytest.raises(vorn.Error) as caught:
            function(source, **options)
        assert type(caught.value) is vorn.Error and "\n" not in str(caught.value)
        assert message in str(caught.value)
        if isinstance(source, io.StringIO):
            source.seek(0)

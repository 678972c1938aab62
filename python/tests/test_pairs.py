"""All pairs: against a decoder in plain Python, and there and back."""

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import vorn
from plain import PAIRS, decoded, ints, layouts, random_images, tagged_images
from stated import PAIR_COUNT


def test_every_pair_is_there():
    assert len(PAIRS) == PAIR_COUNT


def test_decoding_agrees_with_plain_python():
    for layout in layouts():
        images = random_images(layout, 9)
        expected = [decoded(layout, row.tobytes()) for row in images]
        assert [layout.decode(row) for row in images] == expected
        columns = layout.decode_batch(images)
        assert list(columns) == list(layout) == [field.name for field in layout.fields]
        for name, column in columns.items():
            assert ints(column) == [values[name] for values in expected]
            width = layout[name].width
            narrowest = 8 if width <= 8 else 16 if width <= 16 else 32 if width <= 32 else 64
            assert column.dtype == f"uint{narrowest}"
            assert column.shape == ((9,) if width <= 64 else (9, (width + 63) // 64))


def test_what_is_decoded_encodes_to_the_same():
    for layout in layouts():
        images = tagged_images(layout, 5)
        values = [layout.decode(row) for row in images]
        assert [layout.encode(own, base=row) for own, row in zip(values, images)] == [
            row.tobytes() for row in images
        ]
        assert (layout.encode_batch(layout.decode_batch(images), base=images) == images).all()
        # Without a base, only what no field has is lost.
        again = [layout.encode(own) for own in values]
        assert [layout.decode(image) for image in again] == values
        assert layout.encode_batch(layout.decode_batch(images)).tobytes() == b"".join(again)


@settings(max_examples=150, deadline=None)
@given(data=st.data())
def test_a_field_is_set_and_nothing_else(data):
    layout = vorn.Layout(*data.draw(st.sampled_from(PAIRS)))
    free = [field for field in layout.fields if not field.read_only]
    field = data.draw(st.sampled_from(free))
    value = data.draw(st.integers(0, (1 << field.width) - 1))
    base = layout.encode({})
    mask = (1 << field.width) - 1 << field.offset
    wanted = (int.from_bytes(base, "little") & ~mask) | value << field.offset
    wanted = wanted.to_bytes(layout.size, "little")
    assert layout.encode({field.name: value}, base=base, strict=False) == wanted
    rows = layout.encode_batch({field.name: [value, value]}, base=base, strict=False)
    assert rows.tobytes() == wanted * 2


@settings(max_examples=100, deadline=None)
@given(data=st.data())
def test_a_value_too_large_is_refused(data):
    layout = vorn.Layout(*data.draw(st.sampled_from(PAIRS)))
    field = data.draw(st.sampled_from([field for field in layout.fields if not field.read_only]))
    value = data.draw(st.integers(1 << field.width, 1 << 700))
    with pytest.raises(vorn.Error, match=f"field {field.name} is too large"):
        layout.encode({field.name: value})
    with pytest.raises(vorn.Error, match=f"row 1: .*field {field.name} is too large"):
        layout.encode_batch({field.name: np.array([0, value], object)}, strict=False)


@settings(max_examples=200, deadline=None)
@given(pair=st.sampled_from(PAIRS), image=st.binary(max_size=100))
def test_any_bytes_decode_or_are_refused(pair, image):
    layout = vorn.Layout(*pair)
    needed = (max(field.offset + field.width for field in layout.fields) + 7) // 8
    if len(image) >= needed:
        assert layout.decode(image) == decoded(layout, image)
    else:
        with pytest.raises(vorn.Error, match=f"^the image has {len(image)} bytes; "):
            layout.decode(image)
    if len(image) % layout.size:
        with pytest.raises(vorn.Error, match="no whole number of images"):
            layout.decode_batch(image)


def test_addresses_lead_back():
    for layout in layouts():
        try:
            address = layout.address(0)
        except vorn.Error as error:
            assert str(error).endswith("has no address")
            continue
        found = vorn.locate(layout.chip, address.address, address.dest_block)
        assert vorn.Location(layout, 0, 0, 0) in found


def test_each_image_is_identified():
    for layout in layouts():
        assert layout in vorn.identify(layout.chip, layout.encode({}))

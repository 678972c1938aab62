"""A few tables against rows that are stated here."""

import pytest

import vorn
from stated import CHIPS, CLASSES

LIF = {
    "mdbEntry": (0, 180),
    "fodoAssignmentMode": (0, 1),
    "vsi": (1, 15),
    "propagationProf": (16, 1),
    "qosProfile": (17, 8),
    "inLifProfile": (25, 8),
    "oamLifSet": (33, 1),
    "lifGenericData1": (34, 16),
    "lifGenericData0": (50, 16),
    "statObjectCmd": (66, 5),
    "statObjectId": (71, 12),
    "vlanEditVid2": (83, 12),
    "vlanEditVid1": (95, 12),
    "vlanEditPcpDeiProfile": (107, 6),
    "vlanEditProfile": (113, 6),
    "learnPayloadContext": (119, 1),
    "learnEnable": (120, 1),
    "actionProfileIdx": (121, 3),
    "serviceType": (124, 1),
    "eei": (125, 24),
    "destination": (149, 21),
    "globInLif": (170, 4),
    "resultType": (174, 6),
}

EVEC_FORMAT = {
    "tagsToRemove": (0, 2),
    "outerVidSource": (2, 3),
    "innerVidSource": (5, 3),
    "outerTpidIndex": (8, 4),
    "innerTpidIndex": (12, 4),
    "outerPcpDeiSource": (16, 2),
    "innerPcpDeiSource": (18, 2),
}

LIF_SOFTWARE = {
    "mdbEntry": (0, 180),
    "fodoAssignmentMode": (1, 1),
    "vsi": (2, 17),
    "propagationProf": (19, 1),
    "qosProfile": (20, 8),
    "inLifProfile": (28, 8),
    "oamLifSet": (36, 1),
    "lifGenericData0": (37, 8),
    "statObjectCmd": (45, 5),
    "statObjectId": (50, 17),
    "vlanEditVid2": (67, 12),
    "vlanEditVid1": (79, 12),
    "vlanEditPcpDeiProfile": (91, 6),
    "vlanEditProfile": (97, 6),
    "learnPayloadContext": (103, 1),
    "learnEnable": (104, 1),
    "actionProfileIdx": (105, 3),
    "serviceType": (108, 1),
    "globOutLif": (109, 22),
    "destination": (131, 21),
    "globInLif": (152, 22),
    "resultType": (174, 6),
}

ROWS = [
    ("LifTable", "BCM88690_B0", 0, 80, {"resultType": 58}, LIF),
    ("LifTable", "BCM88480_B0", 2, 80, {"resultType": 58}, LIF),
    ("LifTable", "Software", 0, 24, {}, LIF_SOFTWARE),
    ("EvecFormatTable", "BCM88800_A0", 0, 4, {}, EVEC_FORMAT),
    ("LifProfileAttributes", "BCM88850_A0", 0, 4, {}, {"daNotFoundDestinationProfile": (0, 2)}),
]


@pytest.mark.parametrize("table, chip, variant, size, tag, fields", ROWS)
def test_layouts_have_the_stated_rows(table, chip, variant, size, tag, fields):
    layout = vorn.Layout(table, chip, variant)
    assert (layout.table, layout.chip, layout.chip_number) == (table, chip, CHIPS[chip])
    assert (layout.variant, layout.size, layout.tag) == (variant, size, tag)
    assert {field.name: (field.offset, field.width) for field in layout.fields} == fields
    read_only = ["resultType"] if "resultType" in fields else []
    assert [field.name for field in layout.fields if field.read_only] == read_only
    for name, (offset, width) in fields.items():
        image = ((1 << width) - 1 << offset).to_bytes(size, "little")
        assert layout.decode(image, [name]) == {name: (1 << width) - 1}
        if not layout[name].read_only and name != "mdbEntry":
            stamped = 0 if not tag else 58 << 174
            wanted = (1 << offset | 1 << offset + width - 1 | stamped).to_bytes(size, "little")
            value = 1 | 1 << width - 1
            assert layout.encode({name: value}) == wanted
            assert bytes(layout.encode_batch({name: [value]})[0]) == wanted


def test_chips_tables_and_pairs():
    assert vorn.chips() == CHIPS
    assert list(vorn.tables()) == CLASSES
    assert vorn.pairs("TcamBankIpv4Tt") == [(chip, 0) for chip in (10, 12, 13, 14, 15, 16)]
    old = [(chip, variant) for chip in (2, 3) for variant in (0, 1, 2, 3, 4, 6)]
    assert vorn.pairs("LifTable")[:12] == old
    assert vorn.pairs("LifTable")[-1] == (21, 0)


def test_a_field_has_names_and_an_identifier():
    field = vorn.Layout("TcamBankIpv4Tt", "BCM88690_B0")["ipv4Dip"]
    assert field == ("ipv4Dip", "IPV4_DIP", 183, 41, 32, False)
    assert field == vorn.Field("ipv4Dip", "IPV4_DIP", 183, 41, 32, False)


@pytest.mark.parametrize(
    "table, chip, entry, array, identifier, address",
    [
        ("LifTable", "BCM88650_B0", 5, 3, 0, (0x1070000 + 3 * 16384 + 5, 0, 52)),
        ("LifTable", "BCM88470_A0", 32767, 1, 0, (0x680000 + 32768 + 32767, 0, 58)),
        ("LifTable", "BCM88690_B0", 4097, 0, 0, (4097, 10, 1)),
        ("LifProfileAttributes", "BCM88690_B0", 255, 0, 1, (0x8200FF, 0, 10)),
        ("LifProfileAttributes", "BCM88850_A0", 0, 0, 1, (0x820000, 2, 26)),
    ],
)
def test_addresses_and_what_lies_there(table, chip, entry, array, identifier, address):
    layout = vorn.Layout(table, chip)
    found = layout.address(entry, array=array, identifier=identifier)
    assert found == address
    assert found == vorn.Address(*address)
    place = vorn.Location(layout, entry, array, identifier)
    assert place in vorn.locate(chip, found.address)
    assert place in vorn.locate(layout.chip_number, found.address, found.dest_block)


def test_identify_goes_by_length_and_tag():
    image = vorn.Layout("LifTable", "BCM88690_B0", 9).encode({})
    first = vorn.identify("BCM88690_B0", image)[0]
    assert first == vorn.Layout("LifTable", "BCM88690_B0", 9)
    assert vorn.Layout("LifTable", 10, 8) not in vorn.identify(10, image)
    with pytest.raises(vorn.Error, match="the image has 5 bytes; an entry on BCM88690_B0 has "):
        vorn.identify("BCM88690_B0", bytes(5))

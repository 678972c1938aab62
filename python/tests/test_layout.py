"""Layouts as objects, and the values of one entry."""

import doctest
import inspect
import pickle
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import vorn
from plain import layouts
from stated import PAIR_COUNT

LIF = vorn.Layout("LifTable", "BCM88690_B0", 0)


def test_equal_by_pair():
    same = vorn.Layout("LifTable", 10)
    assert same == LIF and hash(same) == hash(LIF) and {same: 1}[LIF] == 1
    assert LIF != vorn.Layout("LifTable", "BCM88690_B0", 2)
    assert LIF != vorn.Layout("LifTable", "BCM88800_A0", 0)
    assert LIF != "LifTable" and len({*layouts(), *layouts()}) == PAIR_COUNT


def test_prints_as_it_is_typed():
    assert repr(LIF) == "vorn.Layout('LifTable', 'BCM88690_B0', 0)"
    assert all(eval(repr(layout)) == layout for layout in layouts())


@pytest.mark.parametrize("protocol", range(pickle.HIGHEST_PROTOCOL + 1))
def test_pickles(protocol):
    kept = [LIF, LIF["vsi"], LIF.address(7), vorn.Location(LIF, 1, 0, 0)]
    assert pickle.loads(pickle.dumps(kept, protocol)) == kept
    error = pickle.loads(pickle.dumps(vorn.Error("no"), protocol))
    assert isinstance(error, vorn.Error) and str(error) == "no"


def test_fields_by_name():
    assert "vsi" in LIF and "vsj" not in LIF and 7 not in LIF
    assert LIF.fields == [LIF[name] for name in LIF]
    LIF.fields.clear()
    assert len(LIF.fields) == 23


def test_values_are_ints_and_texts():
    layout = vorn.Layout("TcamBankIpv4Tt", "BCM88690_B0")
    image = layout.encode({"ipv4Dip": "10.0.0.1", "ipv4Sip": "mask", "vrf": np.uint16(513)})
    wanted = {"ipv4Dip": 0x0A000001, "ipv4Sip": 0xFFFFFFFF, "vrf": 513}
    assert layout.decode(image, wanted) == wanted
    assert layout.decode(layout.encode({"vrf": "0b11"}), ["vrf"]) == {"vrf": 3}
    assert layout.decode(layout.encode({"vrf": True}), ["vrf"]) == {"vrf": 1}


def test_base_keeps_the_rest():
    image = LIF.encode({"vsi": 2000, "vlanEditVid1": 100})
    other = LIF.encode({"vsi": 1}, base=image)
    assert LIF.decode(other) == {**LIF.decode(image), "vsi": 1, "mdbEntry": LIF.decode(other)[
        "mdbEntry"]}
    assert LIF.encode({}, base=bytearray(image)) == image
    assert LIF.encode({}, base=np.frombuffer(image, np.uint8)) == image


def test_shared_bits_must_agree():
    both = {"mdbEntry": 2 << 1, "vsi": 2, "resultType": 58}
    with pytest.raises(vorn.Error, match="contradict each other"):
        LIF.encode(both)
    both["mdbEntry"] |= 58 << 174
    assert LIF.decode(LIF.encode(both), ["vsi"]) == {"vsi": 2}
    with pytest.raises(vorn.Error, match="fields mdbEntry and vsi of .* share the bits 1 to 15"):
        LIF.encode({**both, "vsi": 3})
    with pytest.raises(vorn.Error, match="fields mdbEntry and vsi of .* share the bits 1 to 15"):
        LIF.encode_batch({**both, "vsi": [2, 3]})
    assert LIF.decode(LIF.encode({**both, "vsi": 3}, strict=False), ["vsi"]) == {"vsi": 3}
    held = LIF.encode_batch({**both, "vsi": [2, 3]}, strict=False)
    assert LIF.decode_batch(held, ["vsi"])["vsi"].tolist() == [2, 3]


@pytest.mark.parametrize(
    "call, message",
    [
        (lambda: vorn.Layout("LifTabel", 10), 'unknown table "LifTabel"; did you mean LifTable?'),
        (lambda: vorn.Layout("LifTable", 9), "unknown chip 9; allowed: BCM88650_B0 (2), "),
        (lambda: vorn.Layout("LifTable", -1), 'unknown chip "-1"; allowed: '),
        (lambda: vorn.Layout("LifTable", 10**5000), "unknown chip 0x"),
        (lambda: vorn.Layout("LifTable", "BCM8869_B0"), "did you mean BCM88690_B0?"),
        (lambda: vorn.Layout("LifTable", 1.5), "the chip is a float; give its name or its number"),
        (lambda: vorn.Layout(b"LifTable", 10), "the table is a bytes; give a str"),
        (lambda: vorn.Layout("LifTable", 10, 5), "LifTable has no variant 5 on BCM88690_B0"),
        (lambda: vorn.Layout("LifTable", 10, -5), "negative value -5 for variant"),
        (lambda: vorn.Layout("LifTable", 10, 2**64), "variant 18446744073709551616 is out of"),
        (lambda: vorn.Layout("LifTable", 10, None), "variant is a NoneType; give an int"),
        (lambda: vorn.Layout("LifTable\0", 10), 'unknown table "LifTable\\x00"'),
        (lambda: vorn.Layout("\ud800", 10), "the table is no valid text"),
        (lambda: vorn.pairs("Lif"), 'unknown table "Lif"'),
        (lambda: LIF["vsy"], 'no field "vsy" in LifTable on BCM88690_B0 variant 0; did you mean'),
        (lambda: LIF["learnInfo"], "field learnInfo does not exist in LifTable on BCM88690_B0"),
        (lambda: LIF.encode({"vsi": -1}), "negative value -1 for vsi; a value is 0 or more"),
        (lambda: LIF.encode({"vsi": -(10**5000)}), "negative value -0x"),
        (lambda: LIF.encode({"vsi": 1.0}), "the value of field vsi is a float; give an int"),
        (lambda: LIF.encode({"vsi": "1.0"}), 'bad value "1.0" for vsi; '),
        (lambda: LIF.encode({"vsi": "70000"}), "value 70000 of field vsi is too large; its 15"),
        (lambda: LIF.encode({"resultType": 1}), "is read-only: it holds the entry's tag"),
        (lambda: LIF.encode({3: 1}), "the name of a field is an int; give a str"),
        (lambda: LIF.encode([("vsi", 1)]), "the values are a list; give a dict"),
        (lambda: LIF.encode({}, base=b"1"), "the image has 1 bytes; an entry of LifTable"),
        (lambda: LIF.encode({}, base=bytes(80)), "its tag resultType is 0x0, not 0x3a"),
        (lambda: LIF.encode({}, base=7), "the base is an int; give bytes"),
        (lambda: LIF.decode("a00f"), "the image is a str; give bytes"),
        (lambda: LIF.decode(bytes(22)), "the image has 22 bytes; the fields of LifTable on"),
        (lambda: LIF.decode(bytes(22), ["resultType"]), "needs 23, a whole entry has 80"),
        (lambda: LIF.decode(bytes(80), ["x"]), 'no field "x" in LifTable on BCM88690_B0'),
        (lambda: LIF.decode(bytes(80), "vsi"), "fields is a str; give a list of names"),
        (lambda: LIF.decode(bytes(80), [1]), "the name of a field is an int"),
        (lambda: LIF.decode(np.zeros(160, np.uint8)[::2]), "don't lie one after another"),
        (lambda: LIF.address(2**32 - 1), "entry 4294967295 is out of range in LifTable"),
        (lambda: LIF.address(-1), "negative value -1 for entry"),
        (lambda: LIF.address(0, array=1), "array 1 is out of range"),
        (lambda: LIF.address(0, identifier=1), "identifier 1 is out of range"),
        (lambda: vorn.Layout("LifTable", 21).address(0), "LifTable on Software has no address"),
        (lambda: vorn.locate(10, 2**32), "address 4294967296 is out of range; it is at most"),
        (lambda: vorn.locate(10, 0xFFFFFFFF), "0xffffffff"),
        (lambda: vorn.locate(10, 1, 256), "dest_block 256 is out of range; it is at most 255"),
        (lambda: vorn.identify(10, "x"), "the image is a str"),
    ],
)
def test_bad_input_is_an_error(call, message):
    with pytest.raises(vorn.Error) as caught:
        call()
    assert isinstance(caught.value, ValueError) and type(caught.value) is vorn.Error
    assert message in str(caught.value) and "\n" not in str(caught.value)


def test_a_failed_assertion_is_an_exception():
    with pytest.raises(vorn.MisuseError, match="vsiIs.*: assertion \"vsi <= 0x7fff\" failed"):
        vorn._vorn._fail_assertion()
    assert LIF.decode(LIF.encode({"vsi": 5}), ["vsi"]) == {"vsi": 5}


def test_other_assertions_of_the_process_still_end_it():
    script = (
        "import ctypes, vorn\n"
        "ctypes.CDLL(None).__assert_fail(b'of another library', b'file', 1, b'f')\n"
    )
    run = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True)
    assert run.returncode == -6 and "of another library" in run.stderr


def test_the_import_needs_neither_numpy_nor_pandas():
    script = "import sys, vorn; print({'numpy', 'pandas'} & set(sys.modules))"
    run = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True)
    assert run.stdout == "set()\n"


def documented():
    yield "vorn", vorn.__doc__
    for name in vorn.__all__:
        yield name, getattr(vorn, name).__doc__
    special = {"__getitem__", "__contains__", "__iter__", "__arrow_c_stream__", "__arrow_c_schema__"}
    for owner in (vorn.Layout, vorn.ArrowTable, vorn.Dump):
        for name, member in vars(owner).items():
            if name[0] != "_" or owner is not vorn.Dump and name in special:
                yield f"{owner.__name__}.{name}", member.__doc__


def test_all_that_is_public_is_documented():
    names = {name for name, _ in documented()}
    assert len(names) == len(list(documented())) and len(names) > 35
    assert {"Layout.size", "Layout.encode_batch", "Dump.frame", "read_dumps"} < names


@pytest.mark.parametrize("name, text", documented())
def test_documentation_has_an_example_that_runs(name, text):
    parsed = doctest.DocTestParser().get_doctest(text, {"vorn": vorn}, name, None, 0)
    assert parsed.examples
    failures = []
    flags = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE
    runner = doctest.DocTestRunner(optionflags=flags, verbose=False)
    runner.run(parsed, out=failures.append)
    assert not failures, "".join(failures)


def test_signatures_are_known():
    assert str(inspect.signature(vorn.Layout.decode)) == "(self, image, fields=None)"
    assert str(inspect.signature(vorn.locate)) == "(chip, address, dest_block=None)"


def test_the_page_says_what_happens(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    page = (Path(__file__).resolve().parents[2] / "docs/python.md").read_text()
    parsed = doctest.DocTestParser().get_doctest(page, {}, "python.md", None, 0)
    assert len(parsed.examples) > 10
    failures = []
    doctest.DocTestRunner(verbose=False).run(parsed, out=failures.append)
    assert not failures, "".join(failures)

"""The JSON Schemas that `vorn export` prints, held against a validator and against `vorn program`.

    schema.py VORN

What both must take and what both must refuse is written here, from the widths of the fields.
"""

import csv
import io
import json
import random
import subprocess
import sys

from jsonschema import Draft202012Validator
from stated import PAIR_COUNT

VORN = sys.argv[1]


def run(*arguments, given=""):
    return subprocess.run([VORN, *arguments], input=given, capture_output=True, text=True)


def schema_of(*arguments):
    outcome = run("export", "--format", "json-schema", *arguments)
    assert outcome.returncode == 0, outcome.stderr
    schema = json.loads(outcome.stdout)
    Draft202012Validator.check_schema(schema)
    return Draft202012Validator(schema)


def underscored(digits):
    """An underscore after every third digit but the last."""
    return "_".join(digits[at : at + 3] for at in range(0, len(digits), 3))


def texts_of(number):
    """The ways to write a number."""
    hexadecimal, binary = f"{number:x}", f"{number:b}"
    return [
        str(number),
        underscored(str(number)),
        "0x" + hexadecimal,
        "0X00" + underscored(hexadecimal.upper()),
        "0b" + binary,
        "0B0_" + underscored(binary),
    ]


def good_values(width):
    largest = 2**width - 1
    numbers = {0, 1, largest, largest - 1, largest // 3, random.randrange(largest + 1)}
    values = [value for number in sorted(numbers) for value in texts_of(number)] + ["mask"]
    values += [number for number in numbers if number < 2**64]
    if width >= 32:
        values += ["10.0.0.1", "255.255.255.255", "0.0.0.0"]
    if width >= 48:
        values += ["00:1c:73:00:00:01", "00-1C-73-00-00-01", "001c.7300.0001"]
    if width >= 128:
        values += ["2001:db8::1", "::", "::1", "1::", "1:2:3:4:5:6:7:8", "1:2:3:4:5:6:7::",
                   "::2:3:4:5:6:7:8", "1::3:4:5:6:7:8", "::ffff:10.0.0.1", "1:2:3:4:5:6:10.0.0.1",
                   "1::6:10.0.0.1", "1:2:3:4:5::10.0.0.1"]
    return values


def bad_values(width):
    largest = 2**width - 1
    values = texts_of(largest + 1) + texts_of(2 * largest + 1) + texts_of(10 * largest + 10)
    values += [largest + 1] if width < 64 else [2**64]
    values += ["", "_1", "1_", "1__0", "0x", "0x_1", "0x1_", "0b", "0b2", "01", "00", "-1", " 1",
               "1 ", "+1", "1e3", "Mask", "x", "10.0.0", "10.0.0.256", "10.0.0.01", "2001:db8",
               "1:2:3:4:5:6:7:8:9", "1::2::3", ":::", "1:2:3:4:5:6:7:8::", "00:1c:73:00:00",
               "00:1c-73:00:00:01", "12345::", -1, 1.5, None, True, [1], {}]
    return values


def refused(records):
    """Which of the records `vorn program` refuses: each is asked alone."""
    return [run("program", "-", given=json.dumps(record) + "\n").returncode != 0
            for record in records]


def check(validator, record, good):
    errors = list(validator.iter_errors(record))
    assert (not errors) == good, (record, good, [error.message for error in errors[:3]])


def main():
    random.seed(1)
    rows = list(csv.DictReader(io.StringIO(run("export", "--format", "csv", "--all").stdout)))
    pairs = {}
    for row in rows:
        pairs.setdefault((row["table"], row["chip"], row["variant"]), []).append(row)
    assert len(pairs) == PAIR_COUNT

    # Every pair: good records, one that mixes it with another's field, and bounds of each field.
    good_lines, seen_widths, everyone = [], set(), {row["field"] for row in rows}
    for (table, chip, variant), fields in pairs.items():
        number = 0 if variant == "any" else int(variant)
        validator = schema_of(table, "--chip", chip, "--variant", str(number))
        settable = {row["field"]: int(row["width"]) for row in fields if row["readOnly"] == "0"}
        record = {"table": table, "chip": chip, "variant": number, "fields": {}}
        good = [record, {**record, "chip": int(fields[0]["chipType"])},
                {**record, "entry": 0, "array": 0, "identifier": 0},
                {**record, "chip": fields[0]["chipType"],
                 "fields": {name: 2**width - 1 if width <= 64 else hex(2**width - 1)
                            for name, width in settable.items()}}]
        for name, width in settable.items():
            check(validator, {**record, "fields": {name: hex(2**width)}}, False)
            if width not in seen_widths:
                seen_widths.add(width)
                good += [{**record, "fields": {name: value}} for value in good_values(width)]
                bad = [{**record, "fields": {name: value}} for value in bad_values(width)]
                for one in bad:
                    check(validator, one, False)
                if width in (1, 32, 128):
                    assert all(refused(bad)), (width, list(zip(bad, refused(bad))))
        for one in good:
            check(validator, one, True)
        good_lines += good

        others = [{"unknown": 1}, *({name: 0} for name in sorted(everyone - set(settable)))]
        for one in others[:40]:
            check(validator, {**record, "fields": one}, False)
        for wrong in ({"table": "NoTable"}, {"chip": "NoChip"}, {"chip": 99}, {"entry": -1},
                      {"entry": 2**32}, {"array": 2**16}, {"identifier": 2**16}, {"entry": "0"},
                      {"variant": 256}, {"from": 1}, {"fields": 1}, {"more": 1}):
            check(validator, {**record, **wrong}, False)
        for key in ("table", "chip", "fields"):
            check(validator, {k: v for k, v in record.items() if k != key}, False)
    assert {1, 32, 128, 328} < seen_widths

    outcome = run("program", "--allow-repeats", "-",
                  given="".join(json.dumps(one) + "\n" for one in good_lines))
    assert outcome.returncode == 0, outcome.stderr
    assert len(outcome.stdout.splitlines()) == len(good_lines)

    # One schema of a chip type, and of all: records go by what they say of themselves.
    chip = schema_of("--all", "--chip", "BCM88690_B0")
    everything = schema_of("--all")
    lif = {"table": "LifTable", "chip": "BCM88690_B0", "fields": {"vsi": 2000}}
    older = {"table": "LifTable", "chip": 4, "variant": 2, "fields": {"destination": 1}}
    for validator in (chip, everything):
        check(validator, lif, True)
        check(validator, {**lif, "variant": 3, "fields": {}}, True)
        check(validator, {**lif, "variant": 5}, False)
        check(validator, {**lif, "fields": {"vsi": 32768}}, False)
        check(validator, {**lif, "fields": {"resultType": 58}}, True)  # its tag
        check(validator, {**lif, "fields": {"resultType": 57}}, False)
        check(validator, {**lif, "entry": None, "image": "a00f", "address": "0x1001"}, True)
        check(validator, {**lif, "image": 1}, False)
        check(validator, {**lif, "table": "FheiIveSizeReg", "fields": {}}, False)
        check(validator, [lif], False)
    check(chip, older, False)
    check(everything, older, True)
    assert refused([{**lif, "variant": 5}, {**lif, "fields": {"resultType": 57}},
                    {**lif, "table": "FheiIveSizeReg", "fields": {}}, older,
                    {**lif, "fields": {"resultType": 58}}]) == [True] * 3 + [False] * 2

    print(f"{len(good_lines)} good records of {len(pairs)} pairs, {len(seen_widths)} widths")


main()

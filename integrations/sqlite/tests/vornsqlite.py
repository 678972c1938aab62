"""vornsqlite against naive bit arithmetic on every pair, and the errors of bad input.

    vornsqlite.py EXTENSION VORN
"""

import csv
import io
import random
import sqlite3
import subprocess
import sys
import unittest

from stated import PAIR_COUNT

EXTENSION, VORN = sys.argv[1:3]


def connect():
    connection = sqlite3.connect(":memory:")
    connection.enable_load_extension(True)
    connection.load_extension(EXTENSION)
    return connection


def as_sql(value):
    return value if value < 2**63 else hex(value)


def pairs():
    text = subprocess.run([VORN, "export", "--format", "csv", "--all"], check=True,
                          capture_output=True, text=True).stdout
    found = {}
    for row in csv.DictReader(io.StringIO(text)):
        variant = 0 if row["variant"] == "any" else int(row["variant"])
        found.setdefault((row["table"], row["chip"], variant), []).append(row)
    return found


class Sqlite(unittest.TestCase):
    def setUp(self):
        self.connection = connect()
        self.addCleanup(self.connection.close)

    def rows(self, query, *values):
        return self.connection.execute(query, values).fetchall()

    def one(self, expression, *values):
        return self.rows("SELECT " + expression, *values)[0][0]

    def refuses(self, message, query, *values):
        with self.assertRaises(sqlite3.Error) as caught:
            self.rows(query, *values)
        self.assertEqual(str(caught.exception), message)

    def test_every_field_of_every_pair(self):
        random.seed(1)
        everything = pairs()
        self.assertEqual(len(everything), PAIR_COUNT)
        wide = 0
        for pair, fields in everything.items():
            image = random.randbytes(int(fields[0]["bytes"]))
            entry = int.from_bytes(image, "little")
            expected = []
            for row in fields:
                offset, width = int(row["offset"]), int(row["width"])
                value = as_sql(entry >> offset & 2**width - 1)
                wide += isinstance(value, str)
                expected.append((row["field"], value, offset, width, row["hardwareName"],
                                 int(row["identifier"]), int(row["readOnly"])))
            self.assertEqual(self.rows("SELECT * FROM vorn_decode(?, ?, ?, ?)", *pair, image),
                             expected)
            for name, value, *_ in expected:
                self.assertEqual(self.one("vorn_field(?, ?, ?, ?, ?)", *pair, image, name), value)
                self.assertEqual(
                    self.one("vorn_field(?, ?, ?, ?, ?)", *pair, image.hex(), name), value)

            # A fresh entry is zero but for the tag; setting a field changes its bits alone.
            blank = self.one("vorn_encode(?, ?, ?)", *pair)
            tag = sum(int(row["tag"]) << int(row["offset"]) for row in fields if row["tag"])
            self.assertEqual(int.from_bytes(blank, "little"), tag)
            self.assertEqual(self.one("vorn_is(?, ?, ?, ?)", *pair, blank), 1)
            tag_bits = sum((2 ** int(row["width"]) - 1) << int(row["offset"])
                           for row in fields if row["tag"])
            for row in fields:
                offset, ones = int(row["offset"]), 2 ** int(row["width"]) - 1
                if row["readOnly"] == "1" or ones << offset & tag_bits:
                    continue
                value = random.randint(0, ones)
                for made in (self.one("vorn_encode(?, ?, ?, ?, ?)", *pair, row["field"],
                                      as_sql(value)),
                             self.one("vorn_set(?, ?, ?, ?, ?, ?)", *pair, blank, row["field"],
                                      hex(value))):
                    self.assertEqual(int.from_bytes(made, "little"), tag | value << offset)
        self.assertGreater(wide, 100)

    def test_null_and_text(self):
        self.assertIsNone(self.one("vorn_field('LifTable', 10, 0, NULL, 'vsi')"))
        self.assertIsNone(self.one("vorn_set('LifTable', 10, 0, NULL, 'vsi', 1)"))
        self.assertIsNone(self.one("vorn_is('LifTable', 10, 0, NULL)"))
        self.assertEqual(self.rows("SELECT * FROM vorn_decode('LifTable', 10, 0, NULL)"), [])
        image = "TcamActionTable 10 0: 0x00012345 0x00000000"
        self.assertEqual(self.one("vorn_field('TcamActionTable', '0xa', '0', ?, 'action')", image),
                         0x12345)
        self.refuses("the image is one of TcamActionTable, not of LifTable",
                     "SELECT vorn_field('LifTable', 10, 0, ?, 'vsi')", image)

    def test_bad_input(self):
        pair = "LifTable on BCM88690_B0 variant 0"
        for query, message in (
            ("vorn_field('LifTabel', 10, 0, x'00', 'vsi')",
             'unknown table "LifTabel"; did you mean LifTable?'),
            ("vorn_field('LifTable', 'BCM88690', 0, x'00', 'vsi')",
             'unknown chip "BCM88690"; did you mean BCM88690_B0?'),
            ("vorn_field('LifTable', 10, 5, x'00', 'vsi')",
             "LifTable has no variant 5 on BCM88690_B0; allowed: 0-4,6-11"),
            ("vorn_field('LifTable', 10, -1, x'00', 'vsi')",
             "negative value -1 for variant; a value is 0 or more"),
            ("vorn_field('LifTable', 10, 0, x'0000', 'vsj')",
             f'no field "vsj" in {pair}; did you mean vsi?'),
            ("vorn_field('LifTable', 10, 0, x'00', 'vsi')",
             f"the image has 1 bytes; field vsi of {pair} needs 2, a whole entry has 80"),
            ("vorn_field('LifTable', 10, 0, x'', 'vsi')",
             f"the image has 0 bytes; field vsi of {pair} needs 2, a whole entry has 80"),
            ("vorn_field('LifTable', 10, 0, 5, 'vsi')",
             "the image is a number; it is a BLOB, or TEXT as `vorn decode` takes it"),
            ("vorn_field(NULL, 10, 0, x'00', 'vsi')", "the table is NULL"),
            ("vorn_field('LifTable', NULL, 0, x'00', 'vsi')", "the chip type is NULL"),
            ("vorn_field('LifTable', 10, NULL, x'00', 'vsi')", "the variant is NULL"),
            ("vorn_field('LifTable', 10, 0, x'00', NULL)", "the field is NULL"),
            ("vorn_encode('LifTable', 10, 0, 'vsi', 32768)",
             f"value 32768 of field vsi is too large; its 15 bits in {pair} hold at most 0x7fff"),
            ("vorn_encode('LifTable', 10, 0, 'vsi', '0x8000')",
             f"value 0x8000 of field vsi is too large; its 15 bits in {pair} hold at most 0x7fff"),
            ("vorn_encode('LifTable', 10, 0, 'vsi', -1)",
             "negative value -1 for vsi; a value is 0 or more"),
            ("vorn_encode('LifTable', 10, 0, 'vsi', 1, 'vsi', 1)", "field vsi is given twice"),
            ("vorn_encode('LifTable', 10, 0, 'resultType', 58)",
             f"field resultType of {pair} is read-only: it holds the entry's tag"),
            ("vorn_encode('LifTable', 10, 0, 'vsi')",
             "vorn_encode takes table, chip type, variant, and a value after each field"),
            ("vorn_encode()",
             "vorn_encode takes table, chip type, variant, and a value after each field"),
            ("vorn_encode('LifTable', 10, 0, NULL, 1)", "the name of a field is NULL"),
            ("vorn_set('LifTable', 10, 0, x'00', 'vsi')",
             "vorn_set takes table, chip type, variant, image, and a value after each field"),
            ("vorn_set('LifTable', 10, 0, x'00', 'vsi', 1)",
             f"the image has 1 bytes; an entry of {pair} has 80"),
            ("vorn_set('LifTable', 10, 3, vorn_encode('LifTable', 10, 0), 'vsi', 1)",
             "the image is not one of LifTable on BCM88690_B0 variant 3: its tag resultType is "
             "0x3a, not 0x25; did you mean variant 0?"),
            ("* FROM vorn_decode('LifTable', 10, 0)",
             "vorn_decode takes table, chip type, variant and image"),
            ("* FROM vorn_decode('LifTable', 10, 0, x'00')",
             f"the image has 1 bytes; the fields of {pair} need 23, a whole entry has 80"),
            ("vorn_create_view('v', 'nothing', 'LifTable', 10, 0)", 'no table "nothing"'),
            ("vorn_create_view('v')",
             "vorn_create_view takes view, source table, table, chip type, variant, and perhaps "
             "the column of the images"),
        ):
            with self.subTest(query):
                self.refuses(message, "SELECT " + query)
        for value in (1.5, None, b"\x01"):
            self.refuses("the value of field vsi is NULL, a REAL or a BLOB; it is an INTEGER, or "
                         "TEXT such as '0x10'",
                         "SELECT vorn_encode('LifTable', 10, 0, 'vsi', ?)", value)
        # The next statement knows nothing of all this.
        self.assertEqual(self.one("vorn_field('LifTable', 10, 0, 'a00f', 'vsi')"), 2000)

    def test_arguments_that_change_from_row_to_row(self):
        self.connection.execute("CREATE TABLE mixed(chip, variant, image, field)")
        rows = [("BCM88690_B0", 0, "vsi"), ("10", 3, "destination"), (4, 2, "destination")] * 20
        for number, (chip, variant, field) in enumerate(rows):
            self.connection.execute(
                "INSERT INTO mixed SELECT ?1, ?2, vorn_encode('LifTable', ?1, ?2, ?3, ?4), ?3",
                (chip, variant, field, number))
        self.assertEqual(
            self.rows("SELECT vorn_field('LifTable', chip, variant, image, field) FROM mixed"),
            [(number,) for number in range(60)])

    def test_views(self):
        self.connection.execute('CREATE TABLE "my ""dump"(vsi TEXT, "an image" BLOB)')
        image = self.one("vorn_encode('LifTable', 10, 0, 'vsi', 7)")
        self.connection.execute('INSERT INTO "my ""dump" VALUES(\'own\', ?)', (image,))
        create = "SELECT vorn_create_view('a ''view\"', 'my \"dump', 'LifTable', 10, 0, ?)"
        self.refuses('no column "an imag" in my "dump; did you mean an image?', create, "an imag")
        self.assertEqual(self.rows(create, "an image"), [("a 'view\"",)])
        view = self.connection.execute("SELECT * FROM \"a 'view\"\"\"")
        row = dict(zip((column[0] for column in view.description), view.fetchone()))
        self.assertEqual(len(row), 2 + 23)
        self.assertEqual((row["vsi"], row["vsi_field"], row["resultType"], row["an image"]),
                         ("own", 7, 58, image))
        self.refuses("view \"a 'view\"\"\" already exists", create, "an image")

    def test_indexes_and_schemas(self):
        expression = "vorn_field('LifTable', 'BCM88690_B0', 0, image, 'vsi')"
        self.connection.execute("CREATE TABLE dump(image BLOB)")
        self.connection.execute(
            "INSERT INTO dump WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT "
            "1000) SELECT vorn_encode('LifTable', 10, 0, 'vsi', i % 10) FROM n")
        self.connection.execute(f"CREATE INDEX vsis ON dump({expression})")
        self.rows("SELECT vorn_create_view('lif', 'dump', 'LifTable', 10, 0)")
        plan = self.rows("EXPLAIN QUERY PLAN SELECT count(*) FROM lif WHERE vsi = 3")
        self.assertIn("USING INDEX vsis", plan[0][3])
        self.assertEqual(self.one("count(*) FROM lif WHERE vsi = 3"), 100)
        self.connection.execute("UPDATE dump SET image = vorn_set('LifTable', 10, 0, image, "
                                "'vsi', 3) WHERE rowid <= 5")
        self.assertEqual(self.one("count(*) FROM lif WHERE vsi = 3"), 104)
        # A row that is no entry can't come in where an index asks for its field.
        self.refuses("the image has 1 bytes; field vsi of LifTable on BCM88690_B0 variant 0 needs "
                     "2, a whole entry has 80", "INSERT INTO dump VALUES(x'00')")
        # Making views is for people, not for schemas.
        self.connection.execute("CREATE VIEW sly AS SELECT vorn_create_view('v', 'dump', "
                                "'LifTable', 10, 0)")
        self.refuses("unsafe use of vorn_create_view()", "SELECT * FROM sly")

    def test_decode_joins_columns_named_like_its_arguments(self):
        self.connection.execute('CREATE TABLE dump("table", chip, variant, image)')
        self.connection.execute("INSERT INTO dump VALUES('TcamActionTable', 10, 0, "
                                "x'0500000000000000')")
        query = ('SELECT field, value FROM {} WHERE "table" = \'TcamActionTable\' AND '
                 "image IS NOT NULL")
        decode = 'vorn_decode("table", chip, variant, image)'
        for order in (f"dump, {decode}", f"dump JOIN {decode}"):
            self.assertEqual(self.rows(query.format(order)), [("action", 5)])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

"""What tests count and list, from the lists that the tests in C++ state once."""

import csv
import re
from pathlib import Path


def _rows(file, macro):
    text = (Path(__file__).parent / file).read_text()
    rows = re.findall(rf"^{macro}\( (.*) \)$", text, re.MULTILINE)
    return list(csv.reader(rows, skipinitialspace=True))


CHIPS = {name: int(number) for number, name in _rows("Chips.def", "CHIP")}
CLASSES = [row[0] for row in _rows("Classes.def", "CLASS")]
PAIR_COUNT = sum(int(row[4]) for row in _rows("Classes.def", "CLASS"))

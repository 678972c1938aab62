"""Entries of packet processor tables as dictionaries, dumps of them as columns and data frames.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> image = lif.encode({"vsi": 2000, "vlanEditVid1": 100})
>>> lif.decode(image)["vsi"]
2000
"""

from vorn._methods import diff, read_dump, read_dumps
from vorn._types import Address, Dump, Error, Field, Location, MisuseError
from vorn._vorn import ArrowTable, Layout, chips, identify, locate, pairs, tables

__all__ = [
    "Address",
    "ArrowTable",
    "Dump",
    "Error",
    "Field",
    "Layout",
    "Location",
    "MisuseError",
    "chips",
    "diff",
    "identify",
    "locate",
    "pairs",
    "read_dump",
    "read_dumps",
    "tables",
]

# The module under which messages and pickles name them.
for _type in (Address, ArrowTable, Dump, Error, Field, Layout, Location, MisuseError):
    _type.__module__ = __name__
del _type

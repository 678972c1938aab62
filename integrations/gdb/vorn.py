"""Views and entries in gdb: `print` of a view shows its pair and its fields.

   (gdb) print lif
   $1 = LifTable on BCM88690_B0 variant 0 = {..., vsi = 2000, ...}
   (gdb) vorn-entry buffer LifTable BCM88690_B0 3
   (gdb) vorn-view 0x7ffffffde2a0

gdb loads this file by itself with libVornTunnelKelvar. It reads memory and calls nothing, so it
works on core files, too. It needs neither debug information nor symbols of the library: the class
comes from the object's run-time type information. The layouts come from the file beside this one,
which `vorn export --format csv --all` writes when the library is built.
"""

import csv
import difflib
import os
import re

import gdb
import gdb.printing

# Where the members of a view lie, in bytes from its beginning; its virtual table's address is at 0.
BUF, CHIP_TYPE, VARIANT, LEN = 8, 16, 17, 18
POINTER = 8


def read(address, size):
    return bytes(gdb.selected_inferior().read_memory(address, size))


def number_at(address, size):
    return int.from_bytes(read(address, size), "little")


def text_at(address):
    text = b""
    while not text.endswith(b"\0") and len(text) < 256:
        text += read(address + len(text), 1)
    return text.rstrip(b"\0").decode("latin-1")


class Field:
    def __init__(self, row):
        self.name = row["field"]
        self.offset, self.width = int(row["offset"]), int(row["width"])
        self.tag = int(row["tag"]) if row["tag"] else None

    def value_in(self, image):
        """None where the image ends before the field."""
        if self.offset + self.width > 8 * len(image):
            return None
        return int.from_bytes(image, "little") >> self.offset & (1 << self.width) - 1

    def text_in(self, image):
        value = self.value_in(image)
        if value is None:
            return "<beyond the buffer>"
        text = str(value) if self.width <= 64 else hex(value)
        return text + f" <not the tag, {self.tag}>" if self.tag not in (None, value) else text


class Pair:
    """A table on a chip type and variant."""

    def __init__(self, row):
        self.table, self.chip, self.size = row["table"], row["chip"], int(row["bytes"])
        self.variant = row["variant"]
        self.fields = []

    def title(self):
        variant = "" if self.variant == "any" else f" variant {self.variant}"
        return f"{self.table} on {self.chip}{variant}"

    def lines_of(self, image):
        return [f"{field.name} = {field.text_in(image)}" for field in self.fields]


class Catalogue:
    """All pairs, read when they are first asked for."""

    def __init__(self, path):
        self.path = path
        self.pairs = None

    def load(self):
        if self.pairs is not None:
            return
        self.pairs, self.chips, self.tables = {}, {}, set()
        with open(self.path, newline="", encoding="ascii") as file:
            for row in csv.DictReader(file):
                key = row["table"], int(row["chipType"]), row["variant"]
                self.chips[row["chip"]] = key[1]
                self.tables.add(key[0])
                self.pairs.setdefault(key, Pair(row)).fields.append(Field(row))

    def find(self, table, chip, variant):
        """None where there is no such pair."""
        self.load()
        return self.pairs.get((table, chip, "any")) or self.pairs.get((table, chip, str(variant)))

    def named(self, table, chip, variant):
        """The pair that a person names; a GdbError if there is none."""
        self.load()
        if table not in self.tables:
            raise gdb.GdbError(f'unknown table "{table}"' + suggestion(table, self.tables))
        number = int(chip) if chip.isdigit() else self.chips.get(chip)
        if number not in self.chips.values():
            raise gdb.GdbError(f'unknown chip "{chip}"' + suggestion(chip, self.chips))
        pair = self.find(table, number, variant)
        if pair is None:
            allowed = [key[2] for key in self.pairs if key[:2] == (table, number)]
            name = next(name for name, one in self.chips.items() if one == number)
            raise gdb.GdbError(
                f"{table} has no variant {variant} on {name}; allowed: {', '.join(allowed)}"
                if allowed else f"{table} does not exist on {name}")
        return pair


def suggestion(wrong, right):
    near = difflib.get_close_matches(wrong, right, 1)
    return f"; did you mean {near[0]}?" if near else "; allowed: " + ", ".join(sorted(right))


catalogue = Catalogue(os.path.splitext(os.path.realpath(__file__))[0] + ".csv")


def symbol_at(address):
    text = gdb.execute(f"info symbol {address:#x}", to_string=True)
    return "" if text.startswith("No symbol") else text


def class_of(view):
    """The class of the object at an address, or the class it derives from; None if it is no view.

    The virtual table is preceded by the address of the type information: its own virtual table, the
    address of the name and, in a class with one base, that of the base's information."""
    catalogue.load()
    table = number_at(view, POINTER)
    try:
        information = number_at(table - POINTER, POINTER)
        for _ in range(8):
            name = text_at(number_at(information + POINTER, POINTER))
            found = re.fullmatch(r"N8Hardware\d+(\w+?)(11WithStorage)?E", name)
            if found and found[1] in catalogue.tables:
                return found[1]
            if "__si_class_type_info" not in symbol_at(number_at(information, POINTER)):
                return None
            information = number_at(information + 2 * POINTER, POINTER)
    except gdb.MemoryError:  # a core file without the library beside it
        found = re.match(r"vtable for Hardware::(\w+)", symbol_at(table))
        return found[1] if found else None
    return None


def indented(title, lines):
    if gdb.parameter("print pretty"):
        return title + " = {\n  " + ",\n  ".join(lines) + "\n}"
    return title + " = {" + ", ".join(lines) + "}"


def view_text(address, name=None):
    """What the view at an address shows; its class is `name` if memory doesn't say."""
    try:
        name = class_of(address) or name
        if name is None:
            return f"<no view at {address:#x}>"
        chip, variant = number_at(address + CHIP_TYPE, 1), number_at(address + VARIANT, 1)
        pair = catalogue.find(name, chip, variant)
        if pair is None:
            return f"{name} <no such pair: chip type {chip}, variant {variant}>"
        size = min(number_at(address + LEN, 2), pair.size)
        buf = number_at(address + BUF, POINTER)
    except gdb.MemoryError:
        return f"<cannot read the view at {address:#x}>"
    try:
        image = read(buf, size) if size else b""
    except gdb.MemoryError:
        return f"{pair.title()} <cannot read the {size} bytes of the entry at {buf:#x}>"
    return indented(pair.title(), pair.lines_of(image))


class ViewPrinter:
    def __init__(self, address, name):
        self.address, self.name = address, name

    def to_string(self):
        return view_text(self.address, self.name)


class Printers(gdb.printing.PrettyPrinter):
    """Printers of the views, and of references to their base classes."""

    def __init__(self):
        super().__init__("vorn")

    def __call__(self, value):
        kind = value.type.strip_typedefs()
        if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
            kind = value.type.strip_typedefs()
        if kind.code != gdb.TYPE_CODE_STRUCT or value.address is None:
            return None
        kind = kind.unqualified().name or ""
        found = re.fullmatch(r"Hardware::(\w+)(::WithStorage)?", kind)
        if found:
            catalogue.load()
            name = found[1] if found[1] in catalogue.tables else None
        else:
            name = None
        if name is None and kind not in ("Kelvar::AsicBase", "Kelvar::BcmAsicBase"):
            return None
        return ViewPrinter(int(value.address), name)


def address_of(expression):
    value = gdb.parse_and_eval(expression)
    kind = value.type.strip_typedefs().code
    if kind in (gdb.TYPE_CODE_ARRAY, gdb.TYPE_CODE_STRUCT) and value.address is not None:
        value = value.address
    elif kind in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value().address
    return int(value)


class VornEntry(gdb.Command):
    """Show the fields of an entry in memory.

    vorn-entry ADDRESS TABLE CHIP [VARIANT]

ADDRESS is an expression without spaces, or in quotes: a pointer, an array or a number. CHIP is a
name or a number, VARIANT is 0 if not given."""

    def __init__(self):
        super().__init__("vorn-entry", gdb.COMMAND_DATA)

    def invoke(self, argument, from_tty):
        arguments = gdb.string_to_argv(argument)
        if len(arguments) not in (3, 4):
            raise gdb.GdbError("vorn-entry takes ADDRESS TABLE CHIP [VARIANT]")
        address, table, chip, variant = (arguments + ["0"])[:4]
        if not variant.isdigit():
            raise gdb.GdbError(f'bad variant "{variant}"; write a number')
        pair = catalogue.named(table, chip, int(variant))
        where = address_of(address)
        try:
            image = read(where, pair.size)
        except gdb.MemoryError:
            raise gdb.GdbError(f"cannot read the {pair.size} bytes at {where:#x}") from None
        print(pair.title())
        for line in pair.lines_of(image):
            print("  " + line)


class VornView(gdb.Command):
    """Show the view at an address, where the program has no debug information.

    vorn-view ADDRESS"""

    def __init__(self):
        super().__init__("vorn-view", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        if not argument:
            raise gdb.GdbError("vorn-view takes ADDRESS")
        print(view_text(address_of(argument)))


gdb.printing.register_pretty_printer(gdb.current_objfile(), Printers(), replace=True)
VornEntry()
VornView()

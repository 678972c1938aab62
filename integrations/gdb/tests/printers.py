"""gdb on a live program and on its core file: over the build's own library, and over an installed one
without symbols, whose printers gdb loads by itself.

    printers.py GDB PROGRAM PROGRAM_WITHOUT_SYMBOLS SCRIPT CMAKE BUILD LIBDIR
"""

import os
import subprocess
import sys
import tempfile
import unittest

GDB, PROGRAM, BARE, SCRIPT, CMAKE, BUILD, LIBDIR = sys.argv[1:]

ACTION = "TcamActionTable on BCM88690_B0 variant 0 = {action = 74565}"
LIF = ("LifTable on BCM88690_B0 variant 0 = {vlanEditVid1 = 100, ", "vsi = 2000", "resultType = 58",
       "mdbEntry = 0xe80000000000000000032000000000000000000000fa0")
NAMED = ("LifTable on BCM88690_B0 variant 3 = {", "destination = 77", "resultType = 37")

# Each question, and what its answer holds. The innermost frames are those of abort().
QUESTIONS = (
    ("print base", (ACTION,)),
    ("print reference", LIF),
    ("print *pointer", NAMED),
    ("up", ()),
    ("print lif", LIF),
    ("print named", NAMED + ("<Hardware::LifTable::WithStorage> = ", "more = 5")),
    ("print tooShort", ("LifTable on BCM88650_B0 variant 0 = {", "vlanEditVid1 = <beyond the buf")),
    ("vorn-entry entry LifTable BCM88690_B0 0",
     ("LifTable on BCM88690_B0 variant 0\n  vlanEditVid1 = 100\n", "\n  vsi = 2000\n")),
    ("vorn-entry &entry[0] LifTable 10 3", ("resultType = 58 <not the tag, 37>",)),
    ("vorn-view &lif", LIF),
    ("vorn-view entry", ("<no view at 0x|<cannot read the view at 0x",)),
    ("vorn-entry entry LifTabel 10", ('unknown table "LifTabel"; did you mean LifTable?',)),
    ("vorn-entry entry LifTable BCM88690", ('unknown chip "BCM88690"; did you mean BCM88690_B0?',)),
    ("vorn-entry entry LifTable 10 5",
     ("LifTable has no variant 5 on BCM88690_B0; allowed: 0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11",)),
    ("vorn-entry entry FheiIveSizeReg 10", ("FheiIveSizeReg does not exist on BCM88690_B0",)),
    ("vorn-entry 0 LifTable 10", ("cannot read the 80 bytes at 0x0",)),
    ("vorn-entry entry", ("vorn-entry takes ADDRESS TABLE CHIP [VARIANT]",)),
)
BARE_QUESTIONS = (
    ("vorn-view ((unsigned long*)&stopped)[0]", (ACTION,)),
    ("vorn-view ((unsigned long*)&stopped)[1]", LIF),
    ("vorn-view ((unsigned long*)&stopped)[2]", NAMED),
)


def gdb(options, commands, library_path=""):
    """What gdb prints, one text a command; it may call nothing in the program."""
    given = ["-iex", "set disable-randomization off", "-iex", "set debuginfod enabled off",
             "-iex", "set width 0"]
    given += [word for option in options for word in ("-iex", option)]
    for command in ("set may-call-functions off", "set print elements 0", *commands):
        given += ["-ex", "echo \\n==\\n", "-ex", command]
    environment = {**os.environ, "LD_LIBRARY_PATH": library_path, "LC_ALL": "C"}
    outcome = subprocess.run([GDB, "-q", "-nx", "-batch", *given], capture_output=True, text=True,
                             env=environment, stdin=subprocess.DEVNULL)
    return [text + "\n" for text in (outcome.stdout).split("\n==\n")][3:], outcome.stderr


class Printers(unittest.TestCase):
    def ask(self, options, beginning, questions, library_path=""):
        """Asks each question by a gdb of its own where it fails, as a batch ends there."""
        commands = beginning + [f"python ask({question!r})" for question, _ in questions]
        define = ("python\nimport gdb\ndef ask(command):\n"
                  "  try: gdb.execute(command)\n"
                  "  except gdb.error as error: print(error)\n")
        with tempfile.NamedTemporaryFile("w", suffix=".gdb") as file:
            file.write(define + "end\n")
            file.flush()
            answers, errors = gdb(options, [f"source {file.name}", *commands], library_path)
        answers = answers[1 + len(beginning):]
        self.assertEqual(len(answers), len(questions), (answers, errors))
        for (question, parts), answer in zip(questions, answers):
            for part in parts:
                with self.subTest(question=question):
                    self.assertTrue(any(one in answer for one in part.split("|")),
                                    f"{part!r} is not in {answer!r}; {errors}")

    def check(self, options, library_path=""):
        with tempfile.TemporaryDirectory() as folder:
            for program, questions in ((PROGRAM, QUESTIONS), (BARE, BARE_QUESTIONS)):
                core = os.path.join(folder, os.path.basename(program) + ".core")
                begin = ["up"] * 4
                self.ask(options + [f"file {program}"], ["run", f"gcore {core}", *begin],
                         questions, library_path)
                self.ask(options + [f"file {program}"], [f"core-file {core}", *begin], questions,
                         library_path)

    def test_the_build(self):
        self.check(["set auto-load off", f"source {SCRIPT}"])

    def test_an_installed_tree_without_symbols(self):
        with tempfile.TemporaryDirectory() as prefix:
            prefix = os.path.realpath(prefix)
            for component in ("library", "platform", "development"):
                subprocess.run([CMAKE, "--install", BUILD, "--prefix", prefix, "--strip",
                                "--component", component], check=True, capture_output=True)
            library = os.path.join(prefix, LIBDIR)
            sections = subprocess.run(
                ["readelf", "-S", os.path.join(library, "libVornTunnelKelvar.so.1")],
                check=True, capture_output=True, text=True).stdout
            self.assertNotIn(".symtab", sections)
            self.assertNotIn(".debug_info", sections)
            self.check([f"add-auto-load-scripts-directory {prefix}/share/gdb/auto-load",
                        f"add-auto-load-safe-path {prefix}"], library)


if __name__ == "__main__":
    _, trouble = gdb([f"file {PROGRAM}"], ["run"])
    if "ptrace" in trouble or "Could not trace" in trouble:
        print("processes may not be traced here:", trouble)
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])

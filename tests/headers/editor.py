"""editor.py CLANGD FOLDER INCLUDE...: hovering over an accessor shows its field's bits, and completion
offers the accessors: of a view, and of a view of a pair known at compile time. FOLDER becomes a project of its own with
these include folders, of which the first has <Hardware/accessors/...>."""

import json
import subprocess
import sys
from pathlib import Path

CLANGD, FOLDER, *INCLUDES = sys.argv[1:]
LINES = [
    "#include <Hardware/LifTable.h>",
    "#include <Hardware/at/LifTable.h>",
    "using At = Hardware::At<Hardware::LifTable, Hardware::BCM88690_B0, 0>;",
    "void program( Hardware::LifTable& lif ) {",
    "   lif.vsiIs( 2000 );",
    "   lif.vlanEditVi",
    "}",
    "void program( At lif ) {",
    "   lif.vsiIs( 2000 );",
    "   lif.vlanEditVi",
    "}",
]
# Of LifTable's vsi and vlanEditVid1.
PLACES = "VSI. Bits on chip types: variants -- 0-15 on 2-8: 1 | 19-33 on 2-8: 4 | 19-34 on 2-8: 6 | 1-15 on"
ACCESSORS = {f"vlanEditVid1{name}" for name in ("", "Is", "Mask", "Len", "Offset")}


class Editor:
    """A session with clangd over one file."""

    def __init__(self, file: Path) -> None:
        self.uri = file.as_uri()
        self.number = 0
        self.process = subprocess.Popen(
            [CLANGD, "--log=error", "--background-index=false"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        self.ask("initialize", {"processId": None, "rootUri": file.parent.as_uri(), "capabilities": {}})
        self.say("initialized", {})
        document = {"uri": self.uri, "languageId": "cpp", "version": 1, "text": "\n".join(LINES)}
        self.say("textDocument/didOpen", {"textDocument": document})

    def say(self, method, parameters, **more):
        body = json.dumps({"jsonrpc": "2.0", "method": method, "params": parameters, **more}).encode()
        self.process.stdin.write(b"Content-Length: %d\r\n\r\n" % len(body) + body)
        self.process.stdin.flush()

    def ask(self, method, parameters):
        self.number += 1
        self.say(method, parameters, id=self.number)
        while True:
            length = 0
            while (header := self.process.stdout.readline().strip()) or not length:
                if header.lower().startswith(b"content-length:"):
                    length = int(header.split(b":")[1])
            answer = json.loads(self.process.stdout.read(length))
            if answer.get("id") == self.number:
                return answer["result"]

    def at(self, line, character):
        return {"textDocument": {"uri": self.uri}, "position": {"line": line, "character": character}}


folder = Path(FOLDER).resolve()
folder.mkdir(parents=True, exist_ok=True)
source = folder / "program.cpp"
source.write_text("\n".join(LINES))
(folder / "compile_flags.txt").write_text("-std=c++20\n" + "".join(f"-I{i}\n" for i in INCLUDES))

editor = Editor(source)
missing = False
for line in (number for number, text in enumerate(LINES) if "vsiIs" in text):
    hover = editor.ask("textDocument/hover", editor.at(line, LINES[line].index("vsiIs") + 2))
    hover = hover["contents"]["value"] if hover else ""
    items = editor.ask("textDocument/completion", editor.at(line + 1, len(LINES[line + 1])))["items"]
    offered = {item["label"].split("(")[0].strip() for item in items}
    print(hover)
    print(*sorted(offered))
    missing |= PLACES not in hover.replace("`", "") or not ACCESSORS <= offered
editor.process.kill()
sys.exit(missing)

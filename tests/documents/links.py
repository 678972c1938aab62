"""links.py ROOT: every relative link and picture in the documents leads to a file, and its #heading
is there; every document can be reached from README.md. Every script that a document names is there,
and CONTRIBUTING.md names them all."""

import re
import sys
from pathlib import Path

ROOT = Path(sys.argv[1]).resolve()
DOCUMENTS = {p for p in [*ROOT.glob("*.md"), *ROOT.glob("docs/**/*.md")]}


def prose(path):
    """The lines of a document outside of its samples."""
    sample = False
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("```"):
            sample = not sample
        elif not sample:
            yield number, line


def anchors(path):
    """The headings, as Markdown viewers name them."""
    seen = {}
    for _, line in prose(path):
        if match := re.match(r"#+ (.*)", line):
            name = re.sub(r"[^\w\- ]", "", match[1].lower()).replace(" ", "-")
            seen[name] = seen.get(name, -1) + 1
            yield f"{name}-{seen[name]}" if seen[name] else name


failures = []
links = {document: set() for document in DOCUMENTS}
for document in DOCUMENTS:
    for number, line in prose(document):
        for link in re.findall(r"\]\(([^)\s]+)\)", re.sub(r"`[^`]*`", "", line)):
            if re.match(r"[a-z]+:", link):
                continue
            file, _, heading = link.partition("#")
            target = (document.parent / file).resolve() if file else document
            where = f"{document.relative_to(ROOT)}:{number}: {link}"
            if not target.exists():
                failures.append(f"{where}: no such file")
            elif heading and heading not in set(anchors(target)):
                failures.append(f"{where}: no such heading")
            links[document].add(target)

reached = set()
ahead = [ROOT / "README.md"]
while ahead:
    document = ahead.pop()
    if document in DOCUMENTS - reached:
        reached.add(document)
        ahead += links[document]
failures += [f"{p.relative_to(ROOT)}: no link leads there" for p in sorted(DOCUMENTS - reached)]

SCRIPTS = {str(p.relative_to(ROOT)) for p in ROOT.glob("scripts/**/*") if p.suffix in (".sh", ".py")}
for document in DOCUMENTS:
    for script in set(re.findall(r"\bscripts/[\w/.-]+\.(?:sh|py)\b", document.read_text())) - SCRIPTS:
        failures.append(f"{document.relative_to(ROOT)}: {script}: no such file")
# What other scripts include.
LISTED = SCRIPTS - {"scripts/packages.sh"}
failures += [f"CONTRIBUTING.md: lacks {script}" for script in sorted(LISTED)
             if script not in (ROOT / "CONTRIBUTING.md").read_text()]

print("\n".join(failures) or f"{sum(map(len, links.values()))} links in {len(DOCUMENTS)} documents")
sys.exit(bool(failures))

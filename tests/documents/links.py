"""Whether the relative links of Markdown documents lead to something: links.py FOLDER

Of each document below FOLDER every relative link must lead to a file or folder that is in FOLDER too, and its part
behind "#" to a heading there. Links to the web are left alone. Says what leads nowhere, and then ends with 1.
"""

import os
import re
import sys
from pathlib import Path
from typing import Iterator, Set

# What lies in a source tree and is not its own.
_FOREIGN = {".git", "build", "node_modules"}

_CODE = re.compile(r"^ *```.*?^ *```$|`[^`\n]*`", re.MULTILINE | re.DOTALL)
_LINK = re.compile(r"\]\(\s*<?([^)\s>]+)>?[^)]*\)|^\[[^]]+\]:\s*(\S+)", re.MULTILINE)
_HEADING = re.compile(r"^#+ +(.*?) *#*$", re.MULTILINE)


def documents(folder: Path) -> Iterator[Path]:
    for parent, folders, files in os.walk(folder):
        folders[:] = sorted(set(folders) - _FOREIGN)
        yield from (Path(parent, file) for file in sorted(files) if file.endswith(".md"))


def headings(document: Path) -> Set[str]:
    """As web pages name them: lower case, no punctuation, hyphens for spaces."""
    text = re.sub(r"^ *```.*?^ *```$", "", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in _HEADING.findall(text)}


def dead_links(document: Path, folder: Path) -> Iterator[str]:
    text = _CODE.sub("", document.read_text(encoding="utf-8"))
    for link in (inline or reference for inline, reference in _LINK.findall(text)):
        if re.match(r"[a-z][a-z0-9+.-]*:", link, re.IGNORECASE):
            continue
        path, _, part = link.partition("#")
        target = Path(os.path.normpath(document.parent / path)) if path else document
        if folder not in (target, *target.parents) or not target.exists():
            yield link
        elif part and (target.is_dir() or part not in headings(target)):
            yield link


def main() -> int:
    folder = Path(sys.argv[1]).resolve()
    found = list(documents(folder))
    dead = [f"{document.relative_to(folder)}: {link}" for document in found for link in dead_links(document, folder)]
    if not found:
        dead = [f"no document in {folder}"]
    print("\n".join(dead) if dead else f"{len(found)} documents")
    return 1 if dead else 0


if __name__ == "__main__":
    sys.exit(main())

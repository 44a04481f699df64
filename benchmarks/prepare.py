#!/usr/bin/env python3
"""Prepares the benchmark inputs.

    prepare.py UNPACKED INPUTS

UNPACKED holds one folder per Debian package with the package's files. The inputs
are written to INPUTS, one UTF-8 document each: real documents joined under one
root element, and generated ones for shapes that no package has.

A real document takes part only if every parser of the benchmark reads it the same
way, see `usable` below. The result does not depend on the clock or on the order in
which the file system lists files.
"""

import gzip
import pathlib
import random
import re
import sys
import xml.parsers.expat

MEGABYTE = 1_000_000
HEAD = '<?xml version="1.0" encoding="utf-8"?>\n'

# Real documents: name, package, files, target size, whether an internal subset is cut out.
# The sizes stay below 32 MiB, where the reader decodes a stream at once; "catalogue" is
# the one that goes well beyond.
CORPORA = [
    ("records", "mame-data", "usr/share/games/mame/hash/*.xml", 28 * MEGABYTE, False),
    ("catalogue", "mame-data", "usr/share/games/mame/hash/*.xml", 90 * MEGABYTE, False),
    ("introspection", "libgtk-3-dev", "usr/share/gir-1.0/*.gir", 28 * MEGABYTE, False),
    ("manual", "gnome-user-docs", "usr/share/help/*/**/*.page", 28 * MEGABYTE, False),
    # One document with an internal subset that declares elements and attributes but
    # no entity and no default value, so the text without it has the same content.
    # The subset is cut out and nothing is expanded.
    ("kanji", "kanjidic-xml", "usr/share/edict/kanjidic2.xml*", 28 * MEGABYTE, True),
    ("locales", "unicode-cldr-core", "usr/share/unicode/cldr/common/main/*.xml",
     28 * MEGABYTE, False),
]

DECLARATION = re.compile(r"^\s*<\?xml\s(.*?)\?>", re.DOTALL)
ENCODING = re.compile(r"encoding\s*=\s*[\"']([^\"']*)[\"']")
DOCTYPE = re.compile(r"<!DOCTYPE[^\[>]*>")
DOCTYPE_WITH_SUBSET = re.compile(r"<!DOCTYPE[^\[>]*\[.*?\n\]>", re.DOTALL)
COMMENT_OR_INSTRUCTION = re.compile(r"<!--.*?-->|<\?.*?\?>", re.DOTALL)
FOREIGN_REFERENCE = re.compile(r"&(?!(?:amp|lt|gt|quot|apos|#[0-9]+|#x[0-9A-Fa-f]+);)")
TAG = re.compile(r"<[^>]*>")
# The name of an element ends at a space (a line break alone does not end it), values
# are delimited by '"' and hold no '>', no space surrounds '=', none precedes '>' in an
# end tag.
PLAIN_ATTRIBUTE = r"[^\s=\"'/>]+=\"[^\">]*\""
PLAIN_TAG = re.compile(
    r"</[^\s/>]+>"
    r"|<[^\s/>!]+(?:[\t\n]* +(?:" + PLAIN_ATTRIBUTE + r"(?:\s+" + PLAIN_ATTRIBUTE + r")*\s*)?)?/?>")


def usable(text):
    """True if all parsers of the benchmark agree on what the document holds."""
    if FOREIGN_REFERENCE.search(text):
        return False
    bare = COMMENT_OR_INSTRUCTION.sub("", text)
    # A '>' right after a tag is not text for every parser.
    if ">>" in bare or not all(PLAIN_TAG.fullmatch(tag) for tag in TAG.findall(bare)):
        return False
    try:
        xml.parsers.expat.ParserCreate(namespace_separator=" ").Parse(text.encode(), True)
    except xml.parsers.expat.ExpatError:
        return False
    return True


def read_document(path, cut_subset):
    """The document's text without declaration and document type; None if it stays out."""
    data = path.read_bytes()
    if path.suffix == ".gz":
        data = gzip.decompress(data)
    try:
        text = data.decode("utf-8-sig")
    except UnicodeDecodeError:
        return None
    text = text.replace("\r\n", "\n").replace("\r", "\n")
    declaration = DECLARATION.match(text)
    if declaration:
        encoding = ENCODING.search(declaration.group(1))
        if encoding and encoding.group(1).lower() not in ("utf-8", "us-ascii"):
            return None
        text = text[declaration.end():]
    if cut_subset:
        text = DOCTYPE_WITH_SUBSET.sub("", text, count=1)
    text = DOCTYPE.sub("", text, count=1)
    return text if usable(text) else None


def join(folder, pattern, wanted, cut_subset):
    paths = sorted(path for path in folder.glob(pattern)
                   if path.is_file() and not path.is_symlink())
    if not paths:
        sys.exit(f"prepare: no file matches {folder / pattern}")
    # In random order, so that a part of the files still shows all languages and kinds.
    random.Random(1).shuffle(paths)
    documents, size, left_out = [], 0, 0
    for path in paths:
        if size >= wanted * 0.95:
            break
        text = read_document(path, cut_subset)
        length = len(text.encode()) if text else 0
        if not text:
            left_out += 1
        elif size + length <= wanted * 1.1:
            documents.append(text)
            size += length
    if not documents:
        sys.exit(f"prepare: no document of {folder / pattern} can be used")
    # Small corpora are repeated as a whole.
    documents *= max(1, round(wanted / size))
    return HEAD + "<corpus>\n" + "\n".join(documents) + "\n</corpus>\n", left_out


def words(generator, count):
    syllables = ["ka", "ter", "lo", "mi", "sun", "de", "pra", "el", "vo", "nat", "i", "gre"]
    return ["".join(generator.choices(syllables, k=generator.randint(1, 4)))
            for _ in range(count)]


def fill(wanted, piece):
    """Pieces in order until the wanted size is reached, under one root."""
    parts, size, index = [HEAD + "<corpus>\n"], 0, 0
    while size < wanted:
        part = piece(index)
        parts.append(part)
        size += len(part)
        index += 1
    parts.append("</corpus>\n")
    return "".join(parts)


def dense(_):
    return '<i a="1" b="2"/>' * 64


def indented(generator, vocabulary):
    def record(index):
        name, kind = generator.choices(vocabulary, k=2)
        return (f'    <record id="{index}" kind="{kind}">\n'
                f"        <name>{name}</name>\n"
                f"        <position>\n"
                f"            <x>{generator.randint(0, 9999)}</x>\n"
                f"            <y>{generator.randint(0, 9999)}</y>\n"
                f"        </position>\n"
                f'        <state active="{index % 2}"/>\n'
                f"    </record>\n")
    return record


def prose(generator, vocabulary):
    def paragraph(_):
        text = generator.choices(vocabulary, k=generator.randint(80, 400))
        text[len(text) // 2] = f"<em>{text[len(text) // 2]}</em>"
        text[-2] += " &amp;"
        return "<p>" + " ".join(text) + ".</p>\n"
    return paragraph


def deep(generator, vocabulary):
    def tower(_):
        names = generator.choices(vocabulary, k=120)
        return ("".join(f"<{name}>" for name in names) + "x" +
                "".join(f"</{name}>" for name in reversed(names)) + "\n")
    return tower


def wide(generator, vocabulary):
    names = sorted(set(vocabulary))

    def element(index):
        chosen = generator.sample(names, 40)
        attributes = "".join(
            f' {name}="{" ".join(generator.choices(vocabulary, k=2))}"' for name in chosen)
        return f"<row{attributes}/>\n"
    return element


def prefixed(generator, vocabulary):
    def message(index):
        name, value = generator.choices(vocabulary, k=2)
        return ('<s:envelope xmlns:s="http://example.org/envelope">'
                f'<s:head><m:id xmlns:m="http://example.org/message">{index}</m:id></s:head>'
                '<s:body><d:set xmlns:d="http://example.org/data" '
                'xmlns="http://example.org/plain">'
                f'<d:{name} d:type="string" s:style="literal">{value}</d:{name}>'
                f"<plain>{value}</plain></d:set></s:body></s:envelope>\n")
    return message


def generated():
    """Name and text of each generated input."""
    generator = random.Random(20)
    vocabulary = words(generator, 600)
    yield "dense", fill(24 * MEGABYTE, dense)
    for shape in (indented, prose, deep, wide, prefixed):
        yield shape.__name__, fill(24 * MEGABYTE, shape(generator, vocabulary))
    for name, size in (("small1k", 1_000), ("small4k", 4_000)):
        yield name, fill(size - 350, indented(generator, vocabulary))


def write(folder, name, text, note):
    # Written under another name first: a broken run leaves no half input behind.
    part = folder / (name + ".part")
    data = text.encode()
    part.write_bytes(data)
    part.rename(folder / (name + ".xml"))
    print(f"{name:14} {len(data) / MEGABYTE:6.1f} MB  {note}", file=sys.stderr)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    unpacked, inputs = map(pathlib.Path, sys.argv[1:])
    inputs.mkdir(parents=True, exist_ok=True)
    for name, package, pattern, wanted, cut_subset in CORPORA:
        text, left_out = join(unpacked / package, pattern, wanted, cut_subset)
        write(inputs, name, text, f"from {package}, {left_out} documents left out")
    for name, text in generated():
        write(inputs, name, text, "generated")


if __name__ == "__main__":
    main()

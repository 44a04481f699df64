#!/usr/bin/env python3
"""Writes a document of pages, of about the size that is asked for.

usage: generatePages.py SIZE FILE

SIZE may end with M or G. What is in the document is printed as JSON: the number of pages, and the
sum of their sizes for each language.
"""

import json
import random
import sys

LANGUAGES = ["de", "en", "fr", "ja"]
WORDS = "wind water stone light road house garden river paper letter".split()


def block_of_pages(count):
    """Pages as XML, with what is in them. Some hold what only looks like a page."""
    choose = random.Random(count)
    pages, sizes = [], dict.fromkeys(LANGUAGES, 0)
    for number in range(count):
        language = choose.choice(LANGUAGES)
        size = choose.randrange(100, 10000)
        sizes[language] += size
        text = " ".join(choose.choices(WORDS, k=100))
        extra = ["", "<!-- <page>old</page> -->", "<![CDATA[<page>]]>"][number % 50 % 3]
        pages.append(
            f'  <page id="p{number}" language="{language}">\n'
            f"    <title>Page {number} &amp; more</title>\n    <size>{size}</size>\n"
            f"    <text>{text}{extra}</text>\n  </page>\n"
        )
    return "".join(pages).encode(), sizes


def main(size, path):
    number = int(size.rstrip("MG"))
    wanted = number * {"M": 1 << 20, "G": 1 << 30}.get(size[-1], 1)
    count = 1000
    block, sizes = block_of_pages(count)
    repeats = max(1, wanted // len(block))
    with open(path, "wb") as file:
        file.write(b'<?xml version="1.0" encoding="UTF-8"?>\n<dump xmlns="urn:example:dump">\n')
        for _ in range(repeats):
            file.write(block)
        file.write(b"</dump>\n")
    sums = {language: total * repeats for language, total in sizes.items()}
    print(json.dumps({"pages": count * repeats, "sizes": sums}))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])

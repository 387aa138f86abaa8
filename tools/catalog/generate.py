#!/usr/bin/env python3
"""Writes the library's compiled-in catalogue from the EPSG Geodetic
Parameter Dataset as distributed in PROJ's proj.db (Debian package
proj-data).

Only rows of the EPSG authority are read: every query filters
auth_name = 'EPSG', aliases are read only where their source is EPSG.
The output is a set of C++ sources of constant tables; running the
generator again on the same input reproduces them byte for byte.

    generate.py --db /usr/share/proj/proj.db --out database/generated \
                [--docs docs/catalog.md]
"""

import argparse
import os
import sqlite3
import sys

import build
import tables


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--db", required=True, help="path of proj.db")
    parser.add_argument("--out", required=True, help="directory of the generated sources")
    parser.add_argument("--docs", help="docs/catalog.md, whose generated part (contents, mappings, objects left out) is rewritten")
    args = parser.parse_args(argv)

    con = sqlite3.connect("file:%s?mode=ro" % args.db, uri=True)
    con.row_factory = sqlite3.Row
    catalog = build.Catalog(con)
    catalog.build()

    os.makedirs(args.out, exist_ok=True)
    for name, text in tables.render(catalog).items():
        path = os.path.join(args.out, name)
        with open(path, "w", encoding="ascii", newline="\n") as f:
            f.write(text)
    if args.docs:
        splice_generated(args.docs, tables.docs_markdown(catalog))
    print("catalogue: %s" % catalog.summary(), file=sys.stderr)
    return 0


BEGIN = "<!-- BEGIN GENERATED LIST -->"
END = "<!-- END GENERATED LIST -->"


def splice_generated(path, markdown):
    with open(path, encoding="utf-8") as f:
        text = f.read()
    start = text.index(BEGIN) + len(BEGIN)
    end = text.index(END)
    text = text[:start] + "\n" + markdown + text[end:]
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        f.write(text)


if __name__ == "__main__":
    sys.exit(main())

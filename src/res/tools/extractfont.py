"""Writes one face of an OpenType collection as a font file of its own, under a name of its own.

usage: extractfont.py COLLECTION FAMILY OUTPUT NEW_FAMILY

With the old name, a desktop that has the collection installed would mix its faces into the
program's texts: bold text would load the installed bold face.
"""

import os
import sys

from fontTools.ttLib import TTCollection

FAMILY, FULL, POSTSCRIPT, TYPOGRAPHIC_FAMILY = 1, 4, 6, 16


def rename(face, family):
    names = {
        FAMILY: family,
        TYPOGRAPHIC_FAMILY: family,
        FULL: family,
        POSTSCRIPT: family.replace(" ", "") + "-Regular",
    }
    for record in face["name"].names:
        if record.nameID in names:
            record.string = names[record.nameID]


def main(collection, family, output, new_family):
    with TTCollection(collection, lazy=True) as faces:
        for face in faces:
            if face["name"].getDebugName(FAMILY) == family:
                # The same input must give the same bytes, whatever the day.
                face.recalcTimestamp = False
                rename(face, new_family)
                os.makedirs(os.path.dirname(output), exist_ok=True)
                face.save(output, reorderTables=False)
                return
    sys.exit(f"{collection}: no face called {family}")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])

"""Makes the interface font: one face of an OpenType collection, with the characters that the program
needs, under a name of its own.

usage: makefont.py COLLECTION FAMILY OUTPUT NEW_FAMILY

Every start pays for each glyph of the font, in time and memory, and the face has 65,535: of its Han
characters those of GB 2312 stay, which texts and nearly all names are written with. The rest comes
from the desktop's own fonts. With the old name, a desktop that has the collection installed would
mix its faces into the program's texts: bold text would load the installed bold face.
"""

import os
import sys

from fontTools import subset
from fontTools.ttLib import TTCollection

FAMILY, FULL, POSTSCRIPT, TYPOGRAPHIC_FAMILY = 1, 4, 6, 16
VERTICAL_WRITING = ["vhea", "vmtx", "VORG", "BASE"]


def in_gb2312(character):
    try:
        return bool(chr(character).encode("gb2312"))
    except UnicodeEncodeError:
        return False


def is_needed(character):
    """Alphabets, symbols, Chinese punctuation, wide forms, and common Han characters."""
    return (character < 0x3040 or 0xFF00 <= character < 0xFFF0
            or (0x4E00 <= character < 0xA000 and in_gb2312(character)))


def reduce(face):
    options = subset.Options(layout_features=["kern"], name_IDs=["*"], notdef_outline=True)
    options.drop_tables += VERTICAL_WRITING
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=filter(is_needed, face.getBestCmap()))
    subsetter.subset(face)


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
                reduce(face)
                rename(face, new_family)
                os.makedirs(os.path.dirname(output), exist_ok=True)
                face.save(output, reorderTables=False)
                return
    sys.exit(f"{collection}: no face called {family}")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])

"""Writes one face of an OpenType collection as a font file of its own.

usage: extractfont.py COLLECTION FAMILY OUTPUT
"""

import os
import sys

from fontTools.ttLib import TTCollection


def main(collection, family, output):
    with TTCollection(collection, lazy=True) as faces:
        for face in faces:
            if face["name"].getDebugName(1) == family:
                # The same input must give the same bytes, whatever the day.
                face.recalcTimestamp = False
                os.makedirs(os.path.dirname(output), exist_ok=True)
                face.save(output, reorderTables=False)
                return
    sys.exit(f"{collection}: no face called {family}")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])

#!/usr/bin/python3
"""Cuts a font of read-outs out of Inter: figures of equal width, signs and units.

Qt 6.4 cannot ask a font for its tabular figures, so they take the place of the proportional ones.
Inter's licence (SIL Open Font License) asks that what is made of it goes by another name.
"""

import sys
from pathlib import Path

from fontTools import subset
from fontTools.ttLib import TTFont

FAMILY = "Orvanta Figures"
TEXT = "0123456789+-−.,:%∞ dBHzkKMsLUFSGeftRighCnr/"


def tabular_figures(font):
    """Which glyph stands for a figure when all are to be equally wide."""
    gsub = font["GSUB"].table
    for record in gsub.FeatureList.FeatureRecord:
        if record.FeatureTag != "tnum":
            continue
        for index in record.Feature.LookupListIndex:
            for table in gsub.LookupList.Lookup[index].SubTable:
                table = getattr(table, "ExtSubTable", table)
                if mapping := getattr(table, "mapping", None):
                    return mapping
    raise SystemExit("the font has no tabular figures")


def make(source, target):
    font = TTFont(source)
    tabular = tabular_figures(font)
    for table in font["cmap"].tables:
        for code, glyph in list(table.cmap.items()):
            if chr(code) in "0123456789":
                table.cmap[code] = tabular.get(glyph, glyph)
    options = subset.Options()
    options.layout_features = ["kern"]
    options.name_IDs = [1, 2, 4, 6, 13, 14, 16, 17]
    options.notdef_outline = True
    subsetter = subset.Subsetter(options)
    subsetter.populate(text=TEXT)
    subsetter.subset(font)
    for record in list(font["name"].names):
        if record.nameID in (1, 4, 6, 16):
            name = record.toUnicode().replace("Inter", FAMILY)
            record.string = name.replace(" ", "") if record.nameID == 6 else name
    # A CFF font repeats its name.
    if "CFF " in font:
        cff = font["CFF "].cff
        cff.fontNames = [cff.fontNames[0].replace("Inter", FAMILY.replace(" ", ""))]
        top = cff.topDictIndex[0]
        for key in ("FullName", "FamilyName"):
            if hasattr(top, key):
                setattr(top, key, getattr(top, key).replace("Inter", FAMILY))
    Path(target).parent.mkdir(parents=True, exist_ok=True)
    font.save(target)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        raise SystemExit(f"usage: {sys.argv[0]} INTER_FONT TARGET")
    make(sys.argv[1], sys.argv[2])

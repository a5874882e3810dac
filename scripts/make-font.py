#!/usr/bin/python3
"""Makes the fonts that the views are set in out of Inter: one for text, and one for read-outs, whose
figures are all of one width (Qt 6.4 cannot ask a font for its tabular ones).

Both get TrueType outlines: Qt has the outlines of Inter's own kind drawn bolder than they are, and
light text on dark then looks a weight heavier than what it is set in. Inter's licence (SIL Open Font
License) asks that what is made of it goes by another name.
"""

import sys
from pathlib import Path

from fontTools import subset
from fontTools.pens.cu2quPen import Cu2QuPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont, newTable

FIGURES = "0123456789"
READ_OUTS = FIGURES + "+-−.,:%∞ dBHzkKMsLUFSGeftRighCnr/"
# Latin, Greek and Cyrillic with their marks, punctuation, arrows and keyboard symbols.
TEXT = [*range(0x20, 0x590), *range(0x1E00, 0x2000), *range(0x2000, 0x2400), 0xFB01, 0xFB02]
# In units of 2816 to the em: far below a pixel at any size that the views use.
TOLERANCE = 2.0


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


def use_tabular_figures(font):
    tabular = tabular_figures(font)
    for table in font["cmap"].tables:
        for code, glyph in list(table.cmap.items()):
            if chr(code) in FIGURES:
                table.cmap[code] = tabular.get(glyph, glyph)


def cut(font, codes, features):
    options = subset.Options()
    options.layout_features = features
    options.name_IDs = [0, 1, 2, 4, 6, 7, 13, 14, 16, 17]
    options.notdef_outline = True
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=codes)
    subsetter.subset(font)


def rename(font, family):
    for record in list(font["name"].names):
        if record.nameID in (1, 4, 6, 16):
            name = record.toUnicode().replace("Inter", family)
            record.string = name.replace(" ", "") if record.nameID == 6 else name


def quadratic_glyphs(font):
    glyph_set = font.getGlyphSet()
    glyphs = {}
    for name in font.getGlyphOrder():
        pen = TTGlyphPen(glyph_set)
        glyph_set[name].draw(Cu2QuPen(pen, TOLERANCE, reverse_direction=True))
        glyphs[name] = pen.glyph()
    return glyphs


def use_truetype_outlines(font):
    order = font.getGlyphOrder()
    glyphs = quadratic_glyphs(font)
    font["loca"] = newTable("loca")
    font["glyf"] = table = newTable("glyf")
    table.glyphOrder = order
    table.glyphs = glyphs
    del font["CFF "]
    table.compile(font)
    for name in order:
        advance, _ = font["hmtx"][name]
        font["hmtx"][name] = advance, getattr(glyphs[name], "xMin", 0)
    font["maxp"] = maxp = newTable("maxp")
    maxp.tableVersion = 0x00010000
    maxp.maxZones = 1
    for field in ("maxTwilightPoints", "maxStorage", "maxFunctionDefs", "maxInstructionDefs",
                  "maxStackElements", "maxSizeOfInstructions", "maxComponentElements"):
        setattr(maxp, field, 0)
    maxp.compile(font)
    post = font["post"]
    post.formatType = 2.0
    post.extraNames = []
    post.mapping = {}
    post.glyphOrder = order
    font.sfntVersion = "\000\001\000\000"


def make(kind, source, target):
    font = TTFont(source)
    if kind == "figures":
        use_tabular_figures(font)
        cut(font, [ord(character) for character in READ_OUTS], ["kern"])
        rename(font, "Orvanta Figures")
    else:
        cut(font, TEXT, ["kern", "mark", "mkmk", "ccmp", "calt", "liga", "locl"])
        rename(font, "Orvanta Text")
    use_truetype_outlines(font)
    Path(target).parent.mkdir(parents=True, exist_ok=True)
    font.save(target)


if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1] not in ("text", "figures"):
        raise SystemExit(f"usage: {sys.argv[0]} text|figures INTER_FONT TARGET")
    make(*sys.argv[1:])

"""The parts list of the document's downpipes as one spreadsheet, rewritten at each insertion.

Each object file carries its downpipe's parts list as flat scene extras
("pluvarine.partsList.count", "pluvarine.partsList.<row>.<key>"); the downpipe object keeps
them, and the sheet lists the rows of every downpipe of the document in order.
"""

import json

SHEET = "PartsList"
PREFIX = "pluvarine.partsList."
COLUMNS = [("article", "Article"), ("file", "Catalogue file"), ("diameter", "Diameter (mm)"),
           ("angle", "Angle (°)"), ("length", "Nominal length (mm)"), ("material", "Material"),
           ("count", "Quantity"), ("cutLength", "Cut length (mm)"), ("warning", "Note")]


def rows(extras):
    """The parts list rows of an object file's scene extras: [{key: value}, ...]."""
    count = extras.get(PREFIX + "count")
    if not isinstance(count, int) or count < 0:
        return []
    return [{key: extras.get("%s%d.%s" % (PREFIX, i, key)) for key, _ in COLUMNS}
            for i in range(1, count + 1)]


def keep(obj, extras):
    """Stores the downpipe's rows with it."""
    if "PartsList" not in obj.PropertiesList:
        obj.addProperty("App::PropertyString", "PartsList", "Pluvarine",
                        "The downpipe's parts list (JSON rows)")
    obj.PartsList = json.dumps(rows(extras))


def _column(index):
    return chr(ord("A") + index)


def update(doc, downpipes):
    """Rewrites the sheet from the downpipes; no sheet while none of them has a parts list."""
    listed = [(d.Label, json.loads(d.PartsList)) for d in downpipes
              if "PartsList" in d.PropertiesList and d.PartsList]
    if not any(r for _, r in listed):
        return None
    sheet = doc.getObject(SHEET) or doc.addObject("Spreadsheet::Sheet", SHEET)
    sheet.Label = "Parts list"
    sheet.clearAll()
    sheet.set("A1", "Downpipe")
    for c, (_, title) in enumerate(COLUMNS, start=1):
        sheet.set(_column(c) + "1", title)
    line = 2
    for label, parts in listed:
        for part in parts:
            sheet.set("A%d" % line, label)
            for c, (key, _) in enumerate(COLUMNS, start=1):
                value = part.get(key)
                if value is not None:
                    # A leading quote keeps texts as texts (a file name is not a formula).
                    sheet.set("%s%d" % (_column(c), line),
                              str(value) if isinstance(value, (int, float)) else "'" + str(value))
            line += 1
    doc.recompute()
    return sheet

"""The parts list of the document's downpipes as one spreadsheet, brought up to date at each
insertion: a new downpipe's rows are added below the others, and the sheet is written anew only
when it no longer lists the other downpipes as they are (one deleted, say), so that an insertion
into a project of hundreds of downpipes costs what the first one did.

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
    """Lists the downpipes' rows; no sheet while none of them has a parts list."""
    listed = [d for d in downpipes if "PartsList" in d.PropertiesList and d.PartsList]
    names = [d.Name for d in listed]
    sheet = doc.getObject(SHEET)
    done = list(sheet.Listed) if sheet is not None and "Listed" in sheet.PropertiesList else None
    if done is None or done != names[:len(done)]:
        if not any(json.loads(d.PartsList) for d in listed):
            return None
        sheet = sheet or doc.addObject("Spreadsheet::Sheet", SHEET)
        sheet.Label = "Parts list"
        sheet.clearAll()  # also takes the sheet's own properties below
        sheet.set("A1", "Downpipe")
        for c, (_, title) in enumerate(COLUMNS, start=1):
            sheet.set(_column(c) + "1", title)
        sheet.addProperty("App::PropertyStringList", "Listed", "Pluvarine",
                          "The downpipes the sheet lists, in order")
        sheet.addProperty("App::PropertyInteger", "NextRow", "Pluvarine",
                          "The first row below the list")
        for name in ("Listed", "NextRow"):
            sheet.setEditorMode(name, 2)
        done, sheet.NextRow = [], 2
    line = sheet.NextRow
    for d in listed[len(done):]:
        for part in json.loads(d.PartsList):
            sheet.set("A%d" % line, d.Label)
            for c, (key, _) in enumerate(COLUMNS, start=1):
                value = part.get(key)
                if value is not None:
                    # A leading quote keeps texts as texts (a file name is not a formula).
                    sheet.set("%s%d" % (_column(c), line),
                              str(value) if isinstance(value, (int, float)) else "'" + str(value))
            line += 1
    sheet.Listed, sheet.NextRow = names, line
    doc.recompute()
    return sheet

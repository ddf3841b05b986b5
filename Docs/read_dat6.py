#!/usr/bin/env python3
"""Prints a .zDat6 file, whose bytes are described in Dat6.md, as JSON. Needs the module xxhash.

    read_dat6.py FILE
"""
import json, math, struct, sys, xxhash
VALUES = {"z8u": "B", "z16u": "H", "z16s": "h", "z32s": "i", "z32u": "I", "z64s": "q", "z32f": "f", "z64f": "d",
          "zPoint16s": "hh", "zPoint3d16s": "hhh", "zPoint32f": "ff", "zPoint3d32f": "fff", "zPoint64f": "dd",
          "zPoint3d64f": "ddd", "zRgb": "BBBB", "zRgb24": "BBB"}
LIST, GRID = "type:T columns:Q items:I", "type:T rows:Q columns:Q items:I"
MESSAGE, FEATURE = "stamps:S box:6d transform:12d space:q ", "position:3d direction:3d size:d"
DATA = MESSAGE + "offset:3d scale:3d points:O intensity:O"
FIELDS = {
    "zString": "text:X", "zArray1": LIST, "zArrayList": LIST, "zList": LIST, "zQueue": LIST, "zArray2": GRID,
    "zImage": GRID, "zDataTree": "items:N", "TvNullMsg": MESSAGE, "TvSurfaceMsg": DATA, "TvProfileMsg": DATA,
    "TvImageMsg": "format:q source:q " + DATA, "TvMeasureMsg": MESSAGE + "value:d label:3d passed:Q source:Q",
    "TvGenericMsg": MESSAGE + "kind:Q bytes:B", "TvRenderingMsg": MESSAGE + "graphic:O",
    **{f"Tv{kind}FeatureMsg": MESSAGE + FEATURE for kind in ("Point", "Line", "Circle", "Plane")},
    "TpGraphic": "elements:E", "TpGraphicPointSet": "size:d shape:q color:Q points:O",
    "TpGraphicLineSet": "width:d color:Q mode:q ending:q points:O", "TpGraphicLabel": "position:3d text:O",
    "TpGraphicRay": "position:3d direction:3d width:d color:Q", "TpGraphicPlane": "normal:3d distance:d",
    "TpGraphicPosition": "type:q position:3d", "TpGraphicRegion2d": "center:2d dimensions:2d angle:d",
    "TpGraphicRegion3d": "center:3d dimensions:3d angle:d"}
class Reader:
    def __init__(self, data): self.data, self.at = data, 16
    def take(self, n):
        self.at += n
        return self.data[self.at - n:self.at]
    def values(self, layout):
        numbers = struct.unpack("<" + layout, self.take(struct.calcsize("<" + layout)))
        return [number if math.isfinite(number) else json.dumps(number) for number in numbers]  # "NaN", "-Infinity"
    def number(self): return self.values("Q")[0]
    def text(self): return self.take(self.number()).decode()
    def field(self, code, seen):
        if code == "T": return [self.text(), self.number()]
        if code == "I":
            kind, size = seen["type"]
            layout = f"{size}B" if kind == "zBytes" else VALUES.get(kind)
            count = seen.get("rows", 1) * seen["columns"]
            return [self.values(layout) if layout else self.object() for _ in range(count)]
        if code == "S": return [self.values("QQQq") for _ in range(self.number())]
        if code == "N": return [[self.number(), self.object()["text"], self.object()] for _ in range(self.number())]
        if code == "E": return [self.object() for _ in range(self.number())]
        if code == "B": return list(self.take(self.number()))
        return self.object() if code == "O" else self.text() if code == "X" else self.values(code)
    def object(self):
        name = self.text()
        seen = {"object": name} if name else None
        for key, code in (field.split(":") for field in FIELDS[name].split()) if name else ():
            seen[key] = self.values(code)[0] if code in "qQd" else self.field(code, seen)
        return seen
data = open(sys.argv[1], "rb").read()
if data[:8] != b"zDat6\r\n\x1a" or data[8:16] != struct.pack("<Q", 1): sys.exit("No .zDat6 file of version 1.")
if struct.unpack("<Q", data[-8:])[0] != xxhash.xxh3_64_intdigest(data[:-8]): sys.exit("The checksum is wrong.")
print(json.dumps(Reader(data).object()))

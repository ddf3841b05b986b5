#!/usr/bin/env python3
"""Prints a .zDat6 file, whose bytes are described in Dat6.md, as JSON.    read_dat6.py FILE"""
import json, struct, sys
MASK = 2**64 - 1
M = (0x9E3779B185EBCA87, 0xC2B2AE3D27D4EB4F, 0x165667B19E3779F9, 0x85EBCA77C2B2AE63, 0x27D4EB2F165667C5)
VALUES = {"z8u": "B", "z16u": "H", "z16s": "h", "z32s": "i", "z32u": "I", "z64s": "q", "z32f": "f", "z64f": "d",
          "zPoint16s": "hh", "zPoint3d16s": "hhh", "zPoint32f": "ff", "zPoint3d32f": "fff", "zPoint64f": "dd",
          "zPoint3d64f": "ddd", "zRgb": "BBBB", "zRgb24": "BBB"}
MESSAGE, FEATURE = "stamps:S box:6d transform:12d space:q ", "position:3d direction:3d size:d"
DATA = MESSAGE + "offset:3d scale:3d points:O intensity:O"
FIELDS = {"zArray1": "type:T columns:Q items:I", "zArray2": "type:T rows:Q columns:Q items:I", "zString": "text:X",
          "zArrayList": "type:T columns:Q items:I", "zDataTree": "items:N", "TvNullMsg": MESSAGE, "TvSurfaceMsg": DATA,
          "TvMeasureMsg": MESSAGE + "value:d label:3d passed:Q source:Q", "TvImageMsg": "format:q source:q " + DATA,
          "TvProfileMsg": DATA, "TvGenericMsg": MESSAGE + "kind:Q bytes:B", "TvRenderingMsg": MESSAGE + "graphic:O",
          **{f"Tv{kind}FeatureMsg": MESSAGE + FEATURE for kind in ("Point", "Line", "Circle", "Plane")}}
def xxh64(data):
    turn = lambda x, n: (x << n | x >> 64 - n) & MASK
    mix = lambda a, x: turn((a + x * M[1]) & MASK, 31) * M[0] & MASK
    lanes, at = [(M[0] + M[1]) & MASK, M[1], 0, -M[0] & MASK], len(data) // 32 * 32
    for words in struct.iter_unpack("<4Q", data[:at]):
        lanes = [mix(lane, word) for lane, word in zip(lanes, words)]
    h = sum(turn(lane, n) for lane, n in zip(lanes, (1, 7, 12, 18))) & MASK if at else M[4]
    for lane in lanes if at else (): h = ((h ^ mix(0, lane)) * M[0] + M[3]) & MASK
    h = (h + len(data)) & MASK
    while len(data) - at >= 8:
        h, at = (turn(h ^ mix(0, struct.unpack_from("<Q", data, at)[0]), 27) * M[0] + M[3]) & MASK, at + 8
    if len(data) - at >= 4:
        h, at = (turn(h ^ struct.unpack_from("<I", data, at)[0] * M[0] & MASK, 23) * M[1] + M[2]) & MASK, at + 4
    for byte in data[at:]: h = turn(h ^ byte * M[4] & MASK, 11) * M[0] & MASK
    for prime, n in ((M[1], 33), (M[2], 29)): h = (h ^ h >> n) * prime & MASK
    return h ^ h >> 32
class Reader:
    def __init__(self, data): self.data, self.at = data, 16
    def take(self, n):
        self.at += n
        return self.data[self.at - n:self.at]
    def values(self, layout): return [*struct.unpack("<" + layout, self.take(struct.calcsize("<" + layout)))]
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
if struct.unpack("<Q", data[-8:])[0] != xxh64(data[:-8]): sys.exit("The checksum is wrong.")
print(json.dumps(Reader(data).object()))

#!/usr/bin/env python3
"""Writes src/platform/case_folding_table.inc from the Unicode data of this Python.

The table holds, in code point order, every character whose full case folding (statuses C and F
of the Unicode character database's CaseFolding.txt) differs from itself, and that folding.
"""
import sys
import unicodedata

rows = []
for point in range(sys.maxunicode + 1):
    if 0xD800 <= point <= 0xDFFF:
        continue
    folded = chr(point).casefold()
    if folded != chr(point):
        points = [ord(c) for c in folded] + [0, 0]
        rows.append((point, points[:3]))

print(f"// Written by cmake/make_case_folding.py from Unicode {unicodedata.unidata_version}.")
for point, (a, b, c) in rows:
    print(f"{{0x{point:X}, {{0x{a:X}, 0x{b:X}, 0x{c:X}}}}},")

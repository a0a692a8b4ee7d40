#!/usr/bin/python3
"""Writes an archive of the game's format for the timing scripts.

make_hpi.py OUT.hpi COUNT [SEED]: COUNT files of 1 to 12 KB of unit-like
text in units/ (.fbi) and unitpics/ (.pcx), alternately stored and
zlib-compressed in 64 KiB chunks, without encryption.
"""
import random
import struct
import sys
import zlib


def chunks(data):
    out = []
    for i in range(0, len(data), 65536):
        part = data[i:i + 65536]
        packed = zlib.compress(part, 6)
        out.append(b"SQSH" + struct.pack("<BBBIII", 2, 2, 0, len(packed), len(part),
                                         sum(packed) & 0xFFFFFFFF) + packed)
    return out


def main():
    path, count = sys.argv[1], int(sys.argv[2])
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    folders = {"units": [], "unitpics": []}
    for i in range(count):
        folder, ext = ("units", ".fbi") if i % 2 == 0 else ("unitpics", ".pcx")
        text = ("[UNITINFO]\n{\nUnitName=U%05d;\nSide=ARM;\n" % i).encode()
        filler = bytes(rng.choice(b"abcdefghij =;\n0123456789") for _ in range(rng.randint(1000, 12000)))
        folders[folder].append(("U%05d%s" % (i, ext), text + filler + b"}\n", i % 4 != 0))
    # Directory: root header, root entries, folder headers and entries, names, file records.
    directory = bytearray()
    start = 20

    def here():
        return start + len(directory)

    root = here()
    directory += struct.pack("<II", 2, root + 8)
    root_entries = here()
    directory += bytes(9 * 2)
    pending = []  # (record offset, data, compressed)
    for n, (folder, files) in enumerate(folders.items()):
        header = here()
        directory += struct.pack("<II", len(files), header + 8)
        entries = here()
        directory += bytes(9 * len(files))
        name = here()
        directory += folder.encode() + b"\0"
        struct.pack_into("<IIB", directory, root_entries - start + 9 * n, name, header, 1)
        for k, (fname, data, packed) in enumerate(files):
            name = here()
            directory += fname.encode() + b"\0"
            record = here()
            directory += bytes(9)
            struct.pack_into("<IIB", directory, entries - start + 9 * k, name, record, 0)
            pending.append((record, data, packed))
    end = here()
    body = bytearray()
    for record, data, packed in pending:
        offset = end + len(body)
        if packed:
            parts = chunks(data)
            body += b"".join(struct.pack("<I", len(p)) for p in parts) + b"".join(parts)
        else:
            body += data
        struct.pack_into("<IIB", directory, record - start, offset, len(data), 2 if packed else 0)
    with open(path, "wb") as out:
        out.write(struct.pack("<IIIII", 0x49504148, 0x00010000, end, 0, start))
        out.write(directory)
        out.write(body)


main()

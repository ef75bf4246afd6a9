"""Record files: texts in records of a fixed length, each behind its 16-bit length."""

from __future__ import annotations

import pathlib
import struct

OPTIONS_RECORD = 1000


def write_records(path: pathlib.Path, texts: dict[int, str], size: int = OPTIONS_RECORD) -> None:
    content = bytearray(max(texts) * size)
    for number, text in texts.items():
        data = text.encode()
        at = (number - 1) * size
        content[at : at + 2 + len(data)] = struct.pack("<H", len(data)) + data
    path.write_bytes(content)


def read_record(path: pathlib.Path, number: int, size: int = OPTIONS_RECORD) -> str:
    record = path.read_bytes()[(number - 1) * size : number * size]
    if len(record) < 2:
        return ""
    (length,) = struct.unpack("<H", record[:2])
    return record[2 : 2 + length].decode()

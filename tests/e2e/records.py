"""Record files: texts in records of a fixed length, each behind its 16-bit length."""

from __future__ import annotations

import dataclasses
import pathlib
import struct

OPTIONS_RECORD = 1000
PLAYLIST_RECORD = 500


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


@dataclasses.dataclass(frozen=True)
class Playlist:
    """What the list's file holds: each item is its short name and its path."""

    items: list[tuple[str, str]]
    repeat: str = "0"


def write_playlist(path: pathlib.Path, playlist: Playlist) -> None:
    texts = [str(len(playlist.items)), playlist.repeat]
    texts += [text for item in playlist.items for text in item]
    write_records(path, dict(enumerate(texts, 1)), PLAYLIST_RECORD)


def read_playlist(path: pathlib.Path) -> Playlist:
    count = int(read_record(path, 1, PLAYLIST_RECORD))
    texts = [read_record(path, number, PLAYLIST_RECORD) for number in range(2, 2 * count + 3)]
    return Playlist(list(zip(texts[1::2], texts[2::2])), texts[0])

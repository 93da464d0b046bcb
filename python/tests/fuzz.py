"""Gives the module what hostile streams hold and careless programs do: fuzz.py SECONDS [SEED].

A turn is a seed: what it does depends on nothing else but how threads come along. Whatever is raised that the
module does not promise ends the run with the seed of its turn; `fuzz.py 0 SEED` does that turn again.
"""

from __future__ import annotations

import copy
import gc
import io
import pickle
import random
import sys
import threading
import time
from collections.abc import Callable, Iterator
from datetime import datetime, timedelta
from pathlib import Path
from typing import Any

import quillon

DATA = Path(__file__).resolve().parents[2] / "data"
CAPTURES = {name: (DATA / name).read_bytes() for name in ("sample.ts", "sample-atsc.ts")}
SECTIONS = [
    (section.bytes, standard)
    for name, standard in (("sample.ts", "dvb"), ("sample-atsc.ts", "atsc"))
    for section in quillon.open(CAPTURES[name])
]
PLAIN = (int, float, str, bytes, datetime, timedelta, type(None))
NAMES = ("", "\0", "fields\0", "\ud800", "x" * 100_000, "__dict__", "__wrapped__", "_ptr", "bytes ", "félds")
VALUES: tuple[Any, ...] = (
    None, True, -1, 0, 18, 0x2000, 1 << 80, 1.5, float("nan"), "", "eit", "\0", "\ud800", b"", b"\x47" * 188,
    [], [18], ["eit", 0x42], [None], [[]], {}, {1: 2}, object(), range(3), iter([7]), type, len,
)  # fmt: skip


class Own(Exception):
    """What a source or a thread of ours raises."""


def crc_32(data: bytes) -> bytes:
    register = 0xFFFFFFFF
    for byte in data:
        register ^= byte << 24
        for _ in range(8):
            register = (register << 1 ^ (0x04C11DB7 if register >> 31 else 0)) & 0xFFFFFFFF
    return register.to_bytes(4, "big")


def mutated(chance: random.Random, data: bytes, most: int) -> bytes:
    out = bytearray(data)
    for _ in range(chance.randrange(most + 1)):
        at = chance.randrange(len(out) + 1)
        change = chance.randrange(4)
        if change == 0:
            out[at:at] = chance.randbytes(chance.randrange(1, 20))
        elif change == 1:
            del out[at : at + chance.randrange(1, 20)]
        elif at < len(out):
            out[at] = chance.randrange(256) if change == 2 else chance.choice((0, 1, 0x7F, 0x80, 0xFF))
    return bytes(out)


def mutated_section(chance: random.Random) -> tuple[bytes, str]:
    """Its length and CRC are right."""
    data, standard = chance.choice(SECTIONS)
    if len(data) < 12 or not data[1] & 0x80:
        return mutated(chance, data, 3), standard
    body = mutated(chance, data[:-4], 4)[: 4098 - 4]
    length = max(len(body) + 1, 9)
    body = body[:1] + bytes([0xF0 | length >> 8, length & 0xFF]) + body[3:].ljust(5, b"\0")
    return body + crc_32(body), standard


def piece_of_capture(chance: random.Random) -> bytes:
    data = CAPTURES[chance.choice(list(CAPTURES))]
    at = chance.randrange(len(data))
    return mutated(chance, data[at : at + chance.randrange(60_000)], chance.choice((0, 3, 50)))


def pieces(chance: random.Random, data: bytes) -> Iterator[Any]:
    while data:
        size = chance.choice((1, 13, 188, 1316, 65536))
        piece, data = data[:size], data[size:]
        yield chance.choice((bytes, bytearray, memoryview))(piece)


def expect(raised: type[Exception] | tuple[type[Exception], ...], action: Callable[[], object]) -> None:
    """That it raises one of these, or does what it is asked."""
    try:
        action()
    except raised:
        pass


def refuse(raised: type[Exception] | tuple[type[Exception], ...], action: Callable[[], object]) -> None:
    """That it raises one of these."""
    try:
        action()
    except raised:
        return
    raise AssertionError(f"{action} was not refused")


def look_at_value(value: object) -> None:
    if isinstance(value, dict):
        for name, item in value.items():
            assert isinstance(name, str)
            look_at_value(item)
    elif isinstance(value, list):
        for item in value:
            look_at_value(item)
    else:
        assert type(value) in PLAIN, value
        if isinstance(value, str):
            value.encode()


def look_at(chance: random.Random, section: quillon.Section) -> None:
    repr(section)
    for name in dir(type(section)):
        if name != "fields" and not name.startswith("__"):
            getattr(section, name)
    for failure in section.failures:
        repr(failure)
        assert failure.text and failure.tag in range(256)
    if section.error is not None:
        refuse(quillon.Error, lambda: section.fields)
        assert str(pickle.loads(pickle.dumps(section.error))) == str(section.error)
    else:
        look_at_value(section.fields)
        assert section.fields is section.fields
        if chance.randrange(8) == 0:  # what its user may put there
            section.fields["itself"] = section
    name = chance.choice(NAMES)
    refuse((AttributeError, UnicodeEncodeError), lambda: getattr(section, name + " "))
    refuse((AttributeError, UnicodeEncodeError), lambda: setattr(section, name, 1))
    own = chance.choice(("fields", "pid", name))
    refuse((AttributeError, UnicodeEncodeError), lambda: delattr(section, own))
    duplicate: Any = chance.choice((pickle.dumps, copy.copy, copy.deepcopy))
    refuse(TypeError, lambda: duplicate(section))
    index: Any
    for index in (chance.randrange(-9, 9), 1 << 80, slice(None, None, -1)):
        expect((IndexError, OverflowError), lambda: section.failures[index])  # noqa: B023
        expect(IndexError, lambda: section.bytes[index])  # noqa: B023


def look_at_reader(reader: quillon.Reader | quillon.Stream) -> None:
    for thing in (reader.services(), reader.schedule(), reader.statistics):
        assert pickle.loads(pickle.dumps(thing)) == thing
    assert reader.standard in ("dvb", "atsc")


def options(chance: random.Random) -> Any:
    return {
        "repeats": chance.random() < 0.5,
        "every_pid": chance.random() < 0.5,
        "reading": chance.choice(("standard", "kept")),
        "standard": chance.choice(("dvb", "atsc", None)),
        "tables": chance.choice(((), ("eit", 0x42), (chance.randrange(256),))),
        "pids": chance.choice(((), (0x12,), (chance.randrange(0x2000),))),
    }


def parse_sections(chance: random.Random) -> None:
    parse: Any = quillon.parse
    for _ in range(20):
        data, standard = mutated_section(chance)
        if chance.randrange(4) == 0:
            data, standard = chance.randbytes(chance.randrange(60)), chance.choice(("dvb", "atsc"))
        try:
            section = parse(data, standard=standard, reading=chance.choice(("standard", "kept")))
        except quillon.Error as error:
            assert str(error) or error.code is not None
        else:
            look_at(chance, section)


def read_pieces(chance: random.Random) -> None:
    reader = quillon.Reader(**options(chance))
    for piece in pieces(chance, piece_of_capture(chance)):
        sections = reader.feed(piece)
        if isinstance(piece, bytearray):
            piece.clear()  # nothing holds it any more
        for section in sections[:: chance.randrange(1, 9)]:
            look_at(chance, section)
    expect(quillon.Error, reader.finish)
    for again in (reader.finish, lambda: reader.feed(b"\x47")):
        refuse(quillon.Error, again)
    look_at_reader(reader)


def iterate(chance: random.Random) -> None:
    """While the stream is closed, its source fails, or the source uses the stream itself."""
    holder: list[quillon.Stream] = []

    def chunks() -> Iterator[Any]:
        for piece in pieces(chance, piece_of_capture(chance)):
            what = chance.randrange(60)
            if what == 0:
                holder[0].close()
            elif what == 1:
                raise Own
            elif what == 2:
                yield chance.choice(VALUES)
            elif what == 3:
                expect((quillon.Error, StopIteration, ValueError), lambda: next(holder[0]))
            elif what == 4:
                look_at_reader(holder[0])
            yield piece

    data = piece_of_capture(chance)
    source: Any = chance.choice((data, bytearray(data), io.BytesIO(data), chunks()))
    stream = quillon.open(source, **options(chance))
    holder.append(stream)
    try:
        for section in stream:
            look_at(chance, section)
            if chance.randrange(40) == 0:
                end: Callable[[], object] = chance.choice((stream.close, stream.drain))
                end()
    except (quillon.Error, Own):
        pass
    except (TypeError, ValueError) as error:
        # Chunks that are none, and a generator that asks for itself.
        if not hasattr(source, "gi_frame"):
            raise error
    look_at_reader(stream)
    stream.close()


def use_wrongly(chance: random.Random) -> None:
    wrong = (TypeError, ValueError, OverflowError)
    opened: Any = quillon.open
    reader: Any = quillon.Reader
    parse: Any = quillon.parse
    value = chance.choice(VALUES)
    option = chance.choice(("pids", "tables", "repeats", "every_pid", "standard", "reading", "", "x"))
    expect(wrong, lambda: reader(**{option: value}))
    expect(wrong, lambda: opened(CAPTURES["sample.ts"][:2000], **{option: value}))
    expect((*wrong, quillon.Error), lambda: parse(value))
    expect((*wrong, quillon.Error), lambda: parse(SECTIONS[0][0], standard=value))
    expect((*wrong, quillon.Error), lambda: reader().feed(value))
    if not isinstance(value, str):
        expect((*wrong, quillon.Error, AttributeError), lambda: list(opened(value)))
    bare: Any
    kind: Any
    metaclass: Any = type
    refuse(TypeError, lambda: metaclass("Derived", (quillon.Section,), {}))
    for kind in (quillon.Section, quillon.DescriptorFailure, quillon.Reader):
        try:
            bare = kind.__new__(kind)
        except TypeError:
            continue
        for name in dir(kind):
            if not name.startswith("__"):
                expect((*wrong, quillon.Error), lambda: getattr(bare, name)())  # noqa: B023


def share(chance: random.Random) -> None:
    """A reader, and sections, among threads."""
    reader = quillon.Reader(repeats=True)
    data = CAPTURES[chance.choice(list(CAPTURES))][: 188 * chance.randrange(1, 2000)]
    sections = reader.feed(data)
    failed: list[BaseException] = []

    def use(seed: int) -> None:
        own = random.Random(seed)
        try:
            for _ in range(4):
                action = own.randrange(5)
                if action == 0:
                    expect(quillon.Error, lambda: reader.feed(mutated(own, data, 5)))
                elif action == 1 and own.randrange(4) == 0:
                    expect(quillon.Error, reader.finish)
                elif action == 2:
                    look_at_reader(reader)
                else:
                    for section in own.sample(sections, min(5, len(sections))):
                        section.fields if section.error is None else repr(section)
        except BaseException as error:
            failed.append(error)

    threads = [threading.Thread(target=use, args=(chance.random(),)) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failed:
        raise failed[0]


TURNS = (parse_sections, parse_sections, read_pieces, iterate, use_wrongly, share)


def turn(seed: int) -> None:
    chance = random.Random(seed)
    chance.choice(TURNS)(chance)
    if chance.randrange(16) == 0:
        gc.collect()


def main() -> int:
    if len(sys.argv) not in (2, 3):
        print("fuzz.py SECONDS [SEED]", file=sys.stderr)
        return 2
    end = time.monotonic() + float(sys.argv[1])
    seed = int(sys.argv[2]) if len(sys.argv) == 3 else random.SystemRandom().randrange(1 << 40)
    turns = 0
    sys.setswitchinterval(1e-5)
    while turns == 0 or time.monotonic() < end:
        try:
            turn(seed + turns)
        except BaseException:
            print(f"seed {seed + turns}", file=sys.stderr)
            raise
        turns += 1
    print(f"{turns} turns from seed {seed}")
    return 0


if __name__ == "__main__":
    sys.exit(main())

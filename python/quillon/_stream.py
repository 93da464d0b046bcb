"""ReadingName: where the bytes come from, and when."""

from __future__ import annotations

import builtins
import os
from collections.abc import Callable, Iterable, Iterator
from types import TracebackType
from typing import Any, Protocol, Union

from ._quillon import Reader, Section
from ._types import Event, ReadingName, Service, ServiceId, StandardName, Statistics

Buffer = Union[bytes, bytearray, memoryview]


class Readable(Protocol):
    """A file object that gives bytes."""

    def read(self, size: int, /) -> bytes | None: ...


Source = Union[str, "os.PathLike[str]", Buffer, Readable, Iterable[Buffer]]

_PIECE = 1 << 18
_LOOK_AHEAD = 64 << 20
_END: Any = object()


class Stream:
    """A stream that is open: an iterator of its sections, which reads as far as it is asked.

    Where an iteration was left, the next one goes on. What was read so far is in ``services()``,
    ``schedule()`` and ``statistics``, also after ``close()``; ``drain()`` reads all the rest for them.
    """

    def __init__(self, source: Source, reader: Reader) -> None:
        self._reader = reader
        self._file: Any = None
        self._prepare: Callable[[], None] | None = None
        self._pieces: Iterator[Buffer] = iter(())
        self._ready: Iterator[Section] = iter(())
        self._next_chunk: Callable[[], Any] = lambda: _END
        self._ended = False
        if isinstance(source, (str, os.PathLike)):
            self._file = builtins.open(source, "rb", buffering=0)
            self._take_file(self._file)
        elif (view := _view_of(source)) is not None:
            self._take_bytes(view)
        elif hasattr(source, "read"):
            self._take_file(source)
        elif isinstance(source, Iterable):
            chunks = iter(source)
            self._next_chunk = lambda: next(chunks, _END)
        else:
            raise TypeError(
                f"a stream can't be read from {type(source).__name__}: "
                "a path, a file object, bytes or an iterable of bytes is wanted"
            )

    def __iter__(self) -> Iterator[Section]:
        return self

    def __next__(self) -> Section:
        while True:
            for section in self._ready:
                return section
            self._ready = iter(self._read_on(True))

    def __enter__(self) -> Stream:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.close()

    def close(self) -> None:
        """Ends the iteration, and closes the file if open() opened it."""
        self._ended = True
        self._ready = iter(())
        self._pieces = iter(())
        self._prepare = None
        if self._file is not None:
            self._file.close()

    def drain(self) -> Stream:
        """Reads to the end without making sections, and gives the stream itself.

        ``quillon.open(path).drain().services()`` is the quick way to all services.
        """
        self._ready = iter(())
        try:
            while True:
                self._read_on(False)
        except StopIteration:
            return self

    @property
    def standard(self) -> StandardName:
        """Whose tables the stream holds, as far as is known: "dvb" or "atsc"."""
        return self._reader.standard

    def services(self) -> list[Service]:
        """The services that what was read tells of: those of the stream itself first, by their ids."""
        return self._reader.services()

    def schedule(self) -> dict[ServiceId, list[Event]]:
        """The events that what was read tells of, by service, each list in the order of their start."""
        return self._reader.schedule()

    @property
    def statistics(self) -> Statistics:
        """What was read so far, counted."""
        return self._reader.statistics

    def _read_on(self, wanted: bool) -> list[Section]:
        """The sections of the next piece; StopIteration after the end."""
        if self._ended:
            raise StopIteration
        if self._prepare is not None:
            self._prepare()
            self._prepare = None
        for piece in self._pieces:
            return self._reader._feed(piece, wanted)
        chunk = self._next_chunk()
        if chunk is _END:
            self.close()
            return self._reader._finish(wanted)
        view = memoryview(chunk)
        if view.nbytes <= _PIECE:
            return self._reader._feed(chunk, wanted)
        # Sections take more than their bytes: those of a large chunk are made bit by bit.
        self._pieces = _pieces_of(view.cast("B"))
        return []

    def _take_bytes(self, view: memoryview) -> None:
        def look_ahead() -> None:
            for piece in _pieces_of(view[:_LOOK_AHEAD]):
                self._reader._look_ahead(piece)

        self._pieces = _pieces_of(view)
        self._prepare = look_ahead

    def _take_file(self, file: Any) -> None:
        # A buffered reader would wait for whole pieces, where a pipe has a few bytes.
        read = getattr(file, "read1", file.read)

        def next_chunk() -> Any:
            chunk = read(_PIECE)
            if chunk is None:
                raise BlockingIOError("the file has no bytes yet and does not wait for them; make it blocking")
            return chunk or _END

        def look_ahead() -> None:
            start = file.tell()
            while file.tell() - start < _LOOK_AHEAD and (chunk := next_chunk()) is not _END:
                self._reader._look_ahead(chunk)
            file.seek(start)

        self._next_chunk = next_chunk
        seekable = getattr(file, "seekable", None)
        if seekable is not None and seekable():
            self._prepare = look_ahead


def _pieces_of(view: memoryview) -> Iterator[memoryview]:
    return (view[at : at + _PIECE] for at in range(0, len(view), _PIECE))


def _view_of(source: object) -> memoryview | None:
    try:
        return memoryview(source).cast("B")  # type: ignore[arg-type]
    except TypeError:
        return None


def open(
    source: Source,
    *,
    pids: Iterable[int] = (),
    tables: Iterable[int | str] = (),
    repeats: bool = False,
    every_pid: bool = False,
    standard: StandardName | None = None,
    reading: ReadingName = "standard",
) -> Stream:
    """Opens a transport stream, or a chain of bare sections, for reading.

    source: a path; a file object with ``read()``, as a pipe or ``sys.stdin.buffer``; bytes; or any
        iterable of chunks of bytes, which may be cut anywhere. An iterable is asked for its next chunk
        once the sections of the last one were given, and so may be live. What can go back is looked
        through first, up to 64 MiB, so that no section comes before the table that names its PID.
    pids: these alone, whatever they carry.
    tables: these alone, by table id or by name, as 0x42 or "sdt"; without ``pids`` on every PID.
    repeats: repeated sections too.
    every_pid: the PIDs that no table names too; of what they carry only long sections with a right CRC.
    standard: whose tables the ids mean, "dvb" or "atsc"; found from the stream without it.
    reading: "standard" reads fields as the standards in force say, "kept" as they always were.

    Iterating raises ``quillon.Error`` at the end of an input that holds no packets, nor sections.
    """
    reader = Reader(
        pids=pids, tables=tables, repeats=repeats, every_pid=every_pid, standard=standard, reading=reading
    )
    return Stream(source, reader)

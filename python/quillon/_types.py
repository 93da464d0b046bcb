"""What the compiled part hands over in plain Python types."""

from __future__ import annotations

import datetime
from dataclasses import dataclass
from typing import Any, Literal, NamedTuple

StandardName = Literal["dvb", "atsc"]
ReadingName = Literal["standard", "kept"]


class Error(Exception):
    """What quillon refuses: a section, or an input that is no transport stream.

    ``str(error)`` is the library's own text, on which tools may match.
    """

    code: int | None
    """The failure's number; None where it has only a text."""

    def __init__(self, text: str, code: int | None = None) -> None:
        super().__init__(text)
        self.code = code

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (str(self), self.code)


class ServiceId(NamedTuple):
    """What event information calls a service; in ATSC a source_id, and the others are None."""

    original_network_id: int | None
    transport_stream_id: int | None
    service_id: int


@dataclass(frozen=True)
class CaStream:
    """Where the ECMs of a CA system are."""

    ca_system_id: int
    pid: int


@dataclass(frozen=True)
class ServiceStream:
    """A stream of a service."""

    pid: int
    stream_type: int
    stream_type_text: str
    content: str
    """What it carries, by its type and descriptors: "H.264 video", "AC-3 audio", "subtitles"."""
    format_identifier: int
    """Of its registration; 0 without one."""
    component_tag: int | None
    languages: tuple[str, ...]
    """ISO 639-2, as they are sent."""
    ca: tuple[CaStream, ...]


@dataclass(frozen=True)
class Service:
    """A service of DVB, a virtual channel of ATSC, or a program of which no more is known.

    What is not known is None, or empty.
    """

    id: ServiceId
    """The key of its events in ``schedule()``."""
    is_actual: bool
    """Of the transport stream that is read; False of another that it tells of."""
    original_network_id: int | None
    transport_stream_id: int | None
    service_id: int
    """The program_number."""
    name: str
    provider: str
    service_type: int | None
    service_type_text: str
    running_status: int | None
    """1 not running, 2 starts in a few seconds, 3 pausing, 4 running."""
    free_ca_mode: bool | None
    """Whether streams are under conditional access; in ATSC access_controlled."""
    eit_schedule_flag: bool | None
    eit_present_following_flag: bool | None
    major_channel_number: int | None
    minor_channel_number: int | None
    source_id: int | None
    hidden: bool | None
    map_pid: int | None
    pcr_pid: int | None
    streams: tuple[ServiceStream, ...]
    ca: tuple[CaStream, ...]
    """ECMs of the program and its streams, each once."""


class EventText(NamedTuple):
    """Title and short description of an event in one language."""

    language: str
    title: str
    text: str
    """Empty in ATSC."""


class LongText(NamedTuple):
    """The long description of an event in one language."""

    language: str
    items: tuple[tuple[str, str], ...]
    """Pairs as ("Director", "N. N.")."""
    text: str
    is_complete: bool
    """Whether all descriptors over which it is spread are there."""


@dataclass(frozen=True)
class Event:
    """An event of a service."""

    event_id: int
    start: datetime.datetime | None
    """UTC; None of an event without a time of its own."""
    duration: datetime.timedelta | None
    running_status: int
    """0 undefined, 1 not running, 2 starts in a few seconds, 3 pausing, 4 running."""
    free_ca_mode: bool | None
    """Whether streams are under conditional access; None in ATSC."""
    texts: tuple[EventText, ...]
    long_texts: tuple[LongText, ...]
    contents: tuple[dict[str, Any], ...]
    """DVB's genres, as a section's fields have them; so the ratings, and ATSC's genres and advisories."""
    ratings: tuple[dict[str, Any], ...]
    genres: tuple[dict[str, Any], ...]
    advisories: tuple[dict[str, Any], ...]

    @property
    def title(self) -> str:
        """The title in the language that comes first; empty without one."""
        return self.texts[0].title if self.texts else ""


@dataclass(frozen=True)
class PidStatistics:
    """The packets of a PID."""

    packets: int
    bit_rate: float
    """Bits a second, its share in all packets; 0 before two clock references."""
    continuity_errors: int
    duplicates: int
    transport_errors: int
    scrambled: int
    clock_references: int


@dataclass(frozen=True)
class TableRepetition:
    """How often a table is sent, by the section of it that was met first. Intervals are in seconds."""

    pid: int
    table_id: int
    extension: int
    """0 of a short section."""
    transport_stream_id: int
    """Of event information; that of a service description is its extension. 0 of others."""
    original_network_id: int
    """Of event information and service descriptions; 0 of others."""
    further_id: int
    """ETM_id of an extended text, platform_id of an IP/MAC notification table; 0 of others."""
    is_current: bool
    count: int
    smallest: float | None
    largest: float | None
    mean: float | None


@dataclass(frozen=True)
class Statistics:
    """What was read, counted."""

    packets: int
    null_packets: int
    packet_size: int
    """Bytes from one packet to the next: 188, 192, 204 or 208; 0 before it is known, and in a chain."""
    skipped_bytes: int
    """Bytes that belong to no packet, or in a chain to no section."""
    sync_losses: int
    seconds: float
    """The time that the stream's clock went through without a jump."""
    bit_rate: float
    """Bits a second; 0 before two clock references."""
    sections: int
    """All of them, repeated ones too."""
    crc_errors: dict[int | None, int]
    """Sections with a wrong CRC by PID; None in a chain."""
    pids: dict[int, PidStatistics]
    """By PID, those that have packets."""
    tables: tuple[TableRepetition, ...]
    """In the order of their ids."""

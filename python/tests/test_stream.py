from __future__ import annotations

import ast
import gc
import io
import os
import pickle
import random
import re
import resource
import subprocess
import sys
import threading
import time
import weakref
from collections.abc import Callable, Iterator
from datetime import datetime, timedelta, timezone
from pathlib import Path
from typing import Any

import pytest
import quillon
from conftest import TOP


def brief(stream: quillon.Stream) -> list[tuple[Any, ...]]:
    return [(section.pid, section.packet, section.bytes, section.table) for section in stream]


# What a stream is read from.


def test_all_sources_give_the_same_sections(sample: Path) -> None:
    wanted = brief(quillon.open(sample))
    data = sample.read_bytes()
    assert len(wanted) == 114
    assert brief(quillon.open(str(sample))) == wanted
    assert brief(quillon.open(data)) == wanted
    assert brief(quillon.open(bytearray(data))) == wanted
    assert brief(quillon.open(memoryview(data))) == wanted
    assert brief(quillon.open(io.BytesIO(data))) == wanted
    with open(sample, "rb") as file:
        assert brief(quillon.open(file)) == wanted
        assert not file.closed


@pytest.mark.parametrize("size", [1, 13, 188, 1316, 65536, 2 << 20])
def test_chunks_may_be_cut_anywhere(sample: Path, size: int) -> None:
    data = sample.read_bytes()[: 188 * 400]
    wanted = brief(quillon.open(iter([data])))
    assert len(wanted) > 20
    assert brief(quillon.open(data[at : at + size] for at in range(0, len(data), size))) == wanted


def test_a_file_object_is_read_from_where_it_stands(sample: Path) -> None:
    data = sample.read_bytes()
    file = io.BytesIO(b"a header of its own" + data)
    file.seek(19)
    assert brief(quillon.open(file)) == brief(quillon.open(data))


def test_pipe(sample: Path) -> None:
    with subprocess.Popen(["cat", str(sample)], stdout=subprocess.PIPE) as cat:
        assert cat.stdout is not None
        stream = quillon.open(cat.stdout)
        assert sum(1 for _ in stream) > 100
        assert [service.name for service in stream.services()][0] == "Quill One"


def test_named_pipe(sample: Path, tmp_path: Path) -> None:
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    writer = threading.Thread(target=lambda: pipe.write_bytes(sample.read_bytes()))
    writer.start()
    assert sum(1 for _ in quillon.open(pipe)) > 100
    writer.join()


def test_a_pipe_gives_what_has_come() -> None:
    data = (TOP / "data" / "sample.ts").read_bytes()
    read_end, write_end = os.pipe()
    with os.fdopen(read_end, "rb") as file, os.fdopen(write_end, "wb", buffering=0) as out:
        out.write(data[: 188 * 100])
        assert next(quillon.open(file)).table == "pat"


def test_sections_of_a_chunk_come_before_the_next_is_asked_for(sample: Path) -> None:
    data = sample.read_bytes()
    asked: list[int] = []

    def chunks() -> Iterator[bytes]:
        for at in range(0, len(data), 188 * 50):
            asked.append(at)
            yield data[at : at + 188 * 50]

    stream = quillon.open(chunks())
    assert asked == []
    first = next(stream)
    assert first.packet == 1 and len(asked) == 1
    for section in stream:
        # The last packets of a chunk wait for the next one.
        assert section.packet > 50 * len(asked) - 55
    assert len(asked) == 126


def test_an_iterator_that_raises_may_go_on(sample: Path) -> None:
    data = sample.read_bytes()

    class Socket:
        at = 0
        fails = True

        def __iter__(self) -> Socket:
            return self

        def __next__(self) -> bytes:
            self.fails = not self.fails
            if self.fails:
                raise TimeoutError("nothing came")
            if self.at >= len(data):
                raise StopIteration
            self.at += 18800
            return data[self.at - 18800 : self.at]

    stream = quillon.open(Socket())
    sections = 0
    timeouts = 0
    while True:
        try:
            next(stream)
            sections += 1
        except TimeoutError:
            timeouts += 1
        except StopIteration:
            break
    assert timeouts == 63
    assert sections == sum(1 for _ in quillon.open([data]))


def test_large_chunks_are_made_bit_by_bit(sample: Path) -> None:
    data = sample.read_bytes()
    stream = quillon.open([data])
    next(stream)
    assert stream.statistics.packets < 1500
    assert 1 + len(list(stream)) == len(list(quillon.open(data[at : at + 188] for at in range(0, len(data), 188))))


def test_a_chain_of_bare_sections(sample: Path) -> None:
    wanted = [section for section in quillon.open(sample) if section.crc_ok]
    chain = b"".join(section.bytes for section in wanted)
    sections = list(quillon.open(chain))
    assert [section.bytes for section in sections] == [section.bytes for section in wanted]
    assert all(section.pid is None and section.time is None for section in sections)
    assert [section.packet for section in sections] == list(range(1, len(wanted) + 1))


# Iteration.


def test_iteration_goes_on_where_it_was_left(sample: Path) -> None:
    wanted = brief(quillon.open(sample))
    stream = quillon.open(sample)
    head = []
    for section in stream:
        head.append((section.pid, section.packet, section.bytes, section.table))
        if len(head) == 7:
            break
    assert head + brief(stream) == wanted
    assert list(stream) == []


def test_close_ends_the_iteration_and_keeps_what_was_read(sample: Path) -> None:
    with quillon.open(sample) as stream:
        next(stream)
    assert list(stream) == []
    assert stream.statistics.packets > 0
    assert stream.services()


def test_drain_reads_the_rest(sample: Path) -> None:
    stream = quillon.open(sample)
    assert stream.drain() is stream
    read = quillon.open(sample)
    assert len(list(read)) == 114
    assert stream.statistics == read.statistics
    assert stream.services() == read.services()
    assert stream.schedule() == read.schedule()


# What is chosen.


def test_choice_of_pids_and_tables(sample: Path) -> None:
    assert {section.pid for section in quillon.open(sample, pids=[0, 0x11])} == {0, 0x11}
    assert {section.table for section in quillon.open(sample, tables=["pmt", 0x70])} == {"pmt", "tdt"}
    events = list(quillon.open(sample, tables={"eit"}))
    assert {section.table_id for section in events} == {0x4E, 0x4F, 0x50}
    assert list(quillon.open(sample, pids=range(1, 2), tables=["eit"])) == []


def test_repeats(sample: Path) -> None:
    once = list(quillon.open(sample))
    sections = list(quillon.open(sample, repeats=True))
    assert len(sections) == 1361
    assert [section.bytes for section in sections if not section.repeated] == [s.bytes for s in once]


def test_every_pid(sample: Path) -> None:
    section = next(iter(quillon.open(sample, pids=[0x11])))
    assert section.crc_ok
    body = b"\0" + section.bytes
    packets = []
    for at in range(0, len(body), 184):
        head = bytes([0x47, 0x4A if at == 0 else 0x0A, 0xBC, 0x10 | at // 184])
        packets.append((head + body[at : at + 184]).ljust(188, b"\xff"))
    data = b"".join(packets) + b"\x47\x1f\xff\x10".ljust(188, b"\xff") * 9
    assert list(quillon.open(data)) == []
    assert [s.pid for s in quillon.open(data, every_pid=True)] == [0x0ABC]
    assert [s.pid for s in quillon.open(data, tables=["sdt", "bat", "nit"])] == [0x0ABC]


def test_standard_is_found_or_given(sample: Path, atsc: Path) -> None:
    stream = quillon.open(atsc)
    tables = {section.table for section in stream}
    assert stream.standard == "atsc"
    assert {"atsc_mgt", "atsc_tvct", "atsc_eit", "atsc_pmt"} <= tables
    assert quillon.open(sample).drain().standard == "dvb"
    assert "pmt" in {section.table for section in quillon.open(atsc, standard="dvb")}


def test_readings_differ(atsc: Path) -> None:
    def titles(reading: quillon.ReadingName) -> list[Any]:
        stream = quillon.open(atsc, tables=["atsc_eit"], reading=reading)
        return [section.fields for section in stream if section.error is None]

    standard = titles("standard")
    assert len(standard) > len(titles("kept"))


# Sections.


def test_attributes_of_a_section(sample: Path) -> None:
    section = next(quillon.open(sample, tables=["eit"]))
    assert (section.pid, section.table, section.table_id) == (0x12, "eit", 0x4E)
    assert section.extension == int.from_bytes(section.bytes[3:5], "big") == section.fields["service_id"]
    assert section.version == section.bytes[5] >> 1 & 31
    assert (section.section_number, section.last_section_number) == (section.bytes[6], section.bytes[7])
    assert section.is_current and section.crc_ok is True and not section.repeated
    assert section.error is None and section.failures == []
    assert isinstance(section.time, float)
    assert "eit" in repr(section) and "0x0012" in repr(section)
    short = next(quillon.open(sample, tables=["tdt"]))
    assert short.extension is short.version is short.section_number is short.crc_ok is None
    assert short.fields["UTC_time"] == datetime(2026, 11, 22, 12, 29, 55, tzinfo=timezone.utc)


def test_types_of_fields(sample: Path) -> None:
    section = next(s for s in quillon.open(sample, tables=["eit"]) if s.fields["event_infos"])
    event = section.fields["event_infos"][0]
    assert isinstance(event["start_time"], datetime)
    assert isinstance(event["duration"], timedelta)
    assert section.fields["table_id_meaning"].startswith("event_information_section")
    assert event["descriptors"][0]["descriptor"] == "short_event_descriptor"
    assert section.fields is section.fields
    met = {
        type(value)
        for section in quillon.open(sample)
        if section.error is None
        for value in section.fields.values()
    }
    assert met <= {int, float, str, bytes, datetime, timedelta, type(None), dict, list}


def test_refused_section(sample: Path) -> None:
    (refused,) = [section for section in quillon.open(sample) if section.error]
    assert refused.crc_ok is False and refused.table is not None and "refused" in repr(refused)
    with pytest.raises(quillon.Error, match="^crc error$") as raised:
        refused.fields
    assert str(refused.error) == "crc error" and raised.value.code is None


def test_a_table_that_is_not_known() -> None:
    data = b"\x80\x30\x01\x00" + b"\xff" * 180
    packet = b"\x47\x40\x10\x10\x00" + data[:183]
    (section,) = [s for s in quillon.open(packet + b"\x47\x1f\xff\x10".ljust(188, b"\xff") * 9)]
    assert section.table is None and section.table_id == 0x80
    assert section.fields == {} and section.error is None


def test_sections_outlive_their_stream(sample: Path) -> None:
    sections = list(quillon.open(sample.read_bytes()))
    gc.collect()
    assert sections[0].fields["program_infos"] and len(sections[0].bytes) == 48


def test_cycles_are_collected(sample: Path) -> None:
    class Witness:
        pass

    section = next(quillon.open(sample))
    witness = Witness()
    section.fields["self"] = section
    section.fields["witness"] = witness
    gone = weakref.ref(witness)
    del section, witness
    gc.collect()
    assert gone() is None


def test_sections_are_not_made_by_hand() -> None:
    with pytest.raises(TypeError, match="sections are made by open, Reader and parse"):
        quillon.Section()
    with pytest.raises(TypeError):
        quillon.Section.__new__(quillon.Section)


# parse


def test_parse(sample: Path) -> None:
    for section in quillon.open(sample):
        if section.error is None and section.table:
            parsed = quillon.parse(section.bytes)
            assert parsed.fields == section.fields
            assert parsed.pid is None and parsed.crc_ok == section.crc_ok
            assert quillon.parse(bytearray(section.bytes + b"more")).bytes == section.bytes


def test_parse_in_both_standards_and_readings(atsc: Path) -> None:
    section = next(quillon.open(atsc, tables=["atsc_eit"]))
    assert quillon.parse(section.bytes, standard="atsc").fields == section.fields
    with pytest.raises(quillon.Error):
        quillon.parse(section.bytes, standard="dvb")
    kept = next(s for s in quillon.open(atsc, tables=["atsc_tvct"], reading="kept") if s.error is None)
    assert quillon.parse(kept.bytes, standard="atsc", reading="kept").fields == kept.fields


def test_parse_refuses(sample: Path) -> None:
    section = next(quillon.open(sample))
    wrong = bytearray(section.bytes)
    wrong[-1] ^= 1
    with pytest.raises(quillon.Error, match="^crc error$"):
        quillon.parse(wrong)
    for cut in range(3, len(section.bytes)):
        with pytest.raises(quillon.Error, match="^section is shorter than its section_length$"):
            quillon.parse(section.bytes[:cut])
    with pytest.raises(quillon.Error, match="3 bytes at least"):
        quillon.parse(b"")
    with pytest.raises(quillon.Error, match="no table has the id 0x80"):
        quillon.parse(b"\x80\x30\x01\x00")


def test_codes_and_failures() -> None:
    # A header bit that is wrong has a code alone.
    with pytest.raises(quillon.Error, match="^failure 2$") as raised:
        quillon.parse(b"\x70\xf0\x05\xc0\x79\x12\x45\x00")
    assert raised.value.code == 2
    copied = pickle.loads(pickle.dumps(raised.value))
    assert (str(copied), copied.code) == ("failure 2", 2)


def crc(data: bytes) -> bytes:
    value = 0xFFFFFFFF
    for byte in data:
        value ^= byte << 24
        for _ in range(8):
            value = (value << 1 ^ (0x04C11DB7 if value & 0x80000000 else 0)) & 0xFFFFFFFF
    return value.to_bytes(4, "big")


def test_descriptor_that_is_kept_as_it_is() -> None:
    # A content descriptor of an odd length.
    loop = b"\x54\x03\x10\x00\x10"
    stream_info = b"\x00\x01\x00\x02" + (0xF000 | len(loop)).to_bytes(2, "big") + loop
    body = b"\x00\x01\xc1\x00\x00" + b"\xf0\x00" + (0xF000 | len(stream_info)).to_bytes(2, "big") + stream_info
    head = b"\x40" + (0xF000 | len(body) + 4).to_bytes(2, "big") + body
    section = quillon.parse(head + crc(head))
    (failure,) = section.failures
    assert failure.tag == 0x54 and failure.text and "0x54" in repr(failure)
    assert failure.code is None or failure.code >= 0
    assert section.fields["transport_streams" if "transport_streams" in section.fields else "stream_infos"]


# Services, schedule, statistics.


def test_services(sample: Path) -> None:
    services = quillon.open(sample).drain().services()
    first = services[0]
    assert (first.service_id, first.name, first.provider) == (0x1001, "Quill One", "Feather")
    assert first.id == quillon.ServiceId(9018, 1105, 0x1001)
    assert first.is_actual and first.free_ca_mode is False and first.major_channel_number is None
    assert [stream.content for stream in first.streams][:2] == ["H.264 video", "AAC audio"]
    assert first.streams[1].languages == ("eng",)
    assert len({service.id for service in services}) == len(services)
    assert any(service.ca for service in services)
    assert "星河衛視" in [service.name for service in services]


def test_channels(atsc: Path) -> None:
    services = quillon.open(atsc).drain().services()
    channel = next(service for service in services if service.source_id is not None)
    assert channel.major_channel_number is not None and channel.minor_channel_number is not None
    assert channel.id == (None, None, channel.source_id)


@pytest.mark.parametrize("name", ["sample.ts", "sample-atsc.ts"])
def test_schedule(name: str) -> None:
    stream = quillon.open(TOP / "data" / name).drain()
    schedule = stream.schedule()
    assert set(schedule) & {service.id for service in stream.services()}
    for events in schedule.values():
        starts = [event.start for event in events if event.start]
        assert starts == sorted(starts) and all(start.tzinfo is timezone.utc for start in starts)
    every = [event for events in schedule.values() for event in events]
    assert all(isinstance(event.duration, timedelta) for event in every if event.start)
    assert any(event.title for event in every)
    assert any(event.long_texts for event in every)
    rated = next(event for event in every if event.ratings or event.advisories)
    assert isinstance((rated.ratings or rated.advisories)[0], dict)


def test_long_texts_and_genres(sample: Path) -> None:
    every = [event for events in quillon.open(sample).drain().schedule().values() for event in events]
    assert any(event.contents and event.contents[0]["content_nibble_level1_meaning"] for event in every)
    assert all(text.is_complete for event in every for text in event.long_texts)
    assert not any(event.genres for event in every)
    channels = quillon.open(TOP / "data" / "sample-atsc.ts").drain().schedule().values()
    assert all(0x20 <= event.genres[0]["attribute"] <= 0x25 for events in channels for event in events)


def test_statistics(sample: Path) -> None:
    statistics = quillon.open(sample).drain().statistics
    assert statistics.packets == 6300 == sum(pid.packets for pid in statistics.pids.values())
    assert statistics.packet_size == 188 and statistics.skipped_bytes == 0 and statistics.sync_losses == 0
    assert statistics.null_packets == statistics.pids[0x1FFF].packets
    assert statistics.bit_rate == pytest.approx(846_000)
    assert statistics.seconds == pytest.approx(11.16, abs=0.01)
    assert statistics.sections == 1361 and statistics.crc_errors == {0x11: 1}
    assert statistics.pids[769].continuity_errors == 3
    table = statistics.tables[0]
    assert (table.pid, table.table_id, table.count) == (0, 0, 125)
    assert table.mean == pytest.approx(0.09, abs=0.001)
    guides = [table for table in statistics.tables if table.table_id == 0x4F]
    assert {(table.original_network_id, table.transport_stream_id) for table in guides} == {(0x233A, 0x0452)}
    assert all(table.is_current and table.further_id == 0 for table in guides)


def test_statistics_of_damage(sample: Path) -> None:
    data = sample.read_bytes()
    statistics = quillon.open(data[: 188 * 1000] + b"garbage" + data[188 * 1000 :]).drain().statistics
    assert statistics.skipped_bytes == 7 and statistics.sync_losses == 1
    assert quillon.open(b"".join(data[at : at + 188] + b"\0" * 16 for at in range(0, 188000, 188))).drain(
    ).statistics.packet_size == 204


# Reader


def test_reader_takes_bytes_as_they_come(sample: Path) -> None:
    data = sample.read_bytes()
    reader = quillon.Reader(tables=["pmt"])
    sections = [s for at in range(0, len(data), 1316) for s in reader.feed(data[at : at + 1316])]
    sections += reader.finish()
    assert {section.table for section in sections} == {"pmt"}
    assert reader.statistics == quillon.open(sample).drain().statistics
    assert len(reader.services()) == len(quillon.open(sample).drain().services())
    with pytest.raises(quillon.Error, match="the input was finished"):
        reader.finish()
    with pytest.raises(quillon.Error, match="the input was finished"):
        reader.feed(data)


# What is refused.


def test_what_is_no_stream() -> None:
    for data in (b"", b"\0" * 10000, b"no stream at all" * 10000):
        with pytest.raises(quillon.Error, match="holds no transport packets, nor sections") as raised:
            list(quillon.open(data))
        assert raised.value.code is None
    with pytest.raises(quillon.Error, match="holds no transport packets"):
        list(quillon.open(bytes(1 << 20) for _ in range(1000)))


def test_wrong_types_and_values(sample: Path) -> None:
    wrong: Any
    for wrong in (None, 7, 3.5):
        with pytest.raises(TypeError, match="a path, a file object, bytes or an iterable of bytes"):
            quillon.open(wrong)
    for wrong in ([7], ["text"], io.StringIO("text"), [None]):
        with pytest.raises(TypeError):
            list(quillon.open(wrong))
    with pytest.raises(FileNotFoundError):
        quillon.open("no such file")
    with pytest.raises(IsADirectoryError):
        quillon.open(TOP)
    any_open: Any = quillon.open
    with pytest.raises(ValueError, match="no reading is called \"new\"; there are \"standard\" and \"kept\""):
        any_open(sample, reading="new")
    with pytest.raises(ValueError, match="no standard is called"):
        any_open(sample, standard="isdb")
    with pytest.raises(ValueError, match="no table is called \"epg\"; there are pat, cat, pmt"):
        any_open(sample, tables=["epg"])
    with pytest.raises(ValueError, match="surrogates not allowed"):
        any_open(sample, tables=["\ud800"])
    for number in (-1, 0x2000, 1 << 80):
        with pytest.raises(ValueError, match="is no PID: from 0 to 8191 is wanted"):
            any_open(sample, pids=[number])
    with pytest.raises(ValueError, match="is no table id: from 0 to 255 is wanted"):
        any_open(sample, tables=[256])
    for options in ({"pids": 7}, {"pids": ["eit"]}, {"tables": [1.5]}, {"reading": None}, {"chunk": 1}):
        with pytest.raises(TypeError):
            any_open(sample, **options)
    any_parse: Any = quillon.parse
    for wrong in (None, "text", 7, [1, 2]):
        with pytest.raises(TypeError):
            any_parse(wrong)
        with pytest.raises(TypeError):
            any_parse(b"\x70\x70\x05\xc0\x79\x12\x45\x00", standard=7)


def test_objects_that_were_never_made_have_nothing(sample: Path) -> None:
    reader = quillon.Reader.__new__(quillon.Reader)
    use: Callable[[], object]
    for use in (reader.finish, reader.services, lambda: reader.feed(b"\x47"), lambda: reader.statistics):
        with pytest.raises(TypeError):
            use()
    failure = quillon.DescriptorFailure.__new__(quillon.DescriptorFailure)
    for use in (lambda: failure.text, lambda: failure.tag, lambda: repr(failure)):
        with pytest.raises(TypeError):
            use()
    with pytest.raises(TypeError, match="sections are made by open, Reader and parse"):
        quillon.Section.__new__(quillon.Section)


def test_non_blocking_file_without_bytes(sample: Path) -> None:
    read_end, write_end = os.pipe()
    os.set_blocking(read_end, False)
    with os.fdopen(read_end, "rb", buffering=0) as file, os.fdopen(write_end, "wb", buffering=0) as out:
        stream = quillon.open(file)
        with pytest.raises(BlockingIOError, match="make it blocking"):
            next(stream)
        out.write(sample.read_bytes()[: 188 * 100])
        assert next(stream).table == "pat"


# Hostile bytes: what comes out may be anything, but nothing else is raised, and nothing ends the process.


def look_at(stream: quillon.Stream) -> None:
    try:
        for section in stream:
            repr(section)
            section.failures
            try:
                section.fields
            except quillon.Error as error:
                assert str(error) == str(section.error)
    except quillon.Error as error:
        assert "holds no transport packets" in str(error)
    stream.services()
    stream.schedule()
    stream.statistics


@pytest.mark.parametrize("name", ["sample.ts", "sample-atsc.ts"])
def test_damaged_streams(name: str) -> None:
    data = (TOP / "data" / name).read_bytes()
    chance = random.Random(19)
    for turn in range(12):
        damaged = bytearray(data[: chance.randrange(len(data) // 2)])
        for _ in range(len(damaged) // 200):
            damaged[chance.randrange(len(damaged))] = chance.randrange(256)
        look_at(quillon.open(damaged, every_pid=turn % 2 == 0, reading="kept" if turn % 3 else "standard"))


def test_random_bytes() -> None:
    chance = random.Random(7)
    for turn in range(40):
        noise = chance.randbytes(chance.randrange(20000))
        look_at(quillon.open(noise))
        look_at(quillon.open([b"\x47" + noise[at : at + 187] for at in range(0, len(noise) - 187, 187)]))
        for standard in ("dvb", "atsc"):
            any_parse: Any = quillon.parse
            try:
                any_parse(noise[:turn], standard=standard).fields
            except quillon.Error:
                pass


def test_random_sections_with_right_crcs(sample: Path, atsc: Path) -> None:
    chance = random.Random(11)
    read = 0
    for standard, capture in (("dvb", sample), ("atsc", atsc)):
        for section in quillon.open(capture):
            if not section.crc_ok or len(section.bytes) < 20:
                continue
            for _ in range(10):
                damaged = bytearray(section.bytes[:-4])
                for _ in range(3):
                    damaged[chance.randrange(8, len(damaged))] = chance.randrange(256)
                any_parse: Any = quillon.parse
                try:
                    any_parse(bytes(damaged) + crc(damaged), standard=standard).fields
                    read += 1
                except quillon.Error:
                    pass
    assert read > 100


# Threads.


def test_other_threads_go_on_while_bytes_are_parsed(sample: Path) -> None:
    data = sample.read_bytes() * 60
    turns = 0
    done = False

    def work() -> None:
        nonlocal done
        reader = quillon.Reader(repeats=True)
        reader._feed(data, False)
        done = True

    interval = sys.getswitchinterval()
    # With the lock held, this thread would have no turn before the call ends.
    sys.setswitchinterval(1000)
    try:
        worker = threading.Thread(target=work)
        worker.start()
        while not done and turns < 20:
            time.sleep(0.0002)
            turns += not done
        worker.join()
    finally:
        sys.setswitchinterval(interval)
    assert turns >= 5


def test_threads_may_share_a_reader(sample: Path) -> None:
    data = sample.read_bytes()
    reader = quillon.Reader(repeats=True)
    reader.feed(data)
    errors: list[BaseException] = []

    def use(work: Any) -> None:
        try:
            for _ in range(4):
                work()
        except BaseException as error:
            errors.append(error)

    work = [lambda: reader.feed(data), reader.services, reader.schedule, lambda: reader.statistics]
    threads = [threading.Thread(target=use, args=(each,)) for each in work * 2]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert errors == []
    reader.finish()
    assert reader.statistics.packets == 9 * 6300


def test_threads_may_ask_for_the_same_fields(sample: Path) -> None:
    interval = sys.getswitchinterval()
    sys.setswitchinterval(1e-6)
    try:
        for section in list(quillon.open(sample, tables=["eit"]))[:20]:
            got: list[Any] = []
            threads = [threading.Thread(target=lambda: got.append(section.fields)) for _ in range(4)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            assert len(got) == 4 and all(fields is got[0] for fields in got)
    finally:
        sys.setswitchinterval(interval)


def test_memory_is_bounded(sample: Path) -> None:
    data = sample.read_bytes()
    reader = quillon.Reader(repeats=True)

    def go_through(times: int) -> int:
        for _ in range(times):
            for section in reader.feed(data):
                if section.error is None:
                    section.fields
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    before = go_through(5)
    assert go_through(30) - before < 20_000  # KiB


# What people read.


def test_everything_has_a_docstring() -> None:
    for name in quillon.__all__:
        thing = getattr(quillon, name)
        if name in ("__version__", "ReadingName", "StandardName"):
            continue
        assert thing.__doc__, name
        if isinstance(thing, type):
            assert thing.__module__ == "quillon", name
            for member, value in vars(thing).items():
                if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                    assert value.__doc__, f"{name}.{member}"


def test_the_stub_has_what_the_module_has() -> None:
    stub = ast.parse((TOP / "python/quillon/_quillon.pyi").read_text())
    classes = [node for node in stub.body if isinstance(node, ast.ClassDef)]
    assert {node.name for node in classes} == {"DescriptorFailure", "Section", "Reader"}
    for node in classes:
        stated = {member.name for member in node.body if isinstance(member, ast.FunctionDef)}
        there = {
            name
            for name in vars(getattr(quillon, node.name))
            if not name.startswith("__") and name != "_pybind11_conduit_v1_"
        }
        assert stated - {"__init__"} == there, node.name


def test_version() -> None:
    assert quillon.__version__.count(".") == 2


def test_what_the_readme_shows(
    sample: Path, monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    class Connection:
        chunks = [sample.read_bytes(), b""]

        def recv(self, size: int) -> bytes:
            return self.chunks.pop(0)

    monkeypatch.chdir(TOP)
    code = blocks_of("python/README.md")
    assert len(code) == 4
    exec("\n".join(code), {"connection": Connection(), "data": sample.read_bytes()})
    out = capsys.readouterr().out
    assert "4097 Quill One ['H.264 video', 'AAC audio'" in out
    assert "2026-11-22 00:00:00+00:00 The Lamplighter" in out
    assert out.count("<quillon.Section eit") == 2 * len(list(quillon.open(sample, tables=["eit"])))


def blocks_of(page: str) -> list[str]:
    text = (TOP / page).read_text(encoding="utf-8")
    return re.findall(r"^```python\n(.*?)^```", text, re.MULTILINE | re.DOTALL)


def test_what_the_first_page_shows(monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]) -> None:
    monkeypatch.chdir(TOP)
    (code,) = blocks_of("README.md")
    exec(code, {})
    assert capsys.readouterr().out.startswith("17 [{'service_id': 4097,")


def test_what_the_page_of_json_shows(program: str, sample: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    jsonschema = pytest.importorskip("jsonschema")
    monkeypatch.chdir(TOP)
    (code,) = blocks_of("docs/json.md")
    lines = subprocess.run([program, "json", str(sample)], capture_output=True, encoding="utf-8", check=True).stdout
    monkeypatch.setattr(sys, "stdin", io.StringIO(lines))
    exec(code, {})
    monkeypatch.setattr(sys, "stdin", io.StringIO('{"table": "none"}'))
    with pytest.raises(jsonschema.ValidationError):
        exec(code, {})


def test_example_rates(sample: Path, tmp_path: Path) -> None:
    pytest.importorskip("matplotlib")
    picture = tmp_path / "rates.png"
    run = subprocess.run(
        [sys.executable, "-W", "ignore", str(TOP / "examples/python/rates.py"), str(sample), str(picture)],
        capture_output=True,
        encoding="utf-8",
        env={**os.environ, "PYTHONIOENCODING": "utf-8", "MPLCONFIGDIR": str(tmp_path)},
    )
    assert run.returncode == 0, run.stderr
    assert picture.read_bytes().startswith(b"\x89PNG")
    rates = dict(line.rsplit(": ", 1) for line in run.stdout.splitlines())
    assert {"Quill One", "tables and the rest", "null packets"} <= set(rates)
    assert sum(int(rate.split()[0]) for rate in rates.values()) == pytest.approx(846, rel=0.02)

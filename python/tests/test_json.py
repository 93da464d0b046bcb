"""The fields against the program's JSON, which the library's own tests hold against the tables."""

from __future__ import annotations

import datetime
import json
import subprocess
from pathlib import Path
from typing import Any

import pytest
import quillon
from conftest import captures


def as_json(value: Any) -> Any:
    """A field as the program writes it, where JSON lacks the type."""
    if isinstance(value, dict):
        return {name: as_json(field) for name, field in value.items()}
    if isinstance(value, list):
        return [as_json(item) for item in value]
    if isinstance(value, bytes):
        return value.hex()
    if isinstance(value, datetime.datetime):
        assert value.tzinfo is datetime.timezone.utc
        return f"{value:%Y-%m-%dT%H:%M:%SZ}"
    if isinstance(value, datetime.timedelta):
        seconds = int(value.total_seconds())
        return f"{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}"
    return value


def lines_of(section: quillon.Section) -> dict[str, Any]:
    line: dict[str, Any] = {} if section.pid is None else {"pid": section.pid}
    line["packet"] = section.packet
    if section.pid is not None:
        line["time"] = section.time
    return {**line, "table": section.table, **as_json(section.fields)}


def order_of(value: Any) -> Any:
    """The names in their order, which the equality of dicts passes over."""
    if isinstance(value, dict):
        return [(name, order_of(field)) for name, field in value.items()]
    return [order_of(item) for item in value] if isinstance(value, list) else None


@pytest.mark.parametrize("reading", ["standard", "kept"])
@pytest.mark.parametrize("capture", captures(), ids=[file.name for file in captures()])
@pytest.mark.parametrize("options", [[], ["--all"], ["--table", "0x42"], ["--pid", "0x12"]], ids=" ".join)
def test_fields_are_those_of_the_json(
    program: str, capture: Path, reading: quillon.ReadingName, options: list[str]
) -> None:
    run = subprocess.run(
        [program, "json", str(capture), "--reading", reading, *options], capture_output=True, check=False
    )
    wanted = [json.loads(line) for line in run.stdout.splitlines()]
    stream = quillon.open(
        capture,
        reading=reading,
        repeats="--all" in options,
        tables=[0x42] if "--table" in options else [],
        pids=[0x12] if "--pid" in options else [],
    )
    got = [lines_of(section) for section in stream if section.table and section.error is None]
    assert bool(wanted) or options
    assert len(got) == len(wanted)
    for mine, its in zip(got, wanted):
        # The program may round the time to milliseconds.
        assert mine.pop("time", None) == pytest.approx(its.pop("time", None), abs=0.0006)
        assert mine == its
        assert order_of(mine) == order_of(its)

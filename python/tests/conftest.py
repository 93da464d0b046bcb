from __future__ import annotations

import os
import shutil
from pathlib import Path

import pytest

TOP = Path(__file__).resolve().parents[2]


@pytest.fixture
def sample() -> Path:
    return TOP / "data" / "sample.ts"


@pytest.fixture
def atsc() -> Path:
    return TOP / "data" / "sample-atsc.ts"


@pytest.fixture
def program() -> str:
    """The companion program: the dicts are held against its JSON."""
    found = os.environ.get("QUILLON_PROGRAM") or shutil.which("quillon")
    if found is None:
        pytest.skip("the companion program is not there; QUILLON_PROGRAM may name it")
    return found


def captures() -> list[Path]:
    """The bundled streams, and real ones where there are any."""
    found = [TOP / "data" / "sample.ts", TOP / "data" / "sample-atsc.ts"]
    if folder := os.environ.get("QUILLON_STREAMS"):
        found += sorted(file for file in Path(folder).glob("*.*") if file.suffix in (".ts", ".bin"))
    return found

"""PSI/SI sections of MPEG-2 transport streams as Python objects.

    import quillon

    with quillon.open("capture.ts") as stream:
        for section in stream:
            if section.table == "eit" and section.error is None:
                print(section.pid, section.fields["service_id"])
    for service in stream.services():
        print(service.service_id, service.name)

open() reads paths, pipes, bytes and live chunks; Reader takes bytes as they come; parse() reads one section.
Bytes are cut and parsed without the interpreter's lock, so that other threads go on meanwhile.
"""

from ._quillon import DescriptorFailure, Reader, Section, __version__, parse
from ._stream import Stream, open
from ._types import (
    CaStream,
    Error,
    Event,
    EventText,
    LongText,
    PidStatistics,
    ReadingName,
    Service,
    ServiceId,
    ServiceStream,
    StandardName,
    Statistics,
    TableRepetition,
)

__all__ = [
    "CaStream",
    "DescriptorFailure",
    "Error",
    "Event",
    "EventText",
    "LongText",
    "PidStatistics",
    "Reader",
    "ReadingName",
    "Section",
    "Service",
    "ServiceId",
    "ServiceStream",
    "StandardName",
    "Statistics",
    "Stream",
    "TableRepetition",
    "__version__",
    "open",
    "parse",
]

# Where they are from the user's view: in help() and in what is raised.
for _name in __all__:
    if isinstance(_type := globals()[_name], type):
        _type.__module__ = __name__
del _name, _type

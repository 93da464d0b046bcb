#pragma once

// What is measured: from packets to sections (W1), to objects (W2), to reports (W3), documents (W3x) and JSON
// (W3j).

#include "bench/streams.h"

namespace quillon::bench {

// Assembles all sections with their CRC checked, pushed or pulled.
Counts assemble_pushed(const Stream& stream);
Counts assemble_pulled(const Stream& stream);
// The same through PacketReader and SectionReader, in one piece: packets found, counters checked, repeats
// sought.
Counts assemble_found(const Stream& stream);
// Pushes, and parses every section into its object.
Counts parse_all(const Stream& stream);
// The same with one object a class, used again after a reset; a NIT is made anew, as its reset keeps
// descriptors.
Counts parse_again(const Stream& stream);
// As parse_all, and writes each object's report into a string stream.
Counts report_all(const Stream& stream);
// As parse_all, and saves each object into a document of its own.
Counts save_all(const Stream& stream);
// As parse_all, and walks each object as a line of JSON in a string.
Counts walk_all(const Stream& stream);
// The yardstick: Boost's CRC over all section bytes; gives the number of right ones.
uint64_t yardstick(const Stream& stream);

}  // namespace quillon::bench

#pragma once

// What each fuzz target does with its bytes. The same functions run under libFuzzer, under AFL++ and in the
// replay program. They abort on what must not happen; an error thrown by the library is an answer like any
// other.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::fuzz {

// Packets into Demux, DemuxPush and Demux2; whole or split, the sections that come out are the same.
void demux(const uint8_t* data, size_t size);
// One section: length and CRC are repaired, then it is parsed by the class of its table id, strictly and
// tolerantly, looked at in every way, saved, loaded and saved again.
void section(const uint8_t* data, size_t size);
// One descriptor of each family by its tag, with the rest of the bytes behind it.
void descriptor(const uint8_t* data, size_t size);
// XML text through Document into the ParseDOM of the table that its root names.
void document(const uint8_t* data, size_t size);
// A registry overlay.
void overlay(const uint8_t* data, size_t size);
// The program's packet source.
void packets(const uint8_t* data, size_t size);

// Makes a section whole: section_length for its size, the bits of a long or short header, the right CRC.
void repair(std::vector<uint8_t>& section);
// A change that keeps the structure: grows or shrinks a length, cuts, doubles or moves a descriptor.
void mutate_structure(std::vector<uint8_t>& section, uint32_t seed);

}  // namespace quillon::fuzz

#pragma once

// What each fuzz target does with its bytes. The same functions run under libFuzzer, under AFL++ and in the
// replay program. They abort on what must not happen; an error thrown by the library is an answer like any
// other.

#include <cstddef>
#include <cstdint>

namespace quillon::fuzz {

// Packets into Demux, DemuxPush and Demux2; whole or split, the sections that come out are the same.
void demux(const uint8_t* data, size_t size);
// One section: length and CRC are repaired, then it is parsed by the classes of its table id, looked at in
// every way, whether it was refused or not, saved, loaded, looked at again, and parsed a second time.
void section(const uint8_t* data, size_t size);
// The same section strictly and tolerantly, with and without kept bytes, with and without bytes after it:
// all give the same. What is saved, loaded and saved stays the same when that is done again.
void agreement(const uint8_t* data, size_t size);
// One descriptor of each family by its tag, with the rest of the bytes after it.
void descriptor(const uint8_t* data, size_t size);
// XML text through Document into the ParseDOM of the table that its root names.
void document(const uint8_t* data, size_t size);
// A registry overlay.
void overlay(const uint8_t* data, size_t size);
// The readers and collectors of streams, over bytes as they are and over sections made whole; in
// one piece and in many, they give the same.
void stream(const uint8_t* data, size_t size);

}  // namespace quillon::fuzz

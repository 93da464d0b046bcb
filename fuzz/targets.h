#pragma once

// What each fuzz target does with its bytes. The same functions run under libFuzzer, under AFL++ and in the
// replay program. They abort on what must not happen; an error thrown by the library is an answer like any
// other.

#include <cstddef>
#include <cstdint>

namespace quillon::fuzz {

// Packets into Demux, DemuxPush and Demux2; whole or split, the sections that come out are the same.
void demux(const uint8_t* data, size_t size);
// Handlers and filters that come and go between packets and in hooks: each gets the sections that a plain
// reassembler of its own gets.
void handlers(const uint8_t* data, size_t size);
// One section: length and CRC are repaired, then it is parsed by the classes of its table id, looked at in
// every way, whether it was refused or not, saved, loaded, looked at again, and parsed a second time.
void section(const uint8_t* data, size_t size);
// The same section strictly and tolerantly, with and without kept bytes, with and without bytes after it:
// all give the same. What is saved, loaded and saved stays the same when that is done again.
void agreement(const uint8_t* data, size_t size);
// The same section walked over: JSON holds each field, in UTF-8, twice the same, also after a walk that a
// sink has ended.
void walk(const uint8_t* data, size_t size);
// One descriptor of each family by its tag, with the rest of the bytes after it.
void descriptor(const uint8_t* data, size_t size);
// The text of a DVB field, or a multiple string of ATSC: UTF-8 of a bounded size, its forms in agreement.
void texts(const uint8_t* data, size_t size);
// XML text through Document into the ParseDOM of the table that its root names.
void document(const uint8_t* data, size_t size);
// Calls of Document and of its DOM: the tree is that of plain vectors, and so are its text and what is read
// from that.
void tree(const uint8_t* data, size_t size);
// A registry overlay.
void overlay(const uint8_t* data, size_t size);
// The readers and collectors of streams, over bytes as they are and over sections made whole; in
// one piece and in many, they give the same.
void stream(const uint8_t* data, size_t size);
// Sections of a few tables and versions on PIDs that are asked for and left: the reader gives, and the
// collectors hold, what plain models do.
void collectors(const uint8_t* data, size_t size);
// The page that the program makes of such a stream: what the stream says ends no element of it.
void html(const uint8_t* data, size_t size);
// A command of the program over such a stream: results and messages are UTF-8, and lines but for reports,
// twice the same; JSON is JSON, documents load, chains of sections are whole.
void commands(const uint8_t* data, size_t size);
// The program's command line, an argument a line, which is parsed and not run.
void options(const uint8_t* data, size_t size);

}  // namespace quillon::fuzz

#pragma once

#include <vector>

#include <quillon/stream/internal/siphash.h>
#include <quillon/stream/section_reader.h>

namespace quillon::detail {

// What section was last in each place of each table, by a digest with a key of this object's own: no stream
// can be made whose sections are taken for each other, or fall into one bucket.
//
// There are at most 262,144 records, of 32 bytes; it takes half as much again while it grows. They lie in
// buckets of sixteen; from a full one the record goes that was met longest ago.
class SeenSections {
 public:
  SeenSections();

  // True for a section that is another than the last in its place.
  bool add(const StreamSection& section);
  // Makes a section that was added a new one again.
  void forget(const StreamSection& section);

 private:
  static constexpr size_t kBucket = 16;
  static constexpr size_t kMost = size_t{1} << 18;

  struct Record {
    uint64_t place = 0;
    SipDigest digest = {};
    uint64_t met = 0;  // at which call of add; 0 in a free record
  };

  SipDigest digest_of(const uint8_t* bytes, size_t size) const;
  uint64_t place_of(const StreamSection& section, const SipDigest& digest) const;
  // The record of a place, or else the one of its bucket to be overwritten.
  Record& find(uint64_t place);
  void grow();

  SipKey key_;
  uint64_t calls_ = 0;
  std::vector<Record> records_;
};

}  // namespace quillon::detail

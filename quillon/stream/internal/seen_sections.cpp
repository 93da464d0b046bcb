#include <algorithm>
#include <cstring>
#include <random>

#include <quillon/stream/internal/seen_sections.h>
#include <quillon/stream/internal/table_ids.h>

namespace quillon::detail {

namespace {

constexpr size_t kFirstCapacity = 512;

}  // namespace

SeenSections::SeenSections() : records_(kFirstCapacity) {
  std::random_device random;
  for (uint64_t& word : key_) word = uint64_t{random()} << 32 | random();
}

bool SeenSections::add(const StreamSection& section) {
  const SipDigest digest = digest_of(section.bytes, section.size);
  const uint64_t place = place_of(section, digest);
  Record* record = &find(place);
  while (record->met != 0 && record->place != place && records_.size() < kMost) {
    grow();
    record = &find(place);
  }
  const bool repeated = record->met != 0 && record->place == place && record->digest == digest;
  *record = {place, digest, ++calls_};
  return !repeated;
}

void SeenSections::forget(const StreamSection& section) {
  find(place_of(section, digest_of(section.bytes, section.size))) = {};
}

// The digests of both halves, and the bytes left, digested together: the halves are independent, which makes
// use of a processor's width.
SipDigest SeenSections::digest_of(const uint8_t* bytes, size_t size) const {
  const size_t half = size / 16 * 8;
  SipHash first(key_);
  SipHash second(key_);
  for (size_t at = 0; at < half; at += 8) {
    first.take(SipHash::word_at(bytes + at));
    second.take(SipHash::word_at(bytes + half + at));
  }
  SipHash whole(key_);
  for (SipHash* const part : {&first, &second})
    for (const uint64_t word : part->finish(nullptr, 0, half)) whole.take(word);
  return whole.finish(bytes + 2 * half, size - 2 * half, size);
}

uint64_t SeenSections::place_of(const StreamSection& section, const SipDigest& digest) const {
  uint8_t place[20] = {static_cast<uint8_t>(section.pid >> 8), static_cast<uint8_t>(section.pid)};
  const uint8_t* const bytes = section.bytes;
  if (section.is_long() && section.crc_ok && section.size >= smallest_long_section) {
    // Of the byte of the version, current_next_indicator alone: the next version is sent beside the current.
    const uint8_t ids[] = {1, bytes[0], bytes[3], bytes[4], static_cast<uint8_t>(bytes[5] & 1), bytes[6]};
    std::copy(std::begin(ids), std::end(ids), place + 2);
    const uint32_t further = further_ids(bytes, section.size);
    std::memcpy(place + 8, &further, sizeof further);
  } else {
    // A section that has no number, or cannot be relied on, has a place by its bytes.
    std::memcpy(place + 3, digest.data(), sizeof digest);
  }
  return SipHash(key_).finish(place, sizeof place, sizeof place)[0];
}

SeenSections::Record& SeenSections::find(uint64_t place) {
  const size_t buckets = records_.size() / kBucket;
  Record* const bucket = records_.data() + (place & (buckets - 1)) * kBucket;
  Record* oldest = bucket;
  for (Record* record = bucket; record != bucket + kBucket; ++record) {
    if (record->met != 0 && record->place == place) return *record;
    if (record->met < oldest->met) oldest = record;
  }
  return *oldest;
}

// A bucket's records go to two, so that none is lost.
void SeenSections::grow() {
  std::vector<Record> old(2 * records_.size());
  old.swap(records_);
  for (const Record& record : old)
    if (record.met != 0) find(record.place) = record;
}

}  // namespace quillon::detail

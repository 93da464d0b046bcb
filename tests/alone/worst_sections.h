#pragma once

// Sections that cost as much as any: each loop of each table, filled to the end of the section.

#include "tests/support/table_cases.h"

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/dsmcc.h>
#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/cvct.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/atsc/rrt.h>
#include <quillon/atsc/stt.h>
#include <quillon/atsc/tvct.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

namespace quillon::test {

constexpr size_t kLongBody = 4098 - 12;  // what a section holds beside its header and its CRC
constexpr size_t kShortBody = 1026 - 3;

// Fills

struct Fill {
  std::string name;
  std::function<Bytes(size_t size)> make;
};

inline Fill repeated(std::string name, Bytes pattern) {
  return {std::move(name), [pattern = std::move(pattern)](size_t size) {
            Bytes out(size);
            for (size_t i = 0; i < size; ++i) out[i] = pattern[i % pattern.size()];
            return out;
          }};
}

// Whole descriptors, as long as they fit, then empty ones; `size` is filled but for a last odd byte.
inline Fill descriptors(std::string name, std::function<Bytes(std::mt19937&)> one) {
  return {std::move(name), [one = std::move(one)](size_t size) {
            std::mt19937 random(1);
            Bytes out;
            for (;;) {
              const Bytes next = one(random);
              if (out.size() + next.size() > size) break;
              out.insert(out.end(), next.begin(), next.end());
            }
            const Bytes empty = {0x80, 0x00};
            while (out.size() < size) out.push_back(empty[out.size() % 2]);
            return out;
          }};
}

// As test::descriptor, faster: millions are made.
inline Bytes quick_descriptor(int tag, size_t size, uint8_t value) {
  Bytes out(size + 2, value);
  out[0] = static_cast<uint8_t>(tag);
  out[1] = static_cast<uint8_t>(size);
  return out;
}

inline uint8_t any_byte(std::mt19937& random) {
  return static_cast<uint8_t>(random());
}
// Bytes that are counts and lengths at the ends of their range more often than not.
inline uint8_t extreme_byte(std::mt19937& random) {
  constexpr uint8_t values[] = {0x00, 0x01, 0x02, 0x0F, 0x7F, 0x80, 0xF0, 0xFF};
  return random() % 4 == 0 ? any_byte(random) : values[random() % std::size(values)];
}

inline const std::vector<Fill>& general_fills() {
  static const std::vector<Fill> fills = [] {
    std::vector<Fill> out;
    for (const uint8_t value : Bytes{0x00, 0x01, 0x02, 0x0F, 0x10, 0x7F, 0x80, 0xF0, 0xFF})
      out.push_back(repeated("all " + std::to_string(value), {value}));
    out.push_back(repeated("zero and ones", {0x00, 0xFF}));
    out.push_back(repeated("ones and zero", {0xFF, 0x00}));
    out.push_back(repeated("ones and two zeros", {0xFF, 0x00, 0x00}));
    for (uint32_t seed = 1; seed <= 20; ++seed) {
      const auto name = " random, seed " + std::to_string(seed);
      out.push_back({"any" + name, [seed](size_t size) {
                       std::mt19937 random(seed);
                       Bytes bytes(size);
                       for (uint8_t& byte : bytes) byte = any_byte(random);
                       return bytes;
                     }});
      out.push_back({"extreme" + name, [seed](size_t size) {
                       std::mt19937 random(seed);
                       Bytes bytes(size);
                       for (uint8_t& byte : bytes) byte = extreme_byte(random);
                       return bytes;
                     }});
      out.push_back(descriptors("descriptors" + name, [seed](std::mt19937& random) {
        random.discard(seed);
        const size_t size = random() % 8 == 0 ? random() % 256 : random() % 5;
        Bytes out = quick_descriptor(static_cast<int>(random() % 256), size, 0);
        for (size_t i = 2; i < out.size(); ++i) out[i] = extreme_byte(random);
        return out;
      }));
    }
    return out;
  }();
  return fills;
}

// As many descriptors of one tag as there is room for: empty ones, those of a constant body of each length,
// and those that claim all that they can.
inline std::vector<Fill> fills_of(int tag) {
  std::vector<Fill> out;
  const std::string name = "tag " + std::to_string(tag);
  for (const size_t size : std::initializer_list<size_t>{0, 1, 2, 3, 4, 6, 9, 16, 40, 255})
    for (const uint8_t value : size == 0 ? Bytes{0} : Bytes{0x00, 0x01, 0xFF})
      out.push_back(descriptors(name + ", " + std::to_string(size) + " of " + std::to_string(value),
                                [=](std::mt19937&) { return quick_descriptor(tag, size, value); }));
  for (const size_t most : std::initializer_list<size_t>{2, 12, 255})
    out.push_back(descriptors(name + ", extreme up to " + std::to_string(most), [=](std::mt19937& random) {
      Bytes out = quick_descriptor(tag, random() % (most + 1), 0);
      for (size_t i = 2; i < out.size(); ++i) out[i] = extreme_byte(random);
      return out;
    }));
  return out;
}

// Tables

// Four bits and a length of 12, before what has that length.
inline Bytes loop(const Bytes& content) {
  return joined(
      {{static_cast<uint8_t>(0xF0 | content.size() >> 8), static_cast<uint8_t>(content.size())}, content});
}

using Make = std::function<Bytes(size_t size)>;

// Rows of `head` and a loop of `size` bytes, as many as there is room for.
inline Bytes rows(const Bytes& head, const Make& fill, size_t size, size_t room) {
  Bytes out;
  const Bytes row = joined({head, loop(fill(size))});
  while (out.size() + row.size() <= room) out.insert(out.end(), row.begin(), row.end());
  return out;
}

struct Shape {
  std::string name;
  std::function<Bytes(const Make& fill)> body;
};

struct Bounded {
  TableCase table;  // its section is not looked at
  std::vector<int> ids;
  std::vector<Shape> shapes;
  size_t room = kLongBody;
};

// Rows of few bytes, of many, and of all that there is room for.
inline std::vector<Shape> row_shapes(const Bytes& front, const Bytes& head, size_t most = 4095) {
  std::vector<Shape> out;
  const size_t room = kLongBody - front.size();
  const size_t all = std::min(most, room - head.size() - 2);
  for (const size_t size : {size_t{0}, size_t{2}, size_t{3}, size_t{16}, size_t{257}, all})
    out.push_back({"rows of " + std::to_string(size), [=](const Make& fill) {
                     return joined({front, rows(head, fill, size, room)});
                   }});
  return out;
}

inline std::vector<Shape> operator+(std::vector<Shape> left, const std::vector<Shape>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

inline std::vector<int> range(int first, int last) {
  std::vector<int> out;
  for (int id = first; id <= last; ++id) out.push_back(id);
  return out;
}

template <class T>
std::string element_of(int table_id) {
  const auto dvb = AnyTable::for_table_id(table_id, Standard::dvb);
  return dvb && dvb->as<T>() ? dvb->element() : AnyTable::for_table_id(table_id, Standard::atsc)->element();
}

template <class T>
Bounded bounded(const char* name, std::vector<int> ids, std::vector<Shape> shapes = {}) {
  return {table_case<T>(name, element_of<T>(ids.front()), {}), std::move(ids), std::move(shapes),
          std::is_base_of_v<PsiTableBase, T> ? kLongBody : kShortBody};
}

// Each loop of each table, filled to the end of the section while the others are empty.
inline const std::vector<Bounded>& tables() {
  static const std::vector<Bounded> all = [] {
    const auto own_loop = [](const Bytes& front, const Bytes& behind, size_t most = 4095) {
      return std::vector<Shape>{{"own loop", [=](const Make& fill) {
                                   const size_t room = kLongBody - front.size() - behind.size() - 2;
                                   return joined({front, loop(fill(std::min(most, room))), behind});
                                 }}};
    };
    const auto strings = [](const Bytes& front) {
      return std::vector<Shape>{{"behind the header", [=](const Make& fill) {
                                   return joined({front, fill(kLongBody - front.size())});
                                 }}};
    };
    // A loop of rows that has a length of its own.
    const auto looped_rows = [](const Bytes& front, const Bytes& head) {
      std::vector<Shape> out;
      const size_t room = kLongBody - front.size() - 2;
      for (const size_t size :
           {size_t{0}, size_t{2}, size_t{3}, size_t{16}, size_t{257}, room - head.size() - 2})
        out.push_back({"rows of " + std::to_string(size), [=](const Make& fill) {
                         return joined({front, loop(rows(head, fill, size, room))});
                       }});
      return out;
    };
    const Bytes none = loop({});
    return std::vector<Bounded>{
        bounded<Pat>("Pat", {0x00}),
        bounded<Cat>("Cat", {0x01}),
        bounded<PmtDVB>("PmtDVB", {0x02},
                        own_loop({0xE1, 0}, {}) + row_shapes({0xE1, 0, 0xF0, 0}, {6, 0xE1, 0})),
        bounded<PmtATSC>("PmtATSC", {0x02},
                         own_loop({0xE1, 0}, {}) + row_shapes({0xE1, 0, 0xF0, 0}, {6, 0xE1, 0})),
        bounded<Nit>("Nit", {0x40, 0x41}, own_loop({}, none) + looped_rows(none, Bytes(4))),
        bounded<Bat>("Bat", {0x4A}, own_loop({}, none) + looped_rows(none, Bytes(4))),
        bounded<Sdt>("Sdt", {0x42, 0x46}, row_shapes(Bytes(3), Bytes(3))),
        bounded<Eit>("Eit", range(0x4E, 0x6F), row_shapes(Bytes(6), Bytes(10))),
        bounded<Tdt>("Tdt", {0x70}),
        bounded<Tot>("Tot", {0x73},
                     {{"own loop",
                       [](const Make& fill) {
                         return joined({Bytes(5), loop(fill(kShortBody - 11)), Bytes(4)});
                       }}}),
        bounded<Rst>("Rst", {0x71}),
        bounded<Ait>("Ait", {0x74}, own_loop({}, none) + looped_rows(none, Bytes(7))),
        bounded<Int>("Int", {0x4C},
                     own_loop(Bytes(4), {}) + row_shapes({0, 0, 0, 0, 0xF0, 0}, none) +
                         row_shapes({0, 0, 0, 0, 0xF0, 0}, {})),
        bounded<DsmCC>("DsmCC", {0x3B, 0x3C}),
        bounded<AtscMGT>("AtscMGT", {0xC7}, own_loop(Bytes(3), {}) + row_shapes({0, 0xFF, 0xFF}, Bytes(9))),
        bounded<AtscTVCT>("AtscTVCT", {0xC8},
                          own_loop(Bytes(2), {}, 1023) + row_shapes({0, 0xFF}, Bytes(30), 1023)),
        bounded<AtscCVCT>("AtscCVCT", {0xC9},
                          own_loop(Bytes(2), {}, 1023) + row_shapes({0, 0xFF}, Bytes(30), 1023)),
        bounded<AtscRRT>("AtscRRT", {0xCA}, strings({0, 0, 0xFF}) + own_loop(Bytes(3), {}, 1023)),
        bounded<AtscEIT>("AtscEIT", {0xCB}, row_shapes({0, 0xFF}, Bytes(9))),
        bounded<AtscETT>("AtscETT", {0xCC}, strings(Bytes(5)) + strings({0, 0, 0, 0, 0, 0xFF})),
        bounded<AtscSTT>("AtscSTT", {0xCD}, strings(Bytes(8))),
        bounded<AtscDCCT>("AtscDCCT", {0xD3},
                          own_loop(Bytes(2), {}, 1023) + row_shapes({0, 0xFF}, Bytes(17), 1023) +
                              // one test of many terms
                              row_shapes(joined({{0, 0xFF}, Bytes(16), {0xFF}}), Bytes(9), 1023)),
        bounded<AtscDCCSCT>("AtscDCCSCT", {0xD4},
                            own_loop(Bytes(2), {}, 1023) + row_shapes({0, 0xFF}, {1, 0}, 1023)),
    };
  }();
  return all;
}

inline Bytes section_of(const Bounded& bounded, int id, Bytes body) {
  body.resize(bounded.room);
  return bounded.table.has_crc ? long_section(id, body) : short_section(id, body);
}

}  // namespace quillon::test

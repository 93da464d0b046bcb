#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <quillon/fields/language.h>
#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/walkable.h>

namespace quillon {

// Text of ATSC tables in several languages (A/65, 6.10): strings, one a language, made of segments. The
// counts are those of the wire, 0 to 255; the vectors after them may hold less. Any input is accepted:
// whether the text filled its place shows only in the bytes used.
class QUILLON_API ATSCMultipleStringStructure {
 public:
  // The text in one language.
  //
  //   language           24
  //   number_segments     8
  //   segments
  class QUILLON_API String {
   public:
    // A part of it, compressed or not.
    //
    //   compression_type  8
    //   mode              8
    //   number_bytes      8
    //   bytes
    class QUILLON_API Segment {
     public:
      // `length` becomes the bytes of the segment, which may be more than there are.
      Segment(ByteView data, int& length);

      // Empty for what is not 0 to 255, here and for the mode.
      static const char* get_compression_type_text(int compression_type);
      const char* get_compression_type_text() const { return get_compression_type_text(compression_type); }
      static const char* get_mode_text(int mode);
      const char* get_mode_text() const { return get_mode_text(mode); }
      // In the edition in force.
      static const char* standard_mode_text(int mode);

      // What the bytes say, in either reading: pages of characters, SCSU, UTF-16, and Huffman coding by the
      // tables of A/65, annex C. Empty for a compression or a mode that is reserved or used elsewhere.
      wide_string text() const;

      void dump_state(std::ostream& stream) const;

      int compression_type = 0;
      int mode = 0;
      int number_bytes = 0;
      std::vector<uint8_t> compressed_string_bytes;  // as they are on the wire
      // That text in the standard reading; else empty if compressed, or if the mode is not a page.
      wide_string decoded_text;

      QUILLON_WALK;
      void decompress(std::vector<uint8_t>& out) const;
      void decode(const std::vector<uint8_t>& in);
    };

    // `length` holds the bytes there are, and then those of the string.
    String(ByteView data, int& length);

    void dump_state(std::ostream& stream) const;
    // The text of all segments, in either reading.
    std::string utf8() const;

    ISO639LanguageCode iso639languagecode;
    int number_segments = 0;
    std::vector<Segment> segments;

    QUILLON_WALK;
  };

  // Adds the strings to those there are. `length` holds the bytes there are, and then those used, at least
  // one.
  void parse(ByteView data, int& length);

  // The same where a field of `length` bytes from `at` on is all that they may use; 0 is no text.
  void parse_field(ByteView data, int at, int length);

  void dump_state(std::ostream& stream) const;

  int number_strings = 0;
  std::vector<String> strings;

  QUILLON_WALK;
};

// In UTF-8.
inline std::ostream& operator<<(std::ostream& stream, const ATSCMultipleStringStructure::String& string) {
  return stream << string.utf8();
}

}  // namespace quillon

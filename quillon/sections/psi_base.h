#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/dom_handles.h>
#include <quillon/sections/error.h>
#include <quillon/sections/walkable.h>

namespace quillon {

// A descriptor that its class refused, met by a tolerant parse: its tag, its offset in the section's body and
// the text of the failure (empty where it has only a code).
struct DescriptorFailure {
  int tag;
  int offset;
  std::string text;
  int code;
};
using DescriptorFailures = std::vector<DescriptorFailure>;

// What all tables can do: parse a section, load from a DOM, save to a DOM.
//
// Threads, here and wherever a class does not say otherwise: distinct objects are independent. `const`
// members of one object may run on several threads at once; anything else on one object is one thread's at a
// time.
class QUILLON_API PsiBase1 {
 public:
  virtual void Parse(const uint8_t* section, bool keep_raw) = 0;
  virtual void ParseDOM(void* node) = 0;
  virtual bool SaveSection(void* document, void* node) const = 0;

 protected:
  ~PsiBase1() = default;
};

// What both kinds of header share beside the wire form.
class TolerantTable {
 public:
  // How the sections to come are read; Reading::kept by default. The standard reading is tolerant.
  void set_reading(Reading reading) { reading_ = reading; }
  Reading get_reading() const { return reading_; }

  // A tolerant table keeps a DVB, INT or AIT descriptor whose class refuses it as a DescriptorGeneral in the
  // general vector, and holds the failure for later. Off by default: the first such descriptor then fails
  // the whole table.
  void set_tolerant(bool on) { tolerant_ = on; }
  const DescriptorFailures& get_descriptor_failures() const { return failures_; }

 protected:
  bool standard() const { return reading_ == Reading::standard; }
  // Quirk: a descriptor that its class refuses, in DVB, INT and AIT loops
  DescriptorFailures* tolerance() { return tolerant_ || standard() ? &failures_ : nullptr; }
  void forget_failures() { failures_.clear(); }

 private:
  DescriptorFailures failures_;
  bool tolerant_ = false;
  Reading reading_ = Reading::kept;
};

// A table in the long section form: the five-byte extension and the CRC (ISO/IEC 13818-1, 2.4.4.10).
//
// One object holds one section. Parse and ParseDOM add to what the object holds; reset empties it as far as
// the class says. A failed Parse or ParseDOM leaves what was read until then.
//
// The order of the virtual functions is fixed, here and in PsiBase: programs built against another version
// call them by their place.
class QUILLON_API PsiTableBase : public PsiBase1, public TolerantTable {
 public:
  // Reads a section that has all the bytes its section_length claims. Throws error: "crc error", "invalid
  // table id", the code error::bad_value for a header bit, and what the table's body throws.
  void Parse(const uint8_t* section, bool keep_raw) override;
  // The same, within `size` bytes: throws "section is shorter than its section_length" before it reads on.
  void Parse(const uint8_t* section, size_t size, bool keep_raw);
  void Parse(std::span<const uint8_t> section, bool keep_raw = false) {
    Parse(section.data(), section.size(), keep_raw);
  }
  // Throws error: "failed to get attribute map", "failed to get " and the name of a header's attribute, and
  // what the table's body throws.
  void ParseDOM(void* node) override;
  void ParseDOM(xml::DomElement element) { ParseDOM(element.get()); }
  // False at the first attribute or element that can't be added.
  bool SaveSection(void* document, void* node) const override;
  bool SaveSection(xml::DomDocument document, xml::DomElement element) const {
    return SaveSection(document.get(), element.get());
  }

  virtual const char* get_table_id_text() const = 0;

  // Prints the header, then the table's own lines. Leaves the stream in upper-case hexadecimal, filled with
  // '0', right-adjusted and unit-buffered.
  void dump_state(std::ostream& stream) const;
  void reset();

  // Hands the header to a sink, before the fields that the `walk` of each table hands over.
  void _walk_head(FieldSink& sink) const;

  int get_table_id() const { return table_id_; }
  int get_section_length() const { return section_length_; }
  int get_version_number() const { return version_number_; }
  int get_section_number() const { return section_number_; }
  int get_last_section_number() const { return last_section_number_; }
  // 1: the section is applicable now; 0: next.
  int get_current_next_indicator() const { return current_next_indicator_; }
  uint32_t get_crc32() const { return crc_; }
  // True once a Parse or ParseDOM has run to its end.
  bool is_parsed() const { return parsed_; }
  // The whole section, if Parse kept it.
  const std::vector<uint8_t>& get_section_raw_bytes() const { return raw_bytes_; }
  // The kept byte at `position` of the body, as descriptor positions count; null if it was not kept.
  const uint8_t* get_section_ptr_by_desc_pos(int position) const;

 protected:
  PsiTableBase() = default;
  PsiTableBase(const PsiTableBase&) = default;
  PsiTableBase(PsiTableBase&&) = default;
  PsiTableBase& operator=(const PsiTableBase&) = default;
  PsiTableBase& operator=(PsiTableBase&&) = default;
  ~PsiTableBase() = default;

  // table_id_extension, to which each table gives a name of its own.
  int get_context_id() const { return context_id_; }
  // The byte after the CRC, in the caller's buffer.
  const uint8_t* get_section_end() const { return section_end_; }
  // Offset of the CRC from the body.
  int body_size() const { return section_length_ - 9; }

 private:
  virtual void _reset() = 0;
  virtual void _dump_state(std::ostream& stream) const = 0;
  virtual void _parse(void* node) = 0;
  virtual void _parse(ByteView body, bool keep_raw) = 0;
  virtual bool _save_section(void* document, void* node) const = 0;
  virtual bool is_valid_tablesid() const = 0;
  virtual bool is_valid_syntax_indicator(int indicator) const = 0;
  virtual bool is_valid_reserved_header(int bits) const = 0;

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int table_id_ = 0;
  int syntax_indicator_ = 0;
  int section_length_ = 0;
  int context_id_ = 0;
  int version_number_ = 0;
  int section_number_ = 0;
  int last_section_number_ = 0;
  int current_next_indicator_ = 0;
  bool parsed_ = false;
  uint32_t crc_ = 0;
  std::vector<uint8_t> raw_bytes_;
  const uint8_t* section_end_ = nullptr;
};

// A table in the short section form, with neither extension nor CRC test: TDT, TOT and RST (EN 300 468, 5.2).
class QUILLON_API PsiBase : public PsiBase1, public TolerantTable {
 public:
  void Parse(const uint8_t* section, bool keep_raw) override;
  // The same, within `size` bytes: throws "section is shorter than its section_length" before it reads on.
  void Parse(const uint8_t* section, size_t size, bool keep_raw);
  void Parse(std::span<const uint8_t> section, bool keep_raw = false) {
    Parse(section.data(), section.size(), keep_raw);
  }
  void ParseDOM(void* node) override;
  void ParseDOM(xml::DomElement element) { ParseDOM(element.get()); }
  bool SaveSection(void* document, void* node) const override;
  bool SaveSection(xml::DomDocument document, xml::DomElement element) const {
    return SaveSection(document.get(), element.get());
  }

 private:
  virtual bool is_syntax_indicator_valid(int indicator) const = 0;

 public:
  virtual const char* get_table_id_text() const = 0;

  // Prints the table's lines in the state that the stream has.
  void dump_state(std::ostream& stream) const;
  void reset();

  // Hands the header to a sink, before the fields that the `walk` of each table hands over.
  void _walk_head(FieldSink& sink) const;

  int get_table_id() const { return table_id_; }
  int get_section_length() const { return section_length_; }
  bool is_parsed() const { return parsed_; }
  const std::vector<uint8_t>& get_section_raw_bytes() const { return raw_bytes_; }

 protected:
  PsiBase() = default;
  PsiBase(const PsiBase&) = default;
  PsiBase(PsiBase&&) = default;
  PsiBase& operator=(const PsiBase&) = default;
  PsiBase& operator=(PsiBase&&) = default;
  ~PsiBase() = default;

  virtual void _reset() = 0;
  virtual void _dump_state(std::ostream& stream) const;

 private:
  virtual void _parse(void* node) = 0;
  virtual void _parse(ByteView body, bool keep_raw) = 0;
  virtual bool _save_section(void* document, void* node) const = 0;
  virtual bool is_valid_tablesid() const = 0;

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int table_id_ = 0;
  int section_length_ = 0;
  bool parsed_ = false;
  std::vector<uint8_t> raw_bytes_;
};

}  // namespace quillon

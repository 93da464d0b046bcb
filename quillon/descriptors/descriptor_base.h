#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/dom_handles.h>
#include <quillon/sections/error.h>
#include <quillon/sections/walkable.h>

namespace quillon {

// What every descriptor has: tag and length (ISO/IEC 13818-1, 2.6.1), and three faces. Its constructor from
// bytes is the wire parser, with the view on the tag byte; dump_state is the report; Parse and SaveSection
// are the XML form, `walk` hands the fields to a sink. For threads the rule of the tables holds (PsiBase1).
//
// The order of the virtual functions is fixed: programs built against another version call them by their
// place.
class QUILLON_API DescriptorBase {
 public:
  DescriptorBase() = default;
  DescriptorBase(int tag, int length) : descriptor_tag(tag), descriptor_length(length) {}
  // Tag and length from the first two bytes.
  explicit DescriptorBase(ByteView descriptor) : DescriptorBase(descriptor[0], descriptor[1]) {}

  int get_descriptor_tag() const { return descriptor_tag; }
  int get_descriptor_length() const { return descriptor_length; }

  // The name of a tag in reports; "Unknown" above 0x7C and from 0x13 to 0x3F.
  static const char* get_tag_text(unsigned char tag);

  // Prints the tag line, then the fields of the class. Leaves the stream in hexadecimal, filled with '0'.
  virtual void dump_state(std::ostream& stream) const;
  virtual const char* get_tag_text() const = 0;

 private:
  virtual bool _save_section(void* document, void* node) const = 0;
  virtual void _dump_state(std::ostream& stream) const = 0;
  virtual void _reset() = 0;
  virtual void _parse(void* node) = 0;

 public:
  // Loads tag, length and fields from an element; the tag is not compared with the class. Throws error:
  // "failed to get attribute map", "failed to get descriptor_id", "failed to get descriptor_length", "failed"
  // for any other attribute, and the texts of the lists.
  void Parse(void* node);
  void Parse(xml::DomElement element) { Parse(element.get()); }
  // Saves them; false at the first attribute or element that can't be added.
  bool SaveSection(void* document, void* node) const;
  bool SaveSection(xml::DomDocument document, xml::DomElement element) const {
    return SaveSection(document.get(), element.get());
  }
  // Empties what the class says it empties, often nothing.
  void reset() { _reset(); }

  // Hands tag and length to a sink, before the fields that the `walk` of each class hands over.
  void _walk_head(FieldSink& sink) const;

 protected:
  // Descriptors are values; none is destroyed through its base.
  DescriptorBase(const DescriptorBase&) = default;
  DescriptorBase(DescriptorBase&&) = default;
  DescriptorBase& operator=(const DescriptorBase&) = default;
  DescriptorBase& operator=(DescriptorBase&&) = default;
  ~DescriptorBase() = default;

  int descriptor_tag = 0;
  int descriptor_length = 0;
};

// The family bases give ATSC, IP/MAC notification and application descriptors a base type of their own.
class DescriptorAtscBase : public DescriptorBase {
 protected:
  using DescriptorBase::DescriptorBase;
  ~DescriptorAtscBase() = default;
};
// The base of those of the IP/MAC notification table.
class DescriptorIntBase : public DescriptorBase {
 protected:
  using DescriptorBase::DescriptorBase;
  ~DescriptorIntBase() = default;
};
// The base of those of the application information table.
class DescriptorAitBase : public DescriptorBase {
 protected:
  using DescriptorBase::DescriptorBase;
  ~DescriptorAitBase() = default;
};

// The wire head of a descriptor; its body follows.
struct descriptor_base {
  uint8_t descriptor_tag;
  uint8_t descriptor_length;
};

namespace detail {

// Numbers are returned by value, everything else by reference.
template <class T>
using Get = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

template <class... Fields>
void clear_all(Fields&... fields) {
  (fields.clear(), ...);
}

}  // namespace detail

// A field with its accessor: QUILLON_FIELD(int, layer, get_layer) is the member layer_ and `int get_layer()
// const`. This and the macros below end in the private part of the class.
#define QUILLON_FIELD(type, name, accessor)       \
 public:                                          \
  ::quillon::detail::Get<type> accessor() const { \
    return name##_;                               \
  }                                               \
                                                  \
 private:                                         \
  type name##_ {}

// The faces of a descriptor class, all from one `describe` in its source file. What is named in the
// parentheses is emptied by reset.
#define QUILLON_FACES(...)                                       \
 public:                                                         \
  const char* get_tag_text() const override;                     \
                                                                 \
 private:                                                        \
  bool _save_section(void* document, void* node) const override; \
  void _dump_state(std::ostream& stream) const override;         \
  void _reset() override {                                       \
    ::quillon::detail::clear_all(__VA_ARGS__);                   \
  }                                                              \
  void _parse(void* node) override;                              \
  QUILLON_WALK

// The faces of a record inside a table or descriptor: SaveSection gives false at the first attribute that
// can't be added, Parse throws error("failed").
#define QUILLON_RECORD_FACES                          \
 public:                                              \
  bool SaveSection(void* document, void* node) const; \
  void dump_state(std::ostream& stream) const;        \
  void Parse(void* node);                             \
  QUILLON_WALK

}  // namespace quillon

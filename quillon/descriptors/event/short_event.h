#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// Name and short description of an event in one language (EN 300 468, 6.2.37). Neither length is held
// against the descriptor's.
class QUILLON_API DescriptorShortEvent final : public DescriptorBase {
 public:
  DescriptorShortEvent() = default;
  explicit DescriptorShortEvent(ByteView d)
      : DescriptorBase(d),
        iso_639_language_code_(d.from(2)),
        event_name_(d[5], d.from(6)),
        text_(d[6 + d[5]], d.from(7 + d[5])) {}

  QUILLON_FIELD(CodeCharacters, iso_639_language_code, get_iso_639_language_code);
  QUILLON_FIELD(Text, event_name, get_event_name);
  QUILLON_FIELD(Text, text, get_text);

  QUILLON_FACES();
};

}  // namespace quillon

#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// The kind of a component stream, and a text about it (EN 300 468, 6.2.8). The text is two bytes shorter than
// on the wire, but for the standard reading, and a save leaves it out.
class QUILLON_API DescriptorComponent final : public DescriptorBase {
 public:
  DescriptorComponent() = default;
  explicit DescriptorComponent(ByteView d)
      : DescriptorBase(d),
        stream_content_(d.bits(2, 3, 4)),
        component_type_(d[3]),
        component_tag_(d[4]),
        iso_639_language_code_(d.from(5)),
        // Quirk: DescriptorComponent text
        text_(descriptor_length - (d.standard() ? 6 : 8), d.from(8)) {
    // Quirk: DescriptorComponent stream_content_ext
    if (d.standard()) stream_content_ext_ = d.bits(2, 7, 4);
  }

  // Part of the code where stream_content is 9 or above. In the standard reading alone.
  QUILLON_FIELD(int, stream_content_ext, get_stream_content_ext);
  QUILLON_FIELD(int, stream_content, get_stream_content);
  QUILLON_FIELD(int, component_type, get_component_type);
  QUILLON_FIELD(int, component_tag, get_component_tag);
  QUILLON_FIELD(CodeCharacters, iso_639_language_code, get_iso_639_language_code);
  QUILLON_FIELD(Text, text, get_text);

  QUILLON_FACES();
};

// The text about a component in several languages (EN 300 468, 6.2.23). A save leaves out the component tag.
class QUILLON_API DescriptorMultilingualComponent final : public DescriptorBase {
 public:
  DescriptorMultilingualComponent() = default;
  // Throws what a MultilingualNameInfo throws, and error(error::bad_value) if the last one does not end with
  // the body.
  explicit DescriptorMultilingualComponent(ByteView d);

  QUILLON_FIELD(int, component_tag, get_component_tag);
  QUILLON_FIELD(std::vector<MultilingualNameInfo>, nameinfo, get_nameinfo);

  QUILLON_FACES(nameinfo_);
};

}  // namespace quillon

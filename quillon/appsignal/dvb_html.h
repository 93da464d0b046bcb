#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>

namespace quillon {

// Each of the following is a string with its length and a second one to the end of the descriptor.

// The parameter of a DVB-HTML application (TS 102 812, 10.10.1). The first string is a list of ids of 16
// bits, taken apart in the standard reading alone, where an odd last byte is ignored.
class QUILLON_API DescriptorDVB_HTML_Application final : public DescriptorAitBase {
 public:
  DescriptorDVB_HTML_Application() = default;
  explicit DescriptorDVB_HTML_Application(ByteView d);

  QUILLON_FIELD(LengthPrefixedString, application_id, get_application_id);
  QUILLON_FIELD(std::vector<int>, application_ids, get_application_ids);  // in the standard reading
  QUILLON_FIELD(WireText, parameter, get_parameter);

  QUILLON_FACES();
};

// The page that a DVB-HTML application begins with (TS 102 812, 10.10.2).
class QUILLON_API DescriptorDVB_HTML_ApplicationLocation final : public DescriptorAitBase {
 public:
  DescriptorDVB_HTML_ApplicationLocation() = default;
  explicit DescriptorDVB_HTML_ApplicationLocation(ByteView d);

  QUILLON_FIELD(LengthPrefixedString, physical_root, get_physical_root);
  QUILLON_FIELD(WireText, initial_path, get_initial_path);

  QUILLON_FACES();
};

// What belongs to a DVB-HTML application (TS 102 812, 10.10.3).
class QUILLON_API DescriptorDVB_HTML_ApplicationLocationBoundary final : public DescriptorAitBase {
 public:
  DescriptorDVB_HTML_ApplicationLocationBoundary() = default;
  explicit DescriptorDVB_HTML_ApplicationLocationBoundary(ByteView d);

  QUILLON_FIELD(LengthPrefixedString, label, get_label);
  QUILLON_FIELD(WireText, regular_expression, get_regular_expression);

  QUILLON_FACES();
};

}  // namespace quillon

#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>

namespace quillon {

// The parameters of a DVB-J application (TS 102 812, 10.9.1).
class QUILLON_API DescriptorDVB_J_Application final : public DescriptorAitBase {
 public:
  DescriptorDVB_J_Application() = default;
  // A parameter that runs past the descriptor is read on to the end of the section.
  explicit DescriptorDVB_J_Application(ByteView d);

  QUILLON_FIELD(std::vector<LengthPrefixedString>, parameter_infos, get_parameter_infos);

  QUILLON_FACES(parameter_infos_);
};

// Where the classes of a DVB-J application are (TS 102 812, 10.9.2).
class QUILLON_API DescriptorDVB_J_ApplicationLocation final : public DescriptorAitBase {
 public:
  DescriptorDVB_J_ApplicationLocation() = default;
  explicit DescriptorDVB_J_ApplicationLocation(ByteView d);

  QUILLON_FIELD(LengthPrefixedString, base_directory, get_base_directory);
  QUILLON_FIELD(LengthPrefixedString, classpath_extension, get_classpath_extension);
  QUILLON_FIELD(WireText, initial_class, get_initial_class);

  QUILLON_FACES();
};

}  // namespace quillon

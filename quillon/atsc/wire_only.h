#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The descriptors of ATSC are read from the wire alone: their report is the tag line, and their XML form has
// tag and length, so that a load restores no field.
class QUILLON_API DescriptorAtscWireOnly : public DescriptorAtscBase {
 protected:
  using DescriptorAtscBase::DescriptorAtscBase;
  ~DescriptorAtscWireOnly() = default;

 private:
  bool _save_section(void*, void*) const override { return true; }
  void _dump_state(std::ostream&) const override {}
  void _reset() override {}
  void _parse(void*) override {}
};

}  // namespace quillon

#include "tests/support/cases.h"

namespace quillon::test {

namespace {

std::vector<DescriptorCase>& registry() {
  static std::vector<DescriptorCase> cases;
  return cases;
}

}  // namespace

Cases::Cases(std::initializer_list<DescriptorCase> cases) {
  registry().insert(registry().end(), cases.begin(), cases.end());
}

const std::vector<DescriptorCase>& Cases::all() {
  return registry();
}

}  // namespace quillon::test

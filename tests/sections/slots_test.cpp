// The order of virtual functions: programs built against another version of the library call them by their
// place.

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/sections/psi_base.h>

using namespace quillon;

namespace {

using Places = std::vector<long>;

// Where a virtual function is in its class's table: by the C++ ABI of Itanium 1 past its offset in bytes, and
// on ARM that offset itself.
template <class Member>
long place_of(Member member) {
  intptr_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return static_cast<long>(offset / static_cast<intptr_t>(sizeof(void*)));
}

// Private functions can be named in an explicit instantiation, from which they are handed out here.
template <class Key>
struct Private {
  static inline Places places;
};
template <class Key, auto... members>
struct HandOut {
  struct Fill {
    Fill() { Private<Key>::places = {place_of(members)...}; }
  };
  static inline Fill fill;
};

template <class Signature, class Class>
using MemberOf = Signature Class::*;

struct OfTables;
template struct HandOut<OfTables, &PsiTableBase::_reset, &PsiTableBase::_dump_state,
                        static_cast<MemberOf<void(void*), PsiTableBase>>(&PsiTableBase::_parse),
                        static_cast<MemberOf<void(ByteView, bool), PsiTableBase>>(&PsiTableBase::_parse),
                        &PsiTableBase::_save_section, &PsiTableBase::is_valid_tablesid,
                        &PsiTableBase::is_valid_syntax_indicator, &PsiTableBase::is_valid_reserved_header>;

struct OfShortTables;
template struct HandOut<OfShortTables, &PsiBase::is_syntax_indicator_valid, &PsiBase::get_table_id_text,
                        &PsiBase::_reset, &PsiBase::_dump_state,
                        static_cast<MemberOf<void(void*), PsiBase>>(&PsiBase::_parse),
                        static_cast<MemberOf<void(ByteView, bool), PsiBase>>(&PsiBase::_parse),
                        &PsiBase::_save_section, &PsiBase::is_valid_tablesid>;

struct OfDescriptors;
template struct HandOut<OfDescriptors, &DescriptorBase::_save_section, &DescriptorBase::_dump_state,
                        &DescriptorBase::_reset,
                        static_cast<MemberOf<void(void*), DescriptorBase>>(&DescriptorBase::_parse)>;

template <class Base>
void expect_common_slots() {
  EXPECT_EQ(place_of(static_cast<MemberOf<void(const uint8_t*, bool), Base>>(&Base::Parse)), 0);
  EXPECT_EQ(place_of(static_cast<MemberOf<void(void*), Base>>(&Base::ParseDOM)), 1);
  EXPECT_EQ(place_of(static_cast<MemberOf<bool(void*, void*) const, Base>>(&Base::SaveSection)), 2);
}

}  // namespace

TEST(Slots, OfTablesAreInTheirOrder) {
  expect_common_slots<PsiTableBase>();
  EXPECT_EQ(place_of(&PsiTableBase::get_table_id_text), 3);
  EXPECT_EQ(Private<OfTables>::places, (Places{4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST(Slots, OfShortTablesAreInTheirOrder) {
  expect_common_slots<PsiBase>();
  EXPECT_EQ(Private<OfShortTables>::places, (Places{3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(Slots, OfDescriptorsAreInTheirOrder) {
  EXPECT_EQ(place_of(&DescriptorBase::dump_state), 0);
  EXPECT_EQ(place_of(static_cast<const char* (DescriptorBase::*)() const>(&DescriptorBase::get_tag_text)), 1);
  EXPECT_EQ(Private<OfDescriptors>::places, (Places{2, 3, 4, 5}));
}

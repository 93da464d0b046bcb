#pragma once

#include <string>
#include <vector>

#include <quillon/descriptors/event/extended_event.h>

namespace quillon {

// The long description of an event in one language, gathered from the descriptors that it is spread over (EN
// 300 468, 6.2.15). All texts are UTF-8.
struct ExtendedText {
  // An item: what it is, and what it says.
  struct Item {
    std::string description;  // "Director"
    std::string item;
  };

  std::string language;  // ISO 639-2, as it was sent
  std::vector<Item> items;
  std::string text;
  bool is_complete = false;  // there is one of each descriptor_number from 0 to the last
};

// The descriptions in the order in which their languages come first. The descriptors may come in any order;
// of two with the same number the first counts, and a number above 15 does not. An item without a description
// goes on with the item before it. A character that is cut by the end of a descriptor is put together again.
QUILLON_API std::vector<ExtendedText> extended_texts(const std::vector<DescriptorExtendedEvent>& descriptors);

}  // namespace quillon

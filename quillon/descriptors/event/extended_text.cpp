#include <algorithm>
#include <array>

#include <quillon/descriptors/event/extended_text.h>
#include <quillon/fields/dvb_text.h>

namespace quillon {

namespace {

// The bytes in front of a field's text that select its table.
std::string_view selection_of(std::string_view field) {
  if (field.empty() || static_cast<uint8_t>(field[0]) >= 0x20) return {};
  return field.substr(0, field[0] == 0x10 ? 3 : field[0] == 0x1F ? 2 : 1);
}

// A text in pieces, of which each selects its table anew.
class Pieces {
 public:
  void add(const Text& piece) {
    const std::string field = piece.get_bytes();
    const std::string_view selection = selection_of(field);
    // Those in the same table are decoded as one.
    if (!field.empty() && !field_.empty() && selection == selection_of(field_)) {
      field_.append(field, selection.size());
      return;
    }
    decode();
    field_ = field;
    if (field.empty()) text_ += piece.utf8();  // one that was set or loaded has no bytes
  }
  std::string take() {
    decode();
    return std::move(text_);
  }

 private:
  void decode() {
    text_ += dvb_text_to_utf8(field_);
    field_.clear();
  }

  std::string text_;
  std::string field_;  // not yet decoded
};

using Numbered = std::array<const DescriptorExtendedEvent*, 16>;

ExtendedText gathered(const Numbered& descriptors) {
  ExtendedText out;
  out.is_complete = true;
  Pieces text;
  Pieces item;
  bool in_item = false;
  const auto end_item = [&] {
    if (in_item) out.items.back().item = item.take();
  };
  int last = 0;
  for (size_t number = 0; number < descriptors.size(); ++number) {
    const DescriptorExtendedEvent* const descriptor = descriptors[number];
    if (!descriptor) {
      if (static_cast<int>(number) <= last) out.is_complete = false;
      continue;
    }
    last = std::max(last, descriptor->get_last_descriptor_number());
    for (const DescriptorExtendedEvent::Item& part : descriptor->get_items()) {
      std::string description = part.get_item_description().utf8();
      if (!in_item || !description.empty()) {
        end_item();
        out.items.push_back({std::move(description), {}});
        in_item = true;
      }
      item.add(part.get_item());
    }
    text.add(descriptor->get_text());
  }
  end_item();
  out.text = text.take();
  return out;
}

}  // namespace

std::vector<ExtendedText> extended_texts(const std::vector<DescriptorExtendedEvent>& descriptors) {
  std::vector<std::string> languages;
  std::vector<Numbered> by_language;
  for (const DescriptorExtendedEvent& descriptor : descriptors) {
    const int number = descriptor.get_descriptor_number();
    if (number < 0 || number >= static_cast<int>(Numbered().size())) continue;  // no stream has such a one
    const std::string language = descriptor.get_iso_639_language_code().c_str();
    const auto known = std::ranges::find(languages, language);
    const auto i = static_cast<size_t>(known - languages.begin());
    if (known == languages.end()) {
      languages.push_back(language);
      by_language.emplace_back();
    }
    const DescriptorExtendedEvent*& place = by_language[i][static_cast<size_t>(number)];
    if (!place) place = &descriptor;
  }
  std::vector<ExtendedText> out;
  for (size_t i = 0; i < languages.size(); ++i) {
    out.push_back(gathered(by_language[i]));
    out.back().language = languages[i];
  }
  return out;
}

}  // namespace quillon

#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

void Int::_parse(ByteView body, bool keep_raw) {
  action_type_ = get_context_id() >> 8;
  platform_id_hash_ = get_context_id() & 0xFF;
  platform_id_ = body.u24(0);
  processing_order_ = body[3];
  platform_descriptor_loop_length_ = body.bits(4, 3, 12);
  const int platform_end = 6 + platform_descriptor_loop_length_;
  if (!walk_descriptors(body, 6, platform_end, {body, positions_if(keep_raw), tolerance()}))
    throw error("Int platform_descriptor_loop() descriptor start end mismatch");
  const bool whole = walk(body, platform_end, body_size(), [&](ByteView pair, int left) {
    int size = left;
    targetoperationaldescriptors_.emplace_back(pair, size, keep_raw, body, tolerance());
    return size;
  });
  if (!whole) throw error("descriptor start end mismatch");
}

Int::TargetOperationalDescriptors::TargetOperationalDescriptors(ByteView p, int& length, bool keep_raw,
                                                                ByteView body, DescriptorFailures* failures) {
  int target_size = 0;
  int operational_size = 0;
  target_descriptor_loop_.Parse(p, target_size, keep_raw, body, failures);
  operational_descriptor_loop_.Parse(p.from(target_size), operational_size, keep_raw, body, failures);
  length = target_size + operational_size;
}

void Int::TargetDescriptorLoop::Parse(ByteView p, int& consumed, bool keep_raw, ByteView body,
                                      DescriptorFailures* failures) {
  parse(p, consumed, keep_raw, body, failures, "Int target_descriptor_loop() descriptor start end mismatch");
}

void Int::OperationalDescriptorLoop::Parse(ByteView p, int& consumed, bool keep_raw, ByteView body,
                                           DescriptorFailures* failures) {
  parse(p, consumed, keep_raw, body, failures,
        "Int operational_descriptor_loop() descriptor start end mismatch");
}

void Int::LoopOfPair::parse(ByteView p, int& consumed, bool keep_raw, ByteView body,
                            DescriptorFailures* failures, const char* mismatch) {
  loop_length_ = p.bits(0, 3, 12);
  const int end = 2 + loop_length_;
  const size_t known = descriptor_positions_.size();
  const bool whole =
      walk_descriptors(p, 2, end, {body, keep_raw ? &descriptor_positions_ : nullptr, failures});
  // The walk counts from the body, as the failures do.
  for (size_t i = known; i < descriptor_positions_.size(); ++i)
    descriptor_positions_[i] -= static_cast<int>(p.offset_from(body));
  if (!whole) throw error(mismatch);
  consumed = end;
}

template <class Self, class Field>
void Int::each_attribute(Self& self, Field&& field) {
  field("action_type", self.action_type_);
  field("platform_id_hash", self.platform_id_hash_);
  field("platform_id", self.platform_id_);
  field("processing_order", self.processing_order_);
  field("platform_descriptor_loop_length", self.platform_descriptor_loop_length_);
}

bool Int::_save_section(void* document, void* node) const {
  xml::Writer out(document, node);
  each_attribute(*this, [&](const char* name, int value) { out.add(name, value); });
  return out.ok() &&
         xml::save_list(document, node, "targetoperationaldescriptors", "targetoperationaldescriptors",
                        targetoperationaldescriptors_) &&
         _save_descriptors(document, node);
}

bool Int::TargetOperationalDescriptors::SaveSection(void* document, void* element) const {
  const xml::Writer held(document, element);
  const auto save_child = [&](const char* name, const auto& loop) {
    const auto child = xml::create_element(static_cast<IXMLDOMDocument*>(document), name);
    if (!child) return false;
    loop.SaveSection(document, child.get());
    return static_cast<IXMLDOMElement*>(element)->appendChild(child.get(), nullptr) >= 0;
  };
  return save_child("targetdescriptorloop", target_descriptor_loop_) &&
         save_child("operationaldescriptorloop", operational_descriptor_loop_);
}

bool Int::LoopOfPair::save(void* document, void* element, const char* length_name) const {
  xml::Writer out(document, element);
  return out.add(length_name, loop_length_) && _save_descriptors(document, element);
}

bool Int::TargetDescriptorLoop::SaveSection(void* document, void* element) const {
  return save(document, element, "target_descriptor_loop_length");
}
bool Int::OperationalDescriptorLoop::SaveSection(void* document, void* element) const {
  return save(document, element, "operational_descriptor_loop_length");
}

void Int::_parse(void* node) {
  xml::Reader in(node);
  each_attribute(*this, [&](const char* name, int& field) { in.get(name, field); });
  xml::load_list(node, "targetoperationaldescriptors", xml::list_failures("targetoperationaldescriptors"),
                 [this](void* item) {
                   TargetOperationalDescriptors pair;
                   pair.Parse(item);
                   targetoperationaldescriptors_.push_back(std::move(pair));
                 });
  _parse_descriptors(node);
}

void Int::TargetOperationalDescriptors::Parse(void* node) {
  const xml::Reader held(node);
  const auto load_child = [node](const char* name, auto& member) {
    const auto child = xml::child_of(node, name, std::string("failed to get ") + name);
    std::decay_t<decltype(member)> loaded;
    loaded.Parse(static_cast<void*>(child.get()));
    member = std::move(loaded);
  };
  load_child("targetdescriptorloop", target_descriptor_loop_);
  load_child("operationaldescriptorloop", operational_descriptor_loop_);
}

void Int::LoopOfPair::load(void* node, const char* length_name) {
  xml::Reader in(node);
  in.get(length_name, loop_length_);
  _parse_descriptors(node);
}

void Int::TargetDescriptorLoop::Parse(void* node) {
  load(node, "target_descriptor_loop_length");
}
void Int::OperationalDescriptorLoop::Parse(void* node) {
  load(node, "operational_descriptor_loop_length");
}

}  // namespace quillon

#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

void Int::_parse(ByteView body, bool keep_raw) {
  action_type_ = get_context_id() >> 8;
  platform_id_hash_ = get_context_id() & 0xFF;
  platform_id_ = body.u24(0);
  processing_order_ = body[3];
  platform_descriptor_loop_length_ = body.bits(4, 3, 12);
  const int platform_end = 6 + platform_descriptor_loop_length_;
  const RowContext context{body, keep_raw, tolerance()};
  if (!parse_descriptors(body, 6, platform_end, context))
    throw error("Int platform_descriptor_loop() descriptor start end mismatch");
  if (!read_uneven_rows(targetoperationaldescriptors_, body, platform_end, body_size() - platform_end,
                        context))
    throw error("descriptor start end mismatch");
}

Int::TargetOperationalDescriptors::TargetOperationalDescriptors(ByteView p, int& length,
                                                                const RowContext& row) {
  int target_size = 0;
  int operational_size = 0;
  target_descriptor_loop_.Parse(p, target_size, row);
  operational_descriptor_loop_.Parse(p.from(target_size), operational_size, row);
  length = target_size + operational_size;
}

void Int::TargetDescriptorLoop::Parse(ByteView p, int& consumed, const RowContext& row) {
  parse(p, consumed, row, "Int target_descriptor_loop() descriptor start end mismatch");
}

void Int::OperationalDescriptorLoop::Parse(ByteView p, int& consumed, const RowContext& row) {
  parse(p, consumed, row, "Int operational_descriptor_loop() descriptor start end mismatch");
}

void Int::LoopOfPair::parse(ByteView p, int& consumed, const RowContext& row, const char* mismatch) {
  loop_length_ = p.bits(0, 3, 12);
  const int end = 2 + loop_length_;
  const size_t known = get_descriptor_pos().size();
  const bool whole = parse_descriptors(p, 2, end, row);
  shift_positions(known, static_cast<int>(p.offset_from(row.body)));
  if (!whole) throw error(mismatch);
  consumed = end;
}

template <class V, class S>
void Int::describe(V& v, S& s) {
  v.field("action_type", s.action_type_);
  v.field("platform_id_hash", s.platform_id_hash_);
  v.field("platform_id", s.platform_id_);
  v.field("processing_order", s.processing_order_);
  v.field("platform_descriptor_loop_length", s.platform_descriptor_loop_length_);
  v.list("targetoperationaldescriptors", "targetoperationaldescriptors", s.targetoperationaldescriptors_);
  v.descriptors(s);
}
QUILLON_TABLE_FACES_OF(Int)

bool Int::TargetOperationalDescriptors::SaveSection(void* document, void* element) const {
  const xml::Element to(document, element);
  const auto save_child = [&to](const char* name, const auto& loop) {
    const xml::Element child = to.make(name);
    if (!child) return false;
    loop.SaveSection(child.document(), child.get());
    return to.append(child);
  };
  return save_child("targetdescriptorloop", target_descriptor_loop_) &&
         save_child("operationaldescriptorloop", operational_descriptor_loop_);
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

void Int::TargetOperationalDescriptors::walk(FieldSink& sink, Reading reading) const {
  faces::Walk v(sink, reading);
  v.child("targetdescriptorloop", target_descriptor_loop_);
  v.child("operationaldescriptorloop", operational_descriptor_loop_);
}

template <class V, class S>
void Int::TargetDescriptorLoop::describe(V& v, S& s) {
  v.field("target_descriptor_loop_length", s.loop_length_);
  v.descriptors(s);
}
QUILLON_XML_RECORD_FACES_OF(Int::TargetDescriptorLoop)

template <class V, class S>
void Int::OperationalDescriptorLoop::describe(V& v, S& s) {
  v.field("operational_descriptor_loop_length", s.loop_length_);
  v.descriptors(s);
}
QUILLON_XML_RECORD_FACES_OF(Int::OperationalDescriptorLoop)

}  // namespace quillon

#include <ostream>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

namespace {

// The loop of an application fails in the same words as the common one. Kept: tools match on them.
constexpr const char* kLoopMismatch = "application common descriptors length mismatch";

}  // namespace

void Ait::_parse(ByteView body, bool keep_raw) {
  common_descriptors_length_ = body.bits(0, 3, 12);
  const int common_end = 2 + common_descriptors_length_;
  if (!walk_descriptors(body, 2, common_end, {body, positions_if(keep_raw), tolerance()}))
    throw error(error::length_mismatch, kLoopMismatch);
  application_loop_length_ = body.bits(common_end, 3, 12);
  const int begin = common_end + 2;
  const bool whole = walk(body, begin, begin + application_loop_length_, [&](ByteView row, int left) {
    int size = 0;
    applications_.emplace_back(row, left, size, keep_raw, body, tolerance());
    return size;
  });
  if (!whole) throw error(error::length_mismatch, "application length mismatch");
}

Ait::Application::Application(ByteView p, int length, int& consumed, bool keep_raw, ByteView base,
                              DescriptorFailures* failures) {
  if (length < 9) throw error(error::length_mismatch, "application length to small");
  application_identifier_ = ApplicationIdentifier(p);
  application_control_code_ = p[6];
  application_descriptors_loop_length_ = p.bits(7, 3, 12);
  const int end = 9 + application_descriptors_loop_length_;
  if (!walk_descriptors(p, 9, end, {base, keep_raw ? &descriptor_positions_ : nullptr, failures}))
    throw error(error::length_mismatch, kLoopMismatch);
  consumed = end;
}

const char* Ait::get_application_type_text(int application_type) {
  switch (application_type) {
    case 0:
      return "reserved_future_use";
    case 1:
      return "DVB-J application";
    case 2:
      return "DVB-HTML application";
    default:
      return "subject to registration with DVB";
  }
}

void Ait::_reset() {
  applications_.clear();
  store_.clear(detail::ait_family.general_kind());
}

void Ait::_dump_state(std::ostream& stream) const {
  stream << "application_type: " << get_application_type() << std::endl;
  stream << "common_descriptors_length: " << common_descriptors_length_ << std::endl;
  dump_loop(stream);
  stream << "application_loop_length: " << application_loop_length_ << std::endl;
  for (const Application& application : applications_) application.dump_state(stream);
}

void Ait::Application::dump_state(std::ostream& stream) const {
  application_identifier_.dump_state(stream);
  stream << "application_control_code: " << application_control_code_ << std::endl;
  stream << "application_descriptors_loop_length: " << application_descriptors_loop_length_ << std::endl;
  dump_loop(stream);
}

bool Ait::_save_section(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("common_descriptors_length", common_descriptors_length_);
  return out.add("application_loop_length", application_loop_length_) &&
         xml::save_table_list(document, node, "application_infos", "application_info", applications_,
                              [](const Application& application, void* doc, void* element) {
                                return application._save_stream_info(doc, element);
                              }) &&
         _save_descriptors(document, node);
}

// Saved documents spell the identifier without its second i.
bool Ait::Application::_save_stream_info(void* document, void* element) const {
  xml::Writer out(document, element);
  out.add("application_control_code", application_control_code_);
  out.add("application_descriptors_loop_length", application_descriptors_loop_length_);
  return out.add("application_identifer", application_identifier_.application_identifier_as_text()) &&
         _save_descriptors(document, element);
}

void Ait::_parse(void* node) {
  xml::Reader in(node);
  in.get("common_descriptors_length", common_descriptors_length_);
  in.get("application_loop_length", application_loop_length_);
  xml::load_list(node, "application_infos", xml::table_list_failures(),
                 [this](void* item) { applications_.emplace_back(item); });
  _parse_descriptors(node);
}

Ait::Application::Application(void* node) {
  xml::Reader in(node);
  in.get("application_control_code", application_control_code_);
  in.get("application_descriptors_loop_length", application_descriptors_loop_length_);
  std::string identifier;
  in.get("application_identifer", identifier);
  application_identifier_.set_application_identifier_from_text(identifier.c_str());
  _parse_descriptors(node);
}

}  // namespace quillon

#include <ostream>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

// The loop of an application fails in the same words as the common one. Kept: tools match on them.
constexpr const char* kLoopMismatch = "application common descriptors length mismatch";

}  // namespace

void Ait::_parse(ByteView body, bool keep_raw) {
  common_descriptors_length_ = body.bits(0, 3, 12);
  const int common_end = 2 + common_descriptors_length_;
  const RowContext context{body, keep_raw, tolerance()};
  if (!parse_descriptors(body, 2, common_end, context)) throw error(error::length_mismatch, kLoopMismatch);
  application_loop_length_ = body.bits(common_end, 3, 12);
  const int begin = common_end + 2;
  if (!read_uneven_rows(applications_, body, begin, application_loop_length_, context))
    throw error(error::length_mismatch, "application length mismatch");
}

Ait::Application::Application(ByteView p, int length, int& consumed, const RowContext& row) {
  if (length < 9) throw error(error::length_mismatch, "application length to small");
  application_identifier_ = ApplicationIdentifier(p);
  application_control_code_ = p[6];
  application_descriptors_loop_length_ = p.bits(7, 3, 12);
  const int end = 9 + application_descriptors_loop_length_;
  if (!parse_descriptors(p, 9, end, row)) throw error(error::length_mismatch, kLoopMismatch);
  consumed = end;
}

const char* Ait::get_application_type_text(int application_type) {
  return detail::application_type_text(application_type);
}

const char* Ait::standard_application_type_text(int application_type) {
  return detail::standard_application_type_text(application_type);
}

void Ait::_reset() {
  applications_.clear();
  clear_general_descriptors();
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

template <class V, class S>
void Ait::describe(V& v, S& s) {
  v.more("application_type", s.get_application_type(),
         {detail::application_type_text, detail::standard_application_type_text});
  v.standard("test_application_flag", s.get_test_application_flag());
  v.field("common_descriptors_length", s.common_descriptors_length_);
  v.field("application_loop_length", s.application_loop_length_);
  v.rows("application_infos", "application_info", s.applications_);
  v.descriptors(s);
}
QUILLON_TABLE_FACES_OF(Ait)

// Saved documents spell the identifier without its second i.
template <class V, class S>
void Ait::Application::describe(V& v, S& s) {
  v.field("application_control_code", s.application_control_code_);
  v.field("application_descriptors_loop_length", s.application_descriptors_loop_length_);
  v.field("application_identifer", s.application_identifier_);
  v.descriptors(s);
}
QUILLON_ROW_FACES_OF(Ait::Application, Application)

}  // namespace quillon

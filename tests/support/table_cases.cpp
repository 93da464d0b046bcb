#include "tests/support/table_cases.h"

namespace quillon::test {

namespace {

std::vector<TableCase>& registry() {
  static std::vector<TableCase> cases;
  return cases;
}

std::vector<StandardSection>& standard_registry() {
  static std::vector<StandardSection> sections;
  return sections;
}

std::string text_of(const AnyTable& table, bool& result) {
  xml::Document document;
  result = table.SaveSection(document.dom(), document.create_root("d"));
  return plain(document);
}

}  // namespace

TableCases::TableCases(std::initializer_list<TableCase> cases) {
  registry().insert(registry().end(), cases.begin(), cases.end());
}

const std::vector<TableCase>& TableCases::all() {
  return registry();
}

StandardSections::StandardSections(std::initializer_list<StandardSection> sections) {
  standard_registry().insert(standard_registry().end(), sections.begin(), sections.end());
}

const std::vector<StandardSection>& StandardSections::all() {
  return standard_registry();
}

Outcome outcome_of(const TableCase& table, const Bytes& section, bool tolerant) {
  const Bytes exact(section.begin(), section.end());  // its own end, watched
  const auto object = table.make();
  object->set_tolerant(tolerant);
  Outcome out{};
  out.failure = failure([&] { object->Parse(exact.data(), exact.size(), true); });
  out.parsed = object->is_parsed();
  out.report = test::report(*object);
  out.walk = walked(*object);
  out.saved = text_of(*object, out.save_result);
  for (const DescriptorFailure& f : object->get_descriptor_failures())
    out.refused.push_back(std::to_string(f.code) + ": " + f.text);
  EXPECT_EQ(test::report(*object->copy()), out.report);
  EXPECT_EQ(walked(*object->copy()), out.walk);
  EXPECT_EQ(table.report_of_moved(*object), out.report);
  object->reset();
  EXPECT_EQ(failure([&] { object->Parse(exact.data(), exact.size(), true); }), out.failure);
  return out;
}

Reloaded reloaded(const TableCase& table, const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  const auto object = table.make();
  Reloaded out{};
  out.failure = failure([&] { object->ParseDOM(document.root()); });
  out.parsed = object->is_parsed();
  bool result = false;
  out.saved = text_of(*object, result);
  return out;
}

std::string document_of(const TableCase& table) {
  const auto object = table.make();
  object->Parse(table.section.data(), table.section.size(), true);
  xml::Document document;
  object->SaveSection(document.dom(), document.create_root(table.element));
  return document.to_text();
}

}  // namespace quillon::test

#include "tests/support/table_cases.h"

namespace quillon::test {

namespace {

std::vector<TableCase>& registry() {
  static std::vector<TableCase> cases;
  return cases;
}

std::string text_of(const AnyTable& table, bool& result) {
  xml::Document document;
  result = table.save(document.dom(), document.create_root("d"));
  return plain(document);
}

}  // namespace

TableCases::TableCases(std::initializer_list<TableCase> cases) {
  registry().insert(registry().end(), cases.begin(), cases.end());
}

const std::vector<TableCase>& TableCases::all() {
  return registry();
}

Outcome outcome_of(const TableCase& table, const Bytes& section, bool tolerant) {
  const Bytes exact(section.begin(), section.end());  // its own end, watched
  const auto object = table.make();
  object->set_tolerant(tolerant);
  Outcome out{};
  out.failure = failure([&] { object->parse(exact.data(), exact.size()); });
  out.parsed = object->is_parsed();
  out.report = object->report();
  out.saved = text_of(*object, out.save_result);
  for (const DescriptorFailure& f : object->failures())
    out.refused.push_back(std::to_string(f.code) + ": " + f.text);
  object->copy_and_move();
  EXPECT_EQ(object->report(), out.report);
  object->reset();
  EXPECT_EQ(failure([&] { object->parse(exact.data(), exact.size()); }), out.failure);
  return out;
}

Reloaded reloaded(const TableCase& table, const std::string& text) {
  const xml::Document document = xml::Document::from_text(text);
  const auto object = table.make();
  Reloaded out{};
  out.failure = failure([&] { object->load(document.root()); });
  out.parsed = object->is_parsed();
  bool result = false;
  out.saved = text_of(*object, result);
  return out;
}

std::string document_of(const TableCase& table) {
  const auto object = table.make();
  object->parse(table.section.data(), table.section.size());
  xml::Document document;
  object->save(document.dom(), document.create_root(table.element));
  return document.to_text();
}

}  // namespace quillon::test

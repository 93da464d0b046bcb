#include "apps/quillon/html/page.h"

namespace quillon::app::html {

Part::Part(Page& page, const char* name, const char* title) : page_(page) {
  const std::string id = page.id(name);
  page.parts.emplace_back(id, title);
  page.out.begin("section", {{"id", id}, {"aria-labelledby", id + "-title"}})
      .element("h2", {{"id", id + "-title"}}, title);
}

Table::Table(Page& page, std::string_view caption, std::initializer_list<const char*> columns,
             const char* class_name)
    : page_(page) {
  page.out.begin("div", {{"class", "scroll"}, {"role", "region"}, {"aria-label", caption}, {"tabindex", 0}})
      .begin("table", {{"class", class_name}})
      .element("caption", caption)
      .begin("thead")
      .begin("tr");
  for (const char* column : columns) {
    is_figure_.push_back(*column == '#');
    page.out.element("th", {{"scope", "col"}, {"class", is_figure_.back() ? "n" : ""}},
                     column + (is_figure_.back() ? 1 : 0));
  }
  page.out.end().end().begin("tbody");
}

void Table::Row::begin() {
  const char* const class_name = table_.is_figure_.at(column_) ? "n" : "";
  if (column_++ == 0)
    table_.page_.out.begin("th", {{"scope", "row"}, {"class", class_name}});
  else
    table_.page_.out.begin("td", {{"class", class_name}});
}

Table::Row& Table::Row::cell(std::string_view text) {
  begin();
  table_.page_.out.text(text).end();
  return *this;
}

Table::Row& Table::Row::name(std::string_view text) {
  begin();
  table_.page_.out.name(text).end();
  return *this;
}

}  // namespace quillon::app::html

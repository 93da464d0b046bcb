#pragma once

#include "apps/quillon/html/contents.h"
#include "apps/quillon/html/markup.h"
#include "apps/quillon/html/record.h"
#include "apps/quillon/survey.h"

#include <string>
#include <utility>
#include <vector>

namespace quillon::app::html {

// What is written of one input.
struct Page {
  const Input& input;
  const Survey& survey;
  const Record& record;
  std::string prefix;  // of the ids of its elements: there may be several inputs in a document
  std::vector<PidContent> pids = contents_of_pids(input, survey);
  Markup out = {};
  std::vector<std::pair<std::string, std::string>> parts = {};  // ids and titles, in order

  std::string id(std::string_view name) const { return prefix + std::string(name); }
  bool has_clock() const { return input.time().has_value(); }
};

// A part of the page: a landmark with its heading.
class Part {
 public:
  Part(Page& page, const char* name, const char* title);
  ~Part() { page_.out.end(); }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

 private:
  Page& page_;
};

// A table with its head, which scrolls where there is no room for it. Columns whose titles begin with a
// number sign hold figures.
class Table {
 public:
  Table(Page& page, std::string_view caption, std::initializer_list<const char*> columns,
        const char* class_name = "");
  ~Table() { page_.out.end().end().end(); }
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  class Row {
   public:
    explicit Row(Table& table) : table_(table) { table.page_.out.begin("tr"); }
    ~Row() { table_.page_.out.end(); }
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;

    // The first one heads the row.
    Row& cell(std::string_view text);
    // One of the stream's own texts.
    Row& name(std::string_view text);
    template <class Write>
    Row& cell_of(Write write) {
      begin();
      write(table_.page_.out);
      table_.page_.out.end();
      return *this;
    }

   private:
    void begin();

    Table& table_;
    size_t column_ = 0;
  };

 private:
  Page& page_;
  std::vector<bool> is_figure_;
};

// Each writes what the input has for it, and nothing where there is nothing.
void write_overview(Page& page);
void write_rates(Page& page);
void write_shares(Page& page);
void write_pids(Page& page);
void write_services(Page& page);
void write_schedule(Page& page);
void write_networks(Page& page);
void write_bouquets(Page& page);
void write_times(Page& page);
void write_applications(Page& page);
void write_notifications(Page& page);
void write_ratings(Page& page);
void write_tables(Page& page);
void write_damage(Page& page);
void write_sections(Page& page);

}  // namespace quillon::app::html

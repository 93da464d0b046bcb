#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

// So many places of a terminal, of text that steers none.
size_t width_of(std::string_view utf8);

// Rows of cells of which each column is as wide as its widest cell. What cells hold is escaped.
class Columns {
 public:
  // The columns that are aligned to the right, by their number, and a first row that says what they hold.
  explicit Columns(std::vector<size_t> right = {}, std::vector<std::string> head = {});

  void add(std::vector<std::string> row);
  bool empty() const { return rows_.size() == heads_; }
  // A line a row, indented by two blanks; nothing if it is empty.
  std::string text() const;

 private:
  std::vector<size_t> right_;
  std::vector<std::vector<std::string>> rows_;
  size_t heads_ = 0;
  std::vector<size_t> widths_;
};

}  // namespace quillon::app

#include <cctype>
#include <iomanip>
#include <ostream>

#include <quillon/report/dump.h>
#include <quillon/report/internal/line.h>

namespace quillon {

namespace {

constexpr int kRow = 16;

void dump_row(std::ostream& stream, const uint8_t* row, int size) {
  for (int i = 0; i < size; ++i) stream << std::hex << std::setw(2) << unsigned{row[i]} << " ";
  for (int i = size; i < kRow; ++i) stream << "   ";
  stream << " : ";
  for (int i = 0; i < size; ++i) stream << (std::isalpha(row[i]) ? static_cast<char>(row[i]) : '.');
  stream << std::endl;
}

}  // namespace

std::ostream& texts_on_one_line(std::ostream& stream) {
  stream.iword(report::on_one_line()) = 1;
  return stream;
}

void dump_block(std::ostream& stream, const uint8_t* data, int size) {
  const int full = size / kRow * kRow;
  for (int at = 0; at < full; at += kRow) dump_row(stream, data + at, kRow);
  // A negative size, too, has a tail: a line without bytes.
  if (size % kRow != 0) dump_row(stream, data + (full > 0 ? full : 0), size % kRow);
}

}  // namespace quillon

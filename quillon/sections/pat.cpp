#include <iomanip>
#include <ostream>

#include <quillon/sections/pat.h>

namespace quillon {

void Pat::_parse(ByteView body, bool) {
  const int size = body_size();
  if (size % 4 != 0) throw error(error::length_mismatch, "Pat parse error");
  if (size > 0) programs_.reserve(programs_.size() + static_cast<size_t>(size) / 4);
  for (int at = 0; at < size; at += 4) add(program_info(body.u16(at), body.bits(at + 2, 4, 13)));
}

void Pat::add(program_info program) {
  programs_.push_back(program);
  try {
    pids_[program.get_program_number()] = program.get_program_map_pid();
  } catch (...) {
    programs_.pop_back();
    throw;
  }
}

int Pat::get_pid_from_program_number(int program_number) const {
  const auto found = pids_.find(program_number);
  return found == pids_.end() ? 0x1FFF : found->second;
}

void Pat::_dump_state(std::ostream& stream) const {
  for (const program_info& program : programs_) program.dump_state(stream);
}

void Pat::program_info::dump_state(std::ostream& stream) const {
  stream << "program_number: " << std::hex << std::setw(4) << program_number_ << std::endl;
  stream << "program_map_pid: " << std::hex << std::setw(4) << program_map_pid_ << std::endl;
}

void Pat::_reset() {
  programs_.clear();
  pids_.clear();
}

}  // namespace quillon

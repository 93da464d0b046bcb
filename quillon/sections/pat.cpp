#include <iomanip>
#include <ostream>

#include <quillon/sections/pat.h>

namespace quillon {

void Pat::_parse(ByteView body, bool) {
  const int size = body_size();
  if (size % 4 != 0) throw error(error::length_mismatch, "Pat parse error");
  if (size > 0) programs_.reserve(programs_.size() + static_cast<size_t>(size) / 4);
  for (int at = 0; at < size; at += 4) programs_.emplace_back(body.u16(at), body.bits(at + 2, 4, 13));
}

int Pat::get_pid_from_program_number(int program_number) const {
  for (auto program = programs_.rbegin(); program != programs_.rend(); ++program)
    if (program->get_program_number() == program_number) return program->get_program_map_pid();
  return 0x1FFF;
}

void Pat::_dump_state(std::ostream& stream) const {
  for (const program_info& program : programs_) program.dump_state(stream);
}

void Pat::program_info::dump_state(std::ostream& stream) const {
  stream << "program_number: " << std::hex << std::setw(4) << program_number_ << std::endl;
  stream << "program_map_pid: " << std::hex << std::setw(4) << program_map_pid_ << std::endl;
}

}  // namespace quillon

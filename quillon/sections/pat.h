#pragma once

#include <vector>

#include <quillon/sections/psi_base.h>

namespace quillon {

// Program association table (ISO/IEC 13818-1, 2.4.4.3): the PID of each program's map table.
//
//   program_number   16
//   reserved          3
//   program_map_PID  13   of program 0, the network PID
class QUILLON_API Pat : public PsiTableBase {
 public:
  // A program and the PID of its map, or program 0 and that of the network table.
  class QUILLON_API program_info {
   public:
    program_info(int program_number, int program_map_pid)
        : program_number_(program_number), program_map_pid_(program_map_pid) {}
    explicit program_info(void* node);

    int get_program_number() const { return program_number_; }
    int get_program_map_pid() const { return program_map_pid_; }
    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);

    int program_number_ = 0;
    int program_map_pid_ = 0;
  };

  const char* get_table_id_text() const override { return "program_association_section"; }
  void walk(FieldSink& sink) const;

  int get_transport_stream_id() const { return get_context_id(); }
  unsigned get_program_info_size() const { return static_cast<unsigned>(programs_.size()); }
  // No range test on `index`.
  const program_info& get_program_info(int index) const { return programs_[static_cast<size_t>(index)]; }
  const std::vector<program_info>& get_program_info() const { return programs_; }
  // Of a number that occurs twice, the later PID; 8191, the null PID, for one that is not there.
  int get_pid_from_program_number(int program_number) const;

 private:
  void _reset() override { programs_.clear(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x00; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  std::vector<program_info> programs_;
};

}  // namespace quillon

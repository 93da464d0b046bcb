#pragma once

#include <quillon/appsignal/ait_loop.h>
#include <quillon/fields/identifier.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Application information table of MHP (TS 102 812, 10.4.6). Any table id is accepted, in the standard
// reading 0x74 alone.
//
//   reserved                    4
//   common_descriptors_length  12
//   descriptors
//   reserved                    4
//   application_loop_length    12
//   applications                    Application
//
// reset empties the applications and the general vector alone: all other descriptors stay, and a second parse
// adds to them.
class QUILLON_API Ait : public PsiTableBase, public AitLoop {
 public:
  // An application, and what becomes of it.
  //
  //   organisation_id                      32
  //   application_id                       16
  //   application_control_code              8
  //   reserved                              4
  //   application_descriptors_loop_length  12
  //   descriptors
  class QUILLON_API Application : public AitLoop {
   public:
    // `length` is what is left of the loop; `consumed` becomes the bytes of the application; positions count
    // from `base`. Throws error(error::length_mismatch, "application length to small") if fewer than nine
    // bytes are left, and error(error::length_mismatch, "application common descriptors length mismatch").
    Application(ByteView p, int length, int& consumed, bool keep_raw, ByteView base)
        : Application(p, length, consumed, {base, keep_raw}) {}
    Application(ByteView p, int length, int& consumed, const RowContext& row);
    explicit Application(void* node);

    const ApplicationIdentifier& get_application_identifier() const { return application_identifier_; }
    uint32_t get_organisation_id() const { return application_identifier_.organisation_id; }
    int get_application_id() const { return application_identifier_.application_id; }
    int get_application_control_code() const { return application_control_code_; }
    int get_application_descriptors_loop_length() const { return application_descriptors_loop_length_; }

    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);

    int application_control_code_ = 0;
    int application_descriptors_loop_length_ = 0;
    ApplicationIdentifier application_identifier_;
  };

  const char* get_table_id_text() const override { return "ait"; }
  void walk(FieldSink& sink) const;

  // 15 bits in the standard reading, else 16.
  int get_application_type() const {
    // Quirk: Ait application_type
    return standard() ? get_context_id() & 0x7FFF : get_context_id();
  }
  // 1: the applications are there to test receivers (TS 102 809, 5.3.4.6). 0 in the kept reading, which
  // takes the bit for one of the type.
  int get_test_application_flag() const { return standard() ? get_context_id() >> 15 : 0; }
  static const char* get_application_type_text(int application_type);
  const char* get_application_type_text() const { return get_application_type_text(get_application_type()); }
  // In the edition in force.
  static const char* standard_application_type_text(int application_type);
  int get_common_descriptors_length() const { return common_descriptors_length_; }
  int get_application_loop_length() const { return application_loop_length_; }
  const std::vector<Application>& get_applications() const { return applications_; }

 private:
  void _reset() override;
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error(error::length_mismatch, "application common descriptors length mismatch") and
  // error(error::length_mismatch, "application length mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  // Quirk: Ait table_id
  bool is_valid_tablesid() const override { return !standard() || get_table_id() == 0x74; }
  bool is_valid_syntax_indicator(int) const override { return true; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int common_descriptors_length_ = 0;
  int application_loop_length_ = 0;
  std::vector<Application> applications_;
};

}  // namespace quillon

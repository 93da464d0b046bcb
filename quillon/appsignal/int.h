#pragma once

#include <quillon/appsignal/int_loop.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// IP/MAC notification table (EN 301 192, 8.4). Any table id is accepted, in the standard reading 0x4C
// alone; action_type and platform_id_hash are the two bytes of the header's extension. No report shows more
// than the header.
//
//   platform_id                      24
//   processing_order                  8
//   reserved                          4
//   platform_descriptor_loop_length  12
//   descriptors
//   pairs                                 TargetOperationalDescriptors
//
// reset leaves everything as it is, and a second parse adds to it.
class QUILLON_API Int : public PsiTableBase, public IntLoop {
 protected:
  // What both loops of a pair have: a reserved nibble, the length in 12 bits, the descriptors. Their
  // positions count from the loop's first byte.
  class QUILLON_API LoopOfPair : public IntLoop {
   protected:
    void parse(ByteView p, int& consumed, const RowContext& row, const char* mismatch);

    int loop_length_ = 0;
  };

 public:
  // The receivers that the operations of the pair are for.
  class QUILLON_API TargetDescriptorLoop : public LoopOfPair {
   public:
    // `consumed` becomes the bytes of the loop. Throws
    // error("Int target_descriptor_loop() descriptor start end mismatch").
    void Parse(ByteView p, int& consumed, bool keep_raw) { Parse(p, consumed, {p, keep_raw}); }
    void Parse(ByteView p, int& consumed, const RowContext& row);
    void Parse(void* node);
    bool SaveSection(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

    int get_target_descriptor_loop_length() const { return loop_length_; }

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);
  };

  // What is done for them.
  class QUILLON_API OperationalDescriptorLoop : public LoopOfPair {
   public:
    // `consumed` becomes the bytes of the loop. Throws
    // error("Int operational_descriptor_loop() descriptor start end mismatch").
    void Parse(ByteView p, int& consumed, bool keep_raw) { Parse(p, consumed, {p, keep_raw}); }
    void Parse(ByteView p, int& consumed, const RowContext& row);
    void Parse(void* node);
    bool SaveSection(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

    int get_operational_descriptor_loop_length() const { return loop_length_; }

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);
  };

  // Receivers, and what is done for them.
  class QUILLON_API TargetOperationalDescriptors {
   public:
    TargetOperationalDescriptors() = default;
    // `length` becomes the bytes of both loops.
    TargetOperationalDescriptors(ByteView p, int& length, bool keep_raw)
        : TargetOperationalDescriptors(p, length, {p, keep_raw}) {}
    TargetOperationalDescriptors(ByteView p, int& length, const RowContext& row);

    const TargetDescriptorLoop& get_target_descriptor_loop() const { return target_descriptor_loop_; }
    const OperationalDescriptorLoop& get_operational_descriptor_loop() const {
      return operational_descriptor_loop_;
    }

    // Prints nothing.
    void dump_state(std::ostream&) const {}
    // What the loops' own saves say is not looked at.
    bool SaveSection(void* document, void* element) const;
    // Throws error("failed"), error("failed to get targetdescriptorloop") and
    // error("failed to get operationaldescriptorloop").
    void Parse(void* node);
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    TargetDescriptorLoop target_descriptor_loop_;
    OperationalDescriptorLoop operational_descriptor_loop_;
  };

  const char* get_table_id_text() const override { return "int"; }
  void walk(FieldSink& sink) const;

  int get_action_type() const { return action_type_; }
  int get_platform_id_hash() const { return platform_id_hash_; }
  int get_platform_id() const { return platform_id_; }
  int get_processing_order() const { return processing_order_; }
  int get_platform_descriptor_loop_length() const { return platform_descriptor_loop_length_; }
  const std::vector<TargetOperationalDescriptors>& get_targetoperationaldescriptors() const {
    return targetoperationaldescriptors_;
  }

 private:
  void _reset() override {}
  void _dump_state(std::ostream&) const override {}
  void _parse(void* node) override;
  // Throws error("Int platform_descriptor_loop() descriptor start end mismatch") and
  // error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  // Quirk: Int table_id
  bool is_valid_tablesid() const override { return !standard() || get_table_id() == 0x4C; }
  bool is_valid_syntax_indicator(int) const override { return true; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int action_type_ = 0;
  int platform_id_hash_ = 0;
  int platform_id_ = 0;
  int processing_order_ = 0;
  int platform_descriptor_loop_length_ = 0;
  std::vector<TargetOperationalDescriptors> targetoperationaldescriptors_;
};

}  // namespace quillon

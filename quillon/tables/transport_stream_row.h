#pragma once

#include <quillon/descriptors/dvb_loop.h>

namespace quillon {

// A row of the transport stream loop of NIT and BAT (EN 300 468, 5.2.1).
//
//   transport_stream_id           16
//   original_network_id           16
//   reserved_future_use            4
//   transport_descriptors_length  12
//   descriptors
class QUILLON_API TransportStreamRow : public DvbLoop {
 public:
  // `length` holds the bytes on offer, and then those of the row. Throws error("too little data") if fewer
  // than six are offered.
  TransportStreamRow(ByteView data, int& length, bool keep_raw, ByteView body)
      : TransportStreamRow(data, length, {body, keep_raw}) {}
  TransportStreamRow(ByteView data, int& length, const RowContext& row);
  explicit TransportStreamRow(void* node);

  int get_transport_stream_id() const { return transport_stream_id_; }
  int get_original_network_id() const { return original_network_id_; }

  bool _save_stream_info(void* document, void* element) const;
  void walk(FieldSink& sink, Reading reading = Reading::kept) const;

 protected:
  // Prints the two ids.
  void dump_ids(std::ostream& stream) const;

 private:
  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int transport_stream_id_ = 0;
  int original_network_id_ = 0;
};

}  // namespace quillon

#pragma once

namespace quillon {

// What stream_type says (ISO/IEC 13818-1, table 2-29).
const char* stream_type_text(int stream_type);

}  // namespace quillon

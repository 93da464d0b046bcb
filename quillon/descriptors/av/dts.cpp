#include <quillon/descriptors/av/dts.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

using detail::text_of;

namespace {

// Kept, commas, point and missing digit: readers of the texts rely on them.
const char* sample_rate_text(int code) {
  return text_of(code,
                 {"Invalid", "8 kHz", "16 kHz", "32 kHz", "64 kHz", "128 kHz", "11,025 kHz", "22,05 kHz",
                  "44,1 kHz", "88.02 kHz", "176,4 kHz", "12,kHz", "24 kHz", "48 kHz", "96 kHz", "192 kHz"},
                 "Invalid");
}

const char* bit_rate_text(int code) {
  return text_of(code,
                 {"32 kbps",   "56 kbps",     "64 kbps",   "96 kbps",   "112 kbps",  "128 kbps",  "192 kbps",
                  "224 kbps",  "256 kbps",    "320 kbps",  "384 kbps",  "448 kbps",  "512 kbps",  "576 kbps",
                  "640 kbps",  "768 kbps",    "960 kbps",  "1024 kbps", "1152 kbps", "1280 kbps", "1344 kbps",
                  "1408 kbps", "1411,2 kbps", "1472 kbps", "1536 kbps", "1920 kbps", "2048 kbps", "3072 kbps",
                  "3840 kbps", "open",        "Variable",  "Loss-less"},
                 "invalid");
}

const char* surround_mode_text(int mode) {
  return text_of(mode,
                 {"1 / mono", "User defined", "2 / L + R (stereo)", "2 / (L+R) + (L-R) (sum-difference)",
                  "2 / LT +RT (left and right total)", "3 / C + L + R", "3 / L + R+ S", "4 / C + L + R+ S",
                  "4 / L + R+ SL+SR", "5 / C + L + R+ SL+SR"},
                 "User defined");
}

const char* extended_surround_text(int flag) {
  return text_of(
      flag, {"No Extended Surround", "Matrixed Extended Surround", "Discrete Extended Surround", "undefined"},
      "invalid");
}

}  // namespace

template <class V, class S>
void DescriptorDTS::describe(V& v, S& s) {
  v.coded("sample_rate_code", s.sample_rate_code, {sample_rate_text, standard_sample_rate_code_text});
  v.coded("bit_rate_code", s.bit_rate_code, {bit_rate_text, standard_bit_rate_code_text});
  v.field("nblks", s.nblks);
  v.field("fsize", s.fsize);
  v.coded("surround_mode", s.surround_mode, {surround_mode_text, standard_surround_mode_text});
  v.field("lfe_flag", s.lfe_flag);
  v.coded("extended_surround_flag", s.extended_surround_flag, extended_surround_text);
  v.bytes("additional_info", s.additional_info);
}
QUILLON_SILENT_FACES_OF(DescriptorDTS, "DTS descriptor")

// Quirk: DTS code texts
const char* DescriptorDTS::standard_sample_rate_code_text(int sample_rate_code) {
  if (sample_rate_code == 9) return "88,2 kHz";
  return sample_rate_code == 11 ? "12 kHz" : sample_rate_text(sample_rate_code);
}

// The top bit says nothing, and a stream has 128 kbit/s at least.
const char* DescriptorDTS::standard_bit_rate_code_text(int bit_rate_code) {
  const int code = bit_rate_code & 0x1F;
  return code < 5 ? "reserved" : bit_rate_text(code);
}

const char* DescriptorDTS::standard_surround_mode_text(int surround_mode) {
  return surround_mode == 1 ? "unassigned" : surround_mode_text(surround_mode);
}

const char* DescriptorDTS::get_sample_rate_code_cstr() const {
  return sample_rate_text(sample_rate_code);
}

const char* DescriptorDTS::get_bit_rate_code_cstr() const {
  return bit_rate_text(bit_rate_code);
}

const char* DescriptorDTS::get_surround_mode_cstr() const {
  return surround_mode_text(surround_mode);
}

const char* DescriptorDTS::get_extended_surround_flag_cstr() const {
  return extended_surround_text(extended_surround_flag);
}

}  // namespace quillon

#pragma once

#include "apps/quillon/columns.h"
#include "apps/quillon/survey.h"

#include <map>
#include <string>
#include <vector>

namespace quillon::app {

// How people are told of what was found: used by the commands that give an overview.

// "7.1", or the program number.
std::string number_of(const Service& service);
// "Café Radio", or "program 4097".
std::string name_of(const Service& service);
// For who looks up many of them.
std::map<ServiceId, const Service*> by_id(const ServiceDirectory& services);
// "running" (EN 300 468, table 6); null of what is reserved or not known.
const char* running_text(int running_status);
// The same, but empty where it says nothing.
const char* running_remark(int running_status);
// "AAC audio (fre, eng)"
std::string text_of(const ServiceStream& stream);
// "H.264 video, 2 x AAC audio (eng)"
std::string text_of(const std::vector<ServiceStream>& streams);
// "0x0B00 Norwegian Telekom"; each system once.
std::string text_of(const std::vector<CaStream>& ca);
// What each PID carries.
std::map<int, std::string> contents_of(const Survey& survey, Standard standard);
// "1.234 Mbit/s"
std::string rate_text(double bit_rate);
// "12.3 %"
std::string share_text(uint64_t part, uint64_t whole);
// What is wrong, a line each; of packets on PIDs that were asked for.
std::vector<std::string> troubles_of(const Options& options, const Input& input, const Survey& survey);

// A line a table id on a PID.
Columns table_kind_columns(const Input& input, const Survey& survey);
// A line a table.
Columns table_columns(const Input& input, const Survey& survey);
Columns pid_columns(const Options& options, const Input& input, const Survey& survey);

}  // namespace quillon::app

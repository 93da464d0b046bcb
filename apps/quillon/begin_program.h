#pragma once

#include <string>
#include <vector>

namespace quillon::app {

// The arguments after the program's name, in UTF-8. From then on the standard streams pass bytes on as they
// are, and a terminal takes them for UTF-8 and obeys the usual escape sequences.
std::vector<std::string> begin_program(int argc, char** argv);

}  // namespace quillon::app

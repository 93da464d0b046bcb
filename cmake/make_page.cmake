# Makes a source of the program from the style sheet and the script of its pages:
#   cmake -DFOLDER=apps/quillon/html -DMADE=page_files.cpp -P make_page.cmake

file(READ ${FOLDER}/page.css style)
file(READ ${FOLDER}/page.js script)

# What a browser knows the script by: its digest in base 64.
file(SHA256 ${FOLDER}/page.js digits)
string(APPEND digits "00")  # to a multiple of three bytes; the last letter is a filler
set(letters ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
set(hash "")
foreach(at RANGE 0 65 3)
  string(SUBSTRING "${digits}" ${at} 3 three)
  math(EXPR first "0x${three} / 64")
  math(EXPR second "0x${three} % 64")
  foreach(index ${first} ${second})
    string(SUBSTRING ${letters} ${index} 1 letter)
    string(APPEND hash ${letter})
  endforeach()
endforeach()
string(SUBSTRING ${hash} 0 43 hash)

# A literal of a compiler has 65,535 bytes at most.
foreach(text style script)
  string(LENGTH "${${text}}" length)
  if(length GREATER 60000)
    message(FATAL_ERROR "the ${text} of the page is too long for a literal")
  endif()
endforeach()
file(WRITE ${MADE} "// Made from apps/quillon/html/page.css and page.js; changes belong there.

#include \"apps/quillon/html/page_files.h\"

namespace quillon::app::html {

constinit const std::string_view kPageStyle = R\"page(${style})page\";
constinit const std::string_view kPageScript = R\"page(${script})page\";
constinit const std::string_view kPageScriptHash = \"sha256-${hash}=\";

}  // namespace quillon::app::html
")

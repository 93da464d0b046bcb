#pragma once

// For the library's own sources.

#include <array>
#include <string_view>

namespace quillon::faces {

// The text of a signature in which the compiler spells T.
template <class T>
consteval std::string_view signature() {
  return __PRETTY_FUNCTION__;
}

template <class T>
struct ClassName {
  static constexpr std::string_view text = [] {
    std::string_view out = signature<T>();
    out.remove_prefix(out.find("T = ") + 4);
    out = out.substr(0, out.find_first_of(";]"));
    constexpr std::string_view home = "quillon::";
    if (out.starts_with(home)) out.remove_prefix(home.size());
    return out;
  }();
  static constexpr auto characters = [] {
    std::array<char, text.size() + 1> out{};
    for (size_t i = 0; i < text.size(); ++i) out[i] = text[i];
    return out;
  }();
};

// The name of a class without the library's namespace: "Eit::EventInfo".
template <class T>
inline constexpr const char* class_name = ClassName<T>::characters.data();

}  // namespace quillon::faces

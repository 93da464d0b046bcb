// Loses memory, so that the sanitizers' run shows that it would report one.

#include <cstdint>

int main() {
  auto* volatile lost = new uint8_t[64];
  lost[0] = 1;
  lost = nullptr;
}

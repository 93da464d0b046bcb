// What the loader calls; of the DLL alone.

#include <quillon/platform/windows/windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
  return TRUE;
}

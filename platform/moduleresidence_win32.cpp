#include "platform/moduleresidence.h"

#include <windows.h>

namespace ffc::platform {

void KeepModuleResident()
{
  HMODULE hModule = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&KeepModuleResident), &hModule);
}

} // namespace ffc::platform

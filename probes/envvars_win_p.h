#pragma once

#include <functional>

#include <windows.h>

// Windows internals of the environment repair, open to the tests.
namespace EnvVars {
namespace Detail {

// The single registry value write (RegSetValueExA by default). Test seam to
// make one value's write fail; an empty function restores the default.
using ValueWriter = std::function<LONG(HKEY hKey, const char *pName, DWORD dwType, const BYTE *pData, DWORD dwSize)>;
void setValueWriter(ValueWriter writer);

// The machine-wide environment key below HKEY_LOCAL_MACHINE.
constexpr const char *kEnvironmentKey = "System\\CurrentControlSet\\Control\\Session Manager\\Environment";

} // namespace Detail
} // namespace EnvVars

#pragma once

#include "envvars.h"

#include <functional>

#include <windows.h>

// Windows internals of the environment repair, open to the tests.
namespace EnvVars {
namespace Detail {

// The single registry value write, as RegSetValueExA without its reserved
// argument.
using ValueWriter = std::function<LONG(HKEY hKey, const char *pName, DWORD dwType, const BYTE *pData, DWORD dwSize)>;

// The write of the machine-wide environment key with setValue as its single
// value write; writeMachineEnvironment() is the one with RegSetValueExA.
// Tests make one value's write fail.
MachineWriter registryWriter(ValueWriter setValue);

// The machine-wide environment key below HKEY_LOCAL_MACHINE.
constexpr const char *kEnvironmentKey = "System\\CurrentControlSet\\Control\\Session Manager\\Environment";

} // namespace Detail
} // namespace EnvVars

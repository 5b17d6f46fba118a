// A stand-in for the driver install framework's DriverPackageGetPathW, so
// the tests can give every answer a real difxapi.dll may give. The answer
// comes from the environment variable VX_FAKE_DIFX:
//   "path"      ERROR_SUCCESS with a driver store path
//   "empty"     ERROR_SUCCESS with a length of 0
//   a number    that error code, buffer untouched
#include <windows.h>

#include <cstdlib>
#include <cwchar>

extern "C" __declspec(dllexport) DWORD WINAPI DriverPackageGetPathW(PCWSTR, PWSTR pDestination, DWORD *pLength)
{
    char answer[64] = {};
    if (!GetEnvironmentVariableA("VX_FAKE_DIFX", answer, sizeof answer))
        return ERROR_UNSUPPORTED_TYPE;
    if (strcmp(answer, "path") == 0) {
        const wchar_t path[] = L"C:\\Windows\\System32\\DriverStore\\FileRepository\\luu3v.inf_amd64_0\\luu3v.inf";
        const DWORD dwNeeded = DWORD(wcslen(path) + 1);
        if (!pLength || *pLength < dwNeeded)
            return ERROR_INSUFFICIENT_BUFFER;
        wcscpy(pDestination, path);
        *pLength = dwNeeded;
        return ERROR_SUCCESS;
    }
    if (strcmp(answer, "empty") == 0) {
        if (pLength)
            *pLength = 0;
        return ERROR_SUCCESS;
    }
    return DWORD(strtoul(answer, nullptr, 0));
}

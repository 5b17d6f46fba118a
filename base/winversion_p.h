#pragma once

// Windows only: the true NT version (not the manifest-dependent one
// GetVersionEx reports). Included by *_win.cpp files of base/.

namespace LuInterface {
namespace Detail {

struct WinVersion {
    unsigned long uMajor = 0;
    unsigned long uMinor = 0;
    unsigned long uBuild = 0; // without the checked/free flag bits
};

// From ntdll's RtlGetNtVersionNumbers; all zero when it is missing.
WinVersion winVersion();

} // namespace Detail
} // namespace LuInterface

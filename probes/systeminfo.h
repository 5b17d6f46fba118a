#pragma once

class CSystemDetectInfo;

// Item 2048: the PC's facts as ready-to-show texts. Never fails.
namespace SystemInfo {
void check(CSystemDetectInfo &info);
} // namespace SystemInfo

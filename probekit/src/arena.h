#pragma once

#include "probekit.h"

#include <cstddef>
#include <string>
#include <vector>

namespace probekit {

// Owns every record of one tree. Allocations are zero-filled and live until
// the arena is cleared; nothing is freed one by one.
class Arena
{
public:
    Arena() = default;
    ~Arena();
    Arena(const Arena &) = delete;
    Arena &operator=(const Arena &) = delete;

    // nSize zeroed bytes aligned to 8; null only when memory runs out.
    void *alloc(size_t nSize);
    template <typename T> T *make() { return static_cast<T *>(alloc(sizeof(T))); }
    // A UTF-8 text as NUL-terminated UTF-16 (invalid sequences become U+FFFD).
    const UsbWChar *wide(const std::string &strUtf8);
    void clear();

private:
    std::vector<char *> m_vecBlocks;
    char *m_pCur = nullptr;
    size_t m_nLeft = 0;
};

// UTF-8 to UTF-16; malformed input never reads past the end.
std::u16string utf8ToUtf16(const std::string &strUtf8);

} // namespace probekit

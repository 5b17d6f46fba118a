#include "arena.h"

#include <cstdlib>
#include <cstring>

namespace probekit {

namespace {
constexpr size_t kBlockSize = 64 * 1024;
}

Arena::~Arena()
{
    clear();
}

void *Arena::alloc(size_t nSize)
{
    nSize = (nSize + 7) & ~size_t(7);
    if (nSize == 0)
        nSize = 8;
    if (nSize > m_nLeft) {
        const size_t nBlock = nSize > kBlockSize / 4 ? nSize : kBlockSize;
        char *pBlock = static_cast<char *>(std::calloc(1, nBlock));
        if (!pBlock)
            return nullptr;
        m_vecBlocks.push_back(pBlock);
        if (nBlock != kBlockSize)
            return pBlock; // a large allocation gets a block of its own
        m_pCur = pBlock;
        m_nLeft = nBlock;
    }
    void *p = m_pCur;
    m_pCur += nSize;
    m_nLeft -= nSize;
    return p;
}

const UsbWChar *Arena::wide(const std::string &strUtf8)
{
    const std::u16string text = utf8ToUtf16(strUtf8);
    auto *p = static_cast<UsbWChar *>(alloc((text.size() + 1) * sizeof(UsbWChar)));
    if (!p)
        return nullptr;
    std::memcpy(p, text.data(), text.size() * sizeof(UsbWChar));
    return p;
}

void Arena::clear()
{
    for (char *p : m_vecBlocks)
        std::free(p);
    m_vecBlocks.clear();
    m_pCur = nullptr;
    m_nLeft = 0;
}

std::u16string utf8ToUtf16(const std::string &strUtf8)
{
    std::u16string out;
    out.reserve(strUtf8.size());
    const auto *p = reinterpret_cast<const unsigned char *>(strUtf8.data());
    const size_t n = strUtf8.size();
    size_t i = 0;
    while (i < n) {
        const unsigned c = p[i];
        unsigned cp = 0xFFFD;
        size_t need = 0;
        if (c < 0x80) {
            cp = c;
        } else if ((c & 0xE0) == 0xC0) {
            need = 1;
            cp = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            need = 2;
            cp = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            need = 3;
            cp = c & 0x07;
        } else {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        bool ok = i + need < n || need == 0;
        for (size_t k = 1; ok && k <= need; ++k) {
            if ((p[i + k] & 0xC0) != 0x80)
                ok = false;
            else
                cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        if (!ok) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        i += need + 1;
        static const unsigned kMin[4] = {0, 0x80, 0x800, 0x10000};
        if (cp < kMin[need] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            out.push_back(0xFFFD);
        } else if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(char16_t(0xD800 + (cp >> 10)));
            out.push_back(char16_t(0xDC00 + (cp & 0x3FF)));
        } else {
            out.push_back(char16_t(cp));
        }
    }
    return out;
}

} // namespace probekit

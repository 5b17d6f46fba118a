#include "usbstrings.h"

namespace probekit {

std::vector<uint16_t> parseLanguageList(const uint8_t *pData, size_t nBytes)
{
    std::vector<uint16_t> vecLanguages;
    if (!pData || nBytes < 2 || pData[1] != 3 || pData[0] < 2)
        return vecLanguages;
    const size_t nLength = pData[0] < nBytes ? pData[0] : nBytes;
    for (size_t at = 2; at + 1 < nLength; at += 2)
        vecLanguages.push_back(uint16_t(pData[at] | (pData[at + 1] << 8)));
    return vecLanguages;
}

uint16_t firstLanguage(const uint8_t *pData, size_t nBytes)
{
    const std::vector<uint16_t> vecLanguages = parseLanguageList(pData, nBytes);
    return vecLanguages.empty() ? 0 : vecLanguages.front();
}

UsbStringDescriptorNode *makeStringDescriptor(Arena &arena, uint32_t uIndex, uint16_t uLanguage,
                                              const std::string &strUtf8)
{
    std::u16string text = utf8ToUtf16(strUtf8);
    if (text.size() > 126)
        text.resize(126);
    auto *pNode = arena.make<UsbStringDescriptorNode>();
    auto *pBytes = static_cast<uint8_t *>(arena.alloc(2 + 2 * text.size()));
    if (!pNode || !pBytes)
        return nullptr;
    pBytes[0] = uint8_t(2 + 2 * text.size());
    pBytes[1] = 3;
    for (size_t i = 0; i < text.size(); ++i) {
        pBytes[2 + 2 * i] = uint8_t(text[i] & 0xFF);
        pBytes[3 + 2 * i] = uint8_t(text[i] >> 8);
    }
    pNode->DescriptorIndex = uIndex;
    pNode->LanguageId = uLanguage;
    pNode->Length = pBytes[0];
    pNode->pDescriptor = pBytes;
    return pNode;
}

} // namespace probekit

#pragma once

// String descriptors: the language list of string descriptor 0 and the
// records the tree keeps for each string (both platforms).

#include "arena.h"
#include "probekit.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace probekit {

// The language IDs (LANGIDs) of a string descriptor 0 (USB 2.0, 9.6.7):
// bLength, bDescriptorType 3, then one 16-bit LANGID per two bytes. bLength
// limits what is read; bytes that are no such descriptor give an empty list.
std::vector<uint16_t> parseLanguageList(const uint8_t *pData, size_t nBytes);

// The language to ask the device's strings in: the first one it lists, the
// one the USB host software of every platform uses. 0 (unknown) when the
// device lists none.
uint16_t firstLanguage(const uint8_t *pData, size_t nBytes);

// A string node in the language uLanguage (0: not known) with the standard
// string descriptor bytes of a UTF-8 text (cut to 126 UTF-16 units).
UsbStringDescriptorNode *makeStringDescriptor(Arena &arena, uint32_t uIndex, uint16_t uLanguage,
                                              const std::string &strUtf8);

} // namespace probekit

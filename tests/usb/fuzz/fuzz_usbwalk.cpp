// Fuzz target: the configuration walk, every descriptor member, the port
// connection lines and the hub lines over arbitrary bytes.
#include "cusbdescriptordecoder.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "probekit.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {
// Counts lines without keeping them, so long inputs stay fast.
class CCountingSink : public CUsbLineSink
{
public:
    void addLine(const QString &strLabel, const QString &strValue) override
    {
        nChars += strLabel.size() + strValue.size();
        ++nLines;
    }
    long nLines = 0;
    long nChars = 0;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 70000)
        return 0;
    // An exact-size copy: a read past the end is a read past the allocation.
    std::vector<uint8_t> bytes(pData, pData + nSize);
    const uint8_t *p = bytes.data();
    const int n = int(nSize);
    CCountingSink sink;

    // Strings from the tail of the input, as a list of one descriptor.
    UsbStringDescriptorNode strings{nullptr, 1, 0x409, uint32_t(nSize > 8 ? 8 : nSize), p};
    CUsbDescriptorDecoder decoder(sink, nSize ? &strings : nullptr);
    decoder.walkConfiguration(p, n);
    for (int m = 0; m <= int(EUsbMember::AsDataEndpoint); ++m)
        decoder.printMember(EUsbMember(m), p, n);
    for (int sub = 0; sub < 4; ++sub)
        decoder.printAudio(sub, p, n);

    if (nSize >= sizeof(UsbPortConnectionInfo)) {
        UsbPortConnectionInfo info;
        std::memcpy(&info, p, sizeof info);
        decoder.printConnection(&info);
    }
    if (nSize >= sizeof(UsbHubInformationBlock) + 8) {
        UsbHubInformationBlock block;
        std::memcpy(&block, p, sizeof block);
        UsbHubCapabilitiesEx ex;
        std::memcpy(&ex, p + sizeof block, sizeof ex);
        UsbHubCapabilities caps;
        std::memcpy(&caps, p + sizeof block + 4, sizeof caps);
        UsbHubNodeInfo hub{};
        hub.Kind = p[0] & 1 ? UsbNodeRootHub : UsbNodeExternalHub;
        hub.uHubFieldsKnown = p[1];
        hub.pHubInfo = &block;
        hub.pHubCapsEx = p[2] & 1 ? &ex : nullptr;
        hub.pHubCaps = p[2] & 2 ? &caps : nullptr;
        CUsbTreeDecoder(sink).printNode(&hub);
    }
    return 0;
}

// Fuzz target: the ELF and PE header reader of the GenTL producer audit.
// Besides crashes it checks that the result is consistent: a format that is
// neither ELF nor PE has no bitness, machine or library flag, a recognised
// one is 32 or 64 bits, and the reader only claims ELF or PE for inputs
// starting with their magic.
#include "fuzztree.h"
#include "gentlproducers.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 100000)
        return 0;
    const QByteArray header(reinterpret_cast<const char *>(pData), int(nSize));
    const CBinaryFormat format = GenTLProducers::readFormat(header);
    switch (format.eKind) {
    case CBinaryFormat::Other:
        FuzzTree::check(format.nBits == 0 && format.uMachine == 0 && !format.bLibrary);
        break;
    case CBinaryFormat::Elf:
        FuzzTree::check(header.startsWith("\x7f" "ELF") && (format.nBits == 32 || format.nBits == 64));
        break;
    case CBinaryFormat::Pe:
        FuzzTree::check(header.startsWith("MZ") && (format.nBits == 32 || format.nBits == 64));
        break;
    }
    GenTLProducers::describe(format);
    return 0;
}

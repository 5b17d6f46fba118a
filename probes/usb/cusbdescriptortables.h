#pragma once

#include <QtGlobal>

// Descriptor layouts as data: one table of fields per descriptor, read by
// one interpreter (CUsbDescriptorDecoder) that checks every read against the
// descriptor's length. Labels are the texts the program prints.

struct CUsbNameEntry
{
    quint32 uCode;
    const char *pName;
};

struct CUsbNameTable
{
    const CUsbNameEntry *pEntries;
    int nCount;
    const char *find(quint32 uCode) const;
};

enum class EUsbFieldKind : quint8 {
    Skip,         // consumed, not printed
    Hex,          // hex of nSize bytes (hex byte, hex word, ...)
    HexName,      // hex, then "(name)" when the code is in pNames
    HexDecimal,   // hex, then "(decimal)"
    StringIndex,  // hex byte, then the string descriptor line when not 0
    VendorId,     // hex word, then "(vendor name)" from the USB id database
    EndpointAddr, // hex byte, then "  IN" or "  OUT"
    TransferType, // the name of bits 0-1
    PowerAttr,    // hex byte, then "Bus Powered", "Self Powered", "Remote Wakeup" lines
    MaxPower,     // hex byte, then "(mA)" = value x 2
    Frequency,    // 3 bytes, hex, then "(n Hz)"
    Array,        // value[nRef] elements of nSize bytes, label with %1 (1-based)
    FreqArray,    // value[nRef] frequencies of 3 bytes, label with %1
    SizedArray,   // elements of value[nRef] bytes up to the last nTrailing bytes
    SizedValue,   // one value of value[nRef] bytes
    RestValue,    // one value of every byte but the last nTrailing
    RestBytes,    // the remaining bytes as a list of hex bytes
    HidList,      // value[nRef] pairs of bDescriptorType / wDescriptorLength
    ClassName,    // hex byte, then "(Audio)", "(HID)" or "(Hub)"
    SubClassName  // hex byte, then the audio subclass name when value[nRef] is 1
};

struct CUsbFieldDef
{
    const char *pLabel;
    quint8 nSize;
    EUsbFieldKind eKind;
    qint8 nRef = -1;       // index of the field that gives a count or size
    quint8 nTrailing = 0;  // bytes kept for the fields after a variable part
    const CUsbNameTable *pNames = nullptr;
};

struct CUsbDescriptorDef
{
    const char *pHeading;
    const CUsbFieldDef *pFields;
    int nFields;
};

namespace UsbTables {
extern const CUsbNameTable terminalTypes;
extern const CUsbNameTable formatTags;
extern const CUsbNameTable processTypes;

extern const CUsbDescriptorDef device;
extern const CUsbDescriptorDef configuration;
extern const CUsbDescriptorDef interface9;
extern const CUsbDescriptorDef interface12;
extern const CUsbDescriptorDef endpoint7;
extern const CUsbDescriptorDef endpoint10;
extern const CUsbDescriptorDef hid;
extern const CUsbDescriptorDef acHeader;
extern const CUsbDescriptorDef acInputTerminal;
extern const CUsbDescriptorDef acOutputTerminal;
extern const CUsbDescriptorDef acMixerUnit;
extern const CUsbDescriptorDef acSelectorUnit;
extern const CUsbDescriptorDef acFeatureUnit;
extern const CUsbDescriptorDef acProcessingUnit;
extern const CUsbDescriptorDef acExtensionUnit;
extern const CUsbDescriptorDef asGeneral;
extern const CUsbDescriptorDef asFormatTypeI;  // types I and III
extern const CUsbDescriptorDef asFormatTypeII;
extern const CUsbDescriptorDef asFormatTypeOther;
extern const CUsbDescriptorDef asFormatSpecific;
extern const CUsbDescriptorDef asDataEndpoint;
} // namespace UsbTables

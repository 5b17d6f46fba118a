#pragma once

#include "probekit.h"

#include <QString>

class CUsbLineSink;
struct CUsbDescriptorDef;

// The descriptor members the decoder prints.
enum class EUsbMember {
    Device,
    Configuration,
    Interface,
    Endpoint,
    Hid,
    Unknown,
    AcHeader,
    AcInputTerminal,
    AcOutputTerminal,
    AcMixerUnit,
    AcSelectorUnit,
    AcFeatureUnit,
    AcProcessingUnit,
    AcExtensionUnit,
    AsGeneral,
    AsFormatType,
    AsFormatSpecific,
    AsDataEndpoint
};

// Turns raw USB descriptors into label/value lines: the device descriptor
// with its port's connection facts, and the walk over a configuration block
// (interfaces, endpoints, HID and USB Audio 1.0 class descriptors). Every
// read is checked against the bytes given; nothing outside them is touched.
class CUsbDescriptorDecoder
{
public:
    // pStrings: the device's string descriptors for the string lines (may be null).
    explicit CUsbDescriptorDecoder(CUsbLineSink &sink, const UsbStringDescriptorNode *pStrings = nullptr);

    // The configuration walk: end = start + wTotalLength (clamped to
    // nBytes); each step advances by twice bLength; a zero bLength or a
    // descriptor running past the end stops it.
    void walkConfiguration(const quint8 *pData, int nBytes);

    // One member over one descriptor's bytes (nBytes = what may be read).
    void printMember(EUsbMember eMember, const quint8 *pData, int nBytes);

    // The audio class decoder (USB Audio 1.0) for the current interface
    // subclass and protocol; false when it does not know the descriptor
    // (nothing is printed then): MIDI Streaming (subclass 3) and Audio 2.0
    // or 3.0 interfaces are declined.
    bool printAudio(int nSubClass, const quint8 *pData, int nBytes, int nProtocol = 0);
    static constexpr int kAudioProtocol20 = 0x20;
    static constexpr int kAudioProtocol30 = 0x30;

    // The connection lines of a port, then its device descriptor.
    void printConnection(const UsbPortConnectionInfo *pInfo);

    // The text of string descriptor nIndex; null QString when absent.
    QString stringText(int nIndex) const;

    static QString hexByte(quint32 uValue);
    static QString hexWord(quint32 uValue);
    static QString connectionStatusName(quint32 uStatus);
    static QString speedName(quint32 uSpeed);

private:
    // Prints the table's fields; returns the offset reached, or -1 when the
    // descriptor ended before the table did. pValues receives field values.
    int printFields(const CUsbDescriptorDef &def, const quint8 *pData, int nLen, quint32 *pValues, bool bHeading = true);
    void printUnknown(const quint8 *pData, int nLen);
    void printFormatType(const quint8 *pData, int nLen);
    void printStringLine(quint32 uIndex);

    CUsbLineSink &m_sink;
    const UsbStringDescriptorNode *m_pStrings;
    int m_nInterfaceClass = -1;
    int m_nInterfaceSubClass = -1;
    int m_nInterfaceProtocol = -1;
};

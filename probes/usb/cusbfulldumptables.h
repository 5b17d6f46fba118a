#pragma once

// The layouts of the descriptors the full dump decodes, one row per field,
// read by the generic printer in cusbfulldump.cpp. Layouts and names follow
// USB 2.0 chapter 9, USB 3.2 chapter 9 (BOS, device capabilities), the
// Interface Association ECN, HID 1.11 section 6.2.1, USB Audio 1.0 sections
// 4.3 to 4.6 and the USB3 Vision device info descriptor.

#include <QString>

class QStringList;

namespace UsbDump {

// How a field's value is written.
enum class Fmt : quint8 {
    Dec, // decimal
    Hex, // "0x" and two hex digits per byte
    Bcd, // binary-coded decimal version "2.00"
    Str, // a string index, followed by the string when it is known
    MilliAmp, // bMaxPower in mA ("100mA")
    Uuid, // 16 bytes as {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}
};

// What follows the value: a name on the same line or lines below it.
enum class Note : quint8 {
    None,
    Vendor,
    Product,
    Class,
    SubClass,
    Protocol,
    ConfigAttributes,
    EndpointAddress,
    EndpointAttributes,
    MaxPacketSize,
    AcSubtype,
    AsSubtype,
    AsEndpointSubtype,
    TerminalType,
    ChannelConfig,
    ProcessType,
    FormatTag,
    FormatType,
    Frames,
    SamFreqType,
    LockDelayUnits,
    AsEndpointAttributes,
    HidCountry,
    HidType,
    MicroSeconds,
    Usb2ExtAttributes,
    SsAttributes,
    SsSpeeds,
    SsFunctionality,
    U3vVersion,
    U3vSpeeds,
    FeatureControls, // USB Audio 1.0 feature unit control bits
    ElementSize, // the value is the size of the following variable-size fields
};

// How often a row repeats.
enum class Rep : quint8 {
    Once,
    Counted, // as often as the value of the field before it says
    CountedPair, // this row and the next, as often as the field before says
    Rest, // until nReserve bytes before the end of the descriptor
    SamFreqs, // tSamFreq list: the field before gives 0 (a range) or a count
};

struct CField
{
    const char *pName; // may hold %d (the 0-based repetition) or %2d
    quint8 nSize; // bytes; 0: the size an ElementSize field gave
    Fmt eFmt;
    Note eNote = Note::None;
    Rep eRep = Rep::Once;
    quint8 nReserve = 0; // Rep::Rest: bytes left for the rows after it
};

struct CLayout
{
    const char *pHeading; // nullptr: the fields print without a heading
    const CField *pFields;
    int nFields;
    int nMinLength; // a shorter descriptor is reported as truncated
};

// Standard descriptors.
extern const CLayout kDevice;
extern const CLayout kConfiguration;
extern const CLayout kInterface;
extern const CLayout kEndpoint;
extern const CLayout kInterfaceAssociation;
extern const CLayout kHid;
extern const CLayout kBos;
// The USB Audio 1.0 class-specific interface descriptors by subtype (nullptr: unknown).
const CLayout *audioControl(quint8 uSubtype);
const CLayout *audioStreaming(quint8 uSubtype, quint8 uFormatType);
extern const CLayout kAudioEndpoint;
// The device capabilities of the BOS by bDevCapabilityType (nullptr: unknown).
const CLayout *deviceCapability(quint8 uType);
// The USB3 Vision class-specific descriptors by subtype (nullptr: unknown).
const CLayout *usb3Vision(quint8 uSubtype);

// Field name and value take 25 columns, the value aligned to the right.
constexpr int kFieldWidth = 25;

// The text a note adds after the value (returned) or below it (listBelow),
// for the notes that need nothing but the value (cusbfulldumpnotes.cpp).
QString fixedNote(Note eNote, quint32 v, QStringList &listBelow);

// Names of the standards' codes; empty when the code has none.
const char *audioControlSubtype(quint8 uSubtype);
const char *audioStreamingSubtype(quint8 uSubtype);
const char *formatTagName(quint16 uTag);
const char *processTypeName(quint16 uType);
const char *channelName(int nBit); // USB Audio 1.0 spatial locations, bits 0..11
const char *uasPipeName(quint8 uPipeId);

} // namespace UsbDump

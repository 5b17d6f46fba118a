// Field tables of the standard (USB 2.0 chapter 9), HID 1.11 and USB Audio
// 1.0 descriptors, and the audio name tables.
#include "cusbdescriptortables.h"

#include <array>

const char *CUsbNameTable::find(quint32 uCode) const
{
    for (int i = 0; i < nCount; ++i)
        if (pEntries[i].uCode == uCode)
            return pEntries[i].pName;
    return nullptr;
}

namespace UsbTables {

namespace {
using K = EUsbFieldKind;

// USB Audio 1.0 terminal types (Universal Serial Bus Device Class Definition
// for Terminal Types 1.0).
const CUsbNameEntry kTerminalTypes[] = {
    {0x0100, "USB Undefined"}, {0x0101, "USB streaming"}, {0x01FF, "USB vendor specific"},
    {0x0200, "Input Undefined"}, {0x0201, "Microphone"}, {0x0202, "Desktop microphone"},
    {0x0203, "Personal microphone"}, {0x0204, "Omni-directional microphone"}, {0x0205, "Microphone array"},
    {0x0206, "Processing microphone array"},
    {0x0300, "Output Undefined"}, {0x0301, "Speaker"}, {0x0302, "Headphones"},
    {0x0303, "Head Mounted Display Audio"}, {0x0304, "Desktop speaker"}, {0x0305, "Room speaker"},
    {0x0306, "Communication speaker"}, {0x0307, "Low frequency effects speaker"},
    {0x0400, "Bi-directional Undefined"}, {0x0401, "Handset"}, {0x0402, "Headset"},
    {0x0403, "Speakerphone, no echo reduction"}, {0x0404, "Echo-suppressing speakerphone"},
    {0x0405, "Echo-canceling speakerphone"},
    {0x0500, "Telephony Undefined"}, {0x0501, "Phone line"}, {0x0502, "Telephone"}, {0x0503, "Down Line Phone"},
    {0x0600, "External Undefined"}, {0x0601, "Analog connector"}, {0x0602, "Digital audio interface"},
    {0x0603, "Line connector"}, {0x0604, "Legacy audio connector"}, {0x0605, "S/PDIF interface"},
    {0x0606, "1394 DA stream"}, {0x0607, "1394 DV stream soundtrack"},
    {0x0700, "Embedded Undefined"}, {0x0701, "Level Calibration Noise Source"}, {0x0702, "Equalization Noise"},
    {0x0703, "CD player"}, {0x0704, "DAT"}, {0x0705, "DCC"}, {0x0706, "MiniDisk"}, {0x0707, "Analog Tape"},
    {0x0708, "Phonograph"}, {0x0709, "VCR Audio"}, {0x070A, "Video Disc Audio"}, {0x070B, "DVD Audio"},
    {0x070C, "TV Tuner Audio"}, {0x070D, "Satellite Receiver Audio"}, {0x070E, "Cable Tuner Audio"},
    {0x070F, "DSS Audio"}, {0x0710, "Radio Receiver"}, {0x0711, "Radio Transmitter"},
    {0x0712, "Multi-track Recorder"}, {0x0713, "Synthesizer"},
};

// USB Audio 1.0 format tags (Device Class Definition for Audio Data Formats 1.0).
const CUsbNameEntry kFormatTags[] = {
    {0x0000, "TYPE_I_UNDEFINED"}, {0x0001, "PCM"}, {0x0002, "PCM8"}, {0x0003, "IEEE_FLOAT"},
    {0x0004, "ALAW"}, {0x0005, "MULAW"},
    {0x1000, "TYPE_II_UNDEFINED"}, {0x1001, "MPEG"}, {0x1002, "AC-3"},
    {0x2000, "TYPE_III_UNDEFINED"}, {0x2001, "IEC1937_AC-3"}, {0x2002, "IEC1937_MPEG-1_Layer1"},
    {0x2003, "IEC1937_MPEG-1_Layer2/3 or IEC1937_MPEG-2_NOEXT"}, {0x2004, "IEC1937_MPEG-2_EXT"},
    {0x2005, "IEC1937_MPEG-2_Layer1_LS"}, {0x2006, "IEC1937_MPEG-2_Layer2/3_LS"},
};

const CUsbNameEntry kProcessTypes[] = {
    {0, "Undefined Process"}, {1, "Up / Down Mix Process"}, {2, "Dolby Prologic Process"},
    {3, "3D-Stereo Extender Process"}, {4, "Reverberation Process"}, {5, "Chorus Process"},
    {6, "Dynamic Range Compressor Process"},
};

template <int N>
constexpr CUsbDescriptorDef def(const char *pHeading, const CUsbFieldDef (&fields)[N])
{
    return {pHeading, fields, N};
}

template <size_t N>
constexpr CUsbDescriptorDef def(const char *pHeading, const std::array<CUsbFieldDef, N> &fields)
{
    return {pHeading, fields.data(), int(N)};
}

// The three bytes every class-specific descriptor starts with.
constexpr CUsbFieldDef kCommonThree[] = {{"bLength:", 1, K::Hex}, {"bDescriptorType:", 1, K::Hex},
                                         {"bDescriptorSubtype:", 1, K::Hex}};
constexpr size_t kCommonCount = sizeof(kCommonThree) / sizeof(kCommonThree[0]);

// A class-specific descriptor: the three common fields, then its own. Field
// references (nRef) count from the first common field.
template <size_t N>
constexpr std::array<CUsbFieldDef, kCommonCount + N> classSpecific(const CUsbFieldDef (&own)[N])
{
    std::array<CUsbFieldDef, kCommonCount + N> fields{};
    for (size_t i = 0; i < kCommonCount; ++i)
        fields[i] = kCommonThree[i];
    for (size_t i = 0; i < N; ++i)
        fields[kCommonCount + i] = own[i];
    return fields;
}

const CUsbFieldDef kDevice[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bcdUSB:", 2, K::Hex}, {"bDeviceClass:", 1, K::Hex}, {"bDeviceSubClass:", 1, K::Hex},
    {"bDeviceProtocol:", 1, K::Hex}, {"bMaxPacketSize0:", 1, K::Hex}, {"idVendor:", 2, K::VendorId},
    {"idProduct:", 2, K::Hex}, {"bcdDevice:", 2, K::Hex}, {"iManufacturer:", 1, K::StringIndex},
    {"iProduct:", 1, K::StringIndex}, {"iSerialNumber:", 1, K::StringIndex}, {"bNumConfigurations:", 1, K::Hex},
};

const CUsbFieldDef kConfiguration[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"wTotalLength:", 2, K::Hex}, {"bNumInterfaces:", 1, K::Hex}, {"bConfigurationValue:", 1, K::Hex},
    {"iConfiguration:", 1, K::StringIndex}, {"bmAttributes:", 1, K::PowerAttr}, {"MaxPower:", 1, K::MaxPower},
};

const CUsbFieldDef kInterface9[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bInterfaceNumber:", 1, K::Hex}, {"bAlternateSetting:", 1, K::Hex}, {"bNumEndpoints:", 1, K::Hex},
    {"bInterfaceClass:", 1, K::ClassName}, {"bInterfaceSubClass:", 1, K::SubClassName, 5},
    {"bInterfaceProtocol:", 1, K::Hex}, {"iInterface:", 1, K::StringIndex},
};

const CUsbFieldDef kInterface12[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bInterfaceNumber:", 1, K::Hex}, {"bAlternateSetting:", 1, K::Hex}, {"bNumEndpoints:", 1, K::Hex},
    {"bInterfaceClass:", 1, K::ClassName}, {"bInterfaceSubClass:", 1, K::SubClassName, 5},
    {"bInterfaceProtocol:", 1, K::Hex}, {"iInterface:", 1, K::StringIndex}, {"wNumClasses:", 2, K::Hex},
};

const CUsbFieldDef kEndpoint7[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bEndpointAddress:", 1, K::EndpointAddr}, {"Transfer Type:", 1, K::TransferType},
    {"wMaxPacketSize:", 2, K::HexDecimal}, {"bInterval:", 1, K::Hex},
};

const CUsbFieldDef kEndpoint10[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bEndpointAddress:", 1, K::EndpointAddr}, {"Transfer Type:", 1, K::TransferType},
    {"wMaxPacketSize:", 2, K::HexDecimal}, {"wInterval:", 2, K::Hex}, {"bSyncAddress:", 1, K::Hex},
};

const CUsbFieldDef kHid[] = {
    {"", 1, K::Skip}, {"", 1, K::Skip},
    {"bcdHID:", 2, K::Hex}, {"bCountryCode:", 1, K::Hex}, {"bNumDescriptors:", 1, K::Hex},
    {"", 3, K::HidList, 4},
};

constexpr auto kAcHeader = classSpecific({{"bcdADC:", 2, K::Hex}, {"wTotalLength:", 2, K::Hex},
    {"bInCollection:", 1, K::Hex}, {"bInCollection[%1]:", 1, K::Array, 5}});

constexpr auto kAcInputTerminal = classSpecific({
    {"bTerminalID:", 1, K::Hex}, {"wTerminalType:", 2, K::HexName, -1, 0, &terminalTypes},
    {"bAssocTerminal:", 1, K::Hex}, {"bNrChannels:", 1, K::Hex}, {"wChannelConfig:", 2, K::Hex},
    {"iChannelNames:", 1, K::StringIndex}, {"iTerminal:", 1, K::StringIndex}});

constexpr auto kAcOutputTerminal = classSpecific({
    {"bTerminalID:", 1, K::Hex}, {"wTerminalType:", 2, K::HexName, -1, 0, &terminalTypes},
    {"bAssocTerminal:", 1, K::Hex}, {"bSoruceID:", 1, K::Hex}, {"iTerminal:", 1, K::StringIndex}});

constexpr auto kAcMixerUnit = classSpecific({{"bUnitID:", 1, K::Hex}, {"bNrInPins:", 1, K::Hex},
    {"baSourceID[%1]:", 1, K::Array, 4}, {"bNrChannels:", 1, K::Hex}, {"wChannelConfig:", 2, K::Hex},
    {"iChannelNames:", 1, K::StringIndex}, {"bmControls:", 0, K::RestValue, -1, 1}, {"iMixer:", 1, K::StringIndex}});

constexpr auto kAcSelectorUnit = classSpecific({{"bUnitID:", 1, K::Hex}, {"bNrInPins:", 1, K::Hex},
    {"baSourceID[%1]:", 1, K::Array, 4}, {"iSelector:", 1, K::StringIndex}});

constexpr auto kAcFeatureUnit = classSpecific({
    {"bUnitID:", 1, K::Hex}, {"bSourceID:", 1, K::Hex}, {"bControlSize:", 1, K::Hex},
    {"bmaControls[%1]:", 0, K::SizedArray, 5, 1}, {"iFeature:", 1, K::StringIndex}});

constexpr auto kAcProcessingUnit = classSpecific({
    {"bUnitID:", 1, K::Hex}, {"wProcessType:", 2, K::HexName, -1, 0, &processTypes},
    {"bNrInPins:", 1, K::Hex}, {"baSourceID[%1]:", 1, K::Array, 5}, {"bNrChannels:", 1, K::Hex},
    {"wChannelConfig:", 2, K::Hex}, {"iChannelNames:", 1, K::StringIndex}, {"bControlSize:", 1, K::Hex},
    {"bmControls:", 0, K::SizedValue, 10}, {"iProcessing:", 1, K::StringIndex},
    {"Process Specific:", 0, K::RestBytes}});

constexpr auto kAcExtensionUnit = classSpecific({{"bUnitID:", 1, K::Hex}, {"wExtensionCode:", 2, K::Hex},
    {"bNrInPins:", 1, K::Hex}, {"baSourceID[%1]:", 1, K::Array, 5}, {"bNrChannels:", 1, K::Hex},
    {"wChannelConfig:", 2, K::Hex}, {"iChannelNames:", 1, K::StringIndex}, {"bControlSize:", 1, K::Hex},
    {"bmControls:", 0, K::SizedValue, 10}, {"iExtension:", 1, K::StringIndex}});

constexpr auto kAsGeneral = classSpecific({{"bTerminalLink:", 1, K::Hex}, {"bDelay:", 1, K::Hex},
    {"wFormatTag:", 2, K::HexName, -1, 0, &formatTags}});

// Type I and III: channels, subframe size, resolution, then the frequencies.
constexpr auto kAsFormatTypeI = classSpecific({
    {"bFormatType:", 1, K::Hex}, {"bNrChannels:", 1, K::Hex}, {"bSubframeSize:", 1, K::Hex},
    {"bBitResolution:", 1, K::Hex}, {"bSamFreqType:", 1, K::Hex}});
constexpr auto kAsFormatTypeII = classSpecific({
    {"bFormatType:", 1, K::Hex}, {"wMaxBitRate:", 2, K::Hex}, {"wSamplesPerFrame:", 2, K::Hex},
    {"bSamFreqType:", 1, K::Hex}});
constexpr auto kAsFormatTypeOther = classSpecific({{"bFormatType:", 1, K::Hex}});

constexpr auto kAsDataEndpoint = classSpecific({
    {"bmAttributes:", 1, K::Hex}, {"bLockDelayUnits:", 1, K::Hex}, {"wLockDelay:", 2, K::Hex}});

} // namespace

const CUsbNameTable terminalTypes = {kTerminalTypes, int(sizeof kTerminalTypes / sizeof kTerminalTypes[0])};
const CUsbNameTable formatTags = {kFormatTags, int(sizeof kFormatTags / sizeof kFormatTags[0])};
const CUsbNameTable processTypes = {kProcessTypes, int(sizeof kProcessTypes / sizeof kProcessTypes[0])};

const CUsbDescriptorDef device = def("Device Descriptor:", kDevice);
const CUsbDescriptorDef configuration = def("Configuration Descriptor:", kConfiguration);
const CUsbDescriptorDef interface9 = def("Interface Descriptor:", kInterface9);
const CUsbDescriptorDef interface12 = def("Interface Descriptor:", kInterface12);
const CUsbDescriptorDef endpoint7 = def("Endpoint Descriptor:", kEndpoint7);
const CUsbDescriptorDef endpoint10 = def("Endpoint Descriptor:", kEndpoint10);
const CUsbDescriptorDef hid = def("HID Descriptor:", kHid);
const CUsbDescriptorDef acHeader = def("Audio Control Interface Header Descriptor:", kAcHeader);
const CUsbDescriptorDef acInputTerminal = def("Audio Control Input Terminal Descriptor:", kAcInputTerminal);
const CUsbDescriptorDef acOutputTerminal = def("Audio Control Output Terminal Descriptor:", kAcOutputTerminal);
const CUsbDescriptorDef acMixerUnit = def("Audio Control Mixer Unit Descriptor:", kAcMixerUnit);
const CUsbDescriptorDef acSelectorUnit = def("Audio Control Selector Unit Descriptor:", kAcSelectorUnit);
const CUsbDescriptorDef acFeatureUnit = def("Audio Control Feature Unit Descriptor:", kAcFeatureUnit);
const CUsbDescriptorDef acProcessingUnit = def("Audio Control Processing Unit Descriptor:", kAcProcessingUnit);
const CUsbDescriptorDef acExtensionUnit = def("Audio Control Extension Unit Descriptor:", kAcExtensionUnit);
const CUsbDescriptorDef asGeneral = def("Audio Streaming Class Specific Interface Descriptor:", kAsGeneral);
const CUsbDescriptorDef asFormatTypeI = def("Audio Streaming Format Type Descriptor:", kAsFormatTypeI);
const CUsbDescriptorDef asFormatTypeII = def("Audio Streaming Format Type Descriptor:", kAsFormatTypeII);
const CUsbDescriptorDef asFormatTypeOther = def("Audio Streaming Format Type Descriptor:", kAsFormatTypeOther);
const CUsbDescriptorDef asFormatSpecific = def("Audio Streaming Format Specific Descriptor:", kCommonThree);
const CUsbDescriptorDef asDataEndpoint =
    def("Audio Streaming Class Specific Audio Data Endpoint Descriptor:", kAsDataEndpoint);

} // namespace UsbTables

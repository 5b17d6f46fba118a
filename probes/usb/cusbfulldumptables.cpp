#include "cusbfulldumptables.h"

namespace UsbDump {

namespace {

#define VX_LAYOUT(heading, fields, minimum)                                                                            \
    {                                                                                                                  \
        heading, fields, int(sizeof(fields) / sizeof(fields[0])), minimum                                              \
    }

const CField kDeviceFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bcdUSB", 2, Fmt::Bcd},
    {"bDeviceClass", 1, Fmt::Dec, Note::Class},
    {"bDeviceSubClass", 1, Fmt::Dec, Note::SubClass},
    {"bDeviceProtocol", 1, Fmt::Dec, Note::Protocol},
    {"bMaxPacketSize0", 1, Fmt::Dec},
    {"idVendor", 2, Fmt::Hex, Note::Vendor},
    {"idProduct", 2, Fmt::Hex, Note::Product},
    {"bcdDevice", 2, Fmt::Bcd},
    {"iManufacturer", 1, Fmt::Str},
    {"iProduct", 1, Fmt::Str},
    {"iSerial", 1, Fmt::Str},
    {"bNumConfigurations", 1, Fmt::Dec},
};

const CField kConfigurationFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"wTotalLength", 2, Fmt::Hex},
    {"bNumInterfaces", 1, Fmt::Dec},
    {"bConfigurationValue", 1, Fmt::Dec},
    {"iConfiguration", 1, Fmt::Str},
    {"bmAttributes", 1, Fmt::Hex, Note::ConfigAttributes},
    {"MaxPower", 1, Fmt::MilliAmp},
};

const CField kInterfaceFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bInterfaceNumber", 1, Fmt::Dec},
    {"bAlternateSetting", 1, Fmt::Dec},
    {"bNumEndpoints", 1, Fmt::Dec},
    {"bInterfaceClass", 1, Fmt::Dec, Note::Class},
    {"bInterfaceSubClass", 1, Fmt::Dec, Note::SubClass},
    {"bInterfaceProtocol", 1, Fmt::Dec, Note::Protocol},
    {"iInterface", 1, Fmt::Str},
};

// The 9-byte form of USB Audio 1.0 adds bRefresh and bSynchAddress.
const CField kEndpointFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bEndpointAddress", 1, Fmt::Hex, Note::EndpointAddress},
    {"bmAttributes", 1, Fmt::Dec, Note::EndpointAttributes},
    {"wMaxPacketSize", 2, Fmt::Hex, Note::MaxPacketSize},
    {"bInterval", 1, Fmt::Dec},
    {"bRefresh", 1, Fmt::Dec},
    {"bSynchAddress", 1, Fmt::Dec},
};

const CField kInterfaceAssociationFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bFirstInterface", 1, Fmt::Dec},
    {"bInterfaceCount", 1, Fmt::Dec},
    {"bFunctionClass", 1, Fmt::Dec, Note::Class},
    {"bFunctionSubClass", 1, Fmt::Dec, Note::SubClass},
    {"bFunctionProtocol", 1, Fmt::Dec, Note::Protocol},
    {"iFunction", 1, Fmt::Str},
};

const CField kHidFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bcdHID", 2, Fmt::Bcd},
    {"bCountryCode", 1, Fmt::Dec, Note::HidCountry},
    {"bNumDescriptors", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec, Note::HidType, Rep::CountedPair},
    {"wDescriptorLength", 2, Fmt::Dec},
};

const CField kBosFields[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"wTotalLength", 2, Fmt::Hex},
    {"bNumDeviceCaps", 1, Fmt::Dec},
};

// USB Audio 1.0, Audio Control (section 4.3.2).
#define VX_AC_COMMON                                                                                                   \
    {"bLength", 1, Fmt::Dec}, {"bDescriptorType", 1, Fmt::Dec},                                                        \
    {                                                                                                                  \
        "bDescriptorSubtype", 1, Fmt::Dec, Note::AcSubtype                                                             \
    }

const CField kAcHeader[] = {
    VX_AC_COMMON,
    {"bcdADC", 2, Fmt::Bcd},
    {"wTotalLength", 2, Fmt::Hex},
    {"bInCollection", 1, Fmt::Dec},
    {"baInterfaceNr(%d)", 1, Fmt::Dec, Note::None, Rep::Counted},
};
const CField kAcInputTerminal[] = {
    VX_AC_COMMON,
    {"bTerminalID", 1, Fmt::Dec},
    {"wTerminalType", 2, Fmt::Hex, Note::TerminalType},
    {"bAssocTerminal", 1, Fmt::Dec},
    {"bNrChannels", 1, Fmt::Dec},
    {"wChannelConfig", 2, Fmt::Hex, Note::ChannelConfig},
    {"iChannelNames", 1, Fmt::Str},
    {"iTerminal", 1, Fmt::Str},
};
const CField kAcOutputTerminal[] = {
    VX_AC_COMMON,
    {"bTerminalID", 1, Fmt::Dec},
    {"wTerminalType", 2, Fmt::Hex, Note::TerminalType},
    {"bAssocTerminal", 1, Fmt::Dec},
    {"bSourceID", 1, Fmt::Dec},
    {"iTerminal", 1, Fmt::Str},
};
const CField kAcMixer[] = {
    VX_AC_COMMON,
    {"bUnitID", 1, Fmt::Dec},
    {"bNrInPins", 1, Fmt::Dec},
    {"baSourceID(%d)", 1, Fmt::Dec, Note::None, Rep::Counted},
    {"bNrChannels", 1, Fmt::Dec},
    {"wChannelConfig", 2, Fmt::Hex, Note::ChannelConfig},
    {"iChannelNames", 1, Fmt::Str},
    {"bmControls(%d)", 1, Fmt::Hex, Note::None, Rep::Rest, 1},
    {"iMixer", 1, Fmt::Str},
};
const CField kAcSelector[] = {
    VX_AC_COMMON,
    {"bUnitID", 1, Fmt::Dec},
    {"bNrInPins", 1, Fmt::Dec},
    {"baSourceID(%d)", 1, Fmt::Dec, Note::None, Rep::Counted},
    {"iSelector", 1, Fmt::Str},
};
const CField kAcFeature[] = {
    VX_AC_COMMON,
    {"bUnitID", 1, Fmt::Dec},
    {"bSourceID", 1, Fmt::Dec},
    {"bControlSize", 1, Fmt::Dec, Note::ElementSize},
    {"bmaControls(%d)", 0, Fmt::Hex, Note::FeatureControls, Rep::Rest, 1},
    {"iFeature", 1, Fmt::Str},
};
const CField kAcProcessing[] = {
    VX_AC_COMMON,
    {"bUnitID", 1, Fmt::Dec},
    {"wProcessType", 2, Fmt::Hex, Note::ProcessType},
    {"bNrInPins", 1, Fmt::Dec},
    {"baSourceID(%d)", 1, Fmt::Dec, Note::None, Rep::Counted},
    {"bNrChannels", 1, Fmt::Dec},
    {"wChannelConfig", 2, Fmt::Hex, Note::ChannelConfig},
    {"iChannelNames", 1, Fmt::Str},
    {"bControlSize", 1, Fmt::Dec, Note::ElementSize},
    {"bmControls", 0, Fmt::Hex},
    {"iProcessing", 1, Fmt::Str},
    {"bProcessSpecific(%d)", 1, Fmt::Hex, Note::None, Rep::Rest},
};
const CField kAcExtension[] = {
    VX_AC_COMMON,
    {"bUnitID", 1, Fmt::Dec},
    {"wExtensionCode", 2, Fmt::Hex},
    {"bNrInPins", 1, Fmt::Dec},
    {"baSourceID(%d)", 1, Fmt::Dec, Note::None, Rep::Counted},
    {"bNrChannels", 1, Fmt::Dec},
    {"wChannelConfig", 2, Fmt::Hex, Note::ChannelConfig},
    {"iChannelNames", 1, Fmt::Str},
    {"bControlSize", 1, Fmt::Dec, Note::ElementSize},
    {"bmControls", 0, Fmt::Hex},
    {"iExtension", 1, Fmt::Str},
};

// USB Audio 1.0, Audio Streaming (section 4.5.2) and the Audio Data Formats
// document (format type I, II and III descriptors).
#define VX_AS_COMMON                                                                                                   \
    {"bLength", 1, Fmt::Dec}, {"bDescriptorType", 1, Fmt::Dec},                                                        \
    {                                                                                                                  \
        "bDescriptorSubtype", 1, Fmt::Dec, Note::AsSubtype                                                             \
    }

const CField kAsGeneral[] = {
    VX_AS_COMMON,
    {"bTerminalLink", 1, Fmt::Dec},
    {"bDelay", 1, Fmt::Dec, Note::Frames},
    {"wFormatTag", 2, Fmt::Hex, Note::FormatTag},
};
const CField kAsFormatTypeI[] = {
    VX_AS_COMMON,
    {"bFormatType", 1, Fmt::Dec, Note::FormatType},
    {"bNrChannels", 1, Fmt::Dec},
    {"bSubframeSize", 1, Fmt::Dec},
    {"bBitResolution", 1, Fmt::Dec},
    {"bSamFreqType", 1, Fmt::Dec, Note::SamFreqType},
    {"tSamFreq[%2d]", 3, Fmt::Dec, Note::None, Rep::SamFreqs},
};
const CField kAsFormatTypeII[] = {
    VX_AS_COMMON,
    {"bFormatType", 1, Fmt::Dec, Note::FormatType},
    {"wMaxBitRate", 2, Fmt::Dec},
    {"wSamplesPerFrame", 2, Fmt::Dec},
    {"bSamFreqType", 1, Fmt::Dec, Note::SamFreqType},
    {"tSamFreq[%2d]", 3, Fmt::Dec, Note::None, Rep::SamFreqs},
};
const CField kAsFormatSpecific[] = {
    VX_AS_COMMON,
    {"wFormatTag", 2, Fmt::Hex, Note::FormatTag},
    {"bmFormatSpecific(%d)", 1, Fmt::Hex, Note::None, Rep::Rest},
};
const CField kAsEndpoint[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bDescriptorSubtype", 1, Fmt::Dec, Note::AsEndpointSubtype},
    {"bmAttributes", 1, Fmt::Hex, Note::AsEndpointAttributes},
    {"bLockDelayUnits", 1, Fmt::Dec, Note::LockDelayUnits},
    {"wLockDelay", 2, Fmt::Hex},
};

// Device capabilities (USB 3.2 section 9.6.2).
#define VX_CAP_COMMON                                                                                                  \
    {"bLength", 1, Fmt::Dec}, {"bDescriptorType", 1, Fmt::Dec},                                                        \
    {                                                                                                                  \
        "bDevCapabilityType", 1, Fmt::Dec                                                                              \
    }

const CField kCapUsb2Extension[] = {
    VX_CAP_COMMON,
    {"bmAttributes", 4, Fmt::Hex, Note::Usb2ExtAttributes},
};
const CField kCapSuperSpeed[] = {
    VX_CAP_COMMON,
    {"bmAttributes", 1, Fmt::Hex, Note::SsAttributes},
    {"wSpeedsSupported", 2, Fmt::Hex, Note::SsSpeeds},
    {"bFunctionalitySupport", 1, Fmt::Dec, Note::SsFunctionality},
    {"bU1DevExitLat", 1, Fmt::Dec, Note::MicroSeconds},
    {"bU2DevExitLat", 2, Fmt::Dec, Note::MicroSeconds},
};
const CField kCapContainerId[] = {
    VX_CAP_COMMON,
    {"bReserved", 1, Fmt::Dec},
    {"ContainerID", 16, Fmt::Uuid},
};
const CField kCapPlatform[] = {
    VX_CAP_COMMON,
    {"bReserved", 1, Fmt::Dec},
    {"PlatformCapabilityUUID", 16, Fmt::Uuid},
    {"CapabilityData(%d)", 1, Fmt::Hex, Note::None, Rep::Rest},
};
const CField kCapSuperSpeedPlus[] = {
    VX_CAP_COMMON,
    {"bReserved", 1, Fmt::Dec},
    {"bmAttributes", 4, Fmt::Hex},
    {"wFunctionalitySupport", 2, Fmt::Hex},
    {"wReserved", 2, Fmt::Hex},
    {"bmSublinkSpeedAttr(%d)", 4, Fmt::Hex, Note::None, Rep::Rest},
};

// USB3 Vision device info descriptor (class-specific interface descriptor
// of the control interface, subtype 1).
const CField kU3vDeviceInfo[] = {
    {"bLength", 1, Fmt::Dec},
    {"bDescriptorType", 1, Fmt::Dec},
    {"bDescriptorSubtype", 1, Fmt::Dec},
    {"bGenCPVersion", 4, Fmt::Hex, Note::U3vVersion},
    {"bU3VVersion", 4, Fmt::Hex, Note::U3vVersion},
    {"iDeviceGUID", 1, Fmt::Str},
    {"iVendorName", 1, Fmt::Str},
    {"iModelName", 1, Fmt::Str},
    {"iFamilyName", 1, Fmt::Str},
    {"iDeviceVersion", 1, Fmt::Str},
    {"iManufacturerInfo", 1, Fmt::Str},
    {"iSerialNumber", 1, Fmt::Str},
    {"iUserDefinedName", 1, Fmt::Str},
    {"bmSpeedSupport", 1, Fmt::Hex, Note::U3vSpeeds},
};

const char *const kAcHeading = "AudioControl Interface Descriptor:";
const char *const kAsHeading = "AudioStreaming Interface Descriptor:";

} // namespace

const CLayout kDevice = VX_LAYOUT("Device Descriptor:", kDeviceFields, 18);
const CLayout kConfiguration = VX_LAYOUT("Configuration Descriptor:", kConfigurationFields, 9);
const CLayout kInterface = VX_LAYOUT("Interface Descriptor:", kInterfaceFields, 9);
const CLayout kEndpoint = VX_LAYOUT("Endpoint Descriptor:", kEndpointFields, 7);
const CLayout kInterfaceAssociation = VX_LAYOUT("Interface Association:", kInterfaceAssociationFields, 8);
const CLayout kHid = VX_LAYOUT("HID Device Descriptor:", kHidFields, 6);
const CLayout kBos = VX_LAYOUT("Binary Object Store Descriptor:", kBosFields, 5);
const CLayout kAudioEndpoint = VX_LAYOUT("AudioStreaming Endpoint Descriptor:", kAsEndpoint, 7);

const CLayout *audioControl(quint8 uSubtype)
{
    static const CLayout kLayouts[] = {
        VX_LAYOUT(kAcHeading, kAcHeader, 8),
        VX_LAYOUT(kAcHeading, kAcInputTerminal, 12),
        VX_LAYOUT(kAcHeading, kAcOutputTerminal, 9),
        VX_LAYOUT(kAcHeading, kAcMixer, 10),
        VX_LAYOUT(kAcHeading, kAcSelector, 6),
        VX_LAYOUT(kAcHeading, kAcFeature, 7),
        VX_LAYOUT(kAcHeading, kAcProcessing, 13),
        VX_LAYOUT(kAcHeading, kAcExtension, 13),
    };
    return uSubtype >= 1 && uSubtype <= 8 ? &kLayouts[uSubtype - 1] : nullptr;
}

const CLayout *audioStreaming(quint8 uSubtype, quint8 uFormatType)
{
    static const CLayout kGeneral = VX_LAYOUT(kAsHeading, kAsGeneral, 7);
    static const CLayout kTypeI = VX_LAYOUT(kAsHeading, kAsFormatTypeI, 8);
    static const CLayout kTypeII = VX_LAYOUT(kAsHeading, kAsFormatTypeII, 9);
    static const CLayout kSpecific = VX_LAYOUT(kAsHeading, kAsFormatSpecific, 5);
    switch (uSubtype) {
    case 1:
        return &kGeneral;
    case 2:
        return uFormatType == 2 ? &kTypeII : &kTypeI;
    case 3:
        return &kSpecific;
    default:
        return nullptr;
    }
}

const CLayout *deviceCapability(quint8 uType)
{
    static const CLayout kUsb2 = VX_LAYOUT("USB 2.0 Extension Device Capability:", kCapUsb2Extension, 7);
    static const CLayout kSs = VX_LAYOUT("SuperSpeed USB Device Capability:", kCapSuperSpeed, 10);
    static const CLayout kContainer = VX_LAYOUT("Container ID Device Capability:", kCapContainerId, 20);
    static const CLayout kPlatform = VX_LAYOUT("Platform Device Capability:", kCapPlatform, 20);
    static const CLayout kSsp = VX_LAYOUT("SuperSpeedPlus USB Device Capability:", kCapSuperSpeedPlus, 12);
    switch (uType) {
    case 2:
        return &kUsb2;
    case 3:
        return &kSs;
    case 4:
        return &kContainer;
    case 5:
        return &kPlatform;
    case 0x0A:
        return &kSsp;
    default:
        return nullptr;
    }
}

const CLayout *usb3Vision(quint8 uSubtype)
{
    static const CLayout kInfo = VX_LAYOUT("USB3 Vision Device Info Descriptor:", kU3vDeviceInfo, 20);
    return uSubtype == 1 ? &kInfo : nullptr;
}

const char *audioControlSubtype(quint8 uSubtype)
{
    static const char *const kNames[] = {"HEADER", "INPUT_TERMINAL", "OUTPUT_TERMINAL", "MIXER_UNIT", "SELECTOR_UNIT",
        "FEATURE_UNIT", "PROCESSING_UNIT", "EXTENSION_UNIT"};
    return uSubtype >= 1 && uSubtype <= 8 ? kNames[uSubtype - 1] : "";
}

const char *audioStreamingSubtype(quint8 uSubtype)
{
    static const char *const kNames[] = {"AS_GENERAL", "FORMAT_TYPE", "FORMAT_SPECIFIC"};
    return uSubtype >= 1 && uSubtype <= 3 ? kNames[uSubtype - 1] : "";
}

const char *formatTagName(quint16 uTag)
{
    switch (uTag) {
    case 0x0000:
        return "TYPE_I_UNDEFINED";
    case 0x0001:
        return "PCM";
    case 0x0002:
        return "PCM8";
    case 0x0003:
        return "IEEE_FLOAT";
    case 0x0004:
        return "ALAW";
    case 0x0005:
        return "MULAW";
    case 0x1000:
        return "TYPE_II_UNDEFINED";
    case 0x1001:
        return "MPEG";
    case 0x1002:
        return "AC-3";
    case 0x2000:
        return "TYPE_III_UNDEFINED";
    case 0x2001:
        return "IEC1937_AC-3";
    case 0x2002:
        return "IEC1937_MPEG-1_Layer1";
    case 0x2003:
        return "IEC1937_MPEG-Layer2/3";
    case 0x2004:
        return "IEC1937_MPEG-2_EXT";
    case 0x2005:
        return "IEC1937_MPEG-2_Layer1_LS";
    case 0x2006:
        return "IEC1937_MPEG-2_Layer2/3_LS";
    default:
        return "";
    }
}

const char *processTypeName(quint16 uType)
{
    static const char *const kNames[] = {"Undefined", "Up/Down-mix", "Dolby Prologic", "3D-Stereo Extender",
        "Reverberation", "Chorus", "Dynamic Range Compressor"};
    return uType <= 6 ? kNames[uType] : "";
}

const char *channelName(int nBit)
{
    static const char *const kNames[] = {"Left Front (L)", "Right Front (R)", "Center Front (C)",
        "Low Frequency Enhancement (LFE)", "Left Surround (LS)", "Right Surround (RS)", "Left of Center (LC)",
        "Right of Center (RC)", "Surround (S)", "Side Left (SL)", "Side Right (SR)", "Top (T)"};
    return nBit >= 0 && nBit < 12 ? kNames[nBit] : "";
}

const char *uasPipeName(quint8 uPipeId)
{
    switch (uPipeId) {
    case 1:
        return "Command pipe";
    case 2:
        return "Status pipe";
    case 3:
        return "Data-in pipe";
    case 4:
        return "Data-out pipe";
    default:
        return "";
    }
}

} // namespace UsbDump

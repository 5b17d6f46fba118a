#pragma once

#include <QObject>

// The vocabularies every layer shares: item ids (one bit each, so a set of
// items is a mask), groups and the grade of an outcome.
namespace VxItems {
Q_NAMESPACE

enum ItemId : quint32 {
    SdkFiles = 1,
    EnvVariables = 2,
    GigeDriver = 4,
    Usb3Driver = 8,
    GigeDriverInNetwork = 16, // named, never probed or shown
    UsbControllerDriver = 32,
    DriverCount = 64,         // named, never probed or shown
    LineRate = 128,
    JumboFrame = 256,
    UsbControllerInfo = 512,
    Firewall = 1024,
    SystemInfo = 2048,
    UsbBufferMemory = 4096,    // usbfs buffer memory (Linux), USB selective suspend (Windows)
    ReceiveBuffers = 8192,     // socket and adapter receive buffers
    ReversePathFilter = 16384, // strict reverse-path filtering (Linux)
    GenTLProducers = 32768,    // the GenTL producers on the GenTL paths
    UsbLink = 65536, // USB3 Vision cameras at SuperSpeed, not sharing a host controller
};
Q_ENUM_NS(ItemId)

enum Group : int {
    SdkGroup = 1,
    DriverGroup = 2,
    SystemGroup = 4,
    CameraHostTuningGroup = 8, // whether a working camera loses frames on this PC
};
Q_ENUM_NS(Group)

// The texts a row's action button can show (see buttonSourceText).
enum ButtonText : int {
    BtnNormal = 0,
    BtnCheckAndClear,
    BtnCheckAndUpgrade,
    BtnViewSolution,
    BtnRepair,
    BtnInstallDriver,
    BtnCheckAndRepair,
    BtnCheck,
    BtnDisabled,
    BtnEnabled,
    BtnInstalled,
};

// How bad an outcome is. The result rows show it as an icon (normal, medium,
// serious) and the page counts it under "Normal", "Serious" and "Fatal".
enum Severity : int {
    SeverityNormal = 0,
    SeverityMedium = 1,
    SeveritySerious = 2,
};
constexpr int kSeverityCount = 3;

} // namespace VxItems

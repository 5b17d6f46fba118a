#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

struct UsbRootItem; // the USB controller tree, defined by the probe library's C header

// One diagnosis item's result. Probes fill it, the operate thread owns it and
// the pages and dialogs read it.
class CDetectInfo
{
public:
    CDetectInfo() = default;
    virtual ~CDetectInfo();

    int nItem = 1;   // item id (one bit of the item mask)
    int bNormal = 1; // 1: no exception found
    // Why the last repair of the item did not happen (a VxRepairStatus value,
    // 0 when it did or none ran); only set where such an item stays
    // exceptional, and cleared by the next detection of the item.
    int nRepairStatus = 0;
};

// Item 1: stray SDK libraries in the system library folders.
class CSDKPathDetectInfo : public CDetectInfo
{
public:
    ~CSDKPathDetectInfo() override;
    QMap<QString, QStringList> foundFiles; // file name -> directories it was found in
};

// Item 2: the SDK's environment variables.
class CEnvDetectInfo : public CDetectInfo
{
public:
    ~CEnvDetectInfo() override;
    QMap<QString, QString> currentValues;     // variable -> value seen at check time
    QMap<QString, QStringList> missingValues; // variable -> values the repair writes
    // variable -> machine-wide value that passes but this session does not
    // see yet: it takes effect at the next login (Linux)
    QMap<QString, QString> pendingValues;
};

// Item 32: the USB host controllers' driver facts (the last controller wins).
class CUSBControllerDriverInfo : public CDetectInfo
{
public:
    ~CUSBControllerDriverInfo() override;
    QString driverDesc;
    QString providerName;
    QString driverDate;
    QString driverVersion;
    // USB host controllers the last check found; -1: not known (not checked,
    // or the probe library is missing). 0 makes the item exceptional.
    int nControllers = -1;
    // The USB tree the check built on the way, until the detection pass
    // hands it to the USB tree item's record.
    UsbRootItem *pBuiltTree = nullptr;
};

// Item 2048: ready-to-show facts about the PC.
class CSystemDetectInfo : public CDetectInfo
{
public:
    ~CSystemDetectInfo() override;
    QString cpu;
    QString cpuCount;
    QString availableMemory;
    QString byteOrder;
    QString operatingSystem;
    QString graphicsChips;
    QString resolution;
};

// Item 256: jumbo frames per connected adapter, keyed by adapter description.
class CJumboPacketDetectInfo : public CDetectInfo
{
public:
    ~CJumboPacketDetectInfo() override;
    QMap<QString, int> jumboStates; // 0 off, 1 on, 2 driver has no jumbo setting
    QMap<QString, int> jumboValues; // frame size in bytes
};

// Item 128: line rate per connected physical adapter.
class CNetworkSpeedDetectInfo : public CDetectInfo
{
public:
    ~CNetworkSpeedDetectInfo() override;
    QMap<QString, int> adapterSpeeds; // adapter description -> Mbit/s
};

// Item 512: the USB controller tree. The record owns the tree, but only the
// probe can free it (it lives in the probe library), so whoever replaces or
// drops the tree hands it to the probe's destroy function first.
class CUsbBasicDetectInfo : public CDetectInfo
{
public:
    ~CUsbBasicDetectInfo() override;
    UsbRootItem *pRootItem = nullptr;
};


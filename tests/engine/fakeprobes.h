#pragma once

#include "cdetectinfo.h"
#include "vxitemid.h"
#include "vxprobetable.h"

#include <QMutex>
#include <QMutexLocker>
#include <QStringList>

#include <atomic>

// A probe table whose entries only record their calls, for driving the
// operate thread without touching the machine.
struct FakeProbes
{
    QMutex mutex;
    QStringList calls;
    std::atomic<int> nTreesAlive{0};
    std::atomic<int> nTreesBuilt{0};
    bool bInstallFound = true;
    int nChecksUntilInstalled = -1; // -1: never
    std::atomic<int> nStatusChecks{0};
    std::function<void()> onStatusCheck;

    void log(const QString &strCall)
    {
        QMutexLocker locker(&mutex);
        calls << strCall;
    }
    QStringList takeCalls()
    {
        QMutexLocker locker(&mutex);
        return std::exchange(calls, {});
    }

    UsbRootItem *newTree()
    {
        ++nTreesAlive;
        ++nTreesBuilt;
        return reinterpret_cast<UsbRootItem *>(new int(7));
    }

    void statusCheck(CDetectInfo &info, const char *pName)
    {
        log(QString::fromLatin1(pName));
        const int nCheck = ++nStatusChecks;
        if (onStatusCheck)
            onStatusCheck();
        if (nChecksUntilInstalled >= 0 && nCheck >= nChecksUntilInstalled)
            info.bNormal = 1;
    }

    VxProbeTable table()
    {
        VxProbeTable t;
        t.setCheck(VxItems::SdkFiles, [this](CSDKPathDetectInfo &) { log("detect 1"); });
        t.setRepair(VxItems::SdkFiles, [this](CSDKPathDetectInfo &info) {
            log("clear 1");
            info.bNormal = 1;
        });
        t.setCheck(VxItems::EnvVariables, [this](CEnvDetectInfo &) { log("detect 2"); });
        t.setRepair(VxItems::EnvVariables, [this](CEnvDetectInfo &) { log("repair 2"); });
        t.setCheck(VxItems::GigeDriver, [this](CDetectInfo &info) { statusCheck(info, "detect 4"); });
        t.setInstall(VxItems::GigeDriver, [this] {
            log("install 4");
            return bInstallFound;
        });
        t.setCheck(VxItems::Usb3Driver, [this](CDetectInfo &info) { statusCheck(info, "detect 8"); });
        t.setInstall(VxItems::Usb3Driver, [this] {
            log("install 8");
            return bInstallFound;
        });
        t.setCheck(VxItems::UsbControllerDriver, [this](CUSBControllerDriverInfo &info) {
            log("detect 32");
            info.pBuiltTree = newTree();
        });
        t.setCheck(VxItems::UsbControllerInfo, [this](CUsbBasicDetectInfo &info) {
            log("detect 512");
            info.pRootItem = newTree();
            info.bNormal = 1;
        });
        t.usbTreeDestroy = [this](UsbRootItem *pRoot) {
            if (!pRoot)
                return;
            --nTreesAlive;
            delete reinterpret_cast<int *>(pRoot);
        };
        t.setCheck(VxItems::Firewall, [this](CDetectInfo &) { log("detect 1024"); });
        t.setCheck(VxItems::JumboFrame, [this](CJumboPacketDetectInfo &) { log("detect 256"); });
        t.setRepair(VxItems::JumboFrame, [this](CJumboPacketDetectInfo &) { log("repair 256"); });
        t.setCheck(VxItems::LineRate, [this](CNetworkSpeedDetectInfo &) { log("detect 128"); });
        t.setCheck(VxItems::SystemInfo, [this](CSystemDetectInfo &) { log("detect 2048"); });
        t.setCheck(VxItems::UsbBufferMemory, [this](CDetectInfo &) { log("detect 4096"); });
        t.setCheck(VxItems::ReceiveBuffers, [this](CDetectInfo &) { log("detect 8192"); });
        t.setCheck(VxItems::ReversePathFilter, [this](CDetectInfo &) { log("detect 16384"); });
        t.setCheck(VxItems::GenTLProducers, [this](CDetectInfo &) { log("detect 32768"); });
        t.setCheck(VxItems::UsbLink, [this](CDetectInfo &) { log("detect 65536"); });
        return t;
    }

    // The same, but the USB items build no tree (for code that would read
    // the tree, such as the report of item 512).
    VxProbeTable tableWithoutTrees()
    {
        VxProbeTable t = table();
        t.setCheck(VxItems::UsbControllerDriver, [this](CUSBControllerDriverInfo &info) {
            log("detect 32");
            info.pBuiltTree = nullptr;
        });
        t.setCheck(VxItems::UsbControllerInfo, [this](CUsbBasicDetectInfo &info) {
            log("detect 512");
            info.bNormal = 1;
        });
        return t;
    }
};

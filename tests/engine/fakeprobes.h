#pragma once

#include "cdetectinfo.h"
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
        t.sdkFileCheck = [this](CSDKPathDetectInfo &) { log("detect 1"); };
        t.sdkFileClear = [this](CSDKPathDetectInfo &info) {
            log("clear 1");
            info.bNormal = 1;
        };
        t.envCheck = [this](CEnvDetectInfo &) { log("detect 2"); };
        t.envRepair = [this](CEnvDetectInfo &) { log("repair 2"); };
        t.gigeDriverCheck = [this](CDetectInfo &info) { statusCheck(info, "detect 4"); };
        t.gigeDriverInstall = [this] {
            log("install 4");
            return bInstallFound;
        };
        t.usb3DriverCheck = [this](CDetectInfo &info) { statusCheck(info, "detect 8"); };
        t.usb3DriverInstall = [this] {
            log("install 8");
            return bInstallFound;
        };
        t.usbDriverCheck = [this](CUSBControllerDriverInfo &, UsbRootItem **ppRoot) {
            log("detect 32");
            if (ppRoot)
                *ppRoot = newTree();
        };
        t.usbTreeCheck = [this](CUsbBasicDetectInfo &info) {
            log("detect 512");
            info.pRootItem = newTree();
            info.bNormal = 1;
        };
        t.usbTreeDestroy = [this](UsbRootItem *pRoot) {
            if (!pRoot)
                return;
            --nTreesAlive;
            delete reinterpret_cast<int *>(pRoot);
        };
        t.firewallCheck = [this](CDetectInfo &) { log("detect 1024"); };
        t.jumboCheck = [this](CJumboPacketDetectInfo &) { log("detect 256"); };
        t.jumboRepair = [this](CJumboPacketDetectInfo &) { log("repair 256"); };
        t.lineRateCheck = [this](CNetworkSpeedDetectInfo &) { log("detect 128"); };
        t.systemInfoCheck = [this](CSystemDetectInfo &) { log("detect 2048"); };
        return t;
    }

    // The same, but the USB items build no tree (for code that would read
    // the tree, such as the report of item 512).
    VxProbeTable tableWithoutTrees()
    {
        VxProbeTable t = table();
        t.usbDriverCheck = [this](CUSBControllerDriverInfo &, UsbRootItem **ppRoot) {
            log("detect 32");
            if (ppRoot)
                *ppRoot = nullptr;
        };
        t.usbTreeCheck = [this](CUsbBasicDetectInfo &info) {
            log("detect 512");
            info.bNormal = 1;
        };
        return t;
    }
};

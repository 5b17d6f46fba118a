#include "cdetectinfo.h"
#include "luinterface.h"
#include "systeminfo.h"

#include <QtTest>

// The system facts item copies the seven texts as they come and is normal.
class TstSystemInfo : public QObject
{
    Q_OBJECT

private slots:
    void copiesTheTexts()
    {
        CSystemDetectInfo info;
        info.bNormal = 0;
        info.cpu = "stale";
        SystemInfo::check(info);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.cpu, LuInterface::cpu());
        QCOMPARE(info.cpuCount, LuInterface::numOfCpu());
        QCOMPARE(info.byteOrder, LuInterface::byteOrder());
        QCOMPARE(info.availableMemory, LuInterface::availbleMmeory());
        QCOMPARE(info.operatingSystem, LuInterface::operatingSys());
        QCOMPARE(info.graphicsChips, LuInterface::graphicsChips());
    }
};

QTEST_GUILESS_MAIN(TstSystemInfo)
#include "tst_systeminfo.moc"

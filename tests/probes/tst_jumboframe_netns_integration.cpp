#include "cdetectinfo.h"
#include "jumboframe.h"
#include "netadapters.h"

#include <QProcess>
#include "netnstestutil.h"

#include <QtTest>

#include <sched.h>
#include <unistd.h>

// Integration test: the real netlink read and MTU write, in a network
// namespace of its own holding a veth pair (needs root; CI runs as root).
// The veth ends stand in for physical adapters through the link source
// the checks are handed.
class TstJumboFrameNetnsIntegration : public QObject
{
    Q_OBJECT

private:
    bool m_bReady = false;

    static QByteArray ip(const QStringList &listArgs) { return NetnsTest::ip(listArgs); }
    static int mtuOf(const QString &strName) { return NetnsTest::mtuOf(strName); }
    static NetAdapters::LinkSource links() { return NetnsTest::vethLinks({"vxa", "vxb"}); }

private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to create a network namespace and veth interfaces");
        // This process leaves the host's network for a namespace of its own.
        QVERIFY2(::unshare(CLONE_NEWNET) == 0, "unshare(CLONE_NEWNET) failed");
        QCOMPARE(ip({"link", "add", "vxa", "type", "veth", "peer", "name", "vxb"}), QByteArray());
        QCOMPARE(ip({"link", "set", "vxa", "up"}), QByteArray());
        QCOMPARE(ip({"link", "set", "vxb", "up"}), QByteArray());
        // The pair reports its carrier a moment after both ends are up.
        QTRY_VERIFY_WITH_TIMEOUT(ip({"-o", "link", "show", "dev", "vxa"}).contains("state UP")
                                     && ip({"-o", "link", "show", "dev", "vxb"}).contains("state UP"),
                                 10000);
        m_bReady = true;
    }

    void readsLinksFromTheKernel()
    {
        const QList<CLinkFacts> listLinks = NetAdapters::systemLinks();
        QStringList listNames;
        for (const CLinkFacts &link : listLinks) {
            listNames << link.strName;
            if (link.strName == "vxa") {
                QCOMPARE(link.nMtu, 1500);
                QCOMPARE(link.nMaxMtu, 65535);
                QVERIFY(link.bConnected);
            }
        }
        listNames.sort();
        QCOMPARE(listNames, QStringList({"lo", "vxa", "vxb"}));
    }

    void repairEnablesExactlyTheAdaptersThatWereOff()
    {
        QCOMPARE(ip({"link", "set", "vxb", "mtu", "9000"}), QByteArray());
        CJumboPacketDetectInfo info;
        JumboFrame::check(info, links());
        QCOMPARE(info.jumboStates, (QMap<QString, int>{{"vxa", 0}, {"vxb", 1}}));
        QCOMPARE(info.jumboValues, (QMap<QString, int>{{"vxa", 1514}, {"vxb", 9014}}));
        QCOMPARE(info.bNormal, 0);

        QCOMPARE(JumboFrame::repair(info, VxPrivileges::system(), links()), VxRepairStatus::Done);
        QCOMPARE(mtuOf("vxa"), 65535); // the largest the driver offers
        QCOMPARE(mtuOf("vxb"), 9000);  // was on: left alone
        QCOMPARE(info.jumboStates, (QMap<QString, int>{{"vxa", 1}, {"vxb", 1}}));
        QCOMPARE(info.jumboValues.value("vxa"), 65535 + 14);
        QCOMPARE(info.bNormal, 1);
    }

    void disableSetsTheStandardFrame()
    {
        CJumboPacketDetectInfo info;
        JumboFrame::check(info, links());
        QCOMPARE(JumboFrame::setJumbo("vxb", false), VxRepairStatus::Done);
        QCOMPARE(mtuOf("vxb"), 1500);
        JumboFrame::check(info, links());
        QCOMPARE(info.jumboStates.value("vxb"), 0);
    }

    void setMtuOnMissingInterfaceFails()
    {
        QVERIFY(!NetAdapters::setLinkMtu("vxnone", 9000));
        QVERIFY(!NetAdapters::setLinkMtu("vxa", 70000)); // above the driver's maximum
        QCOMPARE(mtuOf("vxa"), 65535);
    }

    void cleanupTestCase()
    {
        if (m_bReady)
            ip({"link", "del", "vxa"});
    }
};

QTEST_GUILESS_MAIN(TstJumboFrameNetnsIntegration)
#include "tst_jumboframe_netns_integration.moc"

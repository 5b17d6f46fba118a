// The system information button: which viewer is started, and our own
// dialog with its "Copy" button when there is none.
#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "dialogtestutil.h"
#include "vxsysteminfodlg.h"
#include "vxsysteminfolauncher.h"

#include <QClipboard>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

CSystemDetectInfo fixture()
{
    CSystemDetectInfo info;
    info.nItem = 2048;
    info.cpu = QStringLiteral("Test CPU @ 3.0GHz");
    info.cpuCount = QStringLiteral("8");
    info.availableMemory = QStringLiteral("15.5 GB");
    info.byteOrder = QStringLiteral("Little-Endian");
    info.operatingSystem = QStringLiteral("Debian GNU/Linux 12 (bookworm)");
    info.graphicsChips = QStringLiteral("Test GPU");
    info.resolution = QStringLiteral("1920*1080");
    return info;
}

// A folder on PATH holding empty executables with the given names.
void fakePath(const QTemporaryDir &dir, const QStringList &listPrograms)
{
    for (const QString &strName : listPrograms) {
        QFile file(dir.path() + QLatin1Char('/') + strName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n");
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    qputenv("PATH", dir.path().toLocal8Bit());
}

} // namespace

class TstVxSystemInfo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
    }

    void cleanup()
    {
        VxSystemInfoLauncher::setStarter({});
    }

    void desktopPicksItsViewerFirst_data()
    {
        QTest::addColumn<QString>("strDesktop");
        QTest::addColumn<QString>("strFirst");
        QTest::addColumn<QStringList>("listArgs");
        QTest::addRow("KDE") << QStringLiteral("KDE") << QStringLiteral("kinfocenter") << QStringList();
        QTest::addRow("GNOME") << QStringLiteral("ubuntu:GNOME") << QStringLiteral("gnome-system-monitor")
                               << QStringList{QStringLiteral("--show-resources-tab")};
        QTest::addRow("other desktops") << QStringLiteral("XFCE") << QStringLiteral("hardinfo2") << QStringList();
    }

    void desktopPicksItsViewerFirst()
    {
        QFETCH(QString, strDesktop);
        QFETCH(QString, strFirst);
        QFETCH(QStringList, listArgs);
        const QList<VxSystemInfoLauncher::CViewer> listViewers = VxSystemInfoLauncher::candidates(strDesktop);
        QVERIFY(listViewers.size() >= 3);
        QCOMPARE(listViewers.first().strProgram, strFirst);
        QCOMPARE(listViewers.first().listArgs, listArgs);
    }

    void installedViewerIsStarted()
    {
        QTemporaryDir dir;
        fakePath(dir, {QStringLiteral("hardinfo"), QStringLiteral("gnome-system-monitor")});
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        QString strStarted;
        QStringList listStartedArgs;
        VxSystemInfoLauncher::setStarter([&](const QString &strProgram, const QStringList &listArgs) {
            strStarted = strProgram;
            listStartedArgs = listArgs;
            return true;
        });
        const CSystemDetectInfo info = fixture();
        QCOMPARE(VxSystemInfoLauncher::open(nullptr, info), VxSystemInfoLauncher::StartedViewer);
        QCOMPARE(strStarted, dir.path() + QStringLiteral("/gnome-system-monitor"));
        QCOMPARE(listStartedArgs, QStringList{QStringLiteral("--show-resources-tab")});
    }

    void withoutViewerOurDialogCopies_data()
    {
        QTest::addColumn<bool>("bViewerFails");
        QTest::addRow("no viewer installed") << false;
        QTest::addRow("the viewer does not start") << true;
    }

    void withoutViewerOurDialogCopies()
    {
        QFETCH(bool, bViewerFails);
        QTemporaryDir dir;
        fakePath(dir, bViewerFails ? QStringList{QStringLiteral("kinfocenter")} : QStringList());
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        int nStarts = 0;
        VxSystemInfoLauncher::setStarter([&](const QString &, const QStringList &) {
            ++nStarts;
            return false;
        });
        QStringList listRows;
        QString strClipboard;
        QTimer::singleShot(50, this, [&] {
            auto *pDialog = qobject_cast<VxSystemInfoDlg *>(QApplication::activeModalWidget());
            if (!pDialog)
                return;
            for (int nRow = 0; nRow < pDialog->table()->rowCount(); ++nRow)
                listRows << pDialog->table()->item(nRow, 1)->text();
            QTest::mouseClick(pDialog->cButton(0), Qt::LeftButton); // Copy
            strClipboard = QGuiApplication::clipboard()->text();
            QTest::mouseClick(pDialog->cButton(1), Qt::LeftButton); // OK
        });
        const CSystemDetectInfo info = fixture();
        QCOMPARE(VxSystemInfoLauncher::open(nullptr, info), VxSystemInfoLauncher::ShowedDialog);
        QCOMPARE(nStarts, bViewerFails ? 1 : 0);
        QCOMPARE(listRows, (QStringList{info.cpu, info.cpuCount, info.availableMemory, info.byteOrder,
                                        info.operatingSystem, info.graphicsChips, info.resolution}));
        const QStringList listLines = strClipboard.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(listLines.size(), 7);
        QCOMPARE(listLines.first(), QStringLiteral("CPU: Test CPU @ 3.0GHz"));
        QCOMPARE(listLines.at(3), QStringLiteral("Endianess: Little-Endian"));
        QCOMPARE(listLines.last(), QStringLiteral("Screen Resolution: 1920*1080"));
    }

    void languageChangeRetranslates()
    {
        VxSystemInfoDlg dialog(fixture());
        DialogTest::MarkingTranslator translator("VxSystemInfoDlg");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.table()->item(0, 0)->text(), QStringLiteral("T:CPU"));
        QCOMPARE(dialog.cButton(0)->text(), QStringLiteral("T:Copy"));
        QVERIFY(dialog.clipboardText().startsWith(QLatin1String("T:CPU: ")));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxSystemInfo)
#include "tst_vxsysteminfo.moc"

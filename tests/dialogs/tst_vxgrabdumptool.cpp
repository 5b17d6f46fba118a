// The dump tool: the folder it proposes, what a grab copies from a fixture
// system root, and what it tells the user.
#include "customfolderselectwidget.h"
#include "custompushbutton.h"
#include "customtitlebar.h"
#include "dialogtestutil.h"
#include "dumpgrabber.h"
#include "luinterface.h"
#include "vxgrabdumptool.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

namespace {

void writeFile(const QString &strPath, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(strPath).absolutePath());
    QFile file(strPath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

QByteArray readFile(const QString &strPath)
{
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TstVxGrabDumpTool : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir root;   // the system root the dumps are read below
    QTemporaryDir target; // the folder the user picked
    QTemporaryDir data;   // $XDG_DATA_HOME

private slots:
    void initTestCase()
    {
        QVERIFY(DialogTest::loadResources());
        qputenv("VETRIX_SYSROOT", root.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", data.path().toLocal8Bit());
    }

    void init()
    {
        QDir(root.path()).removeRecursively();
        QDir().mkpath(root.path());
        QDir(target.path()).removeRecursively();
        QDir().mkpath(target.path());
    }

    void dialogShowsTheSavedFolder()
    {
        DumpGrabber::setSavedTargetFolder(QString());
        VxGrabDumpTool dialog;
        QCOMPARE(dialog.size(), QSize(430, 230));
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("Acquire Dump Files"));
        QCOMPARE(DumpGrabber::savedTargetFolder(), LuInterface::userDataPath() + QStringLiteral("/Dump"));
        QCOMPARE(QDir::fromNativeSeparators(dialog.folderField()->text()), DumpGrabber::savedTargetFolder());
        QVERIFY(dialog.folderField()->isReadOnly());
        QCOMPARE(dialog.folderField()->height(), 32);
        QVERIFY(dialog.folderField()->cAutoSelectFolder());
        QCOMPARE(dialog.cButtons().size(), 1);
        // A folder chosen in the field is kept for the next opening.
        dialog.folderField()->setText(target.path());
        emit dialog.folderField()->cSigFolderChanged(target.path());
        dialog.show();
        dialog.close();
        VxGrabDumpTool again;
        QCOMPARE(QDir::fromNativeSeparators(again.folderField()->text()), target.path());
    }

    void noDumpCreatesAnEmptyFolder()
    {
        const VxGrabDumpTool::CGrabResult result = VxGrabDumpTool::grabInto(target.path());
        QVERIFY(QFileInfo(result.strTarget).isDir());
        QVERIFY(QDir(result.strTarget).entryList(QDir::Files).isEmpty());
        QVERIFY(result.listCopied.isEmpty());
        QVERIFY(VxGrabDumpTool::resultText(result).startsWith(QLatin1String("No dump files were found.")));
    }

    void perCrashSystemDumpWins()
    {
        writeFile(root.path() + QStringLiteral("/var/crash/vmcore"), "top");
        writeFile(root.path() + QStringLiteral("/var/crash/202401011200/vmcore"), "per crash");
        const VxGrabDumpTool::CGrabResult result = VxGrabDumpTool::grabInto(target.path());
        QCOMPARE(result.listCopied, QStringList{QStringLiteral("vmcore")});
        QCOMPARE(readFile(result.strTarget + QStringLiteral("vmcore")), QByteArray("per crash"));
    }

    void watchedNamesIgnoreCase()
    {
        const QString strName = QStringLiteral("core.%1.1000.b00t.4242.1700000000.zst").arg(DumpGrabber::programName().toLower());
        writeFile(root.path() + QStringLiteral("/var/lib/systemd/coredump/") + strName, "dump");
        writeFile(root.path() + QStringLiteral("/var/lib/systemd/coredump/core.bash.1000.b00t.1.1.zst"), "other");
        const VxGrabDumpTool::CGrabResult result = VxGrabDumpTool::grabInto(target.path());
        QCOMPARE(result.listCopied, QStringList{strName});
        QVERIFY(VxGrabDumpTool::resultText(result).contains(QDir::toNativeSeparators(QDir::cleanPath(result.strTarget)) + QLatin1Char('.')));
        QVERIFY(VxGrabDumpTool::resultDetails(result).contains(strName));
    }

    void secondGrabLeavesEarlierCopies()
    {
        writeFile(root.path() + QStringLiteral("/var/crash/vmcore"), "first");
        VxGrabDumpTool::grabInto(target.path());
        writeFile(root.path() + QStringLiteral("/var/crash/vmcore"), "second");
        const VxGrabDumpTool::CGrabResult result = VxGrabDumpTool::grabInto(target.path());
        QVERIFY(result.listCopied.isEmpty());
        QCOMPARE(result.listExisting, QStringList{QStringLiteral("vmcore")});
        QCOMPARE(readFile(result.strTarget + QStringLiteral("vmcore")), QByteArray("first"));
        QVERIFY(VxGrabDumpTool::resultText(result).startsWith(QLatin1String("No new dump files")));
    }

    void okCopiesReportsAndCloses()
    {
        writeFile(root.path() + QStringLiteral("/var/crash/vmcore"), "dump");
        DumpGrabber::setSavedTargetFolder(target.path());
        VxGrabDumpTool dialog;
        dialog.show();
        DialogTest::MessageBoxCatcher catcher;
        QTest::mouseClick(dialog.cButton(0), Qt::LeftButton);
        QCOMPARE(catcher.listTexts.size(), 1);
        QVERIFY(catcher.listTexts.first().contains(QLatin1String("copied")));
        QVERIFY(catcher.listInformative.first().contains(QLatin1String("vmcore")));
        QVERIFY(!dialog.isVisible());
        QVERIFY(QFile::exists(DumpGrabber::targetFolder(target.path()) + QStringLiteral("vmcore")));
    }

    void languageChangeRetranslates()
    {
        VxGrabDumpTool dialog;
        DialogTest::MarkingTranslator translator("VxGrabDumpTool");
        QCoreApplication::installTranslator(&translator);
        QCoreApplication::processEvents();
        QCOMPARE(dialog.cTitleBar()->cTitleText(), QStringLiteral("T:Acquire Dump Files"));
        QCoreApplication::removeTranslator(&translator);
    }
};

QTEST_MAIN(TstVxGrabDumpTool)
#include "tst_vxgrabdumptool.moc"

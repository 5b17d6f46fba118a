// The SDK-file walk of the system folders and the dump grabber against the
// real folders of a Windows (the Wine prefix): C:\windows\system32 and
// C:\windows\syswow64, the Windows folder and %LOCALAPPDATA%\CrashDumps.
#include "cdetectinfo.h"
#include "dumpgrabber.h"
#include "luinterface.h"
#include "sdkfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUuid>
#include <QtTest>

#include <windows.h>

namespace {

QString tag()
{
    return QUuid::createUuid().toString(QUuid::Id128).left(8);
}

bool plant(const QString &strPath, const QByteArray &data = QByteArray("MZ"))
{
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()))
        return false;
    QFile file(strPath);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

} // namespace

class TstWinFiles : public QObject
{
    Q_OBJECT

private:
    QStringList m_listCleanup; // files and folders this test made

private slots:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("vetrix.repair.info=false"));
    }
    void cleanup()
    {
        for (const QString &strPath : qAsConst(m_listCleanup)) {
            SetFileAttributesW(reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(strPath).utf16()), FILE_ATTRIBUTE_NORMAL);
            if (QFileInfo(strPath).isDir())
                QDir(strPath).removeRecursively();
            else
                QFile::remove(strPath);
        }
        m_listCleanup.clear();
    }

    void systemFoldersAreTheShellFolders();
    void noStrayFileIsNormal();
    void strayFilesInBothFoldersAreFoundAndCleared();
    void undeletableFileStillMarksNormal();
    void dumpsAreCollected();
    void grabCopiesOnceAndKeepsEarlierCopies();
};

// CSIDL_SYSTEM then CSIDL_SYSTEMX86, forward slashes, no trailing separator.
void TstWinFiles::systemFoldersAreTheShellFolders()
{
    wchar_t system[MAX_PATH] = {};
    QVERIFY(GetSystemDirectoryW(system, MAX_PATH) > 0);
    const QStringList listFolders = SdkFiles::searchFolders();
    QCOMPARE(listFolders.size(), 2);
    QCOMPARE(listFolders.first().compare(QDir::fromNativeSeparators(QString::fromWCharArray(system)), Qt::CaseInsensitive), 0);
    QVERIFY(listFolders.last().endsWith(QLatin1String("/syswow64"), Qt::CaseInsensitive));
    QCOMPARE(SdkFiles::fileName(QStringLiteral("LuUsb3vTL")), QStringLiteral("LuUsb3vTL.dll"));
}

void TstWinFiles::noStrayFileIsNormal()
{
    CSDKPathDetectInfo info;
    info.bNormal = 0;
    SdkFiles::check(info);
    QVERIFY(info.foundFiles.isEmpty());
    QCOMPARE(info.bNormal, 1);
}

// A library in the native folder and in a subfolder of the 32-bit one: one
// key, native folder first; a differently cased name counts (Windows names
// ignore case). The clear deletes them all.
void TstWinFiles::strayFilesInBothFoldersAreFoundAndCleared()
{
    const QStringList listFolders = SdkFiles::searchFolders();
    QCOMPARE(listFolders.size(), 2);
    const QString strSub = listFolders.last() + QStringLiteral("/vx") + tag();
    m_listCleanup << strSub;
    const QString strNative = listFolders.first() + QStringLiteral("/LuCameraControl.dll");
    const QString strNested = strSub + QStringLiteral("/LuCameraControl.dll");
    const QString strOtherCase = listFolders.first() + QStringLiteral("/lucamlvision.DLL");
    for (const QString &strPath : {strNative, strNested, strOtherCase}) {
        m_listCleanup << strPath;
        QVERIFY(plant(strPath));
    }

    CSDKPathDetectInfo info;
    SdkFiles::check(info);
    QCOMPARE(info.bNormal, 0);
    QCOMPARE(info.foundFiles.keys(), (QStringList{"LuCamLVision.dll", "LuCameraControl.dll"}));
    const QStringList listDirs = info.foundFiles.value("LuCameraControl.dll");
    QCOMPARE(listDirs.size(), 2);
    QCOMPARE(listDirs.at(0).compare(listFolders.first(), Qt::CaseInsensitive), 0);
    QCOMPARE(listDirs.at(1).compare(strSub, Qt::CaseInsensitive), 0);

    QCOMPARE(SdkFiles::clear(info), VxRepairStatus::Done);
    QCOMPARE(info.bNormal, 1);
    QVERIFY(info.foundFiles.isEmpty());
    QVERIFY(!QFileInfo::exists(strNative));
    QVERIFY(!QFileInfo::exists(strNested));
    QVERIFY(!QFileInfo::exists(strOtherCase));
    SdkFiles::check(info);
    QCOMPARE(info.bNormal, 1);
}

// A read-only copy cannot be deleted: the clear still marks the item
// normal, and the next check finds the file again.
void TstWinFiles::undeletableFileStillMarksNormal()
{
    const QString strPath = SdkFiles::searchFolders().first() + QStringLiteral("/vx") + tag() + QStringLiteral("/LuUsb3vTL.dll");
    m_listCleanup << QFileInfo(strPath).absolutePath() << strPath;
    QVERIFY(plant(strPath));
    QVERIFY(SetFileAttributesW(reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(strPath).utf16()), FILE_ATTRIBUTE_READONLY));
    CSDKPathDetectInfo info;
    SdkFiles::check(info);
    QCOMPARE(info.foundFiles.value("LuUsb3vTL.dll").size(), 1);
    SdkFiles::clear(info);
    QCOMPARE(info.bNormal, 1);
    QVERIFY(info.foundFiles.isEmpty());
    QVERIFY(QFileInfo::exists(strPath));
    SdkFiles::check(info);
    QCOMPARE(info.bNormal, 0);
}

// MEMORY.DMP from the Windows folder and from its Minidump folder: one
// entry, the Minidump one. Program dumps are matched by their name's
// prefix without regard to case; other programs' dumps are left.
void TstWinFiles::dumpsAreCollected()
{
    const QString strWindows = QDir::rootPath() + QStringLiteral("Windows");
    const QString strMinidump = strWindows + QStringLiteral("/Minidump");
    const QString strCrash = LuInterface::localPath() + QStringLiteral("/CrashDumps");
    const QString strOwn = QStringLiteral("vetrixtool.exe.") + tag() + QStringLiteral(".dmp");
    const QString strSibling = QStringLiteral("quillscope.exe.4242.dmp");
    const QString strForeign = QStringLiteral("notepad.exe.") + tag() + QStringLiteral(".dmp");
    const bool bMinidumpExisted = QFileInfo::exists(strMinidump);
    m_listCleanup << strWindows + QStringLiteral("/MEMORY.DMP") << strMinidump + QStringLiteral("/MEMORY.DMP")
                  << strCrash + "/" + strOwn << strCrash + "/" + strSibling << strCrash + "/" + strForeign;
    if (!bMinidumpExisted)
        m_listCleanup << strMinidump;

    QMap<QString, QString> mapFiles;
    QVERIFY(plant(strWindows + QStringLiteral("/MEMORY.DMP")));
    DumpGrabber::collect(mapFiles);
    QCOMPARE(mapFiles.value("MEMORY.DMP").compare(strWindows, Qt::CaseInsensitive), 0);

    QVERIFY(plant(strMinidump + QStringLiteral("/MEMORY.DMP")));
    for (const QString &strName : {strOwn, strSibling, strForeign})
        QVERIFY(plant(strCrash + "/" + strName));
    DumpGrabber::collect(mapFiles);
    QCOMPARE(mapFiles.value("MEMORY.DMP").compare(strMinidump, Qt::CaseInsensitive), 0);
    QCOMPARE(mapFiles.value(strOwn).compare(strCrash, Qt::CaseInsensitive), 0);
    QCOMPARE(mapFiles.value(strSibling).compare(strCrash, Qt::CaseInsensitive), 0);
    QVERIFY(!mapFiles.contains(strForeign));
}

void TstWinFiles::grabCopiesOnceAndKeepsEarlierCopies()
{
    const QString strCrash = LuInterface::localPath() + QStringLiteral("/CrashDumps");
    const QString strDump = QStringLiteral("Sorrel_Check.exe.") + tag() + QStringLiteral(".dmp");
    m_listCleanup << strCrash + "/" + strDump;
    QVERIFY(plant(strCrash + "/" + strDump, "first"));
    QTemporaryDir target;
    QVERIFY(target.isValid());

    QVERIFY(DumpGrabber::grab(target.path()) >= 1);
    const QString strCopy = DumpGrabber::targetFolder(target.path()) + strDump;
    QFile copy(strCopy);
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), QByteArray("first"));
    copy.close();

    QVERIFY(plant(strCrash + "/" + strDump, "second"));
    DumpGrabber::grab(target.path());
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), QByteArray("first"));
}

QTEST_GUILESS_MAIN(TstWinFiles)
#include "tst_win_files.moc"

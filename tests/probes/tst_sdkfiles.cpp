#include "cdetectinfo.h"
#include "sdkfiles.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>



// The SDK file check and clear over fixture system roots.
class TstSdkFiles : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;

    QString root() const { return m_pRoot->path(); }
    void touch(const QString &strRelPath)
    {
        const QString strPath = root() + strRelPath;
        QVERIFY(QDir().mkpath(QFileInfo(strPath).absolutePath()));
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("x");
    }
    // The search the check stands for: one QDirIterator walk per name and folder.
    QMap<QString, QStringList> perNameSearch()
    {
        QMap<QString, QStringList> map;
        for (const QString &strName : SdkFiles::libraryNames()) {
            for (const QString &strFolder : SdkFiles::searchFolders()) {
                QDir dir(strFolder, strName);
                dir.setFilter(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot | QDir::CaseSensitive);
                QDirIterator it(dir, QDirIterator::Subdirectories);
                QStringList listDirs;
                while (it.hasNext()) {
                    it.next();
                    if (it.fileInfo().isFile())
                        listDirs << it.fileInfo().absolutePath();
                }
                if (!listDirs.isEmpty())
                    map[strName] += listDirs;
            }
        }
        return map;
    }

private slots:
    void init()
    {
        m_pRoot = new QTemporaryDir;
        QVERIFY(m_pRoot->isValid());
        qputenv("VETRIX_SYSROOT", root().toLocal8Bit());
    }
    void cleanup()
    {
        delete m_pRoot;
        m_pRoot = nullptr;
        qunsetenv("VETRIX_SYSROOT");
    }

    void names()
    {
        QCOMPARE(SdkFiles::libraryNames(),
                 QStringList({"libLuCameraControl.so", "libLUGigEVisionSDK.so", "libLuUsb3vTL.so", "libLuCamLVision.so"}));
    }

    void check_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("folders"); // extra empty folders to create
        QTest::addColumn<QStringList>("expected"); // "name|dir,dir" in key order
        QTest::newRow("no stray file") << QStringList{"/usr/lib/libother.so"} << QStringList{} << QStringList{};
        QTest::newRow("native and 32-bit folder: native first")
            << QStringList{"/usr/lib32/libLuUsb3vTL.so", "/usr/lib/libLuUsb3vTL.so"} << QStringList{}
            << QStringList{"libLuUsb3vTL.so|/usr/lib,/usr/lib32"};
        QTest::newRow("only in a subfolder")
            << QStringList{"/usr/lib/x86_64-linux-gnu/orvex/libLuCameraControl.so"} << QStringList{}
            << QStringList{"libLuCameraControl.so|/usr/lib/x86_64-linux-gnu/orvex"};
        QTest::newRow("lib64 between native and 32-bit")
            << QStringList{"/usr/lib32/libLuCamLVision.so", "/usr/lib64/libLuCamLVision.so", "/usr/lib/a/libLuCamLVision.so"}
            << QStringList{} << QStringList{"libLuCamLVision.so|/usr/lib/a,/usr/lib64,/usr/lib32"};
        QTest::newRow("the Windows names and other cases are not Linux libraries")
            << QStringList{"/usr/lib/LuCameraControl.dll", "/usr/lib/liblucameracontrol.so", "/usr/lib/libLuCameraControl.so.1"}
            << QStringList{} << QStringList{};
        QTest::newRow("a folder named like a library is not a file")
            << QStringList{} << QStringList{"/usr/lib/libLUGigEVisionSDK.so"} << QStringList{};
        QTest::newRow("several names, key order")
            << QStringList{"/usr/lib/libLuUsb3vTL.so", "/usr/lib/libLuCameraControl.so", "/usr/lib32/x/libLUGigEVisionSDK.so"}
            << QStringList{}
            << QStringList{"libLUGigEVisionSDK.so|/usr/lib32/x", "libLuCameraControl.so|/usr/lib", "libLuUsb3vTL.so|/usr/lib"};
    }
    void check()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, folders);
        QFETCH(QStringList, expected);
        for (const QString &strFile : files)
            touch(strFile);
        for (const QString &strFolder : folders)
            QVERIFY(QDir().mkpath(root() + strFolder));
        CSDKPathDetectInfo info;
        SdkFiles::check(info);
        QStringList listGot;
        for (auto it = info.foundFiles.cbegin(); it != info.foundFiles.cend(); ++it) {
            QStringList listDirs;
            for (const QString &strDir : it.value())
                listDirs << strDir.mid(root().size());
            listGot << it.key() + "|" + listDirs.join(",");
        }
        QCOMPARE(listGot, expected);
        QCOMPARE(info.bNormal, expected.isEmpty() ? 1 : 0);
        // One walk per folder gives what one walk per name and folder gives.
        QCOMPARE(info.foundFiles, perNameSearch());
    }

    void linkedFoldersAreSearchedOnce()
    {
        touch("/usr/lib/libLuCameraControl.so");
        QVERIFY(QFile::link(root() + "/usr/lib", root() + "/usr/lib64"));
        QVERIFY(QDir().mkpath(root() + "/usr/lib/sub"));
        QVERIFY(QFile::link(root() + "/usr/lib", root() + "/usr/lib/sub/loop")); // a loop is not followed
        QCOMPARE(SdkFiles::searchFolders(), QStringList{root() + "/usr/lib"});
        CSDKPathDetectInfo info;
        SdkFiles::check(info);
        QCOMPARE(info.foundFiles.value("libLuCameraControl.so"), QStringList{root() + "/usr/lib"});
    }

    void linkToFileCounts()
    {
        touch("/opt/Orvex/libLuUsb3vTL.so");
        QVERIFY(QDir().mkpath(root() + "/usr/lib"));
        QVERIFY(QFile::link(root() + "/opt/Orvex/libLuUsb3vTL.so", root() + "/usr/lib/libLuUsb3vTL.so"));
        QVERIFY(QFile::link(root() + "/nowhere", root() + "/usr/lib/libLuCamLVision.so"));
        CSDKPathDetectInfo info;
        SdkFiles::check(info);
        QCOMPARE(info.foundFiles.keys(), QStringList{"libLuUsb3vTL.so"});
    }

    void clearRemovesAndMarksNormal()
    {
        touch("/usr/lib/libLuCameraControl.so");
        touch("/usr/lib32/libLuCameraControl.so");
        CSDKPathDetectInfo info;
        SdkFiles::check(info);
        QCOMPARE(info.bNormal, 0);
        QCOMPARE(SdkFiles::clear(info), VxRepairStatus::Done);
        QCOMPARE(info.bNormal, 1);
        QVERIFY(info.foundFiles.isEmpty());
        QVERIFY(!QFile::exists(root() + "/usr/lib/libLuCameraControl.so"));
        QVERIFY(!QFile::exists(root() + "/usr/lib32/libLuCameraControl.so"));
        SdkFiles::check(info);
        QCOMPARE(info.bNormal, 1);
    }

    void clearOfUndeletableFileStillMarksNormal()
    {
        // A directory entry that is not a file cannot be removed by QFile::remove,
        // as root as well as otherwise.
        QVERIFY(QDir().mkpath(root() + "/usr/lib/libLuCamLVision.so"));
        CSDKPathDetectInfo info;
        info.bNormal = 0;
        info.foundFiles["libLuCamLVision.so"] = QStringList{root() + "/usr/lib", QString()};
        SdkFiles::clear(info, VxPrivileges("/nonexistent/vetrix-helper"));
        QCOMPARE(info.bNormal, 1);
        QVERIFY(info.foundFiles.isEmpty());
        QVERIFY(QFileInfo(root() + "/usr/lib/libLuCamLVision.so").isDir());
    }

    void removablePaths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("removable");
        QTest::newRow("in the native folder") << "/usr/lib/libLuCameraControl.so" << true;
        QTest::newRow("in a subfolder") << "/usr/lib/x86_64-linux-gnu/libLuUsb3vTL.so" << true;
        QTest::newRow("other name") << "/usr/lib/libc.so" << false;
        QTest::newRow("outside the folders") << "/etc/libLuCameraControl.so" << false;
        QTest::newRow("escapes by ..") << "/usr/lib/../../etc/libLuCameraControl.so" << false;
        QTest::newRow("relative") << "usr/lib/libLuCameraControl.so" << false;
    }
    void removablePaths()
    {
        QFETCH(QString, path);
        QFETCH(bool, removable);
        touch("/usr/lib/libLuCameraControl.so");
        touch("/usr/lib/x86_64-linux-gnu/libLuUsb3vTL.so");
        touch("/etc/libLuCameraControl.so");
        touch("/usr/lib/libc.so");
        const QString strFull = path.startsWith('/') ? root() + path : path;
        QCOMPARE(SdkFiles::isRemovablePath(strFull), removable);
    }
};

QTEST_GUILESS_MAIN(TstSdkFiles)
#include "tst_sdkfiles.moc"

#include "gentlproducers.h"
#include "tuningtestutil.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

// The GenTL producer audit: headers read without loading, folders of the
// path variables, duplicates, and the lines that say what to fix.
class TstGenTLProducers : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir *m_pRoot = nullptr;

    QString root() const { return m_pRoot->path(); }

    static QByteArray elf(int nBits, quint16 uType, quint16 uMachine)
    {
        QByteArray header(64, '\0');
        header.replace(0, 4,
            "\x7f"
            "ELF");
        header[4] = char(nBits == 64 ? 2 : 1);
        header[5] = 1; // little endian
        header[6] = 1;
        qToLittleEndian<quint16>(uType, header.data() + 16);
        qToLittleEndian<quint16>(uMachine, header.data() + 18);
        return header + QByteArray(200, 'x');
    }
    static QByteArray pe(quint16 uMagic, quint16 uMachine, quint16 uCharacteristics, quint32 uOffset = 0x80)
    {
        QByteArray header(512, '\0');
        header.replace(0, 2, "MZ");
        qToLittleEndian<quint32>(uOffset, header.data() + 0x3c);
        if (qint64(uOffset) + 26 <= 512) {
            header.replace(int(uOffset), 4, QByteArray("PE\0\0", 4));
            qToLittleEndian<quint16>(uMachine, header.data() + uOffset + 4);
            qToLittleEndian<quint16>(uCharacteristics, header.data() + uOffset + 4 + 18);
            qToLittleEndian<quint16>(uMagic, header.data() + uOffset + 4 + 20);
        }
        return header;
    }
    static QByteArray lib64() { return elf(64, 3, 62); }
    static QByteArray lib32() { return elf(32, 3, 3); }

    // The root's /etc/environment sets the variables (another system root).
    void setVariables(const QByteArray &gentl64, const QByteArray &gentl32 = QByteArray())
    {
        QByteArray content = "PATH=\"/usr/bin\"\n";
        if (!gentl64.isNull())
            content += "GENICAM_GENTL64_PATH=\"" + gentl64 + "\"\n";
        if (!gentl32.isNull())
            content += "GENICAM_GENTL32_PATH=\"" + gentl32 + "\"\n";
        QVERIFY(TuningTest::write(root(), "etc/environment", content));
    }
    bool put(const QString &strRelative, const QByteArray &content)
    {
        return TuningTest::write(root(), strRelative, content);
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
        qunsetenv("VETRIX_SYSROOT");
        delete m_pRoot;
        m_pRoot = nullptr;
    }

    void readsHeaders_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("machine");
        QTest::addColumn<bool>("library");
        QTest::newRow("ELF64 x86-64 shared object") << lib64() << int(CBinaryFormat::Elf) << 64 << 62 << true;
        QTest::newRow("ELF32 i386 shared object") << lib32() << int(CBinaryFormat::Elf) << 32 << 3 << true;
        QTest::newRow("ELF64 executable") << elf(64, 2, 62) << int(CBinaryFormat::Elf) << 64 << 62 << false;
        QTest::newRow("ELF64 AArch64") << elf(64, 3, 183) << int(CBinaryFormat::Elf) << 64 << 183 << true;
        QTest::newRow("ELF bad class") << QByteArray("\x7f"
                                                     "ELF\x07\x01")
                + QByteArray(60, '\0') << int(CBinaryFormat::Other)
                                       << 0 << 0 << false;
        QTest::newRow("ELF cut short") << QByteArray("\x7f"
                                                     "ELF\x02\x01")
                                       << int(CBinaryFormat::Other) << 0 << 0 << false;
        QTest::newRow("PE32+ AMD64 DLL") << pe(0x20b, 0x8664, 0x2022) << int(CBinaryFormat::Pe) << 64 << 0x8664 << true;
        QTest::newRow("PE32 i386 DLL") << pe(0x10b, 0x14c, 0x2102) << int(CBinaryFormat::Pe) << 32 << 0x14c << true;
        QTest::newRow("PE32+ program") << pe(0x20b, 0x8664, 0x0022) << int(CBinaryFormat::Pe) << 64 << 0x8664 << false;
        QTest::newRow("PE offset past the header")
            << pe(0x20b, 0x8664, 0x2022, 0xfffffff0) << int(CBinaryFormat::Other) << 0 << 0 << false;
        QTest::newRow("PE unknown magic") << pe(0x107, 0x8664, 0x2022) << int(CBinaryFormat::Other) << 0 << 0 << false;
        QTest::newRow("DOS stub only") << QByteArray("MZ") << int(CBinaryFormat::Other) << 0 << 0 << false;
        QTest::newRow("text") << QByteArray("[producer]\nname=not a library\n") << int(CBinaryFormat::Other) << 0 << 0
                              << false;
        QTest::newRow("empty") << QByteArray() << int(CBinaryFormat::Other) << 0 << 0 << false;
    }
    void readsHeaders()
    {
        QFETCH(QByteArray, header);
        QFETCH(int, kind);
        QFETCH(int, bits);
        QFETCH(int, machine);
        QFETCH(bool, library);
        const CBinaryFormat format = GenTLProducers::readFormat(header);
        QCOMPARE(int(format.eKind), kind);
        QCOMPARE(format.nBits, bits);
        QCOMPARE(int(format.uMachine), machine);
        QCOMPARE(format.bLibrary, library);
    }

    void goodProducersAreListed()
    {
        setVariables("/opt/a/lib64:/opt/b/lib64", "/opt/a/lib32");
        QVERIFY(put("opt/a/lib64/VendorA.cti", lib64()));
        QVERIFY(put("opt/a/lib64/readme.txt", "not a producer"));
        QVERIFY(put("opt/b/lib64/VendorB.CTI", lib64()));
        QVERIFY(put("opt/a/lib32/VendorA.cti", lib32())); // the same name for the other bitness is fine
        CGenTLDetectInfo info;
        GenTLProducers::check(info);
        QCOMPARE(info.nItem, 32768);
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.folders.size(), 3);
        QCOMPARE(info.producers.size(), 3);
        QVERIFY(info.duplicates.isEmpty());
        QCOMPARE(genTLLines(info),
            QStringList({"GenTL producer: /opt/a/lib64/VendorA.cti (64-bit ELF library for x86-64).",
                "GenTL producer: /opt/b/lib64/VendorB.CTI (64-bit ELF library for x86-64).",
                "GenTL producer: /opt/a/lib32/VendorA.cti (32-bit ELF library for x86)."}));
        QVERIFY(GenTLProducers::plan(info).isEmpty());
        const QJsonObject facts = genTLFacts(info);
        QCOMPARE(facts.value("variables").toObject().value("GENICAM_GENTL64_PATH").toString(),
            QString("/opt/a/lib64:/opt/b/lib64"));
        QCOMPARE(facts.value("producers").toArray().size(), 3);
    }

    void findings_data()
    {
        QTest::addColumn<QString>("layout"); // what the fixture holds
        QTest::addColumn<QString>("line");
        QTest::newRow("32-bit library on the 64-bit path")
            << "lib32-on-64"
            << "/opt/p/VendorA.cti is a 32-bit ELF library for x86, but GENICAM_GENTL64_PATH needs a 64-bit ELF "
               "library for x86-64: install the matching producer.";
        QTest::newRow("text file named .cti")
            << "text"
            << "/opt/p/VendorA.cti is not a program library: replace it with the producer's library.";
        QTest::newRow("executable named .cti") << "exec"
                                               << "/opt/p/VendorA.cti is 64-bit ELF program for x86-64, not a library: "
                                                  "replace it with the producer's library.";
        QTest::newRow("Windows DLL")
            << "pe"
            << "/opt/p/VendorA.cti is 64-bit PE library for x86-64: replace it with the producer's library.";
        QTest::newRow("missing folder") << "missing"
                                        << "Folder /opt/none in GENICAM_GENTL64_PATH does not exist: remove it from "
                                           "GENICAM_GENTL64_PATH or install the producer there.";
        QTest::newRow("empty folder") << "empty"
                                      << "Folder /opt/empty in GENICAM_GENTL64_PATH holds no GenTL producer (.cti): "
                                         "remove it from GENICAM_GENTL64_PATH or install the producer there.";
        QTest::newRow("duplicate producer") << "duplicate"
                                            << "GenTL producer VendorA.cti is in more than one folder of "
                                               "GENICAM_GENTL64_PATH (/opt/p, /opt/q): keep one copy.";
        QTest::newRow("64-bit variable not set") << "unset"
                                                 << "GENICAM_GENTL64_PATH is not set: 64-bit programs find no GenTL "
                                                    "producer. Set it to the folders of the installed producers.";
        QTest::newRow("64-bit library on the 32-bit path")
            << "lib64-on-32"
            << "/opt/p32/VendorA.cti is a 64-bit ELF library for x86-64, but GENICAM_GENTL32_PATH needs a 32-bit ELF "
               "library for x86: install the matching producer.";
    }
    void findings()
    {
        QFETCH(QString, layout);
        QFETCH(QString, line);
        QVERIFY(put("opt/p/VendorA.cti",
            layout == "lib32-on-64" ? lib32()
                : layout == "text"  ? QByteArray("GenTL producer\n")
                : layout == "exec"  ? elf(64, 2, 62)
                : layout == "pe"    ? pe(0x20b, 0x8664, 0x2022)
                                    : lib64()));
        QVERIFY(put("opt/q/VendorA.cti", lib64()));
        QVERIFY(put("opt/p32/VendorA.cti", layout == "lib64-on-32" ? lib64() : lib32()));
        QVERIFY(QDir().mkpath(root() + "/opt/empty"));
        if (layout == "missing")
            setVariables("/opt/p:/opt/none");
        else if (layout == "empty")
            setVariables("/opt/p:/opt/empty");
        else if (layout == "duplicate")
            setVariables("/opt/p:/opt/q");
        else if (layout == "unset")
            setVariables(QByteArray(), "/opt/p32");
        else if (layout == "lib64-on-32")
            setVariables("/opt/p", "/opt/p32");
        else
            setVariables("/opt/p");
        CGenTLDetectInfo info;
        GenTLProducers::check(info);
        QCOMPARE(info.bNormal, 0);
        const QStringList listLines = genTLLines(info);
        QVERIFY2(listLines.contains(line), qPrintable(listLines.join('\n')));
        QVERIFY(GenTLProducers::plan(info).isEmpty());
    }

    // The same folder named twice (or through a link) is not a duplicate.
    void sameFolderTwiceIsNotADuplicate()
    {
        QVERIFY(put("opt/p/VendorA.cti", lib64()));
        QVERIFY(QFile::link(root() + "/opt/p", root() + "/opt/link"));
        setVariables("/opt/p::/opt/p/:/opt/link");
        CGenTLDetectInfo info;
        GenTLProducers::check(info);
        QCOMPARE(info.folders.size(), 1);
        QVERIFY(info.duplicates.isEmpty());
        QCOMPARE(info.bNormal, 1);
    }

    void unreadableAndOddFilesHaveAnOutcome()
    {
        QVERIFY(put("opt/p/VendorA.cti", lib64()));
        QVERIFY(QDir().mkpath(root() + "/opt/p/folder.cti")); // a folder, not a producer
        QVERIFY(QFile::link(root() + "/opt/p/nowhere", root() + "/opt/p/dangling.cti"));
        setVariables("/opt/p");
        CGenTLDetectInfo info;
        GenTLProducers::check(info);
        QCOMPARE(info.bNormal, 0);
        QVERIFY(genTLLines(info).contains("/opt/p/dangling.cti cannot be read: check its permissions."));
        QCOMPARE(info.folders.first().nProducers, 2);
    }

    // The running system: the process environment names the folders.
    void liveRootReadsTheProcessEnvironment()
    {
        qunsetenv("VETRIX_SYSROOT");
        QVERIFY(put("lib64/VendorA.cti", lib64()));
        qputenv("GENICAM_GENTL64_PATH", (root() + "/lib64").toLocal8Bit());
        qunsetenv("GENICAM_GENTL32_PATH");
        CGenTLDetectInfo info;
        GenTLProducers::check(info);
        qunsetenv("GENICAM_GENTL64_PATH");
        QCOMPARE(info.bNormal, 1);
        QCOMPARE(info.producers.size(), 1);
        QCOMPARE(info.producers.first().strFolder, root() + "/lib64");
    }
};

QTEST_GUILESS_MAIN(TstGenTLProducers)
#include "tst_gentlproducers.moc"

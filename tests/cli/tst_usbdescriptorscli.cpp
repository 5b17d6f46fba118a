// Runs the built vetrix-check --usb-descriptors over the captured USB tree
// (tests/usb/fixtures/xhci-hub-hid-audio) as the system root.
#include <QtTest>

class TestUsbDescriptorsCli : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void oneDevice();
    void allDevices();
    void errors_data();
    void errors();

private:
    struct Result
    {
        int nExit = -1;
        QString out;
        QString err;
    };
    Result run(const QStringList &args, const QString &strRoot);

    QString m_strProgram;
    const QString m_strTree = QStringLiteral(VX_SOURCE_DIR "/tests/usb/fixtures/xhci-hub-hid-audio");
};

void TestUsbDescriptorsCli::initTestCase()
{
    m_strProgram = QStringLiteral(VX_BIN_DIR "/vetrix-check" VX_EXE_SUFFIX);
    QVERIFY2(QFileInfo(m_strProgram).isExecutable(), qPrintable(m_strProgram));
}

TestUsbDescriptorsCli::Result TestUsbDescriptorsCli::run(const QStringList &args, const QString &strRoot)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VETRIX_SYSROOT", strRoot);
    process.setProcessEnvironment(env);
    process.start(m_strProgram, args);
    Result result;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.nExit = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

void TestUsbDescriptorsCli::oneDevice()
{
    const Result r = run({"--usb-descriptors", "1-3"}, m_strTree);
    QCOMPARE(r.nExit, 0);
    QVERIFY(r.err.isEmpty());
    QVERIFY(r.out.startsWith("/sys/bus/usb/devices/1-3\nBus 001 Device 005: ID 46f4:0002 QEMU QEMU USB Audio\n"));
    QCOMPARE(r.out.count("\nDevice Descriptor:\n"), 1);
    // The four alternate settings of the two interfaces, each decoded.
    QCOMPARE(r.out.count("\n    Interface Descriptor:\n"), 5);
    QVERIFY(r.out.contains("        tSamFreq[ 0]        48000\n"));
}

void TestUsbDescriptorsCli::allDevices()
{
    const Result r = run({"--usb-descriptors"}, m_strTree);
    QCOMPARE(r.nExit, 0);
    QCOMPARE(r.out.count("\nDevice Descriptor:\n"), 11);
    // Root hubs first, then the devices by bus and port.
    QVERIFY(r.out.indexOf("devices/usb1\n") < r.out.indexOf("devices/1-1\n"));
    QVERIFY(r.out.indexOf("devices/1-1.4.1\n") < r.out.indexOf("devices/1-2\n"));
    QVERIFY(r.out.indexOf("devices/1-3\n") < r.out.indexOf("devices/usb2\n"));
}

void TestUsbDescriptorsCli::errors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("emptyRoot");
    QTest::addColumn<int>("exit");
    QTest::addColumn<QString>("message");
    QTest::newRow("no such device") << QStringList{"--usb-descriptors", "9-9"} << false << 1 << "No USB device at 9-9.";
    QTest::newRow("not a port path") << QStringList{"--usb-descriptors", "../1-1"} << false << 2
                                     << "\"../1-1\" is not a USB port path: use a name such as 1-1.4 or usb1.";
    QTest::newRow("two paths") << QStringList{"--usb-descriptors", "1-1", "1-2"} << false << 2
                               << "Give at most one USB port path.";
    QTest::newRow("no devices") << QStringList{"--usb-descriptors"} << true << 1 << "No USB device was found.";
}

void TestUsbDescriptorsCli::errors()
{
    QFETCH(QStringList, args);
    QFETCH(bool, emptyRoot);
    QFETCH(int, exit);
    QFETCH(QString, message);
    QTemporaryDir empty;
    QVERIFY(empty.isValid());
    const Result r = run(args, emptyRoot ? empty.path() : m_strTree);
    QCOMPARE(r.nExit, exit);
    QCOMPARE(r.err, message + "\n");
    QVERIFY(r.out.isEmpty());
}

QTEST_GUILESS_MAIN(TestUsbDescriptorsCli)
#include "tst_usbdescriptorscli.moc"

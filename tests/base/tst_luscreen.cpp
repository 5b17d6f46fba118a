#include "luinterface.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

// The screen size with a GUI application (offscreen platform): read on the
// GUI thread, and from a worker thread through the GUI thread; with another
// system root the running machine's screen is not that system's.
class TstLuScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fromGuiThread();
    void fromWorkerThread();
#ifdef Q_OS_LINUX
    // System roots other than the running one are a Linux notion.
    void otherRootIgnoresTheScreen();
#endif
    void cleanupTestCase();

private:
    QString strExpected;
};

void TstLuScreen::initTestCase()
{
    // The live system: the screen comes first.
    qunsetenv("VETRIX_SYSROOT");
    const QScreen *pScreen = QGuiApplication::primaryScreen();
    QVERIFY(pScreen);
    const QSize size = pScreen->size() * pScreen->devicePixelRatio();
    QVERIFY(!size.isEmpty());
    strExpected = QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

void TstLuScreen::fromGuiThread()
{
    QCOMPARE(LuInterface::resolution(), strExpected);
}

void TstLuScreen::fromWorkerThread()
{
    QString strResult;
    QThread *pThread = QThread::create([&strResult] { strResult = LuInterface::resolution(); });
    QEventLoop loop;
    connect(pThread, &QThread::finished, &loop, &QEventLoop::quit);
    pThread->start();
    loop.exec(); // serves the worker's request
    pThread->wait();
    delete pThread;
    QCOMPARE(strResult, strExpected);
}

#ifdef Q_OS_LINUX
void TstLuScreen::otherRootIgnoresTheScreen()
{
    // No DRM connector below the root: unknown, not this machine's screen.
    qputenv("VETRIX_SYSROOT", "/nonexistent-vetrix-root");
    QCOMPARE(LuInterface::resolution(), QStringLiteral("Unknown"));

    // The root's own connector.
    QTemporaryDir root;
    QVERIFY(root.isValid());
    const QString strConnector = root.path() + "/sys/class/drm/card0-DP-1";
    QVERIFY(QDir().mkpath(strConnector));
    for (const auto &file : {qMakePair(QStringLiteral("/status"), QByteArray("connected\n")),
                             qMakePair(QStringLiteral("/modes"), QByteArray("1234x567\n"))}) {
        QFile out(strConnector + file.first);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(file.second);
    }
    qputenv("VETRIX_SYSROOT", root.path().toLocal8Bit());
    QVERIFY(strExpected != QStringLiteral("1234 x 567"));
    QCOMPARE(LuInterface::resolution(), QStringLiteral("1234 x 567"));
}
#endif

void TstLuScreen::cleanupTestCase()
{
    qunsetenv("VETRIX_SYSROOT");
}

QTEST_MAIN(TstLuScreen)
#include "tst_luscreen.moc"

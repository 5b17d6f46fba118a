#include "lunativeeventfilter.h"

#include <QCoreApplication>
#include <QEvent>
#include <QtTest>

namespace {

// Stands in for the main window: counts the custom events it receives.
class EventSink : public QObject
{
public:
    int nLanguageEvents = 0;

protected:
    void customEvent(QEvent *pEvent) override
    {
        if (pEvent->type() == QEvent::Type(LuNativeEventFilter::LanguageChangedEvent))
            ++nLanguageEvents;
    }
};

} // namespace

class TstLuNativeEventFilter : public QObject
{
    Q_OBJECT

private slots:
    void passesThrough_data();
    void passesThrough();
    void keepsWindowPointer();
};

void TstLuNativeEventFilter::passesThrough_data()
{
    QTest::addColumn<QByteArray>("eventType");
    QTest::addRow("xcb event") << QByteArray("xcb_generic_event_t");
    QTest::addRow("unknown event type") << QByteArray("something_else");
    QTest::addRow("empty type") << QByteArray();
}

// On Linux no native message is the suite's: nothing is consumed or posted.
void TstLuNativeEventFilter::passesThrough()
{
    QFETCH(QByteArray, eventType);
    EventSink window;
    LuNativeEventFilter filter(&window);
    long nResult = 12345;
    QVERIFY(!filter.nativeEventFilter(eventType, nullptr, &nResult));
    QCOMPARE(nResult, 12345L);
    QCoreApplication::processEvents();
    QCOMPARE(window.nLanguageEvents, 0);
}

// The filter outlives a deleted window without dangling.
void TstLuNativeEventFilter::keepsWindowPointer()
{
    auto *pWindow = new EventSink;
    LuNativeEventFilter filter(pWindow);
    QCOMPARE(filter.mainWindow(), static_cast<QObject *>(pWindow));
    delete pWindow;
    QCOMPARE(filter.mainWindow(), static_cast<QObject *>(nullptr));
    QVERIFY(!filter.nativeEventFilter("xcb_generic_event_t", nullptr, nullptr));
}

QTEST_GUILESS_MAIN(TstLuNativeEventFilter)
#include "tst_lunativeeventfilter.moc"

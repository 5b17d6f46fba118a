#include "cusblinesink.h"

CUsbLineSink::~CUsbLineSink() = default;

void CUsbLineSink::addHeading(const QString &strHeading)
{
    addLine(QString(), QString());
    addLine(strHeading, QString());
}

void CUsbTextSink::addLine(const QString &strLabel, const QString &strValue)
{
    if (strLabel.isEmpty() && strValue.isEmpty())
        listLines.append(QStringLiteral("  "));
    else
        listLines.append(strLabel + QStringLiteral("    ") + strValue);
}

void CUsbPairSink::addLine(const QString &strLabel, const QString &strValue)
{
    vecLines.append(qMakePair(strLabel, strValue));
}

#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

// Where the USB decoders write: one label/value line at a time. The tree
// viewer's table, its text mode, the report and the command line each
// provide one; the decoders never see a widget.
class CUsbLineSink
{
public:
    virtual ~CUsbLineSink();
    virtual void addLine(const QString &strLabel, const QString &strValue) = 0;

    // A heading: a blank separator line, then the heading text with no value.
    void addHeading(const QString &strHeading);
};

// Text mode: "label    value" per line, "  " for a blank line.
class CUsbTextSink : public CUsbLineSink
{
public:
    void addLine(const QString &strLabel, const QString &strValue) override;
    QStringList listLines;
};

// Keeps the pairs as they come (tests, table fillers).
class CUsbPairSink : public CUsbLineSink
{
public:
    void addLine(const QString &strLabel, const QString &strValue) override;
    QVector<QPair<QString, QString>> vecLines;
};

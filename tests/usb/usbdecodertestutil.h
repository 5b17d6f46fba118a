#pragma once

// Shared by the descriptor decoder tests: the decoder's lines of a walk or of
// one member, picked apart (headings, values of a label), hand-made
// configuration and interface descriptors, and a vendor list of the tests'
// own.
#include "cusbdescriptordecoder.h"
#include "cusblinesink.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QPair>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

namespace UsbDecoderTest {

using Lines = QVector<QPair<QString, QString>>;

inline Lines walk(const QByteArray &block, int nBytes = -1)
{
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    decoder.walkConfiguration(reinterpret_cast<const quint8 *>(block.constData()), nBytes < 0 ? block.size() : nBytes);
    return sink.vecLines;
}

inline Lines member(EUsbMember eMember, const QByteArray &bytes)
{
    CUsbPairSink sink;
    CUsbDescriptorDecoder decoder(sink);
    decoder.printMember(eMember, reinterpret_cast<const quint8 *>(bytes.constData()), bytes.size());
    return sink.vecLines;
}

inline QStringList headings(const Lines &lines)
{
    QStringList list;
    for (int i = 1; i < lines.size(); ++i)
        if (lines[i - 1].first.isEmpty() && lines[i - 1].second.isEmpty() && !lines[i].first.isEmpty())
            list << lines[i].first;
    return list;
}

inline QStringList valuesOf(const Lines &lines, const QString &label)
{
    QStringList list;
    for (const auto &line : lines)
        if (line.first == label)
            list << line.second;
    return list;
}

inline QStringList labels(const Lines &lines)
{
    QStringList list;
    for (const auto &line : lines)
        list << line.first;
    return list;
}

// A configuration header with the given wTotalLength, attributes and power.
inline QByteArray config(int nTotal, quint8 attributes = 0x80, quint8 power = 0x32)
{
    QByteArray c = QByteArray::fromHex("0902000001010000");
    c[2] = char(nTotal & 0xFF);
    c[3] = char(nTotal >> 8);
    c[7] = char(attributes);
    c += char(power);
    return c;
}

inline QByteArray interfaceDesc(quint8 number, quint8 cls = 3, quint8 subclass = 0, quint8 protocol = 0)
{
    QByteArray d = QByteArray::fromHex("090400000100000000");
    d[2] = char(number);
    d[5] = char(cls);
    d[6] = char(subclass);
    d[7] = char(protocol);
    return d;
}

// A walk over a configuration holding one interface and one class-specific
// descriptor after it (filler after the 9-byte descriptors, as the walk
// steps by twice bLength).
inline Lines walkInterfaceAnd(const QByteArray &iface, const QByteArray &descriptor)
{
    QByteArray block = config(0);
    block += QByteArray(9, '\x11');
    block += iface;
    block += QByteArray(9, '\x11');
    block += descriptor;
    block[2] = char(block.size());
    return walk(block);
}

// A system root of the tests' own with a small usb.ids, so vendor names do
// not depend on the machine. install() writes the list and makes the folder
// the system root; false when it cannot.
class VendorListRoot
{
public:
    bool install()
    {
        if (!m_dir.isValid())
            return false;
        QDir().mkpath(path() + "/usr/share/misc");
        QFile ids(path() + "/usr/share/misc/usb.ids");
        if (!ids.open(QIODevice::WriteOnly))
            return false;
        ids.write("# test list\n046d  Logitech, Inc.\n\tc077  M105 Optical Mouse\n0627  Adomax Technology Co., Ltd\n"
                  "C 03  Human Interface Device\n0999  not a vendor\n");
        ids.close();
        qputenv("VETRIX_SYSROOT", path().toLocal8Bit());
        return true;
    }
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

} // namespace UsbDecoderTest

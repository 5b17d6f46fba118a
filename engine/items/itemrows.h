#pragma once

#include "cdetectinfo.h"
#include "vxitemregistry.h"

#include <QCoreApplication>

#include <memory>

namespace CameraDrivers {
class PollPacer;
}

// The rows of each group, defined beside the texts and facts of their items.
QVector<VxItemRow> sdkItemRows();
QVector<VxItemRow> driverItemRows();
QVector<VxItemRow> systemItemRows();
QVector<VxItemRow> tuningItemRows();

// The probes of a camera driver item (the GigE Vision or the USB3 Vision
// driver; empty for any other item): its status check paced by pPacer (a
// new pacer on the real clock when null), its installer started with rights
// and where that installer is.
VxItemProbes cameraDriverProbes(VxItems::ItemId id, const VxPrivileges &rights,
    const std::shared_ptr<CameraDrivers::PollPacer> &pPacer);

// A row of an item whose record is of class Record, detected at rank
// nDetect and shown as row nDisplay of its group.
template <typename Record>
VxItemRow recordRow(VxItems::ItemId id, const char *pName, VxItems::Group group, int nDetect, int nDisplay)
{
    VxItemRow row(id, pName, group);
    row.nDetectRank = nDetect;
    row.nDisplayRank = nDisplay;
    row.create = vxNewRecord<Record>;
    row.fits = vxRecordFits<Record>;
    return row;
}

// Probes of an item with only a check.
template <auto Check> VxItemProbes checkOnly(const VxPrivileges &)
{
    VxItemProbes probes;
    probes.check = vxCheck(Check);
    return probes;
}

namespace VxItemText {
// A text of the result view (context "VxOneKeyResult").
inline QString translated(const char *pSource)
{
    return QCoreApplication::translate("VxOneKeyResult", pSource);
}
// One of two lines, for a normal and an exceptional outcome.
inline QStringList outcomeLine(const CDetectInfo &info, const char *pNormal, const char *pExceptional);
// The line "    <dir>/<name>" for each directory of each name.
void appendDirectoryLines(QStringList &lines, const QMap<QString, QStringList> &mapFound);
} // namespace VxItemText

namespace VxItemFacts {
QJsonObject stringMap(const QMap<QString, QString> &map);
QJsonObject listMap(const QMap<QString, QStringList> &map);
QJsonObject intMap(const QMap<QString, int> &map);
// An object of named strings.
QJsonObject strings(std::initializer_list<std::pair<const char *, QString>> fields);
// For items whose outcome is all there is.
inline QJsonObject none(const CDetectInfo &)
{
    return QJsonObject();
}
} // namespace VxItemFacts

inline QStringList VxItemText::outcomeLine(const CDetectInfo &info, const char *pNormal, const char *pExceptional)
{
    return {translated(info.bNormal ? pNormal : pExceptional)};
}

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// Collects the crash dumps of this program and of the maker's sibling tools,
// and the system crash dump, into one folder for support. The dialog
// (VxGrabDumpTool) shows the target folder and calls grab().
namespace DumpGrabber {

// This program's executable name without a suffix: its crash dumps are named
// after it, not after the SDK (appName()).
QString programName();

// The watched program names, built once: this program first, then the
// sibling tools (executable names of this platform).
QStringList watchedNames();

// The process-wide saved target folder (empty at start); the dialog sets it
// to userDataPath() + "/Dump" when it is empty and keeps what it last showed.
QString savedTargetFolder();
void setSavedTargetFolder(const QString &strFolder);

// Whether a dump file name belongs to a watched program (prefix test,
// ignoring case, in the platform's dump naming).
bool isWatchedDump(const QString &strFileName);

// Fills mapFiles (file name -> directory holding it) with the system crash
// dump and the watched programs' dumps; a name found twice keeps the place
// found last.
void collect(QMap<QString, QString> &mapFiles);

// The folder grab() copies into: strFolder + "/<appName>Dumps/".
QString targetFolder(const QString &strFolder);

// Collects, creates the target folder (one level: strFolder must exist) and
// copies every file into it; a file already there is not overwritten and a
// failed copy is skipped. Returns the number of files copied.
int grab(const QString &strFolder);

} // namespace DumpGrabber

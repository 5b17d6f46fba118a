#pragma once

#include "atomicfile.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// The machine-wide environment file read by pam_env (/etc/environment):
// lines of NAME=value or NAME="value", "#" comments.
namespace EtcEnvironment {

using Assignments = QList<QPair<QString, QString>>; // name, new value

// The file below the system root.
QString filePath();

// A value the file can hold: no line break, NUL or quote character.
bool isValidValue(const QString &strValue);
// A variable name: letters, digits and "_", not starting with a digit.
bool isValidName(const QString &strName);

// The value assigned to strName by the file's text (the last assignment
// wins, as pam_env reads it), unquoted; a null string when none.
QString valueOf(const QByteArray &content, const QString &strName);

// The file's text with each assignment applied: the last line that sets the
// variable gets the new value (keeping its quoting, indentation and line
// end), a variable not yet set is appended as NAME="value". Every other byte
// is kept as it was.
QByteArray applied(const QByteArray &content, const Assignments &assignments);

// Reads the file, applies the assignments and replaces it atomically; logs
// each variable with its old and new value. False when nothing was written
// (invalid name or value, or the write failed). options go to the atomic
// write of the file.
bool apply(const Assignments &assignments, const AtomicFile::Options &options = AtomicFile::Options());

// The file's text without the last line that sets strName (the one
// applied() changes or appends); every other byte is kept.
QByteArray removed(const QByteArray &content, const QString &strName);
// Removes that line from the file atomically, logged; true when the
// variable was not set at all.
bool unset(const QString &strName);

} // namespace EtcEnvironment

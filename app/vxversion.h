#pragma once

#include <QString>

namespace VxVersion {
// The built-in version and build date ("Mmm d yyyy").
QString defaultVersion();
QString buildDate();
// "Mmm d yyyy" -> "yyyyMMdd"; empty for a text it cannot read.
QString convertBuildDate(const QString &strDate);
// "V<version> build<yyyyMMdd>": the built-in values, then the application
// ini file's version, then the maker configuration's date and version.
QString versionText();
} // namespace VxVersion

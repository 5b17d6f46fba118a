#pragma once

#include <QSize>
#include <QString>

// The one-key page's "detecting" animation: a ring whose bright arc turns
// around a monitor with a scanning line. Drawn with QPainter and written as
// a looping GIF (QMovie plays it).
namespace DetectingGif {
bool write(const QString &strPath, const QSize &size);
}

// The on-disk sandbox that the fuzz targets over sysfs-like trees share: one
// QCoreApplication and one tree per process, with the system root pointed at
// the tree so the probes read what the input built.
#pragma once

#include "fuzztree.h"

#include <QCoreApplication>
#include <QtGlobal>

namespace FuzzTree {

inline Tree &sandbox(const char *pszProgram)
{
    static int nArgc = 1;
    static char *argv[] = {const_cast<char *>(pszProgram), nullptr};
    static QCoreApplication app(nArgc, argv);
    static Tree tree;
    qputenv("VETRIX_SYSROOT", tree.root().c_str());
    return tree;
}

} // namespace FuzzTree

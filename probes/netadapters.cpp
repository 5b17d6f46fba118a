#include "netadapters.h"

namespace NetAdapters {

QList<CNetAdapter> &adapterList()
{
    static QList<CNetAdapter> list;
    return list;
}

QMap<QString, QString> &jumboValueNames()
{
    static QMap<QString, QString> map;
    return map;
}

} // namespace NetAdapters

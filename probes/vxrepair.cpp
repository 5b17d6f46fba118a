#include "vxrepair.h"

Q_LOGGING_CATEGORY(lcVxRepair, "vetrix.repair")

VxPrivileges::VxPrivileges(QString strHelper, Rights rights)
    : m_strHelper(std::move(strHelper))
    , m_rights(rights)
{
}

const VxPrivileges &VxPrivileges::system()
{
    static const VxPrivileges privileges;
    return privileges;
}

bool VxPrivileges::isRoot() const
{
    switch (m_rights) {
    case Rights::Root:
        return true;
    case Rights::User:
        return false;
    case Rights::AskSystem:
        break;
    }
    return VxPrivileged::isRoot();
}

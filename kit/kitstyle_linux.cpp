#include "kitstyle.h"

#include <QByteArray>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

// A compositing manager owns the selection _NET_WM_CM_S<screen> (EWMH).
bool x11CompositorRunning()
{
    int nScreen = 0;
    xcb_connection_t *pConnection = xcb_connect(nullptr, &nScreen);
    if (!pConnection || xcb_connection_has_error(pConnection)) {
        if (pConnection)
            xcb_disconnect(pConnection);
        return false;
    }
    const QByteArray atomName = "_NET_WM_CM_S" + QByteArray::number(nScreen);
    xcb_intern_atom_reply_t *pAtom = xcb_intern_atom_reply(
        pConnection, xcb_intern_atom(pConnection, 1, uint16_t(atomName.size()), atomName.constData()), nullptr);
    bool bRunning = false;
    if (pAtom && pAtom->atom != XCB_ATOM_NONE) {
        xcb_get_selection_owner_reply_t *pOwner = xcb_get_selection_owner_reply(
            pConnection, xcb_get_selection_owner(pConnection, pAtom->atom), nullptr);
        bRunning = pOwner && pOwner->owner != XCB_WINDOW_NONE;
        std::free(pOwner);
    }
    std::free(pAtom);
    xcb_disconnect(pConnection);
    return bRunning;
}

} // namespace

namespace KitStyle {

bool compositingActive()
{
    const QString strPlatform = QGuiApplication::platformName();
    if (strPlatform.startsWith(QLatin1String("wayland")))
        return true;
    if (strPlatform != QLatin1String("xcb"))
        return false;
    static const bool bRunning = x11CompositorRunning();
    return bRunning;
}

} // namespace KitStyle

#pragma once

class QWidget;

// Keeps one copy of the program per desktop session.
namespace VxSingleInstance {
// True when another instance runs (it has been asked to come to the front);
// false when this is the first instance, which now holds the claim.
bool anotherInstanceRuns();
// The window a later start brings to the front (first instance only).
void setMainWindow(QWidget *pWindow);
// Gives the claim up (after the event loop).
void release();
} // namespace VxSingleInstance

// The 64-bit platform check: always passes (a 32-bit Windows never runs the
// x64 program far enough to ask).
bool vxPlatformCheck();

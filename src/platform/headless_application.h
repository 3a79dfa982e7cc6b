#pragma once
// The Qt application object for headless work (cwreport): fonts and page
// devices need a QGuiApplication, but no display. The offscreen platform is
// chosen unless QT_QPA_PLATFORM names another.

#include <QGuiApplication>
#include <memory>

namespace cw {

// A new application object, or null when the process already has one (which
// then serves). Keep the result alive while Qt is used.
std::unique_ptr<QGuiApplication> MakeHeadlessApplication();

}  // namespace cw

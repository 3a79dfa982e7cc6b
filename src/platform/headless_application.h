#pragma once
// The Qt application object for headless work (cwreport, the benchmarks):
// fonts and page devices need a QGuiApplication, but no display. The
// offscreen platform is chosen unless QT_QPA_PLATFORM names another.

#include <QGuiApplication>
#include <memory>

namespace cw {

// What the work needs of Qt: fonts and page devices alone, or widgets too
// (the bar chart draws with Qt Charts, whose views are widgets).
enum class HeadlessKind { kGui, kWidgets };

// A new application object (a QApplication for kWidgets), or null when the
// process already has one, which then serves. Keep the result alive while Qt
// is used. Qt's note that a headless session has no runtime folder is kept
// off standard error; every other message passes.
std::unique_ptr<QGuiApplication> MakeHeadlessApplication(HeadlessKind kind = HeadlessKind::kGui);

}  // namespace cw

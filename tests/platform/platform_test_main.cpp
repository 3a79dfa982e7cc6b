// The Qt layer measures and draws with fonts, which needs the application
// object before any test runs; charts are drawn with Qt Charts' graphics
// widgets, so it is a QApplication. No display is needed: the offscreen platform
// is used unless the environment asks for another (test discovery runs the
// program outside CTest's environment).
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

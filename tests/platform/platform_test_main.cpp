// The Qt layer measures and draws with fonts, which needs the application
// object before any test runs. No display is needed: the offscreen platform
// is used unless the environment asks for another (test discovery runs the
// program outside CTest's environment).
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

// Window generation, window font and the SmartEdge border painter.

#include <QFrame>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include "forms/forms_rig.h"
#include "forms/window_appearance.h"
#include "platform/font_mapping.h"

using namespace cw;

class WindowAppearanceTest : public QObject {
  Q_OBJECT

 private slots:
  // The table win_generations.txt.
  void generationFromProductName() {
    for (const QStringList& row : testing::TableRows(QStringLiteral("win_generations.txt"))) {
      QCOMPARE(GetWinVersion(row.value(0).toStdString()), row.value(1).toShort());
    }
#ifndef Q_OS_WIN
    QCOMPARE(ReadWinProductName(), std::string());
    QCOMPARE(GetWinVersion(), kUnknownWinVersion);
#endif
  }

  void windowFontReachesNestedControls() {
    QWidget form;
    auto* group = new QGroupBox(QStringLiteral("Range"), &form);
    auto* edit = new QLineEdit(group);
    auto* label = new QLabel(QStringLiteral("Copies"), group);
    QFont bold = label->font();
    bold.setBold(true);
    bold.setPointSize(14);
    label->setFont(bold);

    ApplyWindowFont(&form, kUnknownWinVersion);
    const QString segoe = ResolveFontFamily("Segoe UI");
    for (QWidget* widget : std::initializer_list<QWidget*>{&form, group, edit, label}) {
      QCOMPARE(widget->font().family(), segoe);
      QCOMPARE(widget->font().pointSize(), 9);
    }
    // Only name and size change: the label stays bold.
    QVERIFY(label->font().bold());

    ApplyWindowFont(&form, 5);
    QCOMPARE(edit->font().family(), ResolveFontFamily("Tahoma"));
    QCOMPARE(edit->font().pointSize(), 8);
  }

  // Attached, the edge takes the place of the frame and its margins;
  // attached again, it keeps one painter, and detached it gives back the
  // frame and margins the widget had before the first attach.
  void smartEdgeAttachAndDetach() {
    QFrame frame;
    frame.setFrameStyle(QFrame::Panel | QFrame::Raised);
    frame.setContentsMargins(3, 4, 5, 6);
    frame.setAutoFillBackground(true);
    frame.resize(60, 30);

    QVERIFY(SmartEdgeAttach(&frame, kBorderSunken));
    QCOMPARE(frame.frameStyle(), int(QFrame::NoFrame));
    QCOMPARE(frame.contentsMargins(), QMargins(2, 2, 2, 2));
    const QPalette& palette = frame.palette();
    QImage shot = frame.grab().toImage();
    QCOMPARE(shot.pixel(0, 0), palette.color(QPalette::Dark).rgb());
    QCOMPARE(shot.pixel(1, 1), palette.color(QPalette::Shadow).rgb());
    QCOMPARE(shot.pixel(59, 29), palette.color(QPalette::Light).rgb());
    QCOMPARE(shot.pixel(58, 28), palette.color(QPalette::Midlight).rgb());
    QCOMPARE(shot.pixel(30, 15), palette.color(QPalette::Window).rgb());
    QVERIFY(!SmartEdgeAttach(nullptr, kBorderSunken));

    SmartEdgeAttach(&frame, kBorderThinSunken);
    QCOMPARE(frame.findChildren<QObject*>(QStringLiteral("SmartEdgePainter")).size(), 1);
    QCOMPARE(frame.contentsMargins(), QMargins(1, 1, 1, 1));
    // A thin edge is one pixel: the second ring is the background.
    shot = frame.grab().toImage();
    QCOMPARE(shot.pixel(0, 0), palette.color(QPalette::Dark).rgb());
    QCOMPARE(shot.pixel(1, 1), palette.color(QPalette::Window).rgb());

    SmartEdgeDetach(&frame);
    QCOMPARE(frame.frameStyle(), int(QFrame::Panel | QFrame::Raised));
    QCOMPARE(frame.contentsMargins(), QMargins(3, 4, 5, 6));
    QVERIFY(frame.findChildren<QObject*>(QStringLiteral("SmartEdgePainter")).isEmpty());

    // Another border style draws no edge and changes no frame bits: the
    // edit keeps its own frame and margins.
    QLineEdit edit;
    edit.resize(80, 24);
    SmartEdgeAttach(&edit, 3);
    QVERIFY(edit.hasFrame());
    QCOMPARE(edit.contentsMargins(), QMargins(0, 0, 0, 0));
    const QImage withPainter = edit.grab().toImage();
    SmartEdgeDetach(&edit);
    QCOMPARE(edit.grab().toImage(), withPainter);

    SmartEdgeAttach(&edit, kBorderThinSunken);
    QVERIFY(!edit.hasFrame());
  }
};

QTEST_MAIN(WindowAppearanceTest)
#include "window_appearance_test.moc"

#include "forms/window_appearance.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QLineEdit>
#include <QMargins>
#include <QPainter>
#include <QPointer>
#include <QVariant>
#include <QWidget>
#include <array>

#ifdef Q_OS_WIN
#include <QSettings>
#endif

#include "platform/font_mapping.h"

namespace cw {

// ---------------------------------------------------------------------------
// Generation

std::int16_t GetWinVersion(std::string_view productName) {
  struct Row {
    std::array<std::string_view, 5> words;
    std::int16_t generation;
  };
  // Tested top to bottom; the first row with a word in the name wins.
  static constexpr std::array<Row, 5> kRows{{
      {{"98"}, 4},
      {{"2000", "Server 2003", "XP"}, 5},
      {{"Vista", "Server 2008", "Windows 7", "Windows 8", "Server 2012"}, 6},
      {{"Windows 10", "Server 2016"}, 10},
      {{"Windows Server Technical"}, 10},
  }};
  for (const Row& row : kRows) {
    for (std::string_view word : row.words) {
      if (!word.empty() && productName.find(word) != std::string_view::npos) return row.generation;
    }
  }
  return kUnknownWinVersion;
}

std::string ReadWinProductName() {
#ifdef Q_OS_WIN
  const QSettings key(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion"),
                      QSettings::NativeFormat);
  return key.value(QStringLiteral("ProductName")).toString().toStdString();
#else
  return {};
#endif
}

std::int16_t GetWinVersion() { return GetWinVersion(ReadWinProductName()); }

// ---------------------------------------------------------------------------
// Window font

WindowFont WindowFontFor(std::int16_t generation) {
  if (generation < 5) return {"MS Sans Serif", 8};
  if (generation == 5) return {"Tahoma", 8};
  return {"Segoe UI", 9};
}

void ApplyWindowFont(QWidget* form, std::int16_t generation) {
  if (form == nullptr) return;
  const WindowFont chosen = WindowFontFor(generation);
  const QString family = ResolveFontFamily(chosen.name);
  const auto apply = [&](QWidget* widget) {
    QFont font = widget->font();
    font.setFamily(family);
    font.setPointSize(chosen.points);
    widget->setFont(font);
  };
  apply(form);
  for (QWidget* control : form->findChildren<QWidget*>()) apply(control);
}

void ApplyApplicationFont(std::int16_t generation) {
  const WindowFont chosen = WindowFontFor(generation);
  QFont font = QApplication::font();
  font.setFamily(ResolveFontFamily(chosen.name));
  font.setPointSize(chosen.points);
  QApplication::setFont(font);
}

// ---------------------------------------------------------------------------
// SmartEdge

namespace {

// The border painter: the widget paints itself as always, then the edge of
// its border kind is drawn over its outermost pixels. Every other event goes
// on to the widget untouched.
class SmartEdgePainter final : public QObject {
 public:
  explicit SmartEdgePainter(QWidget* widget) : QObject(widget), widget_(widget) {
    setObjectName(QStringLiteral("SmartEdgePainter"));
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != widget_ || event->type() != QEvent::Paint) return false;
    QObject* target = widget_;
    target->event(event);
    PaintEdge(widget_->property(kSedBorders).toInt());
    return true;
  }

 private:
  void PaintEdge(int borders) {
    if (EdgeWidth(borders) == 0) return;
    QPainter painter(widget_);
    const QPalette& palette = widget_->palette();
    const QRect all = widget_->rect();
    // The outer ring: shadow above and left, highlight below and right.
    DrawRing(painter, all, palette.color(QPalette::Dark), palette.color(QPalette::Light));
    if (borders == kBorderSunken) {
      DrawRing(painter, all.adjusted(1, 1, -1, -1), palette.color(QPalette::Shadow),
               palette.color(QPalette::Midlight));
    }
  }

  static void DrawRing(QPainter& painter, const QRect& r, const QColor& topLeft, const QColor& bottomRight) {
    if (r.width() <= 0 || r.height() <= 0) return;
    painter.setPen(topLeft);
    painter.drawLine(r.left(), r.top(), r.right(), r.top());
    painter.drawLine(r.left(), r.top(), r.left(), r.bottom());
    painter.setPen(bottomRight);
    painter.drawLine(r.left() + 1, r.bottom(), r.right(), r.bottom());
    painter.drawLine(r.right(), r.top() + 1, r.right(), r.bottom());
  }

  QWidget* widget_;
};

// The widget's own frame, as one number: a QFrame's frame style, or 1 / 0 for
// the controls that only draw a frame or not.
int OwnFrameStyle(const QWidget* widget) {
  if (const auto* frame = qobject_cast<const QFrame*>(widget)) return frame->frameStyle();
  if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) return edit->hasFrame() ? 1 : 0;
  if (const auto* combo = qobject_cast<const QComboBox*>(widget)) return combo->hasFrame() ? 1 : 0;
  if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(widget)) return spin->hasFrame() ? 1 : 0;
  return 0;
}

void SetOwnFrameStyle(QWidget* widget, int style) {
  if (auto* frame = qobject_cast<QFrame*>(widget)) {
    frame->setFrameStyle(style);
  } else if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
    edit->setFrame(style != 0);
  } else if (auto* combo = qobject_cast<QComboBox*>(widget)) {
    combo->setFrame(style != 0);
  } else if (auto* spin = qobject_cast<QAbstractSpinBox*>(widget)) {
    spin->setFrame(style != 0);
  }
}

QObject* InstalledPainter(const QWidget* widget) { return widget->property(kSedOldProc).value<QObject*>(); }

void RefreshFrame(QWidget* widget) {
  widget->updateGeometry();
  widget->update();
}

}  // namespace

int EdgeWidth(int borders) {
  if (borders == kBorderSunken) return 2;
  if (borders == kBorderThinSunken) return 1;
  return 0;
}

void SetBorderStyle(QWidget* widget, int style) {
  if (widget == nullptr) return;
  if (style == kBorderSunken || style == kBorderThinSunken) {
    SetOwnFrameStyle(widget, 0);
    const int width = EdgeWidth(style);
    widget->setContentsMargins(width, width, width, width);
  }
  RefreshFrame(widget);
}

bool SmartEdgeAttach(QWidget* widget, int borders) {
  if (widget == nullptr) return false;
  if (QObject* previous = InstalledPainter(widget)) {
    widget->removeEventFilter(previous);
    delete previous;
  } else {
    widget->setProperty(kSedOldStyle, OwnFrameStyle(widget));
    widget->setProperty(kSedOldExStyle, QVariant::fromValue(widget->contentsMargins()));
  }
  SetBorderStyle(widget, borders);
  auto* painter = new SmartEdgePainter(widget);
  widget->installEventFilter(painter);
  widget->setProperty(kSedOldProc, QVariant::fromValue<QObject*>(painter));
  widget->setProperty(kSedBorders, borders);
  RefreshFrame(widget);
  return true;
}

void SmartEdgeDetach(QWidget* widget) {
  if (widget == nullptr) return;
  QObject* painter = InstalledPainter(widget);
  if (painter == nullptr) return;
  widget->removeEventFilter(painter);
  delete painter;
  SetOwnFrameStyle(widget, widget->property(kSedOldStyle).toInt());
  widget->setContentsMargins(widget->property(kSedOldExStyle).value<QMargins>());
  for (const char* name : {kSedOldProc, kSedOldStyle, kSedOldExStyle, kSedBorders}) {
    widget->setProperty(name, QVariant());
  }
  RefreshFrame(widget);
}

}  // namespace cw

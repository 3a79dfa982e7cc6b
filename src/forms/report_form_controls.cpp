// The controls of fReport and where they sit. One set of controls serves all
// nine tabs: each tab shows or hides them (report_tab_layout.h), and every
// control keeps its place when hidden so that nothing moves as tabs change.
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyleOptionTabWidgetFrame>
#include <QStylePainter>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "forms/report_form_window.h"
#include "forms/report_tab_layout.h"
#include "forms/window_appearance.h"
#include "reports/report_request.h"
#include "support/ansi_text.h"

namespace cw {

namespace {

// The page under the tab strip, drawn as the style draws a tab widget's pane.
class TabPane final : public QFrame {
 public:
  explicit TabPane(QWidget* parent) : QFrame(parent) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionTabWidgetFrame option;
    option.initFrom(this);
    option.shape = QTabBar::RoundedNorth;
    option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    painter.drawPrimitive(QStyle::PE_FrameTabWidget, option);
  }
};

// The tab strip over its page, overlapping it by the style's base overlap so
// that the selected tab opens into the page, both with the same left edge and
// width.
class TabArea final : public QWidget {
 public:
  TabArea(QTabBar* tabs, QWidget* pane, QWidget* parent) : QWidget(parent), tabs_(tabs), pane_(pane) {
    tabs_->setParent(this);
    pane_->setParent(this);
    tabs_->raise();
  }

  QSize sizeHint() const override {
    const QSize tabs = tabs_->sizeHint();
    const QSize pane = pane_->sizeHint();
    return {std::max(tabs.width(), pane.width()), tabs.height() - Overlap() + pane.height()};
  }
  // Narrower than all tabs when the screen is (large text scaling): the
  // strip then scrolls.
  QSize minimumSizeHint() const override {
    return {std::max(tabs_->minimumSizeHint().width(), pane_->sizeHint().width()), sizeHint().height()};
  }

 protected:
  void resizeEvent(QResizeEvent*) override {
    const int tabHeight = tabs_->sizeHint().height();
    tabs_->setGeometry(0, 0, width(), tabHeight);
    pane_->setGeometry(0, tabHeight - Overlap(), width(), height() - tabHeight + Overlap());
  }

 private:
  int Overlap() const { return style()->pixelMetric(QStyle::PM_TabBarBaseOverlap, nullptr, tabs_); }

  QTabBar* tabs_;
  QWidget* pane_;
};

// A small calendar page for the date buttons.
QIcon CalendarIcon() {
  QPixmap pixmap(16, 16);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setPen(QColor(80, 80, 80));
  painter.setBrush(Qt::white);
  painter.drawRect(1, 2, 13, 12);
  painter.fillRect(2, 3, 12, 3, QColor(200, 40, 40));
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(80, 80, 80));
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 4; ++column) painter.drawRect(3 + column * 3, 7 + row * 2, 1, 1);
  }
  return QIcon(pixmap);
}

template <class Widget>
Widget* Named(Widget* widget, const char* name) {
  widget->setObjectName(QString::fromLatin1(name));
  return widget;
}

// Controls that a tab hides keep their room, so the others stay in place.
void KeepPlaceWhenHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace

void fReport::BuildControls() {
  TabStrip = Named(new QTabBar, "TabStrip");
  TabStrip->setDrawBase(false);
  TabStrip->setExpanding(false);
  TabStrip->setUsesScrollButtons(true);
  for (std::int16_t kind = 1; kind <= kind::kCallBacks; ++kind) {
    TabStrip->addTab(QString::fromStdString(Win1252ToUtf8(TabCaption(kind, {}))));
  }
  picBackground = Named(new TabPane(nullptr), "picBackground");
  auto* tabArea = new TabArea(TabStrip, picBackground, this);

  // Calls: direction or report variant, and the chart box.
  fraOptions = Named(new QGroupBox(tr("Calls")), "fraOptions");
  Option1 = Named(new QRadioButton, "Option1");
  Option2 = Named(new QRadioButton, "Option2");
  Option3 = Named(new QRadioButton, "Option3");
  chkChart = Named(new QCheckBox(tr("Include Graph")), "chkChart");
  auto* directionGroup = new QButtonGroup(this);
  auto* optionsLayout = new QVBoxLayout(fraOptions);
  int option = 1;
  for (QRadioButton* button : {Option1, Option2, Option3}) {
    directionGroup->addButton(button, option);
    optionsLayout->addWidget(button);
    KeepPlaceWhenHidden(button);
    connect(button, &QRadioButton::clicked, this, [this, option] { Option_Click(option); });
    ++option;
  }
  optionsLayout->addSpacing(6);
  optionsLayout->addWidget(chkChart);
  optionsLayout->addStretch();
  KeepPlaceWhenHidden(chkChart);
  connect(chkChart, &QCheckBox::toggled, this, &fReport::ChartBox_Toggled);

  // The abandoned-call box's in/out choice, in the same place on its tab.
  oInOut = Named(new QGroupBox(tr("Calls")), "oInOut");
  inOutButtons = new QButtonGroup(this);
  auto* inOutLayout = new QVBoxLayout(oInOut);
  const char* const inOutNames[] = {"oInOut_0", "oInOut_1", "oInOut_2"};
  const char* const inOutCaptions[] = {"In Calls", "Out Calls", "In && Out"};
  for (int index = 0; index < 3; ++index) {
    auto* button = Named(new QRadioButton(tr(inOutCaptions[index])), inOutNames[index]);
    inOutButtons->addButton(button, index);
    inOutLayout->addWidget(button);
  }
  inOutLayout->addStretch();
  connect(inOutButtons, &QButtonGroup::idClicked, this, &fReport::oInOut_Click);

  // Time period.
  oTimePeriod = Named(new QGroupBox(tr("Time Period")), "oTimePeriod");
  periodButtons = new QButtonGroup(this);
  auto* periodLayout = new QVBoxLayout(oTimePeriod);
  const char* const periodNames[] = {"oTimePeriod_0", "oTimePeriod_1", "oTimePeriod_2", "oTimePeriod_3"};
  const char* const periodCaptions[] = {"Today", "Current Week", "Current Month", "All Log Entries"};
  for (int index = 0; index < 4; ++index) {
    auto* button = Named(new QRadioButton(tr(periodCaptions[index])), periodNames[index]);
    periodButtons->addButton(button, index);
    periodLayout->addWidget(button);
  }
  periodLayout->addStretch();
  connect(periodButtons, &QButtonGroup::idClicked, this, &fReport::oTimePeriod_Click);

  // From and To, each with its calendar.
  fraDates = Named(new QGroupBox(tr("Report Period")), "fraDates");
  lFromDate = Named(new QLabel, "lFromDate");
  lToDate = Named(new QLabel, "lToDate");
  cmdFrom = Named(new QToolButton, "cmdFrom");
  cmdTo = Named(new QToolButton, "cmdTo");
  auto* datesLayout = new QGridLayout(fraDates);
  const QIcon calendar = CalendarIcon();
  int row = 0;
  for (auto [caption, label, button] : {std::tuple{"From", lFromDate, cmdFrom}, std::tuple{"To", lToDate, cmdTo}}) {
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 12);
    label->setAlignment(Qt::AlignCenter);
    label->setAutoFillBackground(true);
    label->setBackgroundRole(QPalette::Base);
    SmartEdgeAttach(label, kBorderSunken);
    button->setIcon(calendar);
    button->setToolTip(tr(row == 0 ? "Choose the first day of the report" : "Choose the last day of the report"));
    datesLayout->addWidget(new QLabel(tr(caption)), row, 0);
    datesLayout->addWidget(label, row, 1);
    datesLayout->addWidget(button, row, 2);
    ++row;
  }
  datesLayout->setRowStretch(2, 1);
  connect(cmdFrom, &QToolButton::clicked, this, &fReport::cmdFrom_Click);
  connect(cmdTo, &QToolButton::clicked, this, &fReport::cmdTo_Click);

  // Name or number.
  fraSearch = Named(new QGroupBox(tr("Search")), "fraSearch");
  Label1 = Named(new QLabel(tr("Name")), "Label1");
  tNameNumber = Named(new QLineEdit, "tNameNumber");
  chkPartial = Named(new QCheckBox(tr("Partial Match")), "chkPartial");
  Label1->setBuddy(tNameNumber);
  auto* searchLayout = new QGridLayout(fraSearch);
  searchLayout->addWidget(Label1, 0, 0);
  searchLayout->addWidget(tNameNumber, 0, 1);
  searchLayout->addWidget(chkPartial, 1, 1);
  searchLayout->setRowStretch(2, 1);

  // Line list and line filter.
  fraLines = Named(new QGroupBox(tr("Lines")), "fraLines");
  Combo1 = Named(new QComboBox, "Combo1");
  cmdLineFilter = Named(new QPushButton(tr("Line Filter...")), "cmdLineFilter");
  auto* linesLayout = new QGridLayout(fraLines);
  auto* lineLabel = new QLabel(tr("Line"));
  lineLabel->setBuddy(Combo1);
  linesLayout->addWidget(lineLabel, 0, 0);
  linesLayout->addWidget(Combo1, 0, 1);
  linesLayout->addWidget(cmdLineFilter, 1, 1, Qt::AlignLeft);
  linesLayout->setRowStretch(2, 1);
  linesLayout->setColumnStretch(1, 1);
  connect(cmdLineFilter, &QPushButton::clicked, this, &fReport::LineFilterArray);

  // The abandoned-call filter.
  fraAbandoned = Named(new QGroupBox(tr("Select Calls")), "fraAbandoned");
  chkNotLasting = Named(new QCheckBox(tr("Calls Not Lasting")), "chkNotLasting");
  txtSeconds = Named(new QLineEdit, "txtSeconds");
  chkRingCount = Named(new QCheckBox(tr("Not Exceeding")), "chkRingCount");
  txtRings = Named(new QLineEdit, "txtRings");
  chkUnanswered = Named(new QCheckBox(tr("Unanswered Calls Only")), "chkUnanswered");
  auto* abandonedLayout = new QGridLayout(fraAbandoned);
  for (QLineEdit* box : {txtSeconds, txtRings}) {
    box->setMaxLength(6);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 8);
  }
  abandonedLayout->addWidget(chkNotLasting, 0, 0);
  abandonedLayout->addWidget(txtSeconds, 0, 1);
  abandonedLayout->addWidget(new QLabel(tr("Seconds")), 0, 2);
  abandonedLayout->addWidget(chkRingCount, 1, 0);
  abandonedLayout->addWidget(txtRings, 1, 1);
  abandonedLayout->addWidget(new QLabel(tr("Rings")), 1, 2);
  abandonedLayout->addWidget(chkUnanswered, 2, 0, 1, 3);
  abandonedLayout->setRowStretch(3, 1);

  // The call-back window.
  fraCallBacks = Named(new QGroupBox(tr("Call Backs")), "fraCallBacks");
  txtWindow = Named(new QSpinBox, "txtWindow");
  txtWindow->setRange(1, 365);
  txtWindow->setValue(7);
  txtWindow->setSuffix(tr(" days"));
  auto* windowLabel = new QLabel(tr("Returned within"));
  windowLabel->setBuddy(txtWindow);
  auto* callBacksLayout = new QGridLayout(fraCallBacks);
  callBacksLayout->addWidget(windowLabel, 0, 0);
  callBacksLayout->addWidget(txtWindow, 0, 1, Qt::AlignLeft);
  callBacksLayout->setRowStretch(1, 1);
  callBacksLayout->setColumnStretch(1, 1);

  auto* pageLayout = new QGridLayout(picBackground);
  pageLayout->setContentsMargins(12, 12, 12, 12);
  pageLayout->setHorizontalSpacing(10);
  pageLayout->addWidget(fraOptions, 0, 0);
  pageLayout->addWidget(oInOut, 0, 0);
  pageLayout->addWidget(oTimePeriod, 0, 1);
  pageLayout->addWidget(fraDates, 0, 2);
  pageLayout->addWidget(fraSearch, 0, 3);
  pageLayout->addWidget(fraLines, 0, 3);
  pageLayout->addWidget(fraAbandoned, 0, 3);
  pageLayout->addWidget(fraCallBacks, 0, 3);
  pageLayout->setColumnStretch(3, 1);
  for (QWidget* box : {static_cast<QWidget*>(fraOptions), static_cast<QWidget*>(oInOut),
                       static_cast<QWidget*>(fraSearch), static_cast<QWidget*>(fraLines),
                       static_cast<QWidget*>(fraAbandoned), static_cast<QWidget*>(fraCallBacks)}) {
    KeepPlaceWhenHidden(box);
  }
  oInOut->hide();
  fraSearch->hide();
  fraLines->hide();
  fraAbandoned->hide();
  fraCallBacks->hide();

  // Buttons.
  cHelp = Named(new QPushButton(tr("Help")), "cHelp");
  cmdPrintQuery = Named(new QPushButton(tr("Preview")), "cmdPrintQuery");
  cmdPrintQuery->setDefault(true);
  progressBar = Named(new QProgressBar, "progressBar");
  progressBar->setTextVisible(false);
  progressBar->setFixedWidth(180);
  KeepPlaceWhenHidden(progressBar);
  progressBar->hide();
  connect(cHelp, &QPushButton::clicked, this, &fReport::cHelp_Click);
  connect(cmdPrintQuery, &QPushButton::clicked, this, &fReport::cmdPrintQuery_Click);
  connect(TabStrip, &QTabBar::currentChanged, this, &fReport::TabStrip_Click);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cHelp);
  buttons->addStretch();
  buttons->addWidget(progressBar);
  buttons->addSpacing(12);
  buttons->addWidget(cmdPrintQuery);

  auto* formLayout = new QVBoxLayout(this);
  formLayout->setContentsMargins(10, 10, 10, 10);
  formLayout->setSpacing(10);
  formLayout->addWidget(tabArea);
  formLayout->addLayout(buttons);
}

}  // namespace cw

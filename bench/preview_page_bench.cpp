// The preview on a long report: how long a page takes to show after its key
// is pressed, for the second page, the last page, pages picked at random and
// every page in turn, and how much memory the preview holds after paging
// through the whole report, against a short report. The report is a listing
// of body rows under the automatic heading block, spooled with fixed-pitch
// metrics; the pages are drawn with the real fonts at 100 %.
//
//   preview_page_bench [--pages N] [--rows N]
//
// A key press is sent to the page as the window system would deliver it;
// the time runs until the page is drawn and painted into the window.
// Spools go to the temporary folder ($TMPDIR or /tmp) and are deleted.

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "forms/preview_form.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"

namespace {

using namespace cw::bench;

struct Options {
  int pages = 5000;
  int rows = 45;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv, {{"--pages", options.pages, 2, 32000}, {"--rows", options.rows, 1, 60}});
  return options;
}

constexpr double kMiB = 1024.0 * 1024.0;

// A listing of `pages` pages, `rows` rows of four columns each.
void WriteReport(cw::OrlPrinter& document, int pages, int rows) {
  document.BeginDoc();
  document.SetScaleMode(5);
  document.SetOrientation(1);
  document.SetTitle("Call Detail Report");
  document.SetSubTitle("Report Period: 01/01/2026 - 12/31/2026");
  document.SetAutoHeadings(true);
  document.SetAutoHeadingsFontName("Arial");
  document.SetAutoHeadingsFontSize(10);
  document.SetAutoHeadingsFontAttr(1);
  document.SetFont("Times New Roman", 9, 0);
  long call = 0;
  for (int page = 1; page <= pages; ++page) {
    if (page > 1) document.NewPage();
    document.SetY(1.4);
    for (int row = 0; row < rows; ++row, ++call) {
      document.TextOut(0.5, "01/" + std::to_string(10 + call % 18) + "/2026");
      document.TextOut(1.6, std::to_string(1 + call % 12) + ":" + std::to_string(10 + call % 50) + "PM");
      document.TextOut(2.6, "CALLER NUMBER " + std::to_string(call % 9973));
      document.TextOut(5.2, "555-" + std::to_string(1000 + call % 9000));
      document.NewLine();
    }
    document.LineOut(0.5, 10.3, 8, 10.3);
  }
  document.EndDoc();
  document.Options().previewSizable = true;
  document.Options().previewWindowWidth = 13000;
  document.Options().previewWindowHeight = 14000;
  document.Options().zoomPercent = 100;
}

struct Shown {
  double milliseconds = 0;
  std::int16_t page = 0;
};

// One key press on the page, until the page is painted.
Shown Press(cw::PreviewForm& form, QWidget* page, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  const auto start = Clock::now();
  QKeyEvent press(QEvent::KeyPress, key, modifiers);
  QCoreApplication::sendEvent(page, &press);
  page->repaint();
  return {std::chrono::duration<double, std::milli>(Clock::now() - start).count(), form.CurrentPage()};
}

double Percentile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

struct Run {
  double spoolMb = 0;
  double openMs = 0;
  Shown second, last, secondAgain;
  std::vector<double> random, all;
  double residentBefore = 0, residentAfter = 0;
};

Run Measure(ScreenlessHost& host, int pages, int rows) {
  Run run;
  cw::FixedPitchMetrics metrics;
  cw::OrlPrinterEnvironment environment;
  environment.metrics = &metrics;
  environment.today = [] { return cw::CivilDate::FromYmd(2026, 11, 22); };
  cw::OrlPrinter document(environment);
  WriteReport(document, pages, rows);
  run.spoolMb = static_cast<double>(std::filesystem::file_size(document.PrintFile())) / 1e6;

  {
    const auto start = Clock::now();
    cw::PreviewForm form(document, host, cw::PageSetup{});
    form.show();
    QCoreApplication::processEvents();
    run.openMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    QWidget* page = form.findChild<QWidget*>("PageImg");
    run.residentBefore = ResidentBytes();

    run.second = Press(form, page, Qt::Key_PageDown);
    run.last = Press(form, page, Qt::Key_PageDown, Qt::ControlModifier);
    Press(form, page, Qt::Key_PageUp, Qt::ControlModifier);
    run.secondAgain = Press(form, page, Qt::Key_PageDown);

    // Pages picked at random, each reached by the key that goes there from
    // the first or the last page.
    std::mt19937 random(5000);
    std::uniform_int_distribution<int> pick(1, pages);
    for (int i = 0; i < 200; ++i) {
      Press(form, page, Qt::Key_PageUp, Qt::ControlModifier);
      const int target = pick(random);
      if (target == 1) continue;
      // One page on from page target - 1, reached without timing.
      form.findChild<QWidget*>("PageScroll")->setProperty("value", target - 1);
      run.random.push_back(Press(form, page, Qt::Key_PageDown).milliseconds);
    }

    Press(form, page, Qt::Key_PageUp, Qt::ControlModifier);
    for (int i = 1; i < pages; ++i) run.all.push_back(Press(form, page, Qt::Key_PageDown).milliseconds);
    run.residentAfter = ResidentBytes();
    if (form.CurrentPage() != pages) std::fprintf(stderr, "paging ended on page %d\n", form.CurrentPage());
    form.close();
  }
  document.DestroyReport();
  return run;
}

void Print(const char* name, int pages, const Run& run) {
  std::printf("%s: %d pages, spool %.1f MB, window open with page 1 in %.1f ms\n", name, pages, run.spoolMb,
              run.openMs);
  std::printf("  page 2 (Page Down from 1):        %6.2f ms\n", run.second.milliseconds);
  std::printf("  page %d (Ctrl+Page Down from 2): %6.2f ms\n", run.last.page, run.last.milliseconds);
  std::printf("  page 2 again (from page 1):       %6.2f ms\n", run.secondAgain.milliseconds);
  std::printf("  %zu random pages: median %.2f ms, 99th %.2f ms, worst %.2f ms\n", run.random.size(),
              Percentile(run.random, 0.5), Percentile(run.random, 0.99), Percentile(run.random, 1.0));
  std::printf("  every page in turn (%zu): median %.2f ms, 99th %.2f ms, worst %.2f ms\n", run.all.size(),
              Percentile(run.all, 0.5), Percentile(run.all, 0.99), Percentile(run.all, 1.0));
  std::printf("  resident memory: %.1f MB after page 1, %.1f MB after paging through every page\n",
              run.residentBefore / kMiB, run.residentAfter / kMiB);
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ScreenlessHost host;

  const int shortPages = std::min(50, options.pages);
  const Run shortRun = Measure(host, shortPages, options.rows);
  const Run longRun = Measure(host, options.pages, options.rows);
  Print("short report", shortPages, shortRun);
  Print("long report", options.pages, longRun);
  std::printf("memory after paging, long less short report: %+.1f MB (peak resident %.1f MB)\n",
              (longRun.residentAfter - shortRun.residentAfter) / kMiB, PeakResidentBytes() / kMiB);
  return host.messages.empty() ? 0 : 1;
}

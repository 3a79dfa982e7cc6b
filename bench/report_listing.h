#pragma once
// The report the printer benchmarks spool: a call-detail listing of ten texts
// a row with a NewLine after each, automatic headings and column headings on
// every page, in the reports' fonts (Times New Roman 9, Arial 9 bold), laid
// out by OrlPrinter with the given metrics.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "bench_support.h"
#include "printer/orl_printer.h"

namespace cw::bench {

constexpr int kColumns = 10;
constexpr double kColumnX[kColumns] = {0.3, 1.1, 1.8, 2.2, 2.6, 3.8, 5.3, 6.0, 6.5, 7.0};

// Rows as a call-detail listing prints them: date, time, line, direction,
// number, name, duration, rings, status, cost, varied so that the texts are
// not all alike.
inline std::vector<std::vector<std::string>> MakeRows() {
  const char* names[] = {"SMITH JOHN", "GARCIA MARIA", "O'BRIEN PATRICK", "NGUYEN THI", "MUELLER KLAUS",
                         "WIRELESS CALLER", "UNAVAILABLE", "CAF\xC9 DU PARC", "ABC PLUMBING & HEATING"};
  const char* status[] = {"Answered", "Abandoned", "Busy", "Voice Mail"};
  std::vector<std::vector<std::string>> rows;
  char text[64];
  for (int i = 0; i < 997; ++i) {
    std::vector<std::string> row;
    std::snprintf(text, sizeof text, "%02d/%02d/2026", 1 + i % 12, 1 + i % 28);
    row.emplace_back(text);
    std::snprintf(text, sizeof text, "%d:%02d%s", 1 + i % 12, (i * 7) % 60, i % 2 ? "AM" : "PM");
    row.emplace_back(text);
    row.push_back(std::to_string(1 + i % 8));
    row.emplace_back(i % 3 ? "In" : "Out");
    std::snprintf(text, sizeof text, "%03d-%03d-%04d", 200 + i % 700, (i * 37) % 1000, (i * 7919) % 10000);
    row.emplace_back(text);
    row.emplace_back(names[i % std::size(names)]);
    std::snprintf(text, sizeof text, "%d:%02d:%02d", i % 3, (i * 13) % 60, (i * 29) % 60);
    row.emplace_back(text);
    row.push_back(std::to_string(i % 7));
    row.emplace_back(status[i % std::size(status)]);
    std::snprintf(text, sizeof text, "$%d.%02d", i % 20, (i * 11) % 100);
    row.emplace_back(text);
    rows.push_back(std::move(row));
  }
  return rows;
}

struct SpoolRun {
  double seconds = 0;
  double cpuSeconds = 0;
  long calls = 0;
  double spoolBytes = 0;
  int pages = 0;
};

// Spools `calls` TextOut calls of the listing (whole rows) and times it from
// BeginDoc to EndDoc. With keepSpool the spool file is left for the caller
// (its name in keptSpool), else it is deleted.
inline SpoolRun SpoolListing(TextMetrics& metrics, const std::vector<std::vector<std::string>>& rows, long calls,
                             std::string* keptSpool = nullptr) {
  OrlPrinterEnvironment environment;
  environment.metrics = &metrics;
  environment.today = [] { return CivilDate::FromYmd(2026, 11, 22); };
  environment.showError = [](const std::string& text) { Fail(text); };
  OrlPrinter printer(environment);
  printer.OnNewPage = [&printer](std::int16_t) {
    printer.SetFont("Arial", 9, 1);
    for (int column = 0; column < kColumns; ++column) printer.TextOut(kColumnX[column], "Heading");
    printer.NewLine();
    printer.SetFont("Times New Roman", 9, 0);
  };

  SpoolRun run;
  const Stopwatch watch;
  printer.BeginDoc();
  printer.SetScaleMode(5);
  printer.SetSpacing(1.0);
  printer.SetBottomMargin(0.5);
  printer.SetAutoHeadings(true);
  printer.SetAutoNewPage(true);
  printer.SetAutoHeadingsFontName("Arial");
  printer.SetAutoHeadingsFontSize(10);
  printer.SetAutoHeadingsFontAttr(1);
  printer.SetTitle("Call Detail");
  printer.SetFont("Times New Roman", 9, 0);
  printer.SetY(1.4);
  std::size_t row = 0;
  while (run.calls + kColumns <= calls) {
    const std::vector<std::string>& texts = rows[row];
    for (int column = 0; column < kColumns; ++column) printer.TextOut(kColumnX[column], texts[column]);
    printer.NewLine();
    run.calls += kColumns;
    if (++row == rows.size()) row = 0;
  }
  printer.EndDoc();
  const Elapsed elapsed = watch.Read();
  run.seconds = elapsed.wallSeconds;
  run.cpuSeconds = elapsed.cpuSeconds;
  run.spoolBytes = static_cast<double>(std::filesystem::file_size(printer.PrintFile()));
  run.pages = printer.TotalPages();
  if (keptSpool != nullptr) {
    *keptSpool = printer.PrintFile();
  } else {
    printer.DestroyReport();
  }
  return run;
}

}  // namespace cw::bench

#pragma once
// A ReportHost for tests: writes down every message box, answers from a
// queue, keeps the text export of every previewed document, and writes a
// small real bitmap for every chart so that the chart hand-over can run.

#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "printer/orl_printer.h"
#include "printer/output_file.h"
#include "reports/csv_export.h"
#include "reports/report_host.h"
#include "support/file_helpers.h"

namespace cw::testing {

// An output that keeps what is written to it.
struct MemoryOutput final : OutputFile {
  void Write(std::string_view more) override { bytes.append(more); }
  void Commit() override {}
  std::string bytes;
};

class RecordingHost : public ReportHost {
 public:
  struct Message {
    std::string title;
    std::string text;
    MessageIcon icon;
    MessageButtons buttons;
  };

  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                           MessageButtons buttons) override {
    messages.push_back({std::string(title), std::string(text), icon, buttons});
    if (answers.empty()) return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
    MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void SetBusy(bool on) override {
    busy = on;
    busyChanges.push_back(on);
  }
  void DoEvents() override { ++eventsRun; }
  void Progress(std::int64_t done, std::int64_t /*total*/) override { lastProgress = done; }
  void ShowPreview(OrlPrinter& document, const ReportData& data) override {
    Preview preview;
    preview.title = document.Title();
    preview.totalPages = document.TotalPages();
    const std::string textFile = GetTempFile("VPT");
    document.SetPrintTextFile(textFile);
    document.PrintToFile();
    preview.text = ReadWholeFile(textFile);
    std::remove(textFile.c_str());
    if (data.Keeping()) {
      MemoryOutput csv;
      WriteCsv(data, csv);
      preview.csv = std::move(csv.bytes);
    }
    previews.push_back(std::move(preview));
  }
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override {
    charts.push_back(chart);
    chartFiles.push_back(bitmapFile);
    WriteFileAtomically(bitmapFile, TinyBitmap());
  }
  ScreenTwips Screen() override { return screen; }
  CivilDate Today() override { return today; }
  TimeOfDay Now() override { return now; }
  std::string AppTitle() override { return "Callwarden Reports"; }

  // A valid 1 x 1 white 24-bit bitmap.
  static std::string TinyBitmap() {
    const unsigned char bytes[] = {'B', 'M', 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,
                                   40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0,
                                   0, 0, 0, 0, 4, 0, 0, 0, 0x13, 0x0B, 0, 0, 0x13, 0x0B, 0, 0,
                                   0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0};
    return std::string(reinterpret_cast<const char*>(bytes), sizeof bytes);
  }

  struct Preview {
    std::string title;
    std::int16_t totalPages = 0;
    std::string text;  // the document's text export
    std::string csv;   // the CSV of its data, when the form keeps it
  };

  std::vector<Message> messages;
  std::deque<MessageAnswer> answers;
  bool busy = false;
  std::vector<bool> busyChanges;
  int eventsRun = 0;
  std::int64_t lastProgress = 0;
  std::vector<Preview> previews;
  std::vector<BarChartSpec> charts;
  std::vector<std::string> chartFiles;
  ScreenTwips screen{19200, 10800};  // 1280 x 720 pixels
  CivilDate today = CivilDate::FromYmd(2026, 11, 22);
  TimeOfDay now = 9 * 3600 + 5 * 60;
};

}  // namespace cw::testing

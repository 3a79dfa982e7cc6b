#pragma once
// What the report code needs from a screen. The desktop host shows windows;
// the headless host writes messages to stderr and turns "show preview" into
// the requested outputs; tests record and answer.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/civil_date.h"

namespace cw {

class OrlPrinter;
class ReportData;

enum class MessageIcon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class MessageButtons { kOk, kRetryCancel };
enum class MessageAnswer { kOk, kRetry, kCancel };

// A bar chart as the reports ask the chart component for it: one series of
// bars with a label each, on a white surface of the given size.
struct BarChartSpec {
  double widthTwips = 0;
  double heightTwips = 0;
  std::uint32_t backgroundColor = 0xFFFFFF;
  std::int32_t maxY = 0;
  std::int32_t ticks = 0;
  std::int16_t margin = 150;
  std::string xTitle;
  std::vector<std::string> colLabels;
  std::vector<std::int32_t> values;
  std::int32_t seriesWidth = 210;  // the series' second argument
  std::uint32_t seriesColor = 255; // 0xBBGGRR: red
  std::string seriesStyle = "Bar";
  std::string fontName = "Arial";
  std::int16_t fontSize = 8;
};

struct ScreenTwips {
  double width = 0;
  double height = 0;
};

class ReportHost {
 public:
  virtual ~ReportHost() = default;

  virtual MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                                   MessageButtons buttons) = 0;
  // Hourglass on or off.
  virtual void SetBusy(bool busy) = 0;
  // Let pending window events run; also where long work reports progress
  // (done of total units; total 0 when unknown).
  virtual void DoEvents() = 0;
  virtual void Progress(std::int64_t done, std::int64_t total) = 0;
  // The finished document: preview it (desktop) or write the outputs
  // (headless). data holds the report's rows when it keeps them (the CSV);
  // both live until this returns.
  virtual void ShowPreview(OrlPrinter& document, const ReportData& data) = 0;
  // Draws the chart and writes it as a bitmap file; throws RuntimeError when
  // the file cannot be written.
  virtual void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) = 0;
  virtual ScreenTwips Screen() = 0;
  virtual CivilDate Today() = 0;
  virtual TimeOfDay Now() = 0;
  // The application title (message boxes of the line listing use it).
  virtual std::string AppTitle() = 0;
};

}  // namespace cw

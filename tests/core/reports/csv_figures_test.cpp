// The CSV of every report kind against the same report's text export: each
// row of the data is found on the page with the same figures, and the
// page's totals are the data's. The page and the data come from one routine;
// this is what keeps them from drifting apart.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analysis_rig.h"
#include "reports/csv_export.h"
#include "reports/hour_labels.h"
#include "support/date_format.h"
#include "support/time_text.h"

namespace cw {
namespace {

using testing::Lines;
using testing::ReportFixture;
using testing::RowAfter;
using testing::Words;

using CsvRows = std::vector<std::vector<std::string>>;

// RFC 4180 as a spreadsheet reads it: quoted fields may hold the separator,
// doubled quotes and line ends; rows end in CR LF.
CsvRows ParseCsv(std::string_view text, char separator = ',') {
  CsvRows rows(1);
  std::string field;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        field += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        field += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == separator) {
      rows.back().push_back(std::move(field));
      field.clear();
    } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      rows.back().push_back(std::move(field));
      field.clear();
      rows.emplace_back();
      ++i;
    } else {
      field += c;
    }
  }
  EXPECT_TRUE(field.empty() && rows.back().empty()) << "the CSV does not end in CR LF";
  rows.pop_back();
  return rows;
}

// A figure as both outputs may write it: a duration ("m:ss" on the page,
// "h:mm:ss" in the data) as seconds, a count as it stands.
std::string Figure(const std::string& text) {
  if (text.find(':') == std::string::npos) return text;
  long seconds = 0;
  long part = 0;
  for (char c : text + ":") {
    if (c == ':') {
      seconds = seconds * 60 + part;
      part = 0;
    } else {
      part = part * 10 + (c - '0');
    }
  }
  return std::to_string(seconds) + "s";
}

std::string PageDate(const std::string& dataDate) {  // 2026-11-02 -> 11/02/2026
  return dataDate.substr(5, 2) + "/" + dataDate.substr(8, 2) + "/" + dataDate.substr(0, 4);
}

std::string PageTime(const std::string& dataTime) { return FormatTime(ParseTimeText(dataTime), "h:mmampm"); }

// One report over a fixture, with its rows kept.
struct CsvRig {
  testing::TempFolder folder;
  testing::RecordingHost host;
  FixedPitchMetrics metrics;
  testing::MemorySettingsStore settings;
  std::unique_ptr<ReportForm> form;

  CsvRig(std::string_view callLog, std::string_view busyLog) {
    ReportEnvironment environment;
    environment.logPath = folder.Write("CallLog.txt", ReportFixture(callLog));
    if (!busyLog.empty()) folder.Write("BusyLines.log", ReportFixture(busyLog));
    environment.pathFolder = folder.Path().string();
    environment.tempFolder = folder.Path().string();
    environment.activeLines = 4;
    environment.keepData = true;
    form = std::make_unique<ReportForm>(environment, host, metrics, settings);
  }
};

// The rows of a listing on the page, in order, each with the data row it
// shows: the k-th data row is the next page line holding its number and name.
void ExpectListingRowsOnPage(const std::vector<std::string>& page, const CsvRows& csv) {
  const std::vector<std::string>& header = csv[0];
  auto cell = [&](const std::vector<std::string>& row, std::string_view name) {
    for (std::size_t i = 0; i < header.size(); ++i) {
      if (header[i] == name) return row[i];
    }
    ADD_FAILURE() << "no column " << name;
    return std::string();
  };
  std::size_t line = 0;
  for (std::size_t r = 1; r < csv.size(); ++r) {
    const auto& row = csv[r];
    while (line < page.size() && (page[line].find(cell(row, "Number")) == std::string::npos ||
                                  page[line].find(cell(row, "Name")) == std::string::npos)) {
      ++line;
    }
    ASSERT_LT(line, page.size()) << "data row " << r << " (" << cell(row, "Name") << ") is not on the page";
    const std::vector<std::string> words = Words(page[line]);
    auto shows = [&](const std::string& text) {
      return text.empty() || std::find(words.begin(), words.end(), text) != words.end();
    };
    // Date and time may touch on the page: they are found as text.
    EXPECT_NE(page[line].find(PageDate(cell(row, "Date"))), std::string::npos) << page[line];
    EXPECT_NE(page[line].find(PageTime(cell(row, "Time"))), std::string::npos) << page[line];
    EXPECT_TRUE(shows(cell(row, "Line")) && shows(cell(row, "Direction")) && shows(cell(row, "Answered")) &&
                shows(cell(row, "Rings")))
        << page[line];
    EXPECT_TRUE(shows(cell(row, "Duration"))) << page[line];
    EXPECT_EQ(Figure(cell(row, "Duration")), std::to_string(std::stol(cell(row, "Seconds"))) + "s");
    ++line;
  }
}

// The figures under the headings of a totals block: the page line after the
// one that holds every heading.
std::vector<std::string> FiguresUnder(const std::vector<std::string>& page, std::vector<std::string> headings) {
  for (std::size_t k = 0; k + 1 < page.size(); ++k) {
    const std::vector<std::string> words = Words(page[k]);
    std::string joined;
    for (const std::string& word : words) joined += word + " ";
    bool all = true;
    for (const std::string& heading : headings) all = all && joined.find(heading + " ") != std::string::npos;
    if (all) return Words(page[k + 1]);
  }
  return {};
}

long SumOf(const CsvRows& csv, std::string_view column, std::string_view onlyKind = {}) {
  long sum = 0;
  for (std::size_t i = 0; i < csv[0].size(); ++i) {
    if (csv[0][i] != column) continue;
    for (std::size_t r = 1; r < csv.size(); ++r) {
      if (!onlyKind.empty() && csv[r][0] != onlyKind) continue;
      sum += std::stol(csv[r][i]);
    }
  }
  return sum;
}

// The figure columns of each table, in the order the page shows them.
const std::map<std::string, std::vector<std::string>>& TableColumns() {
  static const std::map<std::string, std::vector<std::string>> columns{
      {"Day Of Week Summary", {"Inbound", "Outbound", "Total"}},
      {"Time Of Day Summary", {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Total"}},
      {"Line Usage Totals", {"Inbound", "Outbound", "Total Calls", "Total Time"}},
      {"Day of the Week Line Usage Summary", {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"}},
      {"All Lines Busy Day Of Week Summary", {"Occurred", "Duration"}},
      {"All Lines Busy Time Of Day Summary", {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Total"}},
  };
  return columns;
}

// Every row of the tables' data against the page row of the same label,
// and the rows counted per table.
void ExpectTableRowsOnPage(const std::string& text, const CsvRows& csv,
                           const std::map<std::string, std::size_t>& rowsPerTable) {
  const std::vector<std::string>& header = csv[0];
  ASSERT_GE(header.size(), 3u);
  EXPECT_EQ((std::vector<std::string>{header[0], header[1], header[2]}),
            (std::vector<std::string>{"Table", "Kind", "Row"}));
  std::map<std::string, std::size_t> counted;
  std::map<std::string, int> labelsSeen;  // a label met again is the next page row of that label
  for (std::size_t r = 1; r < csv.size(); ++r) {
    const auto& row = csv[r];
    ++counted[row[0]];
    const bool total = row[2] == "Totals" || row[2] == "Total Calls" || row[2] == "Total Time";
    EXPECT_EQ(row[1], total ? "total" : "row") << row[2];
    // The data names an hour by its start, the page by its span.
    std::string label = row[2];
    if (label.size() == 5 && label[2] == ':') label = std::string(HourLabel(std::stoi(label.substr(0, 2))));
    const std::vector<std::string> shown = RowAfter(text, label, labelsSeen[label]++);
    const auto found = TableColumns().find(row[0]);
    ASSERT_NE(found, TableColumns().end()) << row[0];
    std::vector<std::string> expected;
    for (const std::string& column : found->second) {
      for (std::size_t i = 0; i < header.size(); ++i) {
        if (header[i] == column) expected.push_back(Figure(row[i]));
      }
    }
    std::vector<std::string> page;
    for (const std::string& word : shown) page.push_back(Figure(word));
    EXPECT_EQ(page, expected) << row[0] << " / " << label;
  }
  EXPECT_EQ(counted, rowsPerTable);
}

TEST(CsvFigures, ListingsShowTheirDataRowsAndTotals) {
  struct Case {
    std::int16_t kind;
    std::string direction;
    std::string search;
    bool dtmf;
  };
  for (const Case& c : std::vector<Case>{{kind::kCallHistory, "InOut", "", true},
                                         {kind::kCallHistory, "In", "", false},
                                         {kind::kByName, "InOut", "smith john", false},
                                         {kind::kByTelNumber, "InOut", "555-123-4567", false},
                                         {kind::kByLineNumber, "InOut", "", false}}) {
    SCOPED_TRACE(c.kind);
    CsvRig rig("detail-calls.log", "");
    ReportRequest& request = rig.form->Request();
    request.kind = c.kind;
    request.direction = c.direction;
    request.searchText = c.search;
    request.dtmf = c.dtmf;
    request.columns = DetailColumnPositions(c.dtmf);
    request.lines.lines = {1};
    request.fromDate = "10/01/2026";
    request.toDate = "12/31/2026";
    ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
    ASSERT_EQ(rig.host.previews.size(), 1u);
    const CsvRows csv = ParseCsv(rig.host.previews[0].csv);
    ASSERT_GE(csv.size(), 2u) << "the fixture has calls for every case";
    EXPECT_EQ(csv[0].back(), c.dtmf ? "DTMF" : "Rings");
    const std::vector<std::string> page = Lines(rig.host.previews[0].text);
    ExpectListingRowsOnPage(page, csv);
    const std::vector<std::string> totals = FiguresUnder(page, {"Total Calls", "Duration"});
    ASSERT_EQ(totals.size(), 2u);
    EXPECT_EQ(totals[0], std::to_string(csv.size() - 1));
    EXPECT_EQ(Figure(totals[1]), std::to_string(SumOf(csv, "Seconds")) + "s");
  }
}

TEST(CsvFigures, AbandonedCallsCountTheRowsOfTheData) {
  CsvRig rig("detail-abandoned.log", "");
  ReportRequest& request = rig.form->Request();
  request.kind = kind::kAbandonedCalls;
  request.direction = "In";
  request.abandoned.ringCount = true;
  request.abandoned.rings = "3";
  request.fromDate = "11/10/2026";
  request.toDate = "11/10/2026";
  ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
  const CsvRows csv = ParseCsv(rig.host.previews.at(0).csv);
  const std::vector<std::string> page = Lines(rig.host.previews[0].text);
  ExpectListingRowsOnPage(page, csv);
  const std::vector<std::string> summary = RowAfter(rig.host.previews[0].text, "Total Abandoned Calls:");
  ASSERT_FALSE(summary.empty());
  EXPECT_EQ(summary[0], std::to_string(csv.size() - 1));
}

TEST(CsvFigures, CondensedHistoryRowsAndTotalsMatchThePage) {
  CsvRig rig("detail-calls.log", "");
  ReportRequest& request = rig.form->Request();
  request.kind = kind::kCallHistory;
  request.direction = "InOut";
  request.chart = true;
  request.fromDate = "10/01/2026";
  request.toDate = "12/31/2026";
  ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
  const CsvRows csv = ParseCsv(rig.host.previews.at(0).csv);
  const std::string& text = rig.host.previews[0].text;
  ASSERT_EQ(csv[0], (std::vector<std::string>{"Kind", "Name", "Number", "Calls", "Duration", "Seconds"}));
  ASSERT_GE(csv.size(), 3u);
  for (std::size_t r = 1; r + 1 < csv.size(); ++r) {
    EXPECT_EQ(csv[r][0], "row");
    // Name, number, calls and duration on one page line.
    bool found = false;
    for (const std::string& line : Lines(text)) {
      found = found || (line.find(csv[r][1]) != std::string::npos && line.find(csv[r][2]) != std::string::npos &&
                        Words(line).back() == csv[r][4] && Words(line)[Words(line).size() - 2] == csv[r][3]);
    }
    EXPECT_TRUE(found) << csv[r][1];
  }
  EXPECT_EQ(csv.back()[0], "total");
  EXPECT_EQ(std::stol(csv.back()[3]), SumOf(csv, "Calls", "row"));
  EXPECT_EQ(FiguresUnder(Lines(text), {"Total Calls", "Duration"}),
            (std::vector<std::string>{csv.back()[3], csv.back()[4]}));
}

TEST(CsvFigures, AnalysesShowEveryTableRowWithItsFigures) {
  struct Case {
    std::int16_t kind;
    std::string variant;
    std::string callLog;
    std::string from;
    std::string to;
    std::map<std::string, std::size_t> rowsPerTable;
  };
  for (const Case& c : std::vector<Case>{
           {kind::kDailyCallStatistics, "Detailed", "daily-week.log", "11/02/2026", "11/08/2026",
            {{"Day Of Week Summary", 8}, {"Time Of Day Summary", 24}}},
           {kind::kLineUsageStatistics, "Detailed", "line-usage-four.log", "10/01/2026", "12/31/2026",
            {{"Line Usage Totals", 5}, {"Day of the Week Line Usage Summary", 6}}},
           {kind::kAllLinesBusy, "Summary", "daily-week.log", "11/01/2026", "11/08/2026",
            {{"All Lines Busy Day Of Week Summary", 8}, {"All Lines Busy Time Of Day Summary", 25}}},
       }) {
    SCOPED_TRACE(c.kind);
    CsvRig rig(c.callLog, "busy-summary.log");
    ReportRequest& request = rig.form->Request();
    request.kind = c.kind;
    request.variant = c.variant;
    request.direction = "InOut";
    request.fromDate = c.from;
    request.toDate = c.to;
    ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
    const CsvRows csv = ParseCsv(rig.host.previews.at(0).csv);
    ExpectTableRowsOnPage(rig.host.previews[0].text, csv, c.rowsPerTable);
  }
}

TEST(CsvFigures, BusyListingRowsAndTotalsMatchThePage) {
  CsvRig rig("daily-week.log", "busy-listing.log");
  ReportRequest& request = rig.form->Request();
  request.kind = kind::kAllLinesBusy;
  request.variant = "Detailed";
  request.fromDate = "11/03/2026";
  request.toDate = "11/05/2026";
  ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
  const CsvRows csv = ParseCsv(rig.host.previews.at(0).csv);
  ASSERT_EQ(csv[0], (std::vector<std::string>{"Date", "Start Time", "End Time", "Duration", "Seconds", "Lines"}));
  const std::vector<std::string> page = Lines(rig.host.previews[0].text);
  std::size_t line = 0;
  for (std::size_t r = 1; r < csv.size(); ++r) {
    const std::string start = PageTime(csv[r][1]);
    while (line < page.size() &&
           (page[line].find(PageDate(csv[r][0])) == std::string::npos || page[line].find(start) == std::string::npos)) {
      ++line;
    }
    ASSERT_LT(line, page.size()) << "occurrence " << r << " is not on the page";
    const std::vector<std::string> words = Words(page[line]);
    EXPECT_EQ(words.at(2), PageTime(csv[r][2]));
    EXPECT_EQ(Figure(words.at(3)), Figure(csv[r][3]));
    EXPECT_EQ(Figure(csv[r][3]), csv[r][4] + "s");
    EXPECT_EQ(words.at(4), csv[r][5]);
  }
  const std::vector<std::string> totals = FiguresUnder(page, {"Occurrences", "Duration"});
  ASSERT_EQ(totals.size(), 2u);
  EXPECT_EQ(totals[0], std::to_string(csv.size() - 1));
  EXPECT_EQ(Figure(totals[1]), std::to_string(SumOf(csv, "Seconds")) + "s");
}

TEST(CsvFigures, CallBacksShowEachMissedCallAndTheSummaryCountsTheGroups) {
  CsvRig rig("detail-calls.log", "");
  ReportRequest& request = rig.form->Request();
  request.kind = kind::kCallBacks;
  request.callBackWindowDays = 30;
  request.fromDate = "10/01/2026";
  request.toDate = "11/05/2026";
  ASSERT_EQ(rig.form->cmdPrintQuery_Click(), RequestOutcome::kProduced);
  const CsvRows csv = ParseCsv(rig.host.previews.at(0).csv);
  const std::string& text = rig.host.previews[0].text;
  const std::vector<std::string> page = Lines(text);
  ASSERT_EQ(csv[0].size(), 13u);
  ASSERT_GE(csv.size(), 2u) << "the fixture has missed calls";
  std::map<std::string, int> groups;
  std::size_t line = 0;
  for (std::size_t r = 1; r < csv.size(); ++r) {
    const auto& row = csv[r];
    ++groups[row[12]];
    while (line < page.size() && (page[line].find(row[2]) == std::string::npos ||
                                  page[line].find(PageDate(row[0])) == std::string::npos)) {
      ++line;
    }
    ASSERT_LT(line, page.size()) << "missed call " << r << " is not on the page";
    if (row[5] == "yes") {
      EXPECT_NE(page[line].find(PageDate(row[6]) + " " + PageTime(row[7])), std::string::npos) << page[line];
      EXPECT_NE(page[line].find(row[8] + " " + row[9]), std::string::npos) << page[line];
      EXPECT_EQ(Words(page[line]).back(), row[10]);
      EXPECT_EQ(Figure(row[10]), row[11] + "s");
    } else {
      EXPECT_NE(page[line].find("not returned"), std::string::npos) << page[line];
      EXPECT_EQ(row[12], "Not returned");
    }
    ++line;
  }
  int all = 0;
  for (const char* group : {"Returned within 1 hour", "Returned the same day", "Returned later", "Not returned"}) {
    const std::vector<std::string> shown = RowAfter(text, group);
    ASSERT_EQ(shown.size(), 2u) << group;
    EXPECT_EQ(shown[0], std::to_string(groups[group])) << group;
    all += groups[group];
  }
  EXPECT_EQ(RowAfter(text, "Missed Calls").at(0), std::to_string(all));
  EXPECT_EQ(static_cast<std::size_t>(all), csv.size() - 1);
}

TEST(CsvExport, QuotesWhatMustBeQuotedAndWritesUtf8) {
  EXPECT_EQ(CsvField("SMITH JOHN", ','), "SMITH JOHN");
  EXPECT_EQ(CsvField("SMITH, JOHN", ','), "\"SMITH, JOHN\"");
  EXPECT_EQ(CsvField("SMITH, JOHN", ';'), "SMITH, JOHN");
  EXPECT_EQ(CsvField("A;B", ';'), "\"A;B\"");
  EXPECT_EQ(CsvField("THE \"BOSS\"", ','), "\"THE \"\"BOSS\"\"\"");
  EXPECT_EQ(CsvField("TWO\r\nLINES", ','), "\"TWO\r\nLINES\"");
  EXPECT_EQ(CsvField("M\xDCLLER \x80", ','), "M\xC3\x9CLLER \xE2\x82\xAC");  // Ü and the euro sign

  ReportData data(true);
  data.Begin({"Name", "Number", "Calls"});
  const std::string first[] = {"SMITH, JOHN", "555", "2"};
  const std::string shortRow[] = {"ONLY NAME"};
  data.AddRow(first);
  data.AddRow(shortRow);
  testing::MemoryOutput out;
  WriteCsv(data, out, ';');
  EXPECT_EQ(out.bytes, "Name;Number;Calls\r\nSMITH, JOHN;555;2\r\nONLY NAME;;\r\n");
  EXPECT_THROW(WriteCsv(data, out, '"'), RuntimeError);
  EXPECT_TRUE(IsCsvFileName("/tmp/March.CSV"));
  EXPECT_FALSE(IsCsvFileName("/tmp/March.csv.txt"));
}

TEST(CsvExport, AReportNotAskedForItsDataKeepsNone) {
  ReportData data;
  data.Begin({"Name"});
  const std::string row[] = {"X"};
  data.AddRow(row);
  EXPECT_FALSE(data.Keeping());
  EXPECT_EQ(data.RowCount(), 0);
}

}  // namespace
}  // namespace cw

// The CSV of every report kind, with the text export of the same report, each
// compared whole with its expected file. The page and the data come from one
// routine; the pair of files per report keeps them from drifting apart (the
// expected files were checked against each other row by row and total by
// total when they were made).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis_rig.h"
#include "reports/csv_export.h"

namespace cw {
namespace {

TEST(CsvFigures, EveryReportKindWritesItsDataBesideItsPage) {
  struct Case {
    const char* name;  // of the expected files: csv-<name>.csv, and csv-<name>.txt unless its page
                       // is another test's expected file
    const char* callLog;
    const char* busyLog;
    std::int16_t kind;
    const char* direction;
    const char* from;
    const char* to;
    const char* search = "";
    bool dtmf = false;
    bool chart = false;
    const char* variant = "Detailed";
    bool ownPage = true;
  };
  const Case cases[] = {
      {"history-dtmf", "detail-calls.log", "", kind::kCallHistory, "InOut", "10/01/2026", "12/31/2026", "", true},
      {"history-in", "detail-calls.log", "", kind::kCallHistory, "In", "10/01/2026", "12/31/2026"},
      {"name", "detail-calls.log", "", kind::kByName, "InOut", "10/01/2026", "12/31/2026", "smith john"},
      {"number", "detail-calls.log", "", kind::kByTelNumber, "InOut", "10/01/2026", "12/31/2026", "555-123-4567"},
      {"line", "detail-calls.log", "", kind::kByLineNumber, "InOut", "10/01/2026", "12/31/2026"},
      {"abandoned", "detail-abandoned.log", "", kind::kAbandonedCalls, "In", "11/10/2026", "11/10/2026"},
      {"condensed", "detail-calls.log", "", kind::kCallHistory, "InOut", "10/01/2026", "12/31/2026", "", false, true},
      {"daily", "daily-week.log", "busy-summary.log", kind::kDailyCallStatistics, "InOut", "11/02/2026", "11/08/2026",
       "", false, false, "Detailed", false},
      {"line-usage", "line-usage-four.log", "", kind::kLineUsageStatistics, "InOut", "10/01/2026", "12/31/2026"},
      {"busy-summary", "daily-week.log", "busy-summary.log", kind::kAllLinesBusy, "InOut", "11/01/2026", "11/08/2026",
       "", false, false, "Summary", false},
      {"busy-listing", "daily-week.log", "busy-listing.log", kind::kAllLinesBusy, "In", "11/03/2026", "11/05/2026",
       "", false, false, "Detailed", false},
      {"callbacks", "detail-calls.log", "", kind::kCallBacks, "In", "10/01/2026", "11/05/2026"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    testing::AnalysisRig rig(testing::ReportFixture(c.callLog), c.kind, 4, true);
    if (*c.busyLog != '\0') rig.folder.Write("BusyLines.log", testing::ReportFixture(c.busyLog));
    ReportRequest& request = rig.Request();
    request.direction = c.direction;
    request.searchText = c.search;
    request.dtmf = c.dtmf;
    request.columns = DetailColumnPositions(c.dtmf);
    request.variant = c.variant;
    request.lines.lines = {1};
    request.callBackWindowDays = 30;
    if (c.kind == kind::kAbandonedCalls) request.abandoned = {false, "", true, "3", false, 0};
    ASSERT_EQ(rig.Run(c.from, c.to, c.chart), RequestOutcome::kProduced);
    if (c.ownPage) testing::ExpectMatchesFixture(rig.Text(), std::string("csv-") + c.name + ".txt");
    testing::ExpectMatchesFixture(rig.host.previews.at(0).csv, std::string("csv-") + c.name + ".csv");
  }
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

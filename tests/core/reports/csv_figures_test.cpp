// The page and the CSV of every report kind, each compared whole with its
// expected file, and how the CSV is written.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis_rig.h"
#include "reports/csv_export.h"

namespace cw {
namespace {

// The requests of report-pages.txt, each with its expected text export and
// the CSV of its data.
TEST(ReportPages, EveryRequestMatchesItsPageAndItsData) {
  for (const std::vector<std::string>& c : testing::TableCases("reports/report-pages.txt")) {
    SCOPED_TRACE(c[0] + " " + c[1]);
    testing::AnalysisRig rig(testing::ReportFixture(c[2]), static_cast<std::int16_t>(std::stoi(c[4])), 4, !c[1].empty());
    if (!c[3].empty()) rig.folder.Write("BusyLines.log", testing::ReportFixture(c[3]));
    ReportRequest& request = rig.Request();
    request.direction = c[5];
    request.searchText = c[8];
    request.partial = c[9] == "partial";
    request.dtmf = c[10] == "dtmf";
    request.columns = DetailColumnPositions(request.dtmf);
    request.variant = c[12];
    request.lines.allLines = c[13] == "all";
    if (!c[13].empty() && !request.lines.allLines) request.lines.lines = {static_cast<std::int16_t>(std::stoi(c[13]))};
    if (const std::vector<std::string> f = testing::Split(c[14], ','); f.size() == 5) {
      request.abandoned = {f[0] == "1", f[1], f[2] == "1", f[3], f[4] == "1", 0};
    }
    request.callBackWindowDays = 30;
    ASSERT_EQ(rig.Run(c[6], c[7], c[11] == "chart"), RequestOutcome::kProduced);
    if (!c[0].empty()) testing::ExpectMatchesFixture(rig.Text(), c[0] + ".txt");
    if (!c[1].empty()) testing::ExpectMatchesFixture(rig.host.previews.at(0).csv, c[1] + ".csv");
    if (!c[15].empty()) {
      EXPECT_EQ(rig.host.previews.at(0).title, c[15]);
    }
    EXPECT_FALSE(rig.form->PartialMatch());
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

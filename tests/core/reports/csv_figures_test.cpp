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
  for (const std::vector<std::string>& c : testing::Cases("csv-cases.txt")) {
    SCOPED_TRACE(c[0]);
    const std::int16_t kind = static_cast<std::int16_t>(std::stoi(c[3]));
    testing::AnalysisRig rig(testing::ReportFixture(c[1]), kind, 4, true);
    if (!c[2].empty()) rig.folder.Write("BusyLines.log", testing::ReportFixture(c[2]));
    ReportRequest& request = rig.Request();
    request.direction = c[4];
    request.searchText = c[7];
    request.dtmf = c[8] == "dtmf";
    request.columns = DetailColumnPositions(request.dtmf);
    request.variant = c[10];
    request.lines.lines = {1};
    request.callBackWindowDays = 30;
    if (kind == kind::kAbandonedCalls) request.abandoned = {false, "", true, "3", false, 0};
    ASSERT_EQ(rig.Run(c[5], c[6], c[9] == "chart"), RequestOutcome::kProduced);
    if (c[11] == "page") testing::ExpectMatchesFixture(rig.Text(), "csv-" + c[0] + ".txt");
    testing::ExpectMatchesFixture(rig.host.previews.at(0).csv, "csv-" + c[0] + ".csv");
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

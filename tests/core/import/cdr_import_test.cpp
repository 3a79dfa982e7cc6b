// From CDR rows to calls: layouts, merging of legs, direction, answer, talk
// time and rings.
#include "import/cdr_import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

ImportRules OfficeRules() {
  ImportRules rules;
  rules.trunks = {{"SIP/telco", 1}, {"PJSIP/telco2", 2}};
  rules.inboundContexts = {"from-trunk*", "from-pstn"};
  return rules;
}

struct Imported {
  std::vector<LogCall> calls;
  ImportCounts counts;
  std::vector<BadRow> badRows;
  std::map<std::string, std::int64_t> unlisted;
  std::string format;
};

Imported Import(const std::string& text, ImportRules rules = OfficeRules(),
                std::optional<CdrFormat> format = std::nullopt, std::vector<std::string> columns = {}) {
  CdrImporter importer(std::move(rules), format, std::move(columns));
  importer.Feed(text, 1, true, 0);
  Imported result;
  for (KeyedCall& call : importer.TakeAll()) result.calls.push_back(std::move(call.call));
  std::stable_sort(result.calls.begin(), result.calls.end(),
                   [](const LogCall& a, const LogCall& b) { return a.start < b.start; });
  result.counts = importer.Counts();
  result.badRows = importer.TakeBadRows();
  result.unlisted = importer.UnlistedTrunks();
  result.format = std::string(FormatName(importer.Layout()->Format()));
  return result;
}

// What the log shows of a call, in one line for readable failures.
std::string Shown(const LogCall& call) {
  return std::string(call.inbound ? "In" : "Out") + " line " + std::to_string(call.line) + " [" + call.number +
         "] [" + call.name + "] " + (call.answered ? "Yes" : "No") + " talk " + std::to_string(call.talkSeconds) +
         " rings " + std::to_string(call.rings);
}

// Each "== " section of a CDR file under tests/data/import imported on its own:
// the format found, the calls as the log shows them, the counts, the trunks
// not listed (with the row each was first met on) and the rows not read.
std::string ImportSections(const std::string& file, const ImportRules& rules) {
  std::istringstream in(testing::ExpectedFile("import/" + file));
  std::vector<std::pair<std::string, std::string>> sections;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("== ")) {
      sections.emplace_back(line, "");
    } else if (!line.starts_with("#")) {
      sections.back().second += line + "\n";
    }
  }
  std::string shown;
  for (const auto& [heading, rows] : sections) {
    const Imported imported = Import(rows, rules);
    shown += heading + "\nformat " + imported.format + "\n";
    for (const LogCall& call : imported.calls) shown += Shown(call) + "\n";
    shown += "internal " + std::to_string(imported.counts.internal) + ", unlisted " +
             std::to_string(imported.counts.unlisted) + ", bad rows " + std::to_string(imported.counts.badRows) + "\n";
    for (const auto& [trunk, row] : imported.unlisted) shown += "unlisted " + trunk + " row " + std::to_string(row) + "\n";
    for (const BadRow& row : imported.badRows) shown += "row " + std::to_string(row.line) + ": " + row.reason + "\n";
  }
  return shown;
}

TEST(CdrImport, BuildsOneCallFromTheLegsOfEachCall) {
  testing::ExpectMatchesFile(ImportSections("asterisk-calls.cdr", OfficeRules()), "import/asterisk-calls.txt");
  ImportRules rules;
  rules.trunks = {{"sofia/gateway/telco", 3}};
  rules.inboundContexts = {"public"};
  testing::ExpectMatchesFile(ImportSections("freeswitch-calls.cdr", rules), "import/freeswitch-calls.txt");
}

TEST(CdrImport, ReadsACustomLayoutAndRefusesRowsOfNone) {
  const std::string custom =
      "\"2026-08-17 09:05:00\",\"2026-08-17 09:05:12\",\"2026-08-17 09:06:00\",48,ANSWERED,"
      "\"SIP/telco-0001\",\"SIP/201-0002\",\"from-trunk\",5551234567,\"\"\"Smith John\"\" <5551234567>\"\n";
  const Imported viaColumns =
      Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom,
             {"start", "answer", "end", "billsec", "disposition", "${CDR(channel)}", "${CSV_QUOTE(${CDR(dstchannel)})}",
              "dcontext", "src", "clid"});
  ASSERT_EQ(viaColumns.calls.size(), 1u);
  EXPECT_EQ(Shown(viaColumns.calls[0]), "In line 1 [(555) 123-4567] [Smith John] Yes talk 48 rings 2");
  EXPECT_THROW(Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom, {"src", "dst"}), RuntimeError);
  EXPECT_THROW(Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom, {}), RuntimeError);
  // The layouts it finds by itself are in the sections of the CDR files; rows
  // of none of them are refused.
  EXPECT_THROW(Import("1,2,3\n4,5,6\n"), RuntimeError);
  EXPECT_THROW(Import("name,number\nBob,555\n"), RuntimeError);
}

TEST(CdrImport, RingsAreTheRingTimeInRingPeriodsRoundedUp) {
  // A call in that began at 09:05:00, answered some seconds later.
  const std::string row =
      R"("","5551234567","201","from-trunk","""Smith John"" <5551234567>","SIP/telco-00000001","SIP/201-00000002",)"
      R"("Dial","SIP/201,30","2026-08-17 09:05:00","2026-08-17 09:05:{answer}","2026-08-17 09:06:16",76,62,)"
      R"("ANSWERED","DOCUMENTATION","1787000000.1","","","1787000000.1",7)" "\n";
  // The second it was answered, the seconds of a ring period, the rings.
  for (const auto& [answerSecond, ringSeconds, rings] :
       {std::tuple{"00", 6, 0}, {"01", 6, 1}, {"06", 6, 1}, {"07", 6, 2}, {"12", 4, 3}, {"13", 4, 4}}) {
    SCOPED_TRACE(std::string(answerSecond) + " / " + std::to_string(ringSeconds));
    ImportRules rules = OfficeRules();
    rules.ringSeconds = ringSeconds;
    const Imported imported = Import(testing::Replaced(row, "{answer}", answerSecond), rules);
    ASSERT_EQ(imported.calls.size(), 1u);
    EXPECT_EQ(imported.calls[0].rings, rings);
  }
}

}  // namespace
}  // namespace cw

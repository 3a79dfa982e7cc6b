// From CDR rows to calls: layouts, merging of legs, direction, answer, talk
// time and rings.
#include "import/cdr_import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cdr_rows.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

using testing::AsteriskRow;

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
  bool detected = false;
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
  result.detected = importer.Detected();
  return result;
}

// What the log shows of a call, in one line for readable failures.
std::string Shown(const LogCall& call) {
  return std::string(call.inbound ? "In" : "Out") + " line " + std::to_string(call.line) + " [" + call.number +
         "] [" + call.name + "] " + (call.answered ? "Yes" : "No") + " talk " + std::to_string(call.talkSeconds) +
         " rings " + std::to_string(call.rings);
}

TEST(CdrImport, BuildsOneCallFromTheLegsOfEachCall) {
  struct Case {
    std::string name;
    std::vector<AsteriskRow> rows;
    std::string shown;
  };
  const AsteriskRow plain;
  // A ring group through Local/ channels in a file without linkedid: the
  // trunk leg and the phone that answered are joined by the Local/ pair.
  const AsteriskRow ringTrunk{.dst = "600", .dstchannel = "Local/600@ringgroups-00000003;1",
                              .answer = "2026-08-17 09:05:09", .billsec = "67", .columns = 16};
  const AsteriskRow ringMiss{.dcontext = "ringgroups", .channel = "Local/600@ringgroups-00000002;2",
                             .dstchannel = "SIP/201-00000004", .answer = "", .billsec = "0",
                             .disposition = "NO ANSWER", .columns = 16};
  const AsteriskRow ringHit{.dcontext = "ringgroups", .channel = "Local/600@ringgroups-00000003;2",
                            .dstchannel = "SIP/202-00000005", .answer = "2026-08-17 09:05:09", .billsec = "67",
                            .columns = 16};
  // The same ring group in 21 columns: the linkedid joins them.
  const auto linked = [](AsteriskRow row, std::string uniqueid) {
    row.columns = 21;
    row.linkedid = "1787000000.40";
    row.uniqueid = std::move(uniqueid);
    return row;
  };
  const AsteriskRow missed{.answer = "", .end = "2026-08-17 09:05:25", .billsec = "0", .disposition = "NO ANSWER"};
  // Nobody took it; voicemail (the PBX itself) answered.
  const AsteriskRow rang{.answer = "", .end = "2026-08-17 09:05:20", .billsec = "0", .disposition = "NO ANSWER"};
  const AsteriskRow voicemail{.dstchannel = "", .lastapp = "VoiceMail", .lastdata = "201@default",
                              .start = "2026-08-17 09:05:20", .answer = "2026-08-17 09:05:21",
                              .end = "2026-08-17 09:05:51", .billsec = "30"};
  // Answered, then passed on by the phone that took it: its leg keeps the
  // trunk's context but is no trunk of its own.
  const AsteriskRow first{.answer = "2026-08-17 09:05:05", .end = "2026-08-17 09:05:35", .billsec = "30"};
  const AsteriskRow second{.channel = "SIP/201-00000002", .dstchannel = "SIP/202-00000009", .start = "2026-08-17 09:05:35",
                           .answer = "2026-08-17 09:05:35", .end = "2026-08-17 09:06:35", .billsec = "60",
                           .uniqueid = "1787000000.9"};
  // The office calls out on the second trunk.
  const AsteriskRow out{.src = "201", .dst = "915559876543", .dcontext = "from-internal", .clid = "\"Reception\" <201>",
                        .channel = "SIP/201-00000010", .dstchannel = "PJSIP/telco2-00000011",
                        .lastdata = "PJSIP/15559876543@telco2,60"};
  AsteriskRow outMissed = out;
  outMissed.dst = "5559876543";
  outMissed.answer = "";
  outMissed.billsec = "0";
  outMissed.disposition = "BUSY";
  // Rows of 16, 17 and 18 columns without linkedid, and a caller name in
  // UTF-8 with a control byte.
  const AsteriskRow sixteen{.clid = "\"M\xC3\xBCller\x01 Anna\" <5551234567>", .columns = 16};
  const AsteriskRow eighteen{.answer = "2026-08-17 09:05:00", .columns = 18};

  const Case cases[] = {
      {"answered", {plain}, "In line 1 [(555) 123-4567] [Smith John] Yes talk 62 rings 3"},
      {"ring group without linkedid", {ringMiss, ringHit, ringTrunk},
       "In line 1 [(555) 123-4567] [Smith John] Yes talk 67 rings 2"},
      {"ring group with linkedid",
       {linked(ringMiss, "1787000000.41"), linked(ringHit, "1787000000.42"), linked(ringTrunk, "1787000000.1")},
       "In line 1 [(555) 123-4567] [Smith John] Yes talk 67 rings 2"},
      {"not answered", {missed}, "In line 1 [(555) 123-4567] [Smith John] No talk 0 rings 5"},
      {"only voicemail answered", {rang, voicemail}, "In line 1 [(555) 123-4567] [Smith John] No talk 0 rings 9"},
      {"transferred", {first, second}, "In line 1 [(555) 123-4567] [Smith John] Yes talk 90 rings 1"},
      {"outbound", {out}, "Out line 2 [915559876543] [] Yes talk 62 rings 3"},
      {"outbound busy", {outMissed}, "Out line 2 [(555) 987-6543] [] No talk 0 rings 13"},
      {"16 columns", {sixteen}, "In line 1 [(555) 123-4567] [M\xFCller  Anna] Yes talk 62 rings 3"},
      {"answered at once", {eighteen}, "In line 1 [(555) 123-4567] [Smith John] Yes talk 62 rings 0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string text;
    for (const AsteriskRow& row : c.rows) text += row.Text();
    const Imported imported = Import(text);
    EXPECT_TRUE(imported.badRows.empty()) << imported.badRows.front().reason;
    ASSERT_EQ(imported.calls.size(), 1u);
    EXPECT_EQ(Shown(imported.calls[0]), c.shown);
    EXPECT_EQ(imported.format, "asterisk");
  }
}

TEST(CdrImport, SkipsInternalCallsAndNamesUnlistedTrunks) {
  const AsteriskRow internal{.dcontext = "from-internal", .channel = "SIP/201-00000020",
                             .dstchannel = "SIP/202-00000021", .linkedid = "1787000000.20"};
  const AsteriskRow strangerIn{.channel = "SIP/othertelco-00000022", .linkedid = "1787000000.22"};
  const AsteriskRow strangerOut{.dcontext = "from-internal", .channel = "SIP/201-00000020",
                                .dstchannel = "IAX2/cheapcalls-00000023", .lastdata = "IAX2/cheapcalls/5559876543",
                                .linkedid = "1787000000.23"};
  // A dial string without a technology names no peer, so no way out.
  AsteriskRow internalBare = internal;
  internalBare.lastdata = "202,20";
  internalBare.linkedid = "1787000000.25";
  const AsteriskRow fine{.linkedid = "1787000000.24"};
  const Imported imported =
      Import(internal.Text() + strangerIn.Text() + strangerOut.Text() + fine.Text() + internalBare.Text());
  EXPECT_EQ(imported.calls.size(), 1u);
  EXPECT_EQ(imported.counts.internal, 2);
  EXPECT_EQ(imported.counts.unlisted, 2);
  EXPECT_EQ(imported.unlisted, (std::map<std::string, std::int64_t>{{"IAX2/cheapcalls", 3}, {"SIP/othertelco", 2}}));
}

TEST(CdrImport, ReadsFreeSwitchLegsAsOneCall) {
  // caller_id_name, caller_id_number, destination_number, context,
  // start_stamp, answer_stamp, end_stamp, duration, billsec, hangup_cause,
  // uuid, bleg_uuid, accountcode, read_codec, write_codec
  const std::string text =
      "\"Smith John\",\"5551234567\",\"1000\",\"public\",\"2026-08-17 09:05:00\",\"2026-08-17 09:05:07\","
      "\"2026-08-17 09:06:07\",\"67\",\"60\",\"NORMAL_CLEARING\",\"a-1\",\"b-1\",\"\",\"PCMU\",\"PCMU\"\n"
      "\"Smith John\",\"5551234567\",\"1000\",\"default\",\"2026-08-17 09:05:01\",\"2026-08-17 09:05:07\","
      "\"2026-08-17 09:06:07\",\"66\",\"60\",\"NORMAL_CLEARING\",\"b-1\",\"\",\"\",\"PCMU\",\"PCMU\"\n"
      // Answered by the IVR alone: not a person.
      "\"\",\"5557654321\",\"5000\",\"public\",\"2026-08-17 10:00:00\",\"2026-08-17 10:00:01\","
      "\"2026-08-17 10:00:31\",\"31\",\"30\",\"NORMAL_CLEARING\",\"a-2\",\"\",\"\",\"PCMU\",\"PCMU\"\n"
      // Out to the telephone company from extension 1001.
      "\"Reception\",\"1001\",\"5559876543\",\"default\",\"2026-08-17 11:00:00\",\"\","
      "\"2026-08-17 11:00:30\",\"30\",\"0\",\"NO_ANSWER\",\"a-3\",\"\",\"\",\"PCMU\",\"PCMU\"\n"
      // Extension to extension.
      "\"Reception\",\"1001\",\"1002\",\"default\",\"2026-08-17 12:00:00\",\"2026-08-17 12:00:03\","
      "\"2026-08-17 12:01:00\",\"60\",\"57\",\"NORMAL_CLEARING\",\"a-4\",\"b-4\",\"\",\"PCMU\",\"PCMU\"\n";
  ImportRules rules;
  rules.trunks = {{"sofia/gateway/telco", 3}};
  rules.inboundContexts = {"public"};
  const Imported imported = Import(text, rules);
  EXPECT_EQ(imported.format, "freeswitch");
  ASSERT_EQ(imported.calls.size(), 3u);
  EXPECT_EQ(Shown(imported.calls[0]), "In line 3 [(555) 123-4567] [Smith John] Yes talk 60 rings 2");
  EXPECT_EQ(Shown(imported.calls[1]), "In line 3 [(555) 765-4321] [] No talk 0 rings 6");
  EXPECT_EQ(Shown(imported.calls[2]), "Out line 3 [(555) 987-6543] [] No talk 0 rings 5");
  EXPECT_EQ(imported.counts.internal, 1);
}

TEST(CdrImport, ReadsCustomAndHeaderNamedLayouts) {
  const std::string custom =
      "\"2026-08-17 09:05:00\",\"2026-08-17 09:05:12\",\"2026-08-17 09:06:00\",48,ANSWERED,"
      "\"SIP/telco-0001\",\"SIP/201-0002\",\"from-trunk\",5551234567,\"\"\"Smith John\"\" <5551234567>\"\n";
  const Imported viaColumns =
      Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom,
             {"start", "answer", "end", "billsec", "disposition", "${CDR(channel)}", "${CSV_QUOTE(${CDR(dstchannel)})}",
              "dcontext", "src", "clid"});
  ASSERT_EQ(viaColumns.calls.size(), 1u);
  EXPECT_EQ(Shown(viaColumns.calls[0]), "In line 1 [(555) 123-4567] [Smith John] Yes talk 48 rings 2");

  const std::string headed =
      "calldate,src,dst,dcontext,channel,dstchannel,disposition,billsec,duration,clid,uniqueid\n"
      "2026-08-17 09:05:00,5551234567,201,from-trunk,SIP/telco-0001,SIP/201-0002,ANSWERED,50,62,"
      "\"\"\"Smith John\"\" <5551234567>\",1787000000.5\n";
  const Imported viaHeader = Import(headed);
  EXPECT_EQ(viaHeader.format, "csv");
  EXPECT_TRUE(viaHeader.detected);
  ASSERT_EQ(viaHeader.calls.size(), 1u);
  // Without an answer time the talk is the billed seconds before the end.
  EXPECT_EQ(Shown(viaHeader.calls[0]), "In line 1 [(555) 123-4567] [Smith John] Yes talk 50 rings 2");

  EXPECT_THROW(Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom, {"src", "dst"}), RuntimeError);
  EXPECT_THROW(Import(custom, OfficeRules(), CdrFormat::kAsteriskCustom, {}), RuntimeError);
}

TEST(CdrImport, ReportsRowsItCannotReadWithTheirLines) {
  const AsteriskRow good;
  const AsteriskRow badStart{.start = "2026-02-30 09:00:00", .linkedid = "x"};
  const AsteriskRow badBillsec{.billsec = "abc", .linkedid = "y"};
  const std::string text = good.Text() + "\"only\",\"three\",\"columns\"\n\n" + badStart.Text() +
                           badBillsec.Text() + "\"open quote,1\n";
  const Imported imported = Import(text, OfficeRules(), CdrFormat::kAsterisk);
  EXPECT_EQ(imported.calls.size(), 1u);
  std::vector<std::pair<std::int64_t, std::string>> found;
  for (const BadRow& row : imported.badRows) found.emplace_back(row.line, row.reason);
  EXPECT_EQ(found, (std::vector<std::pair<std::int64_t, std::string>>{
                       {2, "3 columns; an Asterisk row has 16, 17, 18 or 21"},
                       {4, "start time \"2026-02-30 09:00:00\" is not a date and time"},
                       {5, "billsec \"abc\" is not a number of seconds"},
                       {6, "a quoted field is not closed"}}));
  EXPECT_EQ(imported.counts.badRows, 4);
}

TEST(CdrImport, DetectsTheLayoutFromTheFirstRows) {
  EXPECT_EQ(Import(AsteriskRow{.columns = 18}.Text()).format, "asterisk");
  EXPECT_THROW(Import("1,2,3\n4,5,6\n"), RuntimeError);
  EXPECT_THROW(Import("name,number\nBob,555\n"), RuntimeError);
}

TEST(CdrImport, RingsAreTheRingTimeInRingPeriodsRoundedUp) {
  struct Case {
    std::string answer;
    int ringSeconds;
    int rings;
  };
  const Case cases[] = {
      {"2026-08-17 09:05:00", 6, 0}, {"2026-08-17 09:05:01", 6, 1}, {"2026-08-17 09:05:06", 6, 1},
      {"2026-08-17 09:05:07", 6, 2}, {"2026-08-17 09:05:12", 4, 3}, {"2026-08-17 09:05:13", 4, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.answer + " / " + std::to_string(c.ringSeconds));
    ImportRules rules = OfficeRules();
    rules.ringSeconds = c.ringSeconds;
    const Imported imported = Import(AsteriskRow{.answer = c.answer}.Text(), rules);
    ASSERT_EQ(imported.calls.size(), 1u);
    EXPECT_EQ(imported.calls[0].rings, c.rings);
  }
}

}  // namespace
}  // namespace cw

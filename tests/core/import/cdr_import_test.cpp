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
  AsteriskRow plain;
  // A ring group through Local/ channels in a file without linkedid: the
  // trunk leg and the phone that answered are joined by the Local/ pair.
  AsteriskRow ringTrunk = plain, ringMiss = plain, ringHit = plain;
  ringTrunk.columns = ringMiss.columns = ringHit.columns = 16;
  ringTrunk.dstchannel = "Local/600@ringgroups-00000003;1";
  ringTrunk.dst = "600";
  ringTrunk.answer = "2026-08-17 09:05:09";
  ringTrunk.billsec = "67";
  ringMiss.channel = "Local/600@ringgroups-00000002;2";
  ringMiss.dstchannel = "SIP/201-00000004";
  ringMiss.dcontext = "ringgroups";
  ringMiss.disposition = "NO ANSWER";
  ringMiss.answer = "";
  ringMiss.billsec = "0";
  ringHit.channel = "Local/600@ringgroups-00000003;2";
  ringHit.dstchannel = "SIP/202-00000005";
  ringHit.dcontext = "ringgroups";
  ringHit.answer = "2026-08-17 09:05:09";
  ringHit.billsec = "67";
  // The same ring group in 21 columns: the linkedid joins them.
  AsteriskRow linkedMiss = ringMiss, linkedHit = ringHit, linkedTrunk = ringTrunk;
  for (AsteriskRow* row : {&linkedMiss, &linkedHit, &linkedTrunk}) {
    row->columns = 21;
    row->linkedid = "1787000000.40";
  }
  linkedMiss.uniqueid = "1787000000.41";
  linkedHit.uniqueid = "1787000000.42";
  AsteriskRow missed = plain;
  missed.disposition = "NO ANSWER";
  missed.answer = "";
  missed.billsec = "0";
  missed.end = "2026-08-17 09:05:25";
  // Nobody took it; voicemail (the PBX itself) answered.
  AsteriskRow rang = missed, voicemail = plain;
  rang.end = "2026-08-17 09:05:20";
  voicemail.start = "2026-08-17 09:05:20";
  voicemail.answer = "2026-08-17 09:05:21";
  voicemail.end = "2026-08-17 09:05:51";
  voicemail.dstchannel = "";
  voicemail.lastapp = "VoiceMail";
  voicemail.lastdata = "201@default";
  voicemail.billsec = "30";
  // Answered, then transferred to another phone.
  AsteriskRow first = plain, second = plain;
  first.answer = "2026-08-17 09:05:05";
  first.end = "2026-08-17 09:05:35";
  first.billsec = "30";
  second.start = "2026-08-17 09:05:35";
  second.answer = "2026-08-17 09:05:35";
  second.end = "2026-08-17 09:06:35";
  second.billsec = "60";
  second.dstchannel = "SIP/202-00000009";
  second.uniqueid = "1787000000.9";
  // The office calls out on the second trunk.
  AsteriskRow out = plain;
  out.src = "201";
  out.dst = "915559876543";
  out.clid = "\"Reception\" <201>";
  out.dcontext = "from-internal";
  out.channel = "SIP/201-00000010";
  out.dstchannel = "PJSIP/telco2-00000011";
  out.lastdata = "PJSIP/15559876543@telco2,60";
  AsteriskRow outMissed = out;
  outMissed.disposition = "BUSY";
  outMissed.answer = "";
  outMissed.billsec = "0";
  outMissed.dst = "5559876543";
  // Rows of 16, 17 and 18 columns without linkedid, and a caller name in
  // UTF-8 with a control byte.
  AsteriskRow sixteen = plain, eighteen = plain;
  sixteen.columns = 16;
  sixteen.clid = "\"M\xC3\xBCller\x01 Anna\" <5551234567>";
  eighteen.columns = 18;
  eighteen.answer = "2026-08-17 09:05:00";

  const Case cases[] = {
      {"answered", {plain}, "In line 1 [(555) 123-4567] [Smith John] Yes talk 62 rings 3"},
      {"ring group without linkedid", {ringMiss, ringHit, ringTrunk},
       "In line 1 [(555) 123-4567] [Smith John] Yes talk 67 rings 2"},
      {"ring group with linkedid", {linkedMiss, linkedHit, linkedTrunk},
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
  AsteriskRow internal;
  internal.channel = "SIP/201-00000020";
  internal.dstchannel = "SIP/202-00000021";
  internal.dcontext = "from-internal";
  internal.linkedid = "1787000000.20";
  AsteriskRow strangerIn;
  strangerIn.channel = "SIP/othertelco-00000022";
  strangerIn.linkedid = "1787000000.22";
  AsteriskRow strangerOut = internal;
  strangerOut.dstchannel = "IAX2/cheapcalls-00000023";
  strangerOut.lastdata = "IAX2/cheapcalls/5559876543";
  strangerOut.linkedid = "1787000000.23";
  AsteriskRow fine;
  fine.linkedid = "1787000000.24";
  const Imported imported = Import(internal.Text() + strangerIn.Text() + strangerOut.Text() + fine.Text());
  EXPECT_EQ(imported.calls.size(), 1u);
  EXPECT_EQ(imported.counts.internal, 1);
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
  AsteriskRow good;
  AsteriskRow badStart = good;
  badStart.start = "2026-02-30 09:00:00";
  badStart.linkedid = "x";
  AsteriskRow badBillsec = good;
  badBillsec.billsec = "abc";
  badBillsec.linkedid = "y";
  const std::string text = good.Text() + "\"only\",\"three\",\"columns\"\n\n" + badStart.Text() +
                           badBillsec.Text() + "\"open quote,1\n";
  const Imported imported = Import(text, OfficeRules(), CdrFormat::kAsterisk);
  EXPECT_EQ(imported.calls.size(), 1u);
  ASSERT_EQ(imported.badRows.size(), 4u);
  EXPECT_EQ(imported.badRows[0].line, 2);
  EXPECT_EQ(imported.badRows[0].reason, "3 columns; an Asterisk row has 16, 17, 18 or 21");
  EXPECT_EQ(imported.badRows[1].line, 4);
  EXPECT_EQ(imported.badRows[1].reason, "start time \"2026-02-30 09:00:00\" is not a date and time");
  EXPECT_EQ(imported.badRows[2].line, 5);
  EXPECT_EQ(imported.badRows[2].reason, "billsec \"abc\" is not a number of seconds");
  EXPECT_EQ(imported.badRows[3].line, 6);
  EXPECT_EQ(imported.badRows[3].reason, "a quoted field is not closed");
  EXPECT_EQ(imported.counts.badRows, 4);
}

TEST(CdrImport, DetectsTheLayoutFromTheFirstRows) {
  AsteriskRow eighteen;
  eighteen.columns = 18;
  EXPECT_EQ(Import(eighteen.Text()).format, "asterisk");
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
    AsteriskRow row;
    row.answer = c.answer;
    ImportRules rules = OfficeRules();
    rules.ringSeconds = c.ringSeconds;
    const Imported imported = Import(row.Text(), rules);
    ASSERT_EQ(imported.calls.size(), 1u);
    EXPECT_EQ(imported.calls[0].rings, c.rings);
  }
}

}  // namespace
}  // namespace cw

// make_demo_office: writes a demo office for Callwarden Reports, the files the
// logging program would leave behind: the call log, BusyLines.log and the two
// INI files of the logging product. Everything follows from the options and the
// seed, so the same command writes the same bytes on every machine (the random
// numbers and every distribution are our own integer code, no library
// distribution and no floating point).
//
//   cw_make_demo [--calls N | --size-mb N] [--lines N] [--start mm/dd/yyyy]
//                [--days N] [--seed N] [--log FILE] [--busy FILE] [--ini-dir DIR]
//
// With --calls the log holds exactly N calls spread over --days days from
// --start; the lines are simulated, so a call that finds every line busy is
// turned away (as the telephone company would) and the stretch is written to
// BusyLines.log. The log may run a day or so past --days to reach N.
// With --size-mb the log grows until it holds at least N MiB, for benchmarks:
// the calls are spread over --days (ten years unless given), lines are picked
// at random without simulating them, and no busy log is written.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/civil_date.h"
#include "support/date_format.h"
#include "support/runtime_error.h"

namespace {

using cw::CivilDate;

// ---------------------------------------------------------------- randomness

// xoshiro256** seeded through splitmix64: small, fast and the same everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) {
    for (std::uint64_t& word : state_) {
      seed += 0x9E3779B97F4A7C15ull;
      std::uint64_t z = seed;
      z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
      z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
      word = z ^ (z >> 31);
    }
  }

  std::uint64_t Next() {
    const std::uint64_t result = Rotate(state_[1] * 5, 7) * 9;
    const std::uint64_t t = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= t;
    state_[3] = Rotate(state_[3], 45);
    return result;
  }

  // 0 <= result < bound (bound > 0), by multiply and shift.
  std::uint32_t Below(std::uint32_t bound) {
    return static_cast<std::uint32_t>(((Next() >> 32) * static_cast<std::uint64_t>(bound)) >> 32);
  }
  std::int32_t Between(std::int32_t low, std::int32_t high) {  // inclusive
    return low + static_cast<std::int32_t>(Below(static_cast<std::uint32_t>(high - low + 1)));
  }
  // True with the chance percent / 100.
  bool Percent(std::uint32_t percent) { return Below(100) < percent; }

  // An index chosen with the given whole-number weights.
  template <std::size_t N>
  std::size_t Weighted(const std::array<std::uint32_t, N>& weights) {
    std::uint32_t total = 0;
    for (std::uint32_t w : weights) total += w;
    std::uint32_t pick = Below(total);
    for (std::size_t i = 0; i < N; ++i) {
      if (pick < weights[i]) return i;
      pick -= weights[i];
    }
    return N - 1;
  }

 private:
  static std::uint64_t Rotate(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
  std::array<std::uint64_t, 4> state_{};
};

// ------------------------------------------------------------------ callers

// A caller the office hears from again and again. The logging program shows
// what the telephone company sends, so the same caller turns up under more
// than one spelling of the name and the number. Names are Windows-1252.
struct Contact {
  std::vector<std::string_view> names;
  std::vector<std::string_view> numbers;
};

const std::vector<Contact>& Contacts() {
  static const std::vector<Contact> contacts = {
      {{"SMITH JOHN", "Smith John"}, {"(555) 123-4567", "555-123-4567"}},
      {{"ACME PLUMBING INC"}, {"(555) 201-3300", "5552013300"}},
      {{"JOHNSON MARY"}, {"555-019-8841", "(555) 019-8841"}},
      {{"CITY OF SPRINGFIELD"}, {"(555) 100-2000"}},
      {{"O'BRIEN PAT", "OBRIEN PAT"}, {"555-487-2209"}},
      {{"WILLIAMS ROBERT"}, {"555-612-0934"}},
      {{"BROWN LINDA", "Brown Linda"}, {"(555) 245-6678", "555-245-6678"}},
      {{"DAVIS MICHAEL"}, {"555-731-5520"}},
      {{"FIRST NATL BANK"}, {"(800) 555-0199", "800-555-0199"}},
      {{"MILLER SUSAN"}, {"555-884-3016"}},
      {{"WILSON DAVID"}, {"(555) 390-2271"}},
      {{"MOORE JENNIFER"}, {"555-455-9087"}},
      {{"TAYLOR JAMES"}, {"(555) 566-1043"}},
      {{"ANDERSON LISA"}, {"555-677-8122"}},
      {{"M\xDCLLER ANNA", "M\xFCller Anna"}, {"555-348-1290"}},
      {{"THOMAS CHRIS"}, {"(555) 788-3390"}},
      {{"JACKSON KAREN"}, {"555-899-4410"}},
      {{"GARC\xCD" "A JOS\xC9"}, {"(555) 774-0021"}},
      {{"WHITE STEVEN"}, {"(555) 911-5021"}},
      {{"HARRIS NANCY"}, {"555-122-6634"}},
      {{"NU\xD1" "EZ MARIA"}, {"(555) 602-1187"}},
      {{"MARTIN PAUL"}, {"(555) 233-7745"}},
      {{"THOMPSON SARAH"}, {"555-344-8856"}},
      {{"MARTINEZ CARLOS"}, {"(555) 455-9967"}},
      {{"Lef\xE8vre C\xE9line"}, {"555-910-4432"}},
      {{"ROBINSON EMMA"}, {"555-566-1078"}},
      {{"CLARK DANIEL"}, {"(555) 677-2189"}},
      {{"RODRIGUEZ ANA"}, {"555-788-3290"}},
      {{"LEWIS GEORGE"}, {"(555) 899-4301"}},
      {{"BJ\xD6RK LENA"}, {"(555) 330-7712"}},
      {{"LEE HELEN"}, {"555-900-5412"}},
      {{"WALKER KEVIN"}, {"(555) 011-6523"}},
      {{"HALL DONNA"}, {"555-122-7634"}},
      {{"ALLEN BRIAN"}, {"(555) 233-8745"}},
      {{"YOUNG CAROL"}, {"555-344-9856"}},
      {{"KING RAYMOND"}, {"(555) 455-0967"}},
      {{"WRIGHT SHARON"}, {"555-566-2078"}},
      {{"LOPEZ JORGE"}, {"(555) 677-3189"}},
      {{"HILL DEBORAH"}, {"555-788-4290"}},
      {{"SCOTT FRANK"}, {"(555) 899-5301"}},
  };
  return contacts;
}

// A caller the office never heard from: an unknown number, or no caller ID.
struct Stranger {
  std::string name;
  std::string number;
};

Stranger MakeStranger(Random& random) {
  switch (random.Below(10)) {
    case 0: return {"PRIVATE", ""};
    case 1: return {"OUT OF AREA", ""};
    case 2: return {"UNAVAILABLE", ""};
    default: break;
  }
  char number[16];
  std::snprintf(number, sizeof number, "(555) %03u-%04u", random.Below(1000), random.Below(10000));
  static constexpr std::array<std::string_view, 4> kNames = {"WIRELESS CALLER", "SPRINGFIELD  IL",
                                                             "TOLL FREE", "NAME UNAVAILABLE"};
  return {std::string(kNames[random.Below(kNames.size())]), number};
}

// Callers are chosen with weights falling off like 1/rank, so a few regulars
// make most of the calls.
std::size_t PickContact(Random& random) {
  static const std::vector<std::uint32_t> cumulative = [] {
    std::vector<std::uint32_t> sums;
    std::uint32_t total = 0;
    for (std::size_t rank = 1; rank <= Contacts().size(); ++rank) {
      total += static_cast<std::uint32_t>(100000 / rank);
      sums.push_back(total);
    }
    return sums;
  }();
  const std::uint32_t pick = random.Below(cumulative.back());
  return static_cast<std::size_t>(std::upper_bound(cumulative.begin(), cumulative.end(), pick) -
                                  cumulative.begin());
}

// -------------------------------------------------------------------- calls

struct Call {
  std::int32_t start = 0;  // seconds since midnight
  bool in = true;
  bool answered = true;
  std::int32_t rings = 0;
  std::int32_t seconds = 0;  // talk time
  std::string_view dtmf;
  std::string name;
  std::string number;
  std::int32_t line = 0;
  // How long the call holds its line: the rings (six seconds each) and the talk.
  std::int32_t Holding() const { return rings * 6 + seconds; }
};

// Calls per hour of the day, in relative weights: an office day with a
// morning peak, a lunch dip and a few evening calls.
constexpr std::array<std::uint32_t, 24> kHourWeights = {0,  0,  0,  0,  0,  0,  1,  4,  14, 20, 18, 16,
                                                        10, 13, 16, 15, 12, 8,  4,  2,  2,  1,  0,  0};
// Sunday .. Saturday.
constexpr std::array<std::uint32_t, 7> kWeekdayPercent = {8, 100, 110, 100, 100, 95, 35};

std::int32_t TalkSeconds(Random& random, std::int32_t start) {
  std::int32_t seconds;
  switch (random.Weighted(std::array<std::uint32_t, 5>{5, 58, 28, 8, 1})) {
    case 0: seconds = random.Between(2, 20); break;         // hung up at once
    case 1: seconds = random.Between(25, 240); break;       // the usual
    case 2: seconds = random.Between(241, 900); break;      // a longer talk
    case 3: seconds = random.Between(901, 3599); break;     // a long one
    default: seconds = random.Between(3600, 9000); break;   // over an hour
  }
  // Evening calls are kept short so that no call runs past midnight.
  if (start >= 20 * 3600) seconds = std::min(seconds, 3599);
  return seconds;
}

constexpr std::array<std::string_view, 9> kDtmfDigits = {"1", "2", "0", "3#", "1234#", "*9", "4401", "22", "7"};

Call MakeCall(Random& random, std::int32_t start) {
  Call call;
  call.start = start;
  call.in = random.Percent(70);
  const bool known = random.Percent(call.in ? 80 : 95);
  if (known) {
    const Contact& contact = Contacts()[PickContact(random)];
    call.name = contact.names[random.Below(static_cast<std::uint32_t>(contact.names.size()))];
    call.number = contact.numbers[random.Below(static_cast<std::uint32_t>(contact.numbers.size()))];
  } else {
    Stranger stranger = MakeStranger(random);
    call.name = std::move(stranger.name);
    call.number = std::move(stranger.number);
  }
  if (call.in) {
    call.answered = random.Percent(82);
    call.rings = call.answered ? random.Between(1, 4) : random.Between(1, 9);
    call.seconds = call.answered ? TalkSeconds(random, start) : 0;
    if (call.answered && random.Percent(12)) call.dtmf = kDtmfDigits[random.Below(kDtmfDigits.size())];
  } else {
    // The logging program sees no name on a call the office places unless the
    // number is in its phone book.
    if (!known || random.Percent(40)) call.name.clear();
    call.answered = random.Percent(85);
    call.rings = 0;
    call.seconds = call.answered ? TalkSeconds(random, start) : 0;
  }
  return call;
}

// The arrival times of one day, in order. On some busy days a burst of calls
// comes in a short while (a radio advert, a storm) and fills every line.
std::vector<std::int32_t> ArrivalsOfDay(Random& random, std::uint32_t count, bool burst) {
  std::vector<std::int32_t> times;
  times.reserve(count + 16);
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto hour = static_cast<std::int32_t>(random.Weighted(kHourWeights));
    times.push_back(hour * 3600 + random.Between(0, 3599));
  }
  if (burst) {
    const std::int32_t from = random.Between(9 * 3600, 15 * 3600);
    const std::int32_t calls = random.Between(8, 14);
    for (std::int32_t i = 0; i < calls; ++i) times.push_back(from + random.Between(0, 20 * 60));
  }
  std::sort(times.begin(), times.end());
  return times;
}

// ------------------------------------------------------------------ writing

class OutputFile {
 public:
  explicit OutputFile(std::string path) : path_(std::move(path)) {
    file_ = std::fopen(path_.c_str(), "wb");
    if (!file_) throw std::runtime_error("cannot create " + path_ + ": " + std::strerror(errno));
    buffer_.reserve(kFlushAt + 256);
  }
  ~OutputFile() {
    if (file_) std::fclose(file_);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::string& Buffer() { return buffer_; }
  std::uint64_t Written() const { return written_ + buffer_.size(); }
  void FlushIfFull() {
    if (buffer_.size() >= kFlushAt) Flush();
  }
  void Close() {
    Flush();
    const int closed = std::fclose(file_);
    file_ = nullptr;
    if (closed != 0) throw std::runtime_error("cannot write " + path_ + ": " + std::strerror(errno));
  }

 private:
  static constexpr std::size_t kFlushAt = 4 << 20;
  void Flush() {
    if (!buffer_.empty() && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) {
      throw std::runtime_error("cannot write " + path_ + ": " + std::strerror(errno));
    }
    written_ += buffer_.size();
    buffer_.clear();
  }
  std::string path_;
  std::FILE* file_ = nullptr;
  std::string buffer_;
  std::uint64_t written_ = 0;
};

void PutDigits(char* at, std::int32_t value, int width) {  // zero-padded
  for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
}

void PutRight(char* at, std::int32_t value, int width) {  // blank-padded
  for (int i = width - 1; i >= 0; --i) {
    at[i] = (value > 0 || i == width - 1) ? static_cast<char>('0' + value % 10) : ' ';
    value /= 10;
  }
}

void PutText(char* at, std::string_view text, std::size_t width) {
  std::memcpy(at, text.data(), std::min(text.size(), width));
}

// "09:05AM": the 7-character time field.
void PutClock(char* at, std::int32_t seconds) {
  const std::int32_t hour24 = seconds / 3600;
  const std::int32_t hour12 = hour24 % 12 == 0 ? 12 : hour24 % 12;
  PutDigits(at, hour12, 2);
  at[2] = ':';
  PutDigits(at + 3, seconds / 60 % 60, 2);
  at[5] = hour24 < 12 ? 'A' : 'P';
  at[6] = 'M';
}

// One line of the call log: the fixed columns, then CR LF. Columns counted
// from 1: date 1, time 12, number 20, name 39, line 80, direction 84,
// duration 88 (h:mm:ss), answered 96, rings 100, DTMF from 104.
void AppendCallLine(std::string& out, std::string_view dateText, const Call& call) {
  char line[160];
  std::memset(line, ' ', sizeof line);
  PutText(line + 0, dateText, 10);
  PutClock(line + 11, call.start);
  PutText(line + 19, call.number, 18);
  PutText(line + 38, call.name, 40);
  PutRight(line + 79, call.line, 3);
  PutText(line + 83, call.in ? "In" : "Out", 3);
  line[87] = static_cast<char>('0' + call.seconds / 3600);
  line[88] = ':';
  PutDigits(line + 89, call.seconds / 60 % 60, 2);
  line[91] = ':';
  PutDigits(line + 92, call.seconds % 60, 2);
  PutText(line + 95, call.answered ? "Yes" : "No", 3);
  PutRight(line + 99, call.rings, 3);
  std::size_t length = 102;
  if (!call.dtmf.empty()) {
    PutText(line + 103, call.dtmf, 40);
    length = 103 + call.dtmf.size();
  }
  out.append(line, length);
  out.append("\r\n");
}

// "09:05:12 AM", as the busy log writes its times.
std::string BusyClock(std::int32_t seconds) {
  char text[32];
  const std::int32_t hour24 = seconds / 3600;
  const std::int32_t hour12 = hour24 % 12 == 0 ? 12 : hour24 % 12;
  std::snprintf(text, sizeof text, "%02d:%02d:%02d %s", hour12, seconds / 60 % 60, seconds % 60,
                hour24 < 12 ? "AM" : "PM");
  return text;
}

void WriteLoggingIni(const std::string& path, std::int32_t lines) {
  OutputFile file(path);
  file.Buffer() = "[Ports]\r\nKVXHardware=3\r\nActiveLines=" + std::to_string(lines) + "\r\n";
  file.Close();
}

// ------------------------------------------------------------------ options

struct Options {
  std::int64_t calls = 4000;
  std::int64_t sizeMb = 0;
  std::int32_t lines = 4;
  CivilDate start = CivilDate::FromYmd(2026, 8, 17);
  std::int32_t days = 91;
  bool daysGiven = false;
  std::uint64_t seed = 1;
  std::string log = "CallLog.txt";
  std::string busy;
  std::string iniDir;
  bool busyGiven = false;
  bool iniGiven = false;
};

constexpr std::string_view kUsage =
    "usage: cw_make_demo [--calls N | --size-mb N] [--lines N] [--start mm/dd/yyyy]\n"
    "                    [--days N] [--seed N] [--log FILE] [--busy FILE] [--ini-dir DIR]\n"
    "Writes a demo office: the call log (default CallLog.txt), BusyLines.log and\n"
    "the logging product's Callwarden.ini and Ringtally.ini (default: beside the\n"
    "log). --calls N (default 4000) spreads exactly N calls over --days days\n"
    "(default 91) from --start (default 08/17/2026) on --lines lines (default 4).\n"
    "--size-mb N writes a log of at least N MiB for benchmarks (over --days,\n"
    "default 3650; no busy log, INI files only with --ini-dir). --seed N (default 1)\n"
    "chooses the random numbers; the same options always give the same files.\n";

[[noreturn]] void Refuse(const std::string& message) {
  std::fprintf(stderr, "cw_make_demo: %s\n%.*s", message.c_str(), static_cast<int>(kUsage.size()), kUsage.data());
  std::exit(2);
}

std::int64_t WholeNumber(std::string_view option, const char* text, std::int64_t low, std::int64_t high) {
  errno = 0;
  char* end = nullptr;
  const long long value = std::strtoll(text, &end, 10);
  if (errno != 0 || end == text || *end != '\0' || value < low || value > high) {
    Refuse(std::string(option) + " needs a whole number from " + std::to_string(low) + " to " +
           std::to_string(high) + ", not \"" + text + "\"");
  }
  return value;
}

Options ParseOptions(int argc, char** argv) {
  Options options;
  bool callsGiven = false;
  for (int i = 1; i < argc; ++i) {
    const std::string_view option = argv[i];
    if (option == "--help" || option == "-h") {
      std::fwrite(kUsage.data(), 1, kUsage.size(), stdout);
      std::exit(0);
    }
    if (i + 1 >= argc) Refuse("unknown option or missing value: " + std::string(option));
    const char* value = argv[++i];
    if (option == "--calls") {
      options.calls = WholeNumber(option, value, 1, 100'000'000);
      callsGiven = true;
    } else if (option == "--size-mb") {
      options.sizeMb = WholeNumber(option, value, 1, 1'900);
    } else if (option == "--lines") {
      options.lines = static_cast<std::int32_t>(WholeNumber(option, value, 1, 999));
    } else if (option == "--start") {
      try {
        options.start = cw::ParseCaptionDate(value);
      } catch (const cw::RuntimeError&) {
        Refuse("--start needs a date mm/dd/yyyy, not \"" + std::string(value) + "\"");
      }
      if (cw::FormatDate(options.start, "mm/dd/yyyy") != value) {
        Refuse("--start needs a date mm/dd/yyyy, not \"" + std::string(value) + "\"");
      }
    } else if (option == "--days") {
      options.days = static_cast<std::int32_t>(WholeNumber(option, value, 1, 100'000));
      options.daysGiven = true;
    } else if (option == "--seed") {
      options.seed = static_cast<std::uint64_t>(WholeNumber(option, value, 0, INT64_MAX));
    } else if (option == "--log") {
      options.log = value;
    } else if (option == "--busy") {
      options.busy = value;
      options.busyGiven = true;
    } else if (option == "--ini-dir") {
      options.iniDir = value;
      options.iniGiven = true;
    } else {
      Refuse("unknown option: " + std::string(option));
    }
  }
  if (options.sizeMb > 0 && callsGiven) Refuse("--calls and --size-mb cannot be used together");
  if (options.sizeMb > 0 && options.busyGiven) Refuse("--size-mb writes no busy log; drop --busy");
  if (options.sizeMb > 0 && !options.daysGiven) options.days = 3650;
  const std::string folder = std::filesystem::path(options.log).parent_path().string();
  if (!options.busyGiven && options.sizeMb == 0) {
    options.busy = (std::filesystem::path(folder) / "BusyLines.log").string();
  }
  if (!options.iniGiven && options.sizeMb == 0) options.iniDir = folder.empty() ? "." : folder;
  return options;
}

// ---------------------------------------------------------------- the office

struct Totals {
  std::int64_t calls = 0;
  std::int64_t busy = 0;
  std::int64_t turnedAway = 0;
  CivilDate last;
};

Totals WriteOffice(const Options& options) {
  Random random(options.seed);
  const bool bySize = options.sizeMb > 0;
  const std::uint64_t targetBytes = static_cast<std::uint64_t>(options.sizeMb) << 20;
  // About 104 bytes a line; the weekday weights average near 78 per cent.
  const std::int64_t expectedCalls = bySize ? static_cast<std::int64_t>(targetBytes / 104) : options.calls;
  const std::int64_t perFullDay = std::max<std::int64_t>(1, expectedCalls * 100 / (options.days * 78));

  OutputFile log(options.log);
  std::unique_ptr<OutputFile> busy;
  if (!options.busy.empty()) busy = std::make_unique<OutputFile>(options.busy);

  Totals totals;
  // When each line is free again, in seconds from the first day's midnight.
  std::vector<std::int64_t> freeAt(static_cast<std::size_t>(options.lines), 0);
  for (std::int32_t dayIndex = 0;; ++dayIndex) {
    const CivilDate day = options.start.AddDays(dayIndex);
    const std::string dateText = cw::FormatDate(day, "mm/dd/yyyy");
    const std::int64_t dayStart = static_cast<std::int64_t>(dayIndex) * 86400;
    const std::uint32_t percent = kWeekdayPercent[static_cast<std::size_t>(day.Weekday() - 1)];
    // Plus or minus a fifth from day to day.
    const std::int64_t wanted = perFullDay * percent / 100 * random.Between(80, 120) / 100;
    const bool burst = !bySize && percent >= 95 && random.Percent(15);
    for (std::int32_t start : ArrivalsOfDay(random, static_cast<std::uint32_t>(wanted), burst)) {
      Call call = MakeCall(random, start);
      const std::int64_t now = dayStart + start;
      if (bySize) {
        call.line = random.Between(1, options.lines);
      } else {
        // Lines are taken in order, the first free one rings; outgoing calls
        // are placed on the last free line so that line 1 stays open.
        std::int32_t chosen = 0;
        for (std::int32_t line = 1; line <= options.lines; ++line) {
          if (freeAt[static_cast<std::size_t>(line - 1)] <= now) {
            chosen = line;
            if (call.in) break;
          }
        }
        if (chosen == 0) {
          ++totals.turnedAway;
          continue;
        }
        call.line = chosen;
        freeAt[static_cast<std::size_t>(chosen - 1)] = now + std::max(call.Holding(), 1);
        const std::int64_t firstFree = *std::min_element(freeAt.begin(), freeAt.end());
        if (firstFree > now && busy) {
          // Every line is taken from now until the first one is put down.
          const std::int64_t seconds = firstFree - now;
          std::string& out = busy->Buffer();
          out += dateText;
          out += ',';
          out += BusyClock(start);
          out += ',';
          out += BusyClock(static_cast<std::int32_t>((now + seconds) - dayStart) % 86400);
          out += ',';
          out += std::to_string(seconds);
          out += ",1-" + std::to_string(options.lines) + "\r\n";
          ++totals.busy;
        }
      }
      AppendCallLine(log.Buffer(), dateText, call);
      log.FlushIfFull();
      ++totals.calls;
      totals.last = day;
      const bool done = bySize ? log.Written() >= targetBytes : totals.calls >= options.calls;
      if (done) {
        log.Close();
        if (busy) busy->Close();
        return totals;
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  try {
    const Totals totals = WriteOffice(options);
    if (!options.iniDir.empty()) {
      WriteLoggingIni((std::filesystem::path(options.iniDir) / "Callwarden.ini").string(), options.lines);
      WriteLoggingIni((std::filesystem::path(options.iniDir) / "Ringtally.ini").string(), options.lines);
    }
    std::fprintf(stderr, "cw_make_demo: %lld calls from %s to %s on %d lines in %s",
                 static_cast<long long>(totals.calls), cw::FormatDate(options.start, "mm/dd/yyyy").c_str(),
                 cw::FormatDate(totals.last, "mm/dd/yyyy").c_str(), options.lines, options.log.c_str());
    if (!options.busy.empty()) {
      std::fprintf(stderr, "; %lld all-lines-busy stretches (%lld calls turned away) in %s",
                   static_cast<long long>(totals.busy), static_cast<long long>(totals.turnedAway),
                   options.busy.c_str());
    }
    std::fputs("\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "cw_make_demo: %s\n", error.what());
    return 1;
  }
  return 0;
}

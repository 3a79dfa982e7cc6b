#include "printer/spool_replay.h"

#include <utility>

#include "support/runtime_error.h"

namespace cw {

namespace {

// Executes the drawing records of one keyword table on a device; the page
// structure (when pages begin and end) is the caller's.
class Dispatcher {
 public:
  Dispatcher(SpoolReader& reader, PageDevice& device, double offsetX, double offsetY)
      : reader_(reader), device_(device), unit_(reader.TwipsPerUnit()), offsetX_(offsetX), offsetY_(offsetY) {}

  // Draws a SETFONT, TEXTOUT, LINEOUT, BOXOUT or IMAGEOUT record.
  void Draw(const SpoolCommand& command) {
    switch (command.keyword) {
      case SpoolKeyword::kSetFont: device_.SetFont(command.font); break;
      case SpoolKeyword::kTextOut: device_.Text(X(command.x1), Y(command.y1), command.text); break;
      case SpoolKeyword::kLineOut:
        device_.Line(X(command.x1), Y(command.y1), X(command.x2), Y(command.y2));
        break;
      case SpoolKeyword::kBoxOut:
        device_.Box(X(command.x1), Y(command.y1), X(command.x2), Y(command.y2));
        break;
      case SpoolKeyword::kImageOut:
        if (!device_.Image(command.text, X(command.x1), Y(command.y1), command.ImageWidth() * unit_,
                           command.ImageHeight() * unit_)) {
          missing_.push_back(command.text);
          reader_.Problems().Add(command.recordNumber, "picture file \"" + command.text +
                                                           "\" cannot be loaded; the page is left as drawn so far");
        }
        break;
      case SpoolKeyword::kNewPage:
      case SpoolKeyword::kEndDoc:
      case SpoolKeyword::kUnknown:
        break;
    }
  }

  std::vector<std::string> TakeMissing() { return std::exchange(missing_, {}); }

 private:
  double X(double value) const { return value * unit_ - offsetX_; }
  double Y(double value) const { return value * unit_ - offsetY_; }

  SpoolReader& reader_;
  PageDevice& device_;
  double unit_;
  double offsetX_;
  double offsetY_;
  std::vector<std::string> missing_;
};

class PrinterReplay {
 public:
  PrinterReplay(SpoolReader& reader, PageDevice& device, const ReplayOptions& options, ReplayResult& result)
      : reader_(reader),
        device_(device),
        options_(options),
        result_(result),
        dispatcher_(reader, device, options.offsetXTwips, options.offsetYTwips),
        setup_(OrientedPage(options.page, reader.Header().orientation)),
        total_(reader.RecordCount() * options.copies) {}

  void Run() {
    if (!reader_.HasHeader()) return;
    // Counted wider than the copy count, which may be 32767, the largest the
    // count holds.
    for (int copy = 1; copy <= options_.copies && !Finished(); ++copy) {
      if (options_.beginCopy) options_.beginCopy(static_cast<std::int16_t>(copy));
      reader_.SeekRecord(2);
      ReplayCopy();
      if (open_) {
        Step([&] { device_.EndPage(); });
        Step([&] { device_.EndDocument(); });
        open_ = false;
      }
    }
    result_.missingImages = dispatcher_.TakeMissing();
  }

 private:
  bool Finished() const { return result_.stopped || result_.printerFailed; }

  void ReplayCopy() {
    SpoolCommand command;
    while (!Finished()) {
      if (options_.shouldStop && options_.shouldStop()) {
        result_.stopped = true;
        return;
      }
      if (!reader_.Next(command)) return;
      ++result_.recordsRead;
      if (options_.progress) options_.progress(result_.recordsRead, total_);
      if (!command.usable || command.page < options_.fromPage) continue;
      if (command.page > options_.toPage) return;
      switch (command.keyword) {
        case SpoolKeyword::kEndDoc: return;
        case SpoolKeyword::kNewPage:
          if (command.page < options_.toPage) {
            Open();
            Step([&] { device_.EndPage(); });
            BeginPage();
          }
          break;
        case SpoolKeyword::kSetFont:
          // A font change alone does not start a page: a range whose pages
          // hold nothing to draw prints nothing.
          if (open_) {
            Step([&] { dispatcher_.Draw(command); });
          } else {
            pendingFont_ = command;
          }
          break;
        default:
          Open();
          Step([&] { dispatcher_.Draw(command); });
          break;
      }
    }
  }

  void Open() {
    if (open_ || Finished()) return;
    open_ = true;
    Step([&] { device_.BeginDocument(setup_); });
    BeginPage();
    if (pendingFont_) {
      Step([&] { dispatcher_.Draw(*pendingFont_); });
      pendingFont_.reset();
    }
  }

  void BeginPage() {
    if (Step([&] { device_.BeginPage(); })) ++result_.pagesBegun;
  }

  // A device step; a printer error asks the host whether to repeat it.
  template <class Action>
  bool Step(Action action) {
    for (int repeats = 0; !result_.printerFailed; ++repeats) {
      try {
        action();
        return true;
      } catch (const RuntimeError&) {
        if (!options_.onPrinterError) throw;
        if (!options_.onPrinterError() || repeats == kPrinterStepRepeats) result_.printerFailed = true;
      }
    }
    return false;
  }

  SpoolReader& reader_;
  PageDevice& device_;
  const ReplayOptions& options_;
  ReplayResult& result_;
  Dispatcher dispatcher_;
  PageSetup setup_;
  std::int64_t total_;
  bool open_ = false;
  std::optional<SpoolCommand> pendingFont_;
};

}  // namespace

PageSetup OrientedPage(const PageSetup& paper, std::int16_t orientation) {
  PageSetup page = paper;
  page.orientation = orientation == 2 ? 2 : 1;
  const bool wide = page.widthTwips > page.heightTwips;
  if ((page.orientation == 2) != wide && page.widthTwips != page.heightTwips) {
    std::swap(page.widthTwips, page.heightTwips);
  }
  return page;
}

ReplayResult ReplaySpool(const std::string& spoolPath, PageDevice& device, const ReplayOptions& options) {
  SpoolReader reader(spoolPath);
  ReplayResult result;
  PrinterReplay replay(reader, device, options, result);
  replay.Run();
  result.problems = std::move(reader.Problems());
  return result;
}

SpoolPageIndex SpoolPageIndex::Build(SpoolReader& reader) {
  SpoolPageIndex index;
  reader.SeekRecord(2);
  SpoolCommand command;
  while (reader.Next(command)) {
    if (!command.usable) continue;
    while (static_cast<std::int32_t>(index.firstRecord_.size()) < command.page) {
      index.firstRecord_.push_back(command.recordNumber);
    }
    if (command.keyword == SpoolKeyword::kEndDoc) break;
  }
  return index;
}

std::optional<std::int64_t> SpoolPageIndex::FirstRecord(std::int16_t page) const {
  if (page < 1 || page > LastPage()) return std::nullopt;
  return firstRecord_[static_cast<std::size_t>(page - 1)];
}

std::optional<std::int64_t> SpoolPageIndex::ByteOffset(std::int16_t page) const {
  const std::optional<std::int64_t> record = FirstRecord(page);
  if (!record) return std::nullopt;
  return (*record - 1) * static_cast<std::int64_t>(kSpoolRecordSize);
}

std::vector<std::string> ReplayPage(SpoolReader& reader, const SpoolPageIndex& index, std::int16_t page,
                                    PageDevice& device) {
  Dispatcher dispatcher(reader, device, 0, 0);
  device.BeginPage();
  if (const std::optional<std::int64_t> first = index.FirstRecord(page)) {
    reader.SeekRecord(*first);
    SpoolCommand command;
    while (reader.Next(command)) {
      if (!command.usable) continue;
      if (command.page != page || command.keyword == SpoolKeyword::kNewPage ||
          command.keyword == SpoolKeyword::kEndDoc) {
        break;
      }
      dispatcher.Draw(command);
    }
  }
  device.EndPage();
  return dispatcher.TakeMissing();
}

}  // namespace cw

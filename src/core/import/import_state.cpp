#include "import/import_state.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

constexpr std::string_view kHeading = "callwarden-import 1";

template <class Number>
bool ReadNumber(std::string_view& text, Number& value, int base = 10) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end == text.data()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

[[noreturn]] void NotAStateFile(std::string_view why) {
  throw RuntimeError(err::kTypeMismatch, "not an import state file (" + std::string(why) + ")");
}

}  // namespace

std::string ImportState::PathFor(std::string_view logPath) { return std::string(logPath) + ".import"; }

std::uint64_t ImportState::Hash(std::string_view key) {
  std::uint64_t hash = 0xcbf29ce484222325ull;  // FNV-1a
  for (char c : key) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3ull;
  }
  return hash;
}

bool ImportState::Knows(std::string_view callKey, LocalSeconds start) const {
  if (horizonFloor_ && start < *horizonFloor_) return true;
  if (any_ && start < Horizon()) return true;
  return known_.contains(Hash(callKey));
}

void ImportState::Add(const Entry& entry) {
  if (!known_.insert(entry.hash).second) return;
  entries_.push_back(entry);
  newest_ = any_ ? std::max(newest_, entry.start) : entry.start;
  any_ = true;
}

void ImportState::Remember(std::string_view callKey, LocalSeconds start) { Add(EntryOf(callKey, start)); }

void ImportState::CommitBatch() {
  if (!pending_) return;
  for (const Entry& entry : pending_->calls) Add(entry);
  pending_.reset();
}

std::string ImportState::Text() const {
  std::string text(kHeading);
  text += '\n';
  char hex[17];
  if (pending_) {
    text += "pending " + std::to_string(pending_->before) + ' ' + std::to_string(pending_->after) + '\n';
    for (const Entry& entry : pending_->calls) {
      std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(entry.hash));
      text += "pending-call " + std::to_string(entry.start) + ' ' + hex + '\n';
    }
  }
  LocalSeconds horizon = horizonFloor_.value_or(0);
  if (any_) horizon = std::max(horizon, Horizon());
  if (any_ || horizonFloor_) text += "horizon " + std::to_string(horizon) + '\n';
  std::vector<Entry> kept;
  for (const Entry& entry : entries_) {
    if (entry.start >= horizon) kept.push_back(entry);
  }
  std::sort(kept.begin(), kept.end(), [](const Entry& a, const Entry& b) { return a.start < b.start; });
  for (const Entry& entry : kept) {
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(entry.hash));
    text += "call " + std::to_string(entry.start) + ' ' + hex + '\n';
  }
  return text;
}

ImportState ImportState::Parse(std::string_view text) {
  ImportState state;
  if (!text.starts_with(kHeading)) NotAStateFile("no heading");
  text.remove_prefix(kHeading.size());
  while (!text.empty()) {
    const std::size_t newline = text.find('\n');
    std::string_view line = text.substr(0, newline);
    text.remove_prefix(newline == std::string_view::npos ? text.size() : newline + 1);
    if (line.empty()) continue;
    if (line.starts_with("pending-call ")) {
      line.remove_prefix(13);
      Entry entry{};
      if (!state.pending_ || !ReadNumber(line, entry.start) || !ReadNumber(line, entry.hash, 16)) {
        NotAStateFile("pending-call");
      }
      state.pending_->calls.push_back(entry);
    } else if (line.starts_with("pending ")) {
      line.remove_prefix(8);
      Batch batch;
      if (!ReadNumber(line, batch.before) || !ReadNumber(line, batch.after)) NotAStateFile("pending");
      state.pending_ = batch;
    } else if (line.starts_with("horizon ")) {
      line.remove_prefix(8);
      LocalSeconds horizon = 0;
      if (!ReadNumber(line, horizon)) NotAStateFile("horizon");
      state.horizonFloor_ = horizon;
    } else if (line.starts_with("call ")) {
      line.remove_prefix(5);
      Entry entry{};
      if (!ReadNumber(line, entry.start) || !ReadNumber(line, entry.hash, 16)) NotAStateFile("call");
      state.Add(entry);
    } else {
      NotAStateFile("unknown line");
    }
  }
  return state;
}

ImportState ImportState::Load(const std::string& path) {
  if (!FileExists(path)) return {};
  return Parse(ReadWholeFile(path));
}

void ImportState::Save(const std::string& path) const { WriteFileAtomically(path, Text()); }

}  // namespace cw

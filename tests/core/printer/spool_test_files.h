#pragma once
// Files for the printer tests: a private temporary folder, whole-file reads
// and writes, and spool files assembled record by record.

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "printer/spool_format.h"
#include "printer/spool_reader.h"

namespace cw::testing {

// A fresh folder under the temporary folder, removed with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "cw-printer-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
    return names;
  }

 private:
  std::string path_;
};

inline std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) throw std::runtime_error("cannot write " + path);
}

// Record `number` (1-based) of a spool's bytes.
inline std::string RecordAt(const std::string& bytes, std::size_t number) {
  return bytes.substr((number - 1) * kSpoolRecordSize, kSpoolRecordSize);
}

// A header with the creation values (AutoNewPage false, SubTitle zero bytes).
inline SpoolRecord DefaultHeader() {
  SpoolRecord header{};
  ApplyHeaderCreationValues(header);
  return header;
}

inline std::string Bytes(const SpoolRecord& record) { return {record.begin(), record.end()}; }

// A spool's bytes: the header, then the records.
inline std::string SpoolBytes(const SpoolRecord& header, const std::vector<SpoolRecord>& records) {
  std::string bytes = Bytes(header);
  for (const SpoolRecord& record : records) bytes += Bytes(record);
  return bytes;
}

inline SpoolRecord HeaderWithScaleMode(std::int16_t scaleMode) {
  SpoolRecord header = DefaultHeader();
  PutInt16(header.data(), spool::kScaleMode, scaleMode);
  return header;
}

// Every command record of a spool file, as a reader hands them out.
inline std::vector<SpoolCommand> ReadCommands(const std::string& path) {
  SpoolReader reader(path);
  std::vector<SpoolCommand> commands;
  SpoolCommand command;
  while (reader.Next(command)) commands.push_back(command);
  return commands;
}

}  // namespace cw::testing

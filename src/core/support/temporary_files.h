#pragma once
// The program's scratch files (spools, output files being written) known by
// name, so that a run ended by a signal or an abort removes them instead of
// leaving gigabytes in the temporary folder. Ordinary ways out remove their
// files themselves and take them off the list.

#include <signal.h>

#include <string>

namespace cw {

// Puts a file on the list of files to remove if the process is killed. A
// name too long for the list, or a full list, is not kept (the file is then
// only removed on the ordinary ways out). Thread-safe.
void RegisterTemporaryFile(const std::string& path);

// Takes a file off the list (it has been removed or renamed to its final
// name). Unknown names are ignored. Thread-safe.
void ForgetTemporaryFile(const std::string& path);

// Holds back the signals that remove the files, for as long as it lives: a
// file made and then listed under one of these cannot be left behind by a
// signal that comes between the two steps.
class CleanupSignalsHeld {
 public:
  CleanupSignalsHeld();
  ~CleanupSignalsHeld();
  CleanupSignalsHeld(const CleanupSignalsHeld&) = delete;
  CleanupSignalsHeld& operator=(const CleanupSignalsHeld&) = delete;

 private:
  sigset_t previous_;
};

// Removes every file on the list, using only async-signal-safe calls.
void RemoveTemporaryFilesNow() noexcept;

// Installs handlers for SIGINT, SIGTERM, SIGHUP, SIGQUIT and SIGABRT that
// remove the listed files and then end the process by the same signal (so the
// caller still sees "killed by SIGTERM"), and an exit handler for the same.
// Signals the caller ignores (nohup) stay ignored. Call once, early.
void InstallTemporaryFileCleanup();

}  // namespace cw

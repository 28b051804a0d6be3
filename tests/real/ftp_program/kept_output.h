#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "support/temporary_folder.h"

namespace tavlo::test {

/// While it lives, what this process and those that it starts write to standard output and standard
/// error is kept; behind it that is written there after all.
class KeptOutput {
 public:
  KeptOutput() {
    std::fflush(nullptr);
    const int file = ::open((folder_ / "output").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
    ::close(file);
  }
  ~KeptOutput() {
    const std::string kept = Kept();
    ::dup2(output_, STDOUT_FILENO);
    ::dup2(errors_, STDERR_FILENO);
    ::close(output_);
    ::close(errors_);
    std::fputs(kept.c_str(), stdout);
  }
  KeptOutput(const KeptOutput&) = delete;

  std::string Kept() const {
    std::fflush(nullptr);
    return folder_.Read("output");
  }

 private:
  const TemporaryFolder folder_;
  const int output_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  const int errors_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
};

}  // namespace tavlo::test

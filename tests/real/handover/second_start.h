#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace tavlo::test {

/// Starts the program in that folder with files, as a file manager does while a deck runs, and
/// waits for its end: the exit status, below 0 when a signal ended it. May be called beside other
/// threads.
inline int SecondStart(const std::vector<std::string>& files, const std::string& folder = "/") {
  std::vector<const char*> arguments{TAVLO_PROGRAM};
  for (const std::string& file : files) arguments.push_back(file.c_str());
  arguments.push_back(nullptr);
  const pid_t process = ::fork();
  if (process == 0) {
    if (::chdir(folder.c_str()) == 0) {
      ::execv(TAVLO_PROGRAM, const_cast<char* const*>(arguments.data()));
    }
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace tavlo::test

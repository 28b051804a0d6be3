#include "hostile/hostile_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <utility>

#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

long MillisecondsOf(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

}  // namespace

void Mark(const std::string& what) {
  const int none = ::open(("/tavlo-mark/" + what).c_str(), O_RDONLY | O_CLOEXEC);
  if (none >= 0) ::close(none);
}

std::vector<Original> ReadOriginals(const std::string& folder) {
  std::vector<Original> originals;
  for (const auto& entry : fs::directory_iterator(folder)) {
    originals.push_back({entry.path().filename(), ReadFile(entry.path())});
  }
  std::ranges::sort(originals, {}, &Original::name);
  return originals;
}

long PeakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  return -1;
}

long ComputedMilliseconds() { return MillisecondsOf(CLOCK_THREAD_CPUTIME_ID); }

long ComputedMillisecondsOfAll() { return MillisecondsOf(CLOCK_PROCESS_CPUTIME_ID); }

std::shared_ptr<std::atomic<bool>> Post(std::function<void()> call) {
  auto done = std::make_shared<std::atomic<bool>>(false);
  QMetaObject::invokeMethod(
      qApp,
      [call = std::move(call), done] {
        call();
        *done = true;
      },
      Qt::QueuedConnection);
  return done;
}

bool CloseBox(DrivenProgram& program) {
  return program.Ask([] {
    auto* const box = DrivenProgram::OpenBox();
    if (box) box->button(QMessageBox::Ok)->click();
    return box != nullptr;
  });
}

}  // namespace tavlo::test

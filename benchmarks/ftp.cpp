// Fetches files from a server as the program does: the real client, with the calls of the rules and
// at their pace. Says how many seconds it took, and for how many milliseconds of its processor the
// loop was held at most:
//
//     bench_ftp large SERVER USER PASSWORD FOLDER NAME   one file, from the get to its last byte in
//                                                        the folder, and until the disk has it
//     bench_ftp small SERVER USER PASSWORD FOLDER        each file of the server, deleted there
//     once
//                                                        it has come
#include <QApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ftp/ftp_client.h"
#include "loop_hold.h"
#include "platform/curl/curl_ftp_client.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;
using base::operator""ms;
using ftp::FtpClient;
using Clock = std::chrono::steady_clock;

/// The rules' own.
constexpr base::Duration kTick = 55ms;
constexpr int kRounds = 25;
constexpr std::size_t kListing = 25'000;
constexpr std::size_t kLine = 256;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

class Fetcher {
 public:
  Fetcher() { Check(client_.fceAttach(1)); }

  void LogIn(const std::string& server, const std::string& user, const std::string& password,
             const std::string& folder) {
    Check(client_.fceConnect(server, user, password));
    Check(client_.fceSetLocalDir(folder));
    Check(client_.fceSetMode('B'));
    Check(client_.fceSetInteger(FtpClient::kPassive, 1));
  }

  std::vector<std::string> Names() {
    std::string listing;
    Check(client_.fceGetList(FtpClient::kNames, listing, kListing));
    std::vector<std::string> names;
    for (std::size_t at = 0, end = 0; (end = listing.find('\r', at)) != listing.npos;
         at = end + 2) {
      names.push_back(listing.substr(at, end - at));
    }
    return names;
  }

  std::int64_t Begin(const std::string& name) {
    std::string line = name + std::string(kLine, '\0');
    Check(client_.fceGetList(FtpClient::kOneFile, line, kLine));
    const std::int64_t length = ftp::fceFileLength(line, 3, 7);
    begun_ = Clock::now();
    Check(client_.fceGetFile(name, name));
    return length;
  }

  /// Turns the loop until so many bytes have come; the seconds since the get.
  double AwaitBytes(std::int64_t bytes) {
    while (client_.fceGetInteger(FtpClient::kBytesMoved) < bytes) {
      if (client_.fceDriver() < 0) Check(-1);
      loop_.Wait(1ms);
    }
    return SecondsSince(begun_);
  }

  /// Ticks until the file is whole; the seconds since the get.
  double AwaitEnd() {
    while (true) {
      loop_.Wait(kTick);
      for (int round = 0; round < kRounds; ++round) {
        const int state = client_.fceDriver();
        Check(state);
        if (state == 0) return SecondsSince(begun_);
      }
    }
  }

  void Delete(const std::string& name) { client_.fceDelFile(name); }
  void LogOut() { client_.fceClose(); }
  double Held() { return hold_.Milliseconds(); }

 private:
  void Check(int result) const {
    if (result >= 0) return;
    std::fprintf(stderr, "bench_ftp: %s\n", client_.fceErrorText(result).c_str());
    std::exit(1);
  }

  bench::LoopWithoutHands loop_;
  platform::CurlFtpClient client_{loop_, loop_};
  bench::LoopHold hold_;
  Clock::time_point begun_;
};

void FetchOne(Fetcher& fetcher, const std::string& name) {
  const double arrived = fetcher.AwaitBytes(fetcher.Begin(name));
  const double kept = fetcher.AwaitEnd();
  std::printf("seconds=%.6f kept=%.6f held=%.3f\n", arrived, kept, fetcher.Held());
}

void FetchAll(Fetcher& fetcher) {
  const auto begin = Clock::now();
  const std::vector<std::string> names = fetcher.Names();
  for (const std::string& name : names) {
    fetcher.Begin(name);
    fetcher.AwaitEnd();
    fetcher.Delete(name);
  }
  std::printf("seconds=%.6f files=%zu held=%.3f\n", SecondsSince(begin), names.size(),
              fetcher.Held());
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view what = argc > 1 ? argv[1] : "";
  if (!(what == "large" && argc == 7) && !(what == "small" && argc == 6)) {
    std::fprintf(stderr, "usage: bench_ftp large|small SERVER USER PASSWORD FOLDER [NAME]\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  Fetcher fetcher;
  fetcher.LogIn(argv[2], argv[3], argv[4], argv[5]);
  if (what == "large") {
    FetchOne(fetcher, argv[6]);
  } else {
    FetchAll(fetcher);
  }
  fetcher.LogOut();
  return 0;
}

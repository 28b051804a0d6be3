#include "ftp/ftp_bench.h"

#include <algorithm>
#include <filesystem>

#include "support/patience.h"

namespace tavlo::test {

FtpBench::FtpBench(const ClientLimits& limits, const std::string& trusted)
    : client_(MakeClient(loop, limits, trusted)) {
  std::filesystem::create_directory(Landing());
}

FtpBench::~FtpBench() { EXPECT_LE(watch.LongestStretch(), kLongestHold); }

std::vector<std::string> FtpBench::LandedNames() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Landing())) {
    names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

int FtpBench::Connect(const std::string& address, const std::string& user,
                      const std::string& password, const std::string& directory) {
  for (const auto& step : std::vector<std::function<int()>>{
           [&] { return Client().fceConnect(address, user, password); },
           [&] { return Client().fceSetLocalDir(Landing()); },
           [&] { return Client().fceSetServerDir(directory); },
           [&] { return Client().fceSetMode('B'); },
           [&] { return Client().fceSetInteger(ftp::FtpClient::kPassive, 1); }}) {
    const int result = step();
    if (result < 0) return result;
  }
  return 0;
}

int FtpBench::Connect(const FileServer& server, const std::string& directory) {
  return Connect(server.Address(), server.User, server.Password, directory);
}

int FtpBench::Connect(const ScriptedServer& server) {
  return Connect(server.Address(), "typist", "slow-Ostrich7");
}

std::vector<std::string> FtpBench::List() {
  Listing.assign(kListing, ' ');
  Result = Client().fceGetList(ftp::FtpClient::kNames, Listing, kListing);
  std::vector<std::string> names;
  if (Result <= 0) return names;
  EXPECT_LE(static_cast<std::size_t>(Result), kListing);
  std::size_t begin = 0;
  for (std::size_t end = Listing.find('\r'); end != Listing.npos; end = Listing.find('\r', begin)) {
    names.push_back(Listing.substr(begin, end - begin));
    begin = std::min(end + 2, Listing.size());
  }
  return names;
}

std::int64_t FtpBench::LengthOf(const std::string& name) {
  std::string buffer = (name + std::string(1, '\0') + std::string(kLine, ' ')).substr(0, kLine);
  const int result = Client().fceGetList(ftp::FtpClient::kOneFile, buffer, kLine);
  return result > 0 ? ftp::fceFileLength(buffer, 3, 7) : result;
}

int FtpBench::Get(const std::string& name, const std::string& landing) {
  Client().fceSetInteger(ftp::FtpClient::kBlocking, 0);
  const int accepted = Client().fceGetFile(name, landing);
  if (accepted < 0) return accepted;
  const int end = Drive();
  Client().fceSetInteger(ftp::FtpClient::kBlocking, 1);
  return end;
}

int FtpBench::Drive(const std::function<bool()>& done) {
  constexpr int kRounds = 25;
  const base::MonotonicTime limit = loop.Now() + kPatience;
  int state = 1;
  while (state > 0 && !done() && loop.Now() < limit) {
    for (int round = 0; round < kRounds && state > 0; ++round) state = Client().fceDriver();
    loop.Yield();
  }
  return state;
}

bool FtpBench::Until(const std::function<bool()>& done) { return loop.WaitUntil(done, kPatience); }

void FtpBench::ExpectLost(const ScriptedServer& server) {
  EXPECT_TRUE(Until([&] { return server.Gone() == server.Guests(); }));
  EXPECT_TRUE(List().empty());
  WordsFor(Result);
  EXPECT_LT(LengthOf("a.wav"), 0);
  WordsFor(Get("a.wav", "again.wav"));
  EXPECT_EQ(server.Guests(), 1) << "it has logged in again by itself";
}

std::string FtpBench::WordsFor(int failure) {
  EXPECT_LT(failure, 0);
  const std::string words = Client().fceErrorText(failure);
  EXPECT_FALSE(words.empty()) << failure;
  EXPECT_LE(words.size(), 128U) << words;
  EXPECT_TRUE(std::ranges::none_of(words, [](unsigned char letter) { return letter < ' '; }))
      << words;
  EXPECT_EQ(words.find("Ostrich"), words.npos) << "a password is shown: " << words;
  return words;
}

}  // namespace tavlo::test

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "ftp/file_servers.h"
#include "ftp_program/ftp_deck.h"
#include "ftp_program/retrieving_sound.h"
#include "support/screen.h"
#include "support/takes.h"

namespace tavlo::test {
namespace {

struct FtpRetrieval : RetrievingSound {
  /// Adds files to the server whose names begin so, and returns them.
  std::map<std::string, std::string> Put(const std::string& beginning) {
    std::map<std::string, std::string> files;
    for (const std::string ending : {".eW2", ".mp3", ".txt"}) {
      const std::string name = beginning + ending;
      files[name] = name + std::string(100'000, '\n');
      std::filesystem::rename(aside_.Write(name, files[name]), clinic.Files / name);
    }
    return files;
  }
  std::map<std::string, std::string> Sorted() const {
    std::map<std::string, std::string> files = FilesIn(Folder("eW2Queue"));
    files.merge(Unstamped(FilesIn(Folder("ImportQueue/4"))));
    return files;
  }

  Pyftpdlib clinic;

 private:
  const TemporaryFolder aside_;
};

TEST_F(FtpRetrieval, FilesArriveAndAreSortedWhileADocumentPlaysWithoutAGap) {
  StoreServer(*home, 0,
              {.name = "Clinic",
               .address = clinic.Address(),
               .more = {{"FtpParseGenericPointer", "4"}, {"FtpDeleteFileCheck", "-1"}}});
  std::map<std::string, std::string> put;
  Run([&] {
    Retake([&] {
      const double from = recorder.Seconds();
      put.merge(Put("document " + std::to_string(put.size())));
      EXPECT_TRUE(Until([&] { return Sorted() == put; }));
      EXPECT_TRUE(program->Until([&] { return !program->Rooms().ftp.channel.Waits(); }));
      EXPECT_EQ(FilesIn(clinic.Files.Path()).size(), 0u);
      ExpectUnbroken(HeardSince(from));
    });
    EXPECT_TRUE(Playing());
    program->Do([&] {
      EXPECT_FALSE(Main().mnuViewFtp.Enabled);
      EXPECT_EQ(Main().lblNotice.Value.Get(), "");
    });
  });
}

}  // namespace
}  // namespace tavlo::test

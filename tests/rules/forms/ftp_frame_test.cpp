#include "forms/ftp_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "forms/accessible_name.h"
#include "forms/main_form.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

struct FtpFrameTest : testing::Test {
  SimulatedLoop loop;
  forms::MainForm form{loop};
};

TEST_F(FtpFrameTest, StartsUnconnectedWithNothingToDownload) {
  EXPECT_EQ(form.frameFtp.Caption.Get(), "Ftp");
  EXPECT_EQ(form.bConnect.Caption.Get(), "Connect");
  EXPECT_EQ(form.bList.Caption.Get(), "List");
  EXPECT_EQ(form.bDownload.Caption.Get(), "Download");
  EXPECT_EQ(form.frameFtpFilename.Caption.Get(), "Files in list: 0");
  EXPECT_EQ(form.frameFtpDownloadList.Caption.Get(), "Files to download: 0");
  for (const forms::Control* const still : std::initializer_list<const forms::Control*>{
           &form.comboFtpFileTypesToList, &form.frameFtpFilename, &form.frameFtpDownloadList,
           &form.cmdFtpListToDownload, &form.cmdFtpDownloadToList, &form.bDownload,
           &form.eByteCount}) {
    EXPECT_FALSE(still->Enabled) << still->Name;
    EXPECT_TRUE(still->Visible) << still->Name;
  }
}

TEST_F(FtpFrameTest, SaysWhatAClickOnAFileDoes) {
  EXPECT_EQ(form.listFtpList.Tooltip.Get(), "Click a file to move it to download list");
  EXPECT_EQ(form.listFtpDownloadList.Tooltip.Get(), "Click a file to move it back to the list");
  EXPECT_EQ(form.comboFtpFileTypesToList.Tooltip.Get(), "Choose the type of files to list");
}

TEST_F(FtpFrameTest, EveryControlHasANameThatNoOtherHas) {
  std::vector<std::string> names{AccessibleName(form.bConnect),
                                 AccessibleName(form.bList),
                                 AccessibleName(form.bDownload),
                                 AccessibleName(form.cmdFtpListToDownload),
                                 AccessibleName(form.cmdFtpDownloadToList),
                                 AccessibleName(form.comboFtpServerNames),
                                 AccessibleName(form.comboFtpFileTypesToList),
                                 AccessibleName(form.listFtpList),
                                 AccessibleName(form.listFtpDownloadList),
                                 AccessibleName(form.eMessage),
                                 AccessibleName(form.eByteCount)};
  std::sort(names.begin(), names.end());
  EXPECT_NE(names.front(), "");
  EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST_F(FtpFrameTest, BothListsShowTheNamesOfFiles) {
  for (const forms::Table* const list : {&form.listFtpList, &form.listFtpDownloadList}) {
    ASSERT_EQ(list->Columns().size(), 1u) << list->Name;
    EXPECT_EQ(list->Columns()[forms::ftp_column::FileName].title, "File Name");
    EXPECT_GT(list->Columns()[forms::ftp_column::FileName].width, 0);
  }
  EXPECT_EQ(form.listFtpDownloadList.WhenEmpty.Get(),
            "Nothing to download\nClick a file on the left to put it here.");
}

TEST_F(FtpFrameTest, TheWordsOfTheWaitShowOnlyWhileFilesAreSorted) {
  EXPECT_EQ(form.lblFtpParsing.Value.Get(), "Processing files...");
  EXPECT_EQ(form.lblFtpWait.Value.Get(), "please standby ");
  EXPECT_FALSE(form.lblFtpParsing.Visible);
  EXPECT_FALSE(form.lblFtpWait.Visible);
}

}  // namespace
}  // namespace tavlo::test

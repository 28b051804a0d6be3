#include "platform/qt/directory_strip.h"

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include "import_view/shown_import.h"
#include "support/keys.h"

namespace tavlo::test {
namespace {

struct Directories : ShownImport {
  void Show() {
    shown.ShowMain();
    strip = dynamic_cast<platform::qt::DirectoryStrip*>(
        shown.typist.Widget("scrollImportWavSubDirectories"));
    ASSERT_NE(strip, nullptr);
  }
  QPoint OnTheScreen(int directory) const {
    return strip->mapToGlobal(strip->CellOf(directory + 1).center());
  }
  std::string TooltipOf(int directory) const {
    const QPoint place = strip->CellOf(directory + 1).center();
    QHelpEvent question(QEvent::ToolTip, place, strip->mapToGlobal(place));
    QApplication::sendEvent(strip, &question);
    return QToolTip::text().toStdString();
  }

  platform::qt::DirectoryStrip* strip = nullptr;
};

TEST_F(Directories, AClickOnACellGoesThere) {
  std::vector<int> chosen;
  shown.main.scrollImportWavSubDirectories.OnChange = [&] {
    chosen.push_back(shown.main.scrollImportWavSubDirectories.Value - 1);
  };
  Show();
  shown.typist.ClickAt(OnTheScreen(25));
  shown.typist.ClickAt(OnTheScreen(12));
  shown.typist.ClickAt(OnTheScreen(0));
  EXPECT_EQ(chosen, (std::vector{25, 12, 0}));
}

TEST_F(Directories, AKeyGoesToTheNextOneAndKeepsTheKeyboard) {
  shown.main.scrollImportWavSubDirectories.OnChange = [&] {
    shown.main.frmMain.FocusOn(shown.main.txtFocus);
  };
  Show();
  strip->setFocus(Qt::TabFocusReason);
  shown.typist.Keys({keys::kRight});
  shown.typist.Keys({keys::kRight});
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.main.scrollImportWavSubDirectories.Value == 3; }));
  shown.typist.Keys({keys::kLeft});
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.main.scrollImportWavSubDirectories.Value == 2; }));
  shown.typist.Keys({keys::kEnd});
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.main.scrollImportWavSubDirectories.Value == 26; }));
  EXPECT_TRUE(strip->hasFocus());
}

TEST_F(Directories, ARefusedOneIsNotMarked) {
  forms::Range& scroll = shown.main.scrollImportWavSubDirectories;
  scroll.OnChange = [&] { scroll.Value = 1; };
  Show();
  shown.typist.ClickAt(OnTheScreen(5));
  EXPECT_TRUE(shown.typist.Until([&] { return strip->value() == 1; }));
}

TEST_F(Directories, EachTellsHowManyFilesWaitThere) {
  Show();
  EXPECT_EQ(TooltipOf(0), "Select an import directory\nDirectory 0: 2 files");
  EXPECT_EQ(TooltipOf(7), "Select an import directory\nDirectory 7: 1 file");
  EXPECT_EQ(TooltipOf(8), "Select an import directory\nDirectory 8 is empty");
  EXPECT_EQ(TooltipOf(12), "Select an import directory\nDirectory 12: 1400 files");
  EXPECT_EQ(TooltipOf(25), "Select an import directory\nDirectory 25");
}

TEST_F(Directories, StandInSeveralLinesWhereOneIsTooShort) {
  Show();
  const int oneLine = strip->heightForWidth(strip->width());
  EXPECT_EQ(oneLine, strip->height());
  EXPECT_GT(strip->heightForWidth(strip->width() / 2), oneLine);
  for (int directory = 0; directory < 26; ++directory) {
    EXPECT_TRUE(strip->rect().contains(strip->CellOf(directory + 1))) << directory;
    EXPECT_EQ(strip->CellOf(directory + 1).top(), 0) << directory;
  }
}

}  // namespace
}  // namespace tavlo::test

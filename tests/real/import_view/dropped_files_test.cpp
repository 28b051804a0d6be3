#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTableView>

#include "import_view/shown_import.h"
#include "platform/qt/dropped_paths.h"

namespace tavlo::test {
namespace {

using platform::qt::DroppedPaths;
using Paths = std::vector<std::string>;

Paths PathsOf(const QByteArray& uris) {
  QMimeData data;
  data.setData("text/uri-list", uris);
  return DroppedPaths(data);
}

TEST(DroppedPaths, AreThoseOfTheFilesOfThisComputer) {
  EXPECT_EQ(PathsOf("file:///home/a/memo.wav\r\nfile://localhost/b.mp3\r\nfile:/c%20d.wma\r\n"),
            (Paths{"/home/a/memo.wav", "/b.mp3", "/c d.wma"}));
  EXPECT_EQ(PathsOf("https://example.org/memo.wav\r\n# a remark\r\nfile://elsewhere/a.wav"),
            Paths{});
}

TEST(DroppedPaths, KeepTheBytesOfANameThatIsNoText) {
  EXPECT_EQ(PathsOf("file:///a%FFb%0Ac.wav"), Paths{"/a\xFF"
                                                    "b\nc.wav"});
  EXPECT_EQ(PathsOf("file:///a%00/etc"), Paths{}) << "no name holds a nought";
}

/// Files of a file manager over the lists of the deck.
struct DroppedOver : ShownImport {
  static constexpr const char* kFiles = "file:///media/memo.wav\r\nfile:///media/note.mp3\r\n";

  bool Drop(const char* list, Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction,
            const char* uris = kFiles) {
    const auto* const view = qobject_cast<QTableView*>(shown.typist.Widget(list));
    QMimeData files;
    files.setData("text/uri-list", uris);
    const QPoint place = view->viewport()->rect().center();
    QDragEnterEvent enter(place, offered, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &enter);
    shown.typist.Rest();
    if (!enter.isAccepted()) return false;
    shown.typist.Picture(std::string("drop_over_") + list);
    QDropEvent drop(place, offered, &files, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(view->viewport(), &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "its sender must not delete what was let go";
    shown.typist.Rest();
    return drop.isAccepted();
  }

  Paths got;
};

TEST_F(DroppedOver, TheImportListTheyAreHandedOn) {
  shown.main.listViewImport.OnDropFiles = [this](const Paths& paths) { got = paths; };
  FillList();
  shown.ShowMain();
  EXPECT_TRUE(Drop("listViewImport"));
  EXPECT_EQ(got, (Paths{"/media/memo.wav", "/media/note.mp3"}));
}

TEST_F(DroppedOver, AnEmptyQueueTheyAreHandedOn) {
  shown.main.listViewInQueue.OnDropFiles = [this](const Paths& paths) { got = paths; };
  shown.main.frameImport.Visible = false;
  shown.main.frameInQueue.Visible = true;
  shown.ShowMain();
  EXPECT_TRUE(Drop("listViewInQueue"));
  EXPECT_EQ(got.size(), 2u);
}

TEST_F(DroppedOver, AListThatTakesNoneTheyAreRefused) {
  shown.main.frameImport.Visible = false;
  shown.main.frameCompleted.Visible = true;
  shown.ShowMain();
  EXPECT_FALSE(Drop("listViewCompleted"));
}

TEST_F(DroppedOver, AListThatStandsStillTheyAreRefused) {
  shown.main.listViewImport.OnDropFiles = [this](const Paths& paths) { got = paths; };
  shown.main.listViewImport.Enabled = false;
  shown.ShowMain();
  EXPECT_FALSE(Drop("listViewImport"));
}

TEST_F(DroppedOver, AListWhatIsNoFileOfThisComputerIsRefused) {
  shown.main.listViewImport.OnDropFiles = [this](const Paths& paths) { got = paths; };
  shown.ShowMain();
  EXPECT_FALSE(Drop("listViewImport", Qt::CopyAction, "https://example.org/memo.wav"));
  EXPECT_EQ(got, Paths{});
}

TEST_F(DroppedOver, AListTheyAreRefusedWhereTheyMayNotBeCopied) {
  shown.main.listViewImport.OnDropFiles = [this](const Paths& paths) { got = paths; };
  shown.ShowMain();
  EXPECT_FALSE(Drop("listViewImport", Qt::LinkAction));
  EXPECT_EQ(got, Paths{});
}

}  // namespace
}  // namespace tavlo::test

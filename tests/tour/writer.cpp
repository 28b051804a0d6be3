// The word processor of a tour's desk. It shows the file that it is started with, or a letter to
// write, which stands in ~/letter after each key.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QObject>
#include <QPlainTextEdit>

namespace {

/// What is typed can be read though the deck stands in front of it.
constexpr QRect kLetterPlace(250, 40, 680, 800);

void ShowFile(QPlainTextEdit& paper, const QString& path) {
  QFile file(path);
  if (file.open(QFile::ReadOnly)) paper.setPlainText(QString::fromUtf8(file.readAll()));
  paper.setWindowTitle(QFileInfo(path).fileName() + " - Writer");
  paper.setFont(QFont("DejaVu Sans Mono", 10));
  paper.setLineWrapMode(QPlainTextEdit::NoWrap);
  paper.showMaximized();
}

void BeginLetter(QPlainTextEdit& paper) {
  QObject::connect(&paper, &QPlainTextEdit::textChanged, [&paper] {
    QFile file(QDir::homePath() + "/letter");
    if (file.open(QFile::WriteOnly)) file.write(paper.toPlainText().toUtf8());
  });
  paper.setWindowTitle("Letter - Writer");
  paper.setFont(QFont("DejaVu Serif", 13));
  paper.setGeometry(kLetterPlace);
  paper.show();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QPlainTextEdit paper;
  paper.setStyleSheet("QPlainTextEdit { background: white; color: black; padding: 8px }");
  if (argc > 1) {
    ShowFile(paper, QString::fromLocal8Bit(argv[1]));
  } else {
    BeginLetter(paper);
  }
  return QApplication::exec();
}

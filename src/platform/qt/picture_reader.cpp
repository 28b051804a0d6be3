#include "platform/qt/picture_reader.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/disk/open_plain_file.h"
#include "platform/qt/texts.h"
#include "platform/wake/bell.h"

namespace tavlo::platform::qt {
namespace {

/// A picture with more pixels is not read.
constexpr qint64 kMostPixels = 16'000'000;
/// A larger file is not read: so many pixels without compression take four bytes each, and a
/// quarter is allowed for what stands around them.
constexpr std::size_t kMostBytes = 80'000'000;
constexpr int kWidest = 3840;  ///< Pixels. A wider picture is scaled down while it is read.

QImage ReadPicture(const std::string& path) {
  const std::optional<std::string> file = ReadPlainFile(path, kMostBytes);
  if (!file) return {};
  QByteArray bytes = QByteArray::fromRawData(file->data(), static_cast<qsizetype>(file->size()));
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  // An SVG drawing may refer to other files, and the toolkit would open those unchecked.
  if (reader.format().startsWith("svg")) return {};
  const QSize size = reader.size();
  if (qint64{size.width()} * size.height() > kMostPixels) return {};
  if (size.width() > kWidest) reader.setScaledSize(size * kWidest / size.width());
  return reader.read();
}

}  // namespace

struct PictureReader::Answer {
  unsigned number = 0;  ///< Of the question.
  QDateTime stamp;
  QImage picture;
};

/// What the reader and its thread share.
struct PictureReader::Shared {
  Bell bell;
  std::mutex mutex;
  std::optional<Answer> answer;
};

PictureReader::PictureReader(Finish finish, std::function<void(const QImage&)> came)
    : finish_(finish),
      came_(std::move(came)),
      shared_(std::make_shared<Shared>()),
      rung_(shared_->bell.Descriptor(), QSocketNotifier::Read) {
  QObject::connect(&rung_, &QSocketNotifier::activated, &rung_, [this] { Take(); });
}

void PictureReader::Read(const std::string& path) {
  reading_ = true;
  const QDateTime known = path == path_ ? stamp_ : QDateTime();
  path_ = path;
  thread_.Do([shared = shared_, finish = finish_, number = ++lastAsked_, path, known] {
    Answer answer{.number = number, .stamp = QFileInfo(ToQt(path)).lastModified()};
    const bool changed = !known.isValid() || answer.stamp != known;
    if (changed) answer.picture = ReadPicture(path);
    if (!answer.picture.isNull()) answer.picture = finish(answer.picture);
    const std::lock_guard hold(shared->mutex);
    shared->answer = std::move(answer);
    shared->bell.Ring();
  });
}

void PictureReader::Take() {
  shared_->bell.Silence();
  std::optional<Answer> answer;
  {
    const std::lock_guard hold(shared_->mutex);
    answer = std::exchange(shared_->answer, {});
  }
  if (!answer || answer->number != lastAsked_) return;
  reading_ = false;
  stamp_ = answer->stamp;
  if (!answer->picture.isNull()) came_(answer->picture);
}

}  // namespace tavlo::platform::qt

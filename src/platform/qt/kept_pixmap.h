#pragma once

#include <QPixmap>
#include <QPixmapCache>
#include <QString>
#include <functional>

namespace tavlo::platform::qt {

/// The pixmap that `draw` draws, which is only called when none is kept under that name. The name
/// must say everything that the picture depends on. The toolkit forgets what was not used for
/// longest. For the loop's thread.
inline QPixmap KeptPixmap(const QString& name, const std::function<QPixmap()>& draw) {
  QPixmap pixmap;
  if (QPixmapCache::find(name, &pixmap)) return pixmap;
  pixmap = draw();
  QPixmapCache::insert(name, pixmap);
  return pixmap;
}

}  // namespace tavlo::platform::qt

#pragma once

// The library's header would read this one where C++ is not allowed.
#include <glib.h>
#include <mdbtools.h>

#include <functional>
#include <string>

namespace tavlo::platform {

/// An Access file. Its values are told in the forms of the settings: truth as "-1" or "0", numbers
/// in plain decimal form, no value as the empty text. Texts are UTF-8. A column of bytes that only
/// another program understands is not told.
class AccessFile {
 public:
  /// `path` is opened for reading. `IsOpen` tells whether it could be.
  explicit AccessFile(const std::string& path);
  ~AccessFile();
  AccessFile(const AccessFile&) = delete;

  bool IsOpen() const { return handle_ != nullptr; }

  using FieldReader = std::function<void(const std::string& name, const std::string& value)>;
  /// Tells each field of each row of a table, up to so many rows, and `onRowEnd` behind each row. A
  /// table that is not there has no rows.
  void ReadTable(const std::string& name, int mostRows, const FieldReader& onField,
                 const std::function<void()>& onRowEnd);

 private:
  MdbHandle* handle_ = nullptr;
};

}  // namespace tavlo::platform

#include "platform/access/reader/access_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <memory>

#include "base/text.h"

namespace tavlo::platform {
namespace {

/// Bytes of a value that are read: more than any of ours may have, so that one that is longer is
/// seen to be.
constexpr std::size_t kValueRoom = 80'000;

/// One column while its table is read; the library writes each row's value there.
struct Column {
  std::string name;
  int type = 0;
  std::vector<char> text = std::vector<char>(kValueRoom);
  int size = 0;
};

/// The shortest text that means this number and no other of its kind: as a double it would have
/// more digits than anybody put in.
std::string SingleText(float number) {
  std::array<char, 64> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(),
                                     number == 0 ? 0.0F : number, std::chars_format::fixed);
  return {text.data(), written.ptr};
}

/// Bytes that only another program understands are no setting.
bool IsSetting(const MdbColumn& column) {
  return column.col_type != MDB_OLE && column.col_type != MDB_BINARY;
}

std::string ValueOf(const Column& column) {
  const auto size = static_cast<std::size_t>(column.size < 0 ? 0 : column.size);
  std::string text(column.text.data(), std::min(size, column.text.size()));
  text.resize(std::min(text.size(), text.find('\0')));
  switch (column.type) {
    case MDB_BOOL:
      return text == "1" ? "-1" : "0";
    case MDB_FLOAT:
      return text.empty() ? text : SingleText(std::strtof(text.c_str(), nullptr));
    case MDB_DOUBLE:
    case MDB_MONEY:
    case MDB_NUMERIC:
      return text.empty() ? text : base::NumberText(std::strtod(text.c_str(), nullptr));
    default:
      return text;
  }
}

struct TableCloser {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};

std::vector<std::unique_ptr<Column>> BindColumns(MdbTableDef& table) {
  std::vector<std::unique_ptr<Column>> columns;
  for (unsigned int at = 0; at < table.num_cols && at < table.columns->len; ++at) {
    const auto& found = *static_cast<MdbColumn*>(g_ptr_array_index(table.columns, at));
    if (!IsSetting(found)) continue;
    auto column = std::make_unique<Column>();
    column->name = found.name;
    column->type = found.col_type;
    mdb_bind_column(&table, static_cast<int>(at) + 1, column->text.data(), &column->size);
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace

AccessFile::AccessFile(const std::string& path) {
  // These would have the library tell its values in another form.
  for (const char* const name : {"MDBICONV", "MDB_JET3_CHARSET", "MDBOPTS"}) ::unsetenv(name);
  handle_ = mdb_open(path.c_str(), MDB_NOFLAGS);
  if (!handle_) return;
  mdb_set_bind_size(handle_, kValueRoom);
  mdb_set_boolean_fmt_numbers(handle_);
}

AccessFile::~AccessFile() {
  if (handle_) mdb_close(handle_);
}

void AccessFile::ReadTable(const std::string& name, int mostRows, const FieldReader& onField,
                           const std::function<void()>& onRowEnd) {
  std::string changeable = name;
  const std::unique_ptr<MdbTableDef, TableCloser> table(
      mdb_read_table_by_name(handle_, changeable.data(), MDB_TABLE));
  if (!table || !mdb_read_columns(table.get())) return;
  const auto columns = BindColumns(*table);
  mdb_rewind_table(table.get());
  for (int row = 0; row < mostRows && mdb_fetch_row(table.get()); ++row) {
    for (const auto& column : columns) onField(column->name, ValueOf(*column));
    onRowEnd();
  }
}

}  // namespace tavlo::platform

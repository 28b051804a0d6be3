#include "access/access_file.h"

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <stdexcept>

#include "access/access_rows_writer.h"

namespace tavlo::test {
namespace {

constexpr std::uint32_t kCataloguePage = 2;
constexpr std::uint32_t kUsagePage = 4;
constexpr std::uint32_t kFirstFreePage = 5;
constexpr std::size_t kPageHead = 8;

void Overwrite(std::string& bytes, std::size_t at, const std::string& by) {
  bytes.replace(at, by.size(), by);
}

template <typename Number>
std::string Plain(Number number) {
  std::string bytes;
  Put(bytes, number);
  return bytes;
}

/// The cipher of such files; it hides and shows alike.
std::string Ciphered(const std::string& key, std::string bytes) {
  std::array<unsigned char, 256> state{};
  std::iota(state.begin(), state.end(), 0);
  const auto byteOf = [&key](std::size_t at) {
    return static_cast<unsigned char>(key[at % key.size()]);
  };
  for (std::size_t i = 0, j = 0; i < state.size(); ++i) {
    j = (j + state[i] + byteOf(i)) % 256;
    std::swap(state[i], state[j]);
  }
  std::size_t i = 0;
  std::size_t j = 0;
  for (char& byte : bytes) {
    i = (i + 1) % 256;
    j = (j + state[i]) % 256;
    std::swap(state[i], state[j]);
    byte = static_cast<char>(byte ^ state[(state[i] + state[j]) % 256]);
  }
  return bytes;
}

class FileWriter {
 public:
  explicit FileWriter(const AccessFileForm& form)
      : form_(form), isFourth_(form.layout == Jet::Four), pageSize_(isFourth_ ? 4096 : 2048) {}

  std::string Written(const std::vector<AccessTable>& tables) {
    AccessTable catalogue{.name = "MSysObjects",
                          .columns = {{"Id", AccessType::Long},
                                      {"ParentId", AccessType::Long},
                                      {"Name", AccessType::Text},
                                      {"Type", AccessType::Int},
                                      {"DateCreate", AccessType::Date},
                                      {"DateUpdate", AccessType::Date},
                                      {"Flags", AccessType::Long},
                                      {"LvProp", AccessType::Ole}},
                          .rows = {}};
    for (const AccessTable& table : tables) {
      const std::uint32_t head = next_++;
      WriteTable(table, head, 'N');
      catalogue.rows.push_back(CatalogueRow(table.name, head));
    }
    catalogue.rows.push_back(CatalogueRow(catalogue.name, kCataloguePage));
    WriteTable(catalogue, kCataloguePage, 'S');
    pages_[0] = FirstPage();
    pages_[kUsagePage] = RowsPage(usage_, 0);
    return Joined();
  }

 private:
  static AccessRow CatalogueRow(const std::string& name, std::uint32_t page) {
    return {double(page), 1.0, name, 1.0, 36526.0, 36526.0, 0.0, {}};
  }

  std::size_t RowsHead() const { return isFourth_ ? 14 : 10; }

  std::uint32_t Keep(const std::string& page) {
    pages_[next_] = page;
    return next_++;
  }

  LongValues Long() {
    return {.keep = [this](const std::string& bytes) { return Keep(RowsPage({bytes}, 0)) << 8; },
            .room = pageSize_ - RowsHead() - 2};
  }

  /// Rows fill a page from its end.
  std::string RowsPage(const std::vector<std::string>& rows, std::uint32_t table,
                       const std::set<std::size_t>& deleted = {}) const {
    constexpr std::size_t kDeleted = 0xc000;
    std::string page(pageSize_, '\0');
    Overwrite(page, 0, "\1\1");
    Overwrite(page, 4, Plain(table));
    Overwrite(page, RowsHead() - 2, Plain(static_cast<std::uint16_t>(rows.size())));
    std::size_t end = pageSize_;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      end -= rows[row].size();
      Overwrite(page, end, rows[row]);
      const std::size_t mark = deleted.contains(row) ? end | kDeleted : end;
      Overwrite(page, RowsHead() + 2 * row, Plain(static_cast<std::uint16_t>(mark)));
    }
    const std::size_t used = RowsHead() + 2 * rows.size();
    if (used > end) throw std::length_error("More rows than a page holds");
    Overwrite(page, 2, Plain(static_cast<std::uint16_t>(end - used)));
    return page;
  }

  void WriteTable(const AccessTable& table, std::uint32_t head, char kind) {
    std::vector<std::uint32_t> pages;
    std::vector<std::string> rows;
    std::set<std::size_t> deleted;
    std::size_t used = RowsHead();
    const auto flush = [&] {
      pages.push_back(Keep(RowsPage(rows, head, deleted)));
      rows.clear();
      deleted.clear();
      used = RowsHead();
    };
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      const std::string bytes = StoredRow(form_, table.columns, table.rows[row], Long());
      if (used + bytes.size() + 2 > pageSize_) flush();
      if (table.deleted.contains(row)) deleted.insert(rows.size());
      rows.push_back(bytes);
      used += bytes.size() + 2;
    }
    flush();
    const std::uint32_t usage = NoteUsage(pages);
    WriteHead(table, head, kind, usage);
  }

  /// Which pages a table has, and which of them have room: two rows of the page for that.
  std::uint32_t NoteUsage(const std::vector<std::uint32_t>& pages) {
    std::string bits(isFourth_ ? 64 : 128, '\0');
    for (const std::uint32_t page : pages) {
      bits.at(page / 8) |= static_cast<char>(1 << (page % 8));
    }
    const auto row = static_cast<std::uint32_t>(usage_.size());
    usage_.push_back(std::string(5, '\0') + bits);
    usage_.push_back(std::string(5 + bits.size(), '\0'));
    return (kUsagePage << 8) | row;
  }

  /// The description of a table, which may go on over several pages.
  void WriteHead(const AccessTable& table, std::uint32_t head, char kind, std::uint32_t usage) {
    std::string bytes = isFourth_ ? HeadOfFourth(table, kind) : HeadOfThird(table, kind);
    Put(bytes, usage);
    Put(bytes, usage + 1);
    bytes += Columns(table.columns);
    for (const AccessColumn& column : table.columns) {
      const std::string name = StoredText({.layout = form_.layout}, column.name);
      Put(bytes, name.size(), isFourth_ ? 2 : 1);
      bytes += name;
    }
    Put(bytes, 0xffff, 2);
    Overwrite(bytes, 0, Plain(static_cast<std::uint32_t>(bytes.size())));
    const std::size_t room = pageSize_ - kPageHead;
    std::uint32_t page = head;
    for (std::size_t at = 0; at < bytes.size(); at += room) {
      const bool isLast = at + room >= bytes.size();
      const std::uint32_t following = isLast ? 0 : next_++;
      std::string whole = "\2\1VC" + Plain(following) + bytes.substr(at, room);
      whole.resize(pageSize_);
      pages_[page] = whole;
      page = following;
    }
  }

  static std::size_t Changing(const AccessTable& table) {
    return static_cast<std::size_t>(std::ranges::count_if(table.columns, IsChanging));
  }
  static bool IsChanging(const AccessColumn& column) {
    return column.type != AccessType::Bool && FixedSize(column.type) == 0;
  }

  std::string HeadOfFourth(const AccessTable& table, char kind) const {
    std::string bytes = Plain(std::uint32_t{0}) + Plain(std::uint32_t{0x659});
    Put(bytes, static_cast<std::uint32_t>(table.rows.size()));
    bytes += Plain(std::uint32_t{0}) + Plain(std::uint32_t{1}) + std::string(12, '\0') + kind;
    return bytes + CountsOf(table);
  }

  std::string HeadOfThird(const AccessTable& table, char kind) const {
    std::string bytes = Plain(std::uint32_t{0});
    Put(bytes, static_cast<std::uint32_t>(table.rows.size()));
    return bytes + Plain(std::uint32_t{0}) + kind + CountsOf(table);
  }

  /// Columns in all, those of changing length, columns again, and no index.
  std::string CountsOf(const AccessTable& table) const {
    std::string bytes;
    for (const std::size_t count : {table.columns.size(), Changing(table), table.columns.size()}) {
      Put(bytes, count, 2);
    }
    return bytes + std::string(8, '\0');
  }

  std::string Columns(const std::vector<AccessColumn>& columns) const {
    std::string bytes;
    std::size_t fixed = 0;
    std::size_t changing = 0;
    for (std::size_t at = 0; at < columns.size(); ++at) {
      const AccessType type = columns[at].type;
      Put(bytes, static_cast<std::uint8_t>(type));
      if (isFourth_) Put(bytes, std::uint32_t{0x659});
      for (const std::size_t number : {at, changing, at}) Put(bytes, number, 2);
      // What follows is the language of a text, or how many digits a number has.
      const bool isText = type == AccessType::Text || type == AccessType::Memo;
      const bool isNumeric = type == AccessType::Numeric;
      Put(bytes, isText ? 0x409 : isNumeric ? 0x020c : 0, 2);
      Put(bytes, !isFourth_ && isText ? 0x4e4 : 0, 2);
      if (!isFourth_) Put(bytes, 0, 2);
      Put(bytes, IsChanging(columns[at]) ? 2 : 3, 1);
      if (isFourth_) Put(bytes, 0, 5);
      Put(bytes, IsChanging(columns[at]) ? 0 : fixed, 2);
      Put(bytes, SizeOf(type), 2);
      fixed += FixedSize(type);
      changing += IsChanging(columns[at]) ? 1 : 0;
    }
    return bytes;
  }

  std::size_t SizeOf(AccessType type) const {
    if (type == AccessType::Bool) return 1;
    if (type == AccessType::Text) return isFourth_ ? 510 : 255;
    return FixedSize(type);
  }

  /// What stands behind its beginning is hidden in every such file.
  std::string FirstPage() const {
    const std::string name("\0\1\0\0Standard Jet DB\0", 20);
    std::string plain(isFourth_ ? 128 : 126, '\0');
    constexpr std::size_t kHidden = 0x18;
    Overwrite(plain, 0x3c - kHidden, Plain(std::uint16_t{1252}));
    Overwrite(plain, 0x3e - kHidden, Plain(form_.key));
    Overwrite(plain, (isFourth_ ? 0x6e : 0x3a) - kHidden, Plain(std::uint16_t{0x409}));
    std::string page(pageSize_, '\0');
    Overwrite(page, 0, name);
    page[0x14] = isFourth_ ? '\1' : '\0';
    Overwrite(page, kHidden, Ciphered("\xc7\xda\x39\x6b", plain));
    return page;
  }

  std::string Joined() const {
    std::string bytes;
    for (std::uint32_t number = 0; number < next_; ++number) {
      const auto found = pages_.find(number);
      const std::string page = found == pages_.end() ? RowsPage({}, 0) : found->second;
      const bool isHidden = number > 0 && form_.key != 0;
      bytes += isHidden ? Ciphered(Plain(form_.key ^ number), page) : page;
    }
    return bytes;
  }

  const AccessFileForm form_;
  const bool isFourth_;
  const std::size_t pageSize_;
  std::uint32_t next_ = kFirstFreePage;
  std::map<std::uint32_t, std::string> pages_;
  std::vector<std::string> usage_;
};

}  // namespace

std::string AccessFileBytes(const AccessFileForm& form, const std::vector<AccessTable>& tables) {
  return FileWriter(form).Written(tables);
}

}  // namespace tavlo::test

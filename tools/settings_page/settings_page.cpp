#include "settings_page.h"

#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "seen_settings.h"
#include "store/settings_fields.h"

namespace tavlo {
namespace {

using store::Field;
using store::Table;

constexpr std::string_view kRoot = "~/Lyrane/TavloDeck";
constexpr std::string_view kNoControl = "Without a control";

/// The forms need a loop; nothing happens on this one.
class StillLoop : public base::Loop {
 public:
  base::MonotonicTime Now() const override { return {}; }
  base::CalendarTime WallClock() const override { return {}; }
  void Yield() override {}
  void Wait(base::Duration) override {}
  void Breathe() override {}
  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime) override {
    return done();
  }
  bool TurnUntil(const std::function<bool()>& done, base::MonotonicTime) override { return done(); }

 protected:
  base::Reply ShowBox(const base::MessageBox&) override { return base::Reply::Ok; }
};

struct Chapter {
  Table table;
  std::string_view heading;
  std::string_view about;
};

constexpr Chapter kChapters[] = {
    {Table::GeneralSettings, "The deck", "One row, in the table `GeneralSettings`."},
    {Table::FtpSettings, "Server profiles",
     "25 rows, in the table `FtpSettings`: one for each server."},
    {Table::ImportAuthors, "Author profiles",
     "26 rows, in the table `ImportAuthors`: one for each author."},
    {Table::RevisionInfo, "The program", "One row, in the table `RevisionInfo`."},
};

constexpr std::string_view kBegin =
    R"(<!-- Printed by tools/settings_page from the table of settings; do not edit it by hand. -->

# Reference of settings

Everything that the deck remembers, beside the dictations themselves, stands in the file
`~/Lyrane/TavloDeck/Lyrane_Tavlo_Deck.mdb`, a SQLite database. You never need to open it: what you
may change has its place in a window, and [Configuration](configuration.md) explains it. This page is
for looking something up, and for whoever looks after several decks.

The deck holds the file as long as it runs. Close it before another program reads or writes there. All
values are kept as text.
)";

std::string_view FormInWords(store::Form form) {
  switch (form) {
    case store::Form::NumberText:
    case store::Form::Number:
      return "number";
    case store::Form::YesNo:
    case store::Form::Truth:
      return "yes or no";
    case store::Form::Letter:
      return "letter";
    case store::Form::Text:
      return "text";
    case store::Form::Path:
      return "folder";
  }
  return "";
}

/// What a new database holds: of the first row, where rows are numbered, and of the last.
std::string FirstValue(const Field& field) {
  const store::ShippedDatabase shipped{.root = std::string(kRoot), .revision = {}};
  if (field.table == Table::RevisionInfo) return "that of the program";
  const int last = store::ShapeOf(field.table).rows - 1;
  const std::string first = store::ShippedValue(field, 0, shipped);
  const std::string end = store::ShippedValue(field, last, shipped);
  if (first.empty()) return "empty";
  return first == end ? "`" + first + "`" : "`" + first + "` to `" + end + "`";
}

void PrintRow(std::ostream& out, const Field& field, const Seen* seen) {
  out << "| `" << field.name << "` | " << (seen ? seen->control : "none") << " | " << field.meaning
      << " | " << FormInWords(field.form) << " | " << store::AllowedValues(field) << " | "
      << FirstValue(field) << " |\n";
}

using SeenByField = std::map<std::string_view, Seen>;

/// The fields of a table that are seen at one place; nothing where there is none.
void PrintPlace(std::ostream& out, Table table, const SeenByField& seen, std::string_view place) {
  bool begun = false;
  for (const Field& field : store::FieldsOf(table)) {
    const auto found = seen.find(field.name);
    const Seen* const here = found == seen.end() ? nullptr : &found->second;
    if ((here ? here->place : kNoControl) != place) continue;
    if (!begun) {
      out << "\n**" << place << "**\n\n| Field | Control | Meaning | Form | May be | At first |\n"
          << "|---|---|---|---|---|---|\n";
    }
    begun = true;
    PrintRow(out, field, here);
  }
}

bool EveryFieldHasAPlace(const SeenByField& seen) {
  bool all = true;
  for (const auto& [field, where] : seen) {
    if (!where.place.empty() && !where.control.empty()) continue;
    std::cerr << "settings_page: nothing says where a person sees " << field << "\n";
    all = false;
  }
  return all;
}

}  // namespace

bool PrintSettingsPage(std::ostream& out) {
  StillLoop loop;
  forms::ConfigurationForm config(loop);
  forms::MainForm main(loop);
  std::vector<std::string> places = Places();
  places.emplace_back(kNoControl);
  out << kBegin;
  bool whole = true;
  for (const Chapter& chapter : kChapters) {
    out << "\n## " << chapter.heading << "\n\n" << chapter.about << "\n";
    const SeenByField seen = SeenFields(chapter.table, config, main);
    whole &= EveryFieldHasAPlace(seen);
    for (const std::string& place : places) PrintPlace(out, chapter.table, seen, place);
  }
  return whole;
}

}  // namespace tavlo

#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/settings_fields.h"

namespace tavlo {

/// Where a person sees a setting: a page or a view, and what its control is called there.
struct Seen {
  std::string place;
  std::string control;
};

/// The places in the order of the printed page.
const std::vector<std::string>& Places();

/// What a person sees of the settings of a table, by the names of its fields. A field that a
/// control shows, and of which nothing says what that is called, has an empty place.
std::map<std::string_view, Seen> SeenFields(store::Table table, forms::ConfigurationForm& config,
                                            forms::MainForm& main);

}  // namespace tavlo

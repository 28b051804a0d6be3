// Prints the page of the guide that lists all settings, from the table that the deck itself reads:
//
//     settings_page >docs/guide/settings.md
#include <iostream>

#include "settings_page.h"

int main() { return tavlo::PrintSettingsPage(std::cout) && std::cout.flush() ? 0 : 1; }

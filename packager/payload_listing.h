// What `list` and `explain` print: the entries of a payload with what an installer will do with
// each, as text for people and as JSON (RFC 8259) for scripts. Plain functions that return what is
// to be printed, with a line end at its end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "packager/install_forecast.h"

enum class ListingForm { kText, kJson };

// Each entry in table order: index, size, name, tabs between them.
std::string EntryListing(const PayloadView& payload, ListingForm form);

// The same, and for each entry where it lands in the forecast's release, or "nowhere", and the
// rule that decided.
std::string ForecastListing(const PayloadView& payload, const InstallForecast& forecast,
                            ListingForm form);

// How many entries each rule decides, one column for each of `releases`, in the order of the rules.
// Rules that decide none are left out.
std::string ForecastSummary(const PayloadView& payload, const std::vector<std::string>& releases,
                            ListingForm form);

// All about one entry, whose `name` may be the path in the tree or the whole name of an alias: its
// place in the table, its group, what it is an alias of and what is one of it, and for each release
// where it lands and by which rule. Throws Refusal when the payload has no such entry.
std::string EntryExplanation(const PayloadView& payload, std::string_view name, ListingForm form);

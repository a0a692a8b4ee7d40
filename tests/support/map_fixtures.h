// Map files of our own invention for the tests of the game's maps.
#pragma once

#include <string>
#include <vector>

namespace vantrel::test {

// A map's text in the game's layout (CR LF, tabs, a [GlobalHeader] holding
// one [Schema N] per entry of `schemas`); each schema is "TYPE:PROFILE", or
// "TYPE" for a schema that names no profile.
std::string MapOta(const std::string& mission, const std::vector<std::string>& schemas);

} // namespace vantrel::test

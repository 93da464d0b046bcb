#pragma once

#include <optional>
#include <string>

namespace quillon::app {

// The name of an id in a registry, or all the rows of the registry; gives an exit code. Kinds are "network",
// "original-network", "bouquet", "ca-system", "data-broadcast", "mhp-organisation" and "private-data".
int names(const std::string& kind, const std::optional<std::string>& id);

}  // namespace quillon::app

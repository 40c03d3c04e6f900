// The name that somebody may have meant.
#ifndef MLDS_RULES_NEARESTNAME_H
#define MLDS_RULES_NEARESTNAME_H

#include <string>
#include <string_view>
#include <vector>

namespace mlds::rules {

/// The name that DidYouMean asks for, empty if none is near.
std::string_view NearestName(std::string_view word, const std::vector<std::string>& names);

}  // namespace mlds::rules

#endif

// points.h - points as people type them: 1.5,2 or 0,0,1.
#pragma once

#include <string>
#include <vector>

namespace tool {

/// Two or three coordinates with commas between. Throws WrongUse for anything else.
std::vector<double> ParsePoint(const std::string& text);

/// The same for each, all of one number of coordinates.
std::vector<std::vector<double>> ParsePoints(const std::vector<std::string>& texts);

}  // namespace tool

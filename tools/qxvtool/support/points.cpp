// points.cpp - points from text.

#include "qxvtool/support/points.h"

#include "qxv/conversion.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

namespace tool {

std::vector<double> ParsePoint(const std::string& text) {
  CQXArray<CQXString, CQXString&> parts;
  QXVStrtoStrArr(QXT(","), Wide(text), parts);
  std::vector<double> point;
  for (QXInt64 i = 0; i < parts.GetSize(); ++i) {
    double coordinate = 0;
    if (parts[i].GetLength() == 0 || QXVString2Double(parts[i], coordinate) != 0) {
      throw WrongUse(text + ": \"" + Narrow(parts[i]) + "\" is no number; write a point as 1.5,2 or 0,0,1");
    }
    point.push_back(coordinate);
  }
  if (point.size() != 2 && point.size() != 3) {
    throw WrongUse(text + ": a point has two or three coordinates, as 1.5,2 or 0,0,1");
  }
  return point;
}

std::vector<std::vector<double>> ParsePoints(const std::vector<std::string>& texts) {
  std::vector<std::vector<double>> points;
  for (const std::string& text : texts) {
    points.push_back(ParsePoint(text));
    if (points.back().size() != points.front().size()) {
      throw WrongUse(text + ": has " + std::to_string(points.back().size()) + " coordinates, the points before it " +
                     std::to_string(points.front().size()));
    }
  }
  return points;
}

}  // namespace tool

// geometry.cpp - qxvtool geometry: points, lines and planes, in the plane or in space by the number of coordinates.

#include "qxv/vector2.h"
#include "qxv/vector3.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/points.h"

#include <array>
#include <numbers>

namespace {

using tool::Value;

struct Request {
  std::vector<std::string> points;
  double degrees = 0;
};

using Points = std::vector<std::vector<double>>;

CQXVVector2 Flat(const std::vector<double>& point) { return {point[0], point[1]}; }
CQXVVector3 Spatial(const std::vector<double>& point) { return {point[0], point[1], point[2]}; }

Value ToValue(const CQXVVector2& point) { return Value::List{point.x, point.y}; }
Value ToValue(const CQXVVector3& point) { return Value::List{point.x, point.y, point.z}; }

double Degrees(double radians) { return radians * 180 / std::numbers::pi; }

void Check(int result, const std::string& reason) {
  if (result != 0) {
    throw tool::Failure("geometry", reason);
  }
}

Points Parse(const Request& request, bool isSpatialOnly) {
  Points points = tool::ParsePoints(request.points);
  if (isSpatialOnly && points.front().size() != 3) {
    throw tool::WrongUse("points of space have three coordinates, as 0,0,1");
  }
  return points;
}

const char* Name(EQXV_2DPosition position) {
  return position == EQXV_2DPOSITION_PARALLEL     ? "parallel"
         : position == EQXV_2DPOSITION_COINCIDENT ? "coincident"
                                                  : "intersecting";
}

const char* Name(EQXV_3DPosition position) {
  static constexpr std::array<const char*, 5> kNames = {"", "parallel", "intersecting", "skew", "coincident"};
  return kNames.at(static_cast<std::size_t>(position));
}

constexpr const char* kOneLine = "the two points of a line are the same";
constexpr const char* kOnePlane = "the three points of a plane lie in a line";

Value::Record LinesInPlane(const Points& p) {
  EQXV_2DPosition position{};
  Check(QXVGet2LineRelation(Flat(p[0]), Flat(p[1]), Flat(p[2]), Flat(p[3]), position), kOneLine);
  CQXVVector2 point;
  const bool isCrossed = QXVGet2LineCrossPoint(Flat(p[0]), Flat(p[1]), Flat(p[2]), Flat(p[3]), point) == 0;
  return {{"relation", Name(position)}, {"point", isCrossed ? ToValue(point) : Value()}};
}

Value::Record LinesInSpace(const Points& p) {
  const CQXVVector3 p0 = Spatial(p[0]), p1 = Spatial(p[1]), q0 = Spatial(p[2]), q1 = Spatial(p[3]);
  EQXV_3DPosition position{};
  double distance = 0, angle = 0;
  Check(QXVGet2LineRelation(p0, p1, q0, q1, position), kOneLine);
  Check(QXVGetDistance(p0, p1, q0, q1, distance), kOneLine);
  Check(QXVGet2LineAngle(p0, p1, q0, q1, angle), kOneLine);
  CQXVVector3 point;
  const bool isCrossed = QXVGet2LineCrossPoint(p0, p1, q0, q1, point) == 0;
  return {{"relation", Name(position)},
          {"point", isCrossed ? ToValue(point) : Value()},
          {"distance", distance},
          {"degrees", Degrees(angle)}};
}

void RunLines(const Request& request, tool::Context& context) {
  const Points points = Parse(request, false);
  context.Answer(points.front().size() == 2 ? LinesInPlane(points) : LinesInSpace(points));
}

// The plane's own functions leave their outputs alone for a degenerate line, and report nothing.
void RunFoot(const Request& request, tool::Context& context) {
  const Points p = Parse(request, false);
  double distance = 0;
  if (p.front().size() == 2) {
    CQXVVector2 foot;
    const CQXVVector2 apart = Flat(p[2]) - Flat(p[1]);
    Check(apart.IsZero() != 0 ? -1 : 0, kOneLine);
    QXVGetPedal(Flat(p[1]), Flat(p[2]), Flat(p[0]), foot);
    QXVGetDistance(Flat(p[1]), Flat(p[2]), Flat(p[0]), distance);
    context.Answer(Value::Record{{"foot", ToValue(foot)}, {"distance", distance}});
    return;
  }
  CQXVVector3 foot;
  Check(QXVGetPedal(Spatial(p[1]), Spatial(p[2]), Spatial(p[0]), foot), kOneLine);
  Check(QXVGetDistance(Spatial(p[1]), Spatial(p[2]), Spatial(p[0]), distance), kOneLine);
  context.Answer(Value::Record{{"foot", ToValue(foot)}, {"distance", distance}});
}

void RunPierce(const Request& request, tool::Context& context) {
  const Points p = Parse(request, true);
  const CQXVVector3 p0 = Spatial(p[0]), p1 = Spatial(p[1]), a = Spatial(p[2]), b = Spatial(p[3]), c = Spatial(p[4]);
  CQXVVector3 normal, point;
  EQXV_3DPosition position{};
  double angle = 0;
  Check(QXVGetNormal(a, b, c, normal), kOnePlane);
  Check(QXVGetLineFaceRelation(p0, p1, a, b, c, position), kOneLine);
  Check(QXVGetLineFaceAngle(p0, p1, a, b, c, angle), kOneLine);
  const bool isCrossed = QXVGetLineFaceCrossPoint(p0, p1, a, b, c, point) == 0;
  context.Answer(Value::Record{{"relation", Name(position)},
                               {"point", isCrossed ? ToValue(point) : Value()},
                               {"degrees", Degrees(angle)},
                               {"normal", ToValue(normal)}});
}

void RunTurn(const Request& request, tool::Context& context) {
  const Points p = Parse(request, true);
  CQXVVector3 image;
  Check(QXVRotate(Spatial(p[1]), Spatial(p[2]), Spatial(p[0]), request.degrees * std::numbers::pi / 180, image), kOneLine);
  context.Answer(Value::Record{{"image", ToValue(image)}});
}

using Run = void (*)(const Request&, tool::Context&);

CLI::App* AddCommand(CLI::App& group, tool::Context& context, const std::shared_ptr<Request>& request, const char* name,
                     int count, const char* meaning, Run run, const char* purpose, const char* examples) {
  CLI::App* command = tool::NewCommand(group, name, purpose, examples);
  command->add_option("POINT", request->points, meaning)->required()->expected(count);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, run);
  return command;
}

}  // namespace

void tool::AddGeometry(CLI::App& app, Context& context) {
  CLI::App* group = NewGroup(app, "geometry", "Points, lines and planes: lines, foot, pierce, turn");
  const auto request = [] { return std::make_shared<Request>(); };
  AddCommand(*group, context, request(), "lines", 4, "Two points of the first line, two of the second", RunLines,
             "How two lines lie, and where they meet",
             "  qxvtool geometry lines 0,0 4,4 0,4 4,0                  intersecting at 2, 2\n"
             "  qxvtool geometry lines 0,0,0 1,0,0 0,0,5 0,1,5 --json   skew, 5 apart");
  AddCommand(*group, context, request(), "foot", 3, "The point, then two points of the line", RunFoot,
             "The point of a line that is nearest to a point",
             "  qxvtool geometry foot 3,4 0,0 1,0                       3, 0, at a distance of 4");
  AddCommand(*group, context, request(), "pierce", 5, "Two points of the line, then three of the plane", RunPierce,
             "Where a line goes through a plane, and at what angle",
             "  qxvtool geometry pierce 1,1,-1 1,1,1 0,0,0 1,0,0 0,1,0  1, 1, 0, at 90 degrees");
  const auto turn = request();
  AddCommand(*group, context, turn, "turn", 3, "The point, then two points of the axis", RunTurn,
             "A point turned about an axis by the right-hand rule",
             "  qxvtool geometry turn 1,0,0 0,0,0 0,0,1 --degrees 90    0, 1, 0, but for rounding")
      ->add_option("--degrees", turn->degrees, "The angle")
      ->required();
}

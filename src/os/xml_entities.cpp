// xml_entities.cpp - entities sized by their literals: characters, and the sizes of the entities that they refer to.

#include "os/xml_entities.h"

#include <algorithm>
#include <map>

namespace qxv::os {
namespace {

constexpr TextView kDeclaration = QXT("<!ENTITY");
constexpr TextView kBlanks = QXT(" \t\r\n");
constexpr int kMaxDepth = 40;

struct Entity {
  TextView literal;
  std::size_t size = 0;
  bool sized = false;
};

class Entities {
 public:
  explicit Entities(std::size_t limit) noexcept : m_limit(limit) {}

  /// False for a parameter entity that holds references.
  [[nodiscard]] bool Collect(TextView text) {
    std::size_t at = text.find(kDeclaration);
    while (at != TextView::npos) {
      at = SkipBlanks(text, at + kDeclaration.size());
      const bool parameter = text.substr(at).starts_with(QXT('%'));
      const std::size_t name = parameter ? SkipBlanks(text, at + 1) : at;
      const std::size_t nameEnd = std::min(text.find_first_of(kBlanks, name), text.size());
      const std::size_t open = SkipBlanks(text, nameEnd);
      if (open < text.size() && (text[open] == QXT('"') || text[open] == QXT('\''))) {  // else it stands outside the document
        const std::size_t close = std::min(text.find(text[open], open + 1), text.size());
        const TextView literal = text.substr(open + 1, close - open - 1);
        if (parameter && literal.find_first_of(QXT("&%")) != TextView::npos) {
          return false;
        }
        m_entities.emplace(text.substr(name, nameEnd - name), Entity{literal});  // the first of a name counts
      }
      at = text.find(kDeclaration, open);
    }
    return true;
  }

  [[nodiscard]] bool Any() const noexcept { return !m_entities.empty(); }

  /// The units of all entities that a text refers to; more than the limit when they are too many.
  std::size_t ReferencesOf(TextView text, int depth) {
    std::size_t total = 0;
    for (std::size_t at = text.find(QXT('&')); at != TextView::npos && total <= m_limit; at = text.find(QXT('&'), at)) {
      ++at;
      for (const TextView ampersand : {TextView(QXT("#38;")), TextView(QXT("#x26;"))}) {  // becomes one when it is declared
        at += text.substr(at).starts_with(ampersand) ? ampersand.size() : 0;
      }
      const std::size_t end = text.find_first_of(QXT(";&<\"' "), at);
      if (end == TextView::npos || text[end] != QXT(';')) {
        continue;
      }
      if (const auto found = m_entities.find(text.substr(at, end - at)); found != m_entities.end()) {
        total += 1 + SizeOf(found->second, depth);
      }
    }
    return total;
  }

 private:
  static std::size_t SkipBlanks(TextView text, std::size_t at) noexcept {
    return std::min(text.find_first_not_of(kBlanks, at), text.size());
  }

  // An entity within itself gets deeper until it is refused.
  std::size_t SizeOf(Entity& entity, int depth) {
    if (!entity.sized) {
      if (depth == kMaxDepth) {
        return m_limit + 1;
      }
      entity.size = entity.literal.size() + ReferencesOf(entity.literal, depth + 1);
      entity.sized = true;
    }
    return entity.size;
  }

  std::size_t m_limit;
  std::map<TextView, Entity> m_entities;
};

}  // namespace

bool EntitiesStayWithin(TextView text, std::size_t limit) {
  Entities entities(limit);
  if (!entities.Collect(text)) {
    return false;
  }
  return !entities.Any() || entities.ReferencesOf(text, 0) <= limit;
}

}  // namespace qxv::os

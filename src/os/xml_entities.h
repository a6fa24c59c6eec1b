// xml_entities.h - how far the entities that a document declares can expand, told by its text alone.
#pragma once

#include "os/utf.h"

#include <cstddef>

namespace qxv::os {

/// Whether all references in the text expand to at most limit units together. No parser is asked: one without limits of its own
/// must not see the others. Also false for entities nested more than 40 deep, and for parameter entities that hold references,
/// whose effect only a parser could tell.
[[nodiscard]] bool EntitiesStayWithin(TextView text, std::size_t limit);

}  // namespace qxv::os

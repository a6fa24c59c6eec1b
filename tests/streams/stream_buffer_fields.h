// stream_buffer_fields.h - what the tests of the stream buffers see of the objects: their fields and their bytes.
#pragma once

#include "qxv/stream_buffer.h"

#include <cstddef>
#include <cstring>
#include <string>

namespace streams_test {

// The fields behind the virtual table, as applications see them.
struct InFields {
  void* virtualTable;
  unsigned char* data;
  unsigned int capacity, position, growStep;
};
static_assert(sizeof(CQXVStreamBufIn) == 32 && offsetof(InFields, growStep) == 24);

struct OutFields {
  void* virtualTable;
  const unsigned char* data;
  unsigned int size, position;
};
static_assert(sizeof(CQXVStreamBufOut) == 24 && sizeof(OutFields) == 24);

inline InFields FieldsOf(const CQXVStreamBufIn& buffer) {
  InFields fields;
  std::memcpy(&fields, static_cast<const void*>(&buffer), offsetof(InFields, growStep) + sizeof fields.growStep);
  return fields;
}

inline OutFields FieldsOf(const CQXVStreamBufOut& buffer) {
  OutFields fields;
  std::memcpy(&fields, static_cast<const void*>(&buffer), sizeof fields);
  return fields;
}

class Growing : public CQXVStreamBufIn {
 public:
  using CQXVStreamBufIn::Grow;
};

inline std::string Written(CQXVStreamBufIn& buffer) {
  int size = -1;
  const unsigned char* data = buffer.GetBuffer(size);
  return std::string(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
}

inline const unsigned char* Data(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

}  // namespace streams_test

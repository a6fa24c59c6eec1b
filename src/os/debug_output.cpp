// debug_output.cpp - the replaceable sink.

#include "os/debug_output.h"

#include <atomic>

namespace qxv::os {
namespace {

std::atomic<DebugSink*> currentSink{nullptr};

}  // namespace

ScopedDebugSink::ScopedDebugSink(DebugSink& sink) noexcept : m_before(currentSink.exchange(&sink)) {}
ScopedDebugSink::~ScopedDebugSink() { currentSink.store(m_before); }

void WriteDebugText(const QXChar* text) noexcept {
  const QXChar* given = text == nullptr ? QXT("") : text;
  if (DebugSink* sink = currentSink.load(std::memory_order_acquire); sink != nullptr) {
    sink->Write(given);
  } else {
    system_debug::Write(given);
  }
}

}  // namespace qxv::os

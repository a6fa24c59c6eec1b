// network.cpp - the replaceable source, and an address as text.

#include "os/network.h"

#include "os/code_page.h"

#include <algorithm>
#include <atomic>

namespace qxv::os {
namespace {

std::atomic<NetworkSource*> currentSource{nullptr};

constexpr std::size_t kLongestHostName = 1024;  // bytes; resolvers take fewer

Text DottedText(const HostAddress& address) {
  Text text;
  for (const unsigned char byte : address) {
    if (!text.empty()) {
      text += QXT('.');
    }
    const std::string digits = std::to_string(byte);
    text.append(digits.begin(), digits.end());
  }
  return text;
}

}  // namespace

NetworkSource& Network() noexcept {
  NetworkSource* const source = currentSource.load(std::memory_order_acquire);
  return source != nullptr ? *source : SystemNetwork();
}

ScopedNetwork::ScopedNetwork(NetworkSource& source) noexcept : m_before(currentSource.exchange(&source)) {}
ScopedNetwork::~ScopedNetwork() { currentSource.store(m_before); }

bool AddressesOfHost(TextView host, unsigned codePage, std::vector<Text>& addresses) {
  std::string name;
  std::vector<HostAddress> found;
  if (host.size() > kLongestHostName || !WideToMultiByte(codePage, host, name) || name.size() > kLongestHostName ||
      !Network().LookUpHost(name, found)) {
    return false;
  }
  std::vector<Text> texts(found.size());
  std::transform(found.begin(), found.end(), texts.begin(), DottedText);
  addresses = std::move(texts);
  return true;
}

}  // namespace qxv::os

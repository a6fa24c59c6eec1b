// hosts_subject.cpp - prints the address of each host named on its standard input, a line each: the result, a blank, the address.

#include "os/utf.h"
#include "qxv/identity.h"

#include <iostream>
#include <string>

int main() {
  for (std::string host; std::getline(std::cin, host);) {
    CQXString address;
    const int known = QXVGetIPAddr(qxv::os::TextFromUtf8(host).c_str(), address);
    std::cout << known << ' ' << qxv::os::Utf8FromText(static_cast<const QXChar*>(address)) << '\n';
  }
  return 0;
}

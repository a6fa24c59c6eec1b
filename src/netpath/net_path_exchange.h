// net_path_exchange.h - the table of mappings between network paths and local ones, and the conversions over it.
#pragma once

#include "os/network.h"
#include "os/utf.h"
#include "qxv/array.h"
#include "qxv/host.h"
#include "qxv/string.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace qxv {

/// One mapping.
struct SNetPathItem {
  CQXString NamePath;   // \\HOST\share; empty for a drive that is connected by address
  CQXString IPPath;     // \\10.1.2.3\share; empty until it is needed, and for a host that cannot be resolved
  CQXString LocalPath;  // X: or D:\media
};

/// The table lives as long as the object; the sockets library is kept started meanwhile. One object is used by one thread at a
/// time.
class CQXNetPathExchange {
 public:
  CQXNetPathExchange();
  CQXNetPathExchange(const CQXNetPathExchange&) = delete;
  CQXNetPathExchange& operator=(const CQXNetPathExchange&) = delete;
  virtual ~CQXNetPathExchange();

  // The members of the table, in this order behind the virtual table.
  std::int32_t initialised = 0;                   // 1 once the table is built
  CArray<SNetPathItem> items;                     // in the order of their sources
  CQXString hostPrefix;                           // this computer's name without blanks around it; empty until needed
  CQXArray<CQXString, CQXString&> specialDrives;  // upper-case roots such as X:\ of exactly three characters

  /// The local form of a path, as QXVUNC2Local describes it.
  os::Text ToLocal(const os::Text& network);

  /// The network form of a path, as QXVLocal2UNC describes it.
  os::Text ToNetwork(const os::Text& local);

  /// Builds the table unless it is built.
  void Build();

  /// Forgets the table, the computer's name and the addresses.
  void Forget();

  /// The table as QXVDumpNetPathTable describes it, and the number of its lines.
  os::Text Describe(int& lines);

 private:
  // Sources of the table.
  void AddPublishedShares();
  void AddConnectedDrives();
  void AddSpecialDrives();
  void AddItem(const QXChar* namePath, const QXChar* addressPath, const QXChar* localPath);

  // Hosts.
  const std::vector<os::Text>& AddressesOf(os::TextView host);
  os::Text AddressOf(os::TextView host);
  void FillAddress(SNetPathItem& item);
  void FillHostPrefix();
  bool NamesThisComputer(os::TextView host) const noexcept;
  bool IsOwnAddress(os::TextView host);

  // Conversion.
  os::Text LocalOf(const os::Text& network);
  bool MatchOwnShare(const SNetPathItem& item, os::TextView path, os::TextView& rest);
  std::optional<os::Text> LocalByItem(SNetPathItem& item, os::TextView path);
  os::Text NetworkNameOf(const SNetPathItem& item) const;

  std::map<os::Text, std::vector<os::Text>> m_addresses;  // by lower-case host; none for one that could not be resolved
  os::SocketsLibrary m_sockets;
};

/// The text of a string, valid until it changes.
os::TextView ViewOf(const CQXString& text) noexcept;

/// This computer's name as the system writes it; empty when it cannot be told or is longer than 259 characters.
os::Text ReadComputerName();

}  // namespace qxv

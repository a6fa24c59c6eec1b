// registry_store.cpp - the registry's store over SQLite.
//
//   key    id | parent | folded | name           the four roots are the keys 1 to 4, without a parent
//   value  id | key | folded | name | type | data
//
// Texts are the UTF-8 of os/utf.h; a value's data are its bytes. The rollback journal makes each transaction whole or nothing.

#include "os/registry_store.h"

#include <sqlite3.h>

#include <cstring>
#include <new>

namespace qxv::os {
namespace {

constexpr int kBusyMilliseconds = 10'000;
constexpr sqlite3_int64 kApplication = 0x51585652;  // "QXVR", what file(1) and the next opening know the store by
constexpr sqlite3_int64 kVersion = 1;

constexpr const char* kSchema =
    "CREATE TABLE key (id INTEGER PRIMARY KEY, parent INTEGER REFERENCES key (id), folded TEXT NOT NULL, name TEXT NOT NULL,"
    " UNIQUE (parent, folded));"
    "CREATE TABLE value (id INTEGER PRIMARY KEY, key INTEGER NOT NULL REFERENCES key (id), folded TEXT NOT NULL,"
    " name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL, UNIQUE (key, folded));"
    "INSERT INTO key (id, parent, folded, name) VALUES"
    " (1, NULL, 'hkey_classes_root', 'HKEY_CLASSES_ROOT'), (2, NULL, 'hkey_current_user', 'HKEY_CURRENT_USER'),"
    " (3, NULL, 'hkey_local_machine', 'HKEY_LOCAL_MACHINE'), (4, NULL, 'hkey_users', 'HKEY_USERS');"
    "PRAGMA application_id = 0x51585652; PRAGMA user_version = 1;";

ErrorCode ErrorOf(int result) {
  switch (result & 0xFF) {  // above it stand details
    case SQLITE_OK:
    case SQLITE_DONE:
    case SQLITE_ROW:
      return kErrorNone;
    case SQLITE_NOMEM:
      throw std::bad_alloc();
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return kErrorSharingViolation;
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return kErrorAccessDenied;
    case SQLITE_FULL:
      return kErrorDiskFull;
    case SQLITE_TOOBIG:
      return kErrorInvalidParameter;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:  // a table that is missing or another one
    case SQLITE_SCHEMA:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      return kErrorRegistryDamaged;
    default:
      return kErrorGeneralFailure;
  }
}

/// One statement. Values are bound in their order; what they point to must live until the last row is read.
class Statement {
 public:
  Statement(sqlite3* database, const char* sql)
      : m_result(sqlite3_prepare_v2(database, sql, -1 /*to its end*/, &m_statement, nullptr)) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { (void)sqlite3_finalize(m_statement); }

  Statement& Number(sqlite3_int64 value) { return Bound(sqlite3_bind_int64(m_statement, ++m_bound, value)); }
  Statement& Text(const std::string& value) {
    return Bound(sqlite3_bind_text64(m_statement, ++m_bound, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8));
  }
  Statement& Bytes(std::span<const unsigned char> value) {
    const void* data = value.empty() ? "" : static_cast<const void*>(value.data());  // a null address would be NULL
    return Bound(sqlite3_bind_blob64(m_statement, ++m_bound, data, value.size(), SQLITE_STATIC));
  }

  /// The next row; false at the end and after a failure.
  bool Row() {
    if (m_result == SQLITE_OK || m_result == SQLITE_ROW) {
      m_result = sqlite3_step(m_statement);
    }
    return m_result == SQLITE_ROW;
  }
  /// To the end, for statements without rows.
  [[nodiscard]] ErrorCode Run() {
    while (Row()) {
    }
    return Error();
  }
  [[nodiscard]] ErrorCode Error() const { return ErrorOf(m_result); }

  sqlite3_int64 NumberAt(int column) { return sqlite3_column_int64(m_statement, column); }

  /// A column's bytes, valid until the next row.
  std::span<const unsigned char> BytesAt(int column) {
    const void* data = sqlite3_column_blob(m_statement, column);
    const int size = sqlite3_column_bytes(m_statement, column);
    if (data == nullptr && size > 0) {
      throw std::bad_alloc();
    }
    return {static_cast<const unsigned char*>(data), data == nullptr ? 0 : static_cast<std::size_t>(size)};
  }
  os::Text NameAt(int column) {
    const auto bytes = BytesAt(column);
    return FileNameFromUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  }

 private:
  Statement& Bound(int result) {
    if (m_result == SQLITE_OK) {
      m_result = result;
    }
    return *this;
  }

  sqlite3_stmt* m_statement = nullptr;
  int m_result;
  int m_bound = 0;
};

/// One opened store in one transaction, which ends without a trace unless it is committed.
class Transaction {
 public:
  Transaction() = default;
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() { (void)sqlite3_close_v2(m_database); }  // rolls back

  /// exists is false for a store that is not there, or has nothing in it yet.
  [[nodiscard]] ErrorCode BeginReading(const std::string& store, bool& exists);
  /// Creates the store and its folder where they are missing.
  [[nodiscard]] ErrorCode BeginWriting(const std::string& store);
  [[nodiscard]] ErrorCode Commit() { return Run("COMMIT"); }

  sqlite3* Database() const noexcept { return m_database; }

  /// The key's number; missing when it does not exist.
  [[nodiscard]] ErrorCode Find(const StoredKey& key, ErrorCode missing, sqlite3_int64& id) const;

 private:
  [[nodiscard]] ErrorCode Open(const std::string& store, int flags);
  [[nodiscard]] ErrorCode Begin(const std::string& store, int flags, const char* sql, bool& isEmpty);
  [[nodiscard]] ErrorCode Recognise(const std::string& store, bool& isEmpty) const;
  [[nodiscard]] ErrorCode Run(const char* sql) const { return ErrorOf(sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr)); }

  sqlite3* m_database = nullptr;
};

ErrorCode Transaction::Open(const std::string& store, int flags) {
  const int result = sqlite3_open_v2(store.c_str(), &m_database, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  if (result != SQLITE_OK) {
    return ErrorOf(result);
  }
  // A file that somebody else wrote may hold triggers and views: none of them runs anything.
  (void)sqlite3_db_config(m_database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  (void)sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  (void)sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  return ErrorOf(sqlite3_busy_timeout(m_database, kBusyMilliseconds));
}

ErrorCode Transaction::Recognise(const std::string& store, bool& isEmpty) const {
  Statement header(m_database,
                   "SELECT application_id, user_version, (SELECT count(*) FROM sqlite_schema), page_size"
                   " FROM pragma_application_id, pragma_user_version, pragma_page_size");
  if (!header.Row()) {
    return header.Error() != kErrorNone ? header.Error() : kErrorRegistryDamaged;
  }
  const sqlite3_int64 application = header.NumberAt(0);
  const sqlite3_int64 version = header.NumberAt(1);
  isEmpty = application == 0 && version == 0 && header.NumberAt(2) == 0;
  // The library takes what is missing of a last page as zeros, and values there as not stored. Nobody writes to the file now.
  bool exists = false;
  std::uint64_t size = 0;
  const ErrorCode error = LookAtStore(store, exists, size);
  if (error != kErrorNone || size % static_cast<std::uint64_t>(header.NumberAt(3)) != 0) {
    return error != kErrorNone ? error : kErrorRegistryDamaged;
  }
  return isEmpty || (application == kApplication && version == kVersion) ? kErrorNone : kErrorRegistryDamaged;
}

ErrorCode Transaction::Begin(const std::string& store, int flags, const char* sql, bool& isEmpty) {
  ErrorCode error = Open(store, flags);
  if (error == kErrorNone) {
    error = Run(sql);
  }
  return error == kErrorNone ? Recognise(store, isEmpty) : error;
}

ErrorCode Transaction::BeginReading(const std::string& store, bool& exists) {
  std::uint64_t size = 0;
  ErrorCode error = LookAtStore(store, exists, size);
  if (error == kErrorNone && exists) {
    // For writing where that is allowed: what a killed writer left half-done is taken back by whoever comes next.
    bool isEmpty = false;
    error = Begin(store, SQLITE_OPEN_READWRITE, "BEGIN", isEmpty);
    exists = !isEmpty;
  }
  return error;
}

ErrorCode Transaction::BeginWriting(const std::string& store) {
  bool exists = false;
  std::uint64_t size = 0;
  ErrorCode error = LookAtStore(store, exists, size);
  if (error == kErrorNone && !exists) {
    error = MakeStoreFolder(store);
  }
  bool isEmpty = false;
  if (error == kErrorNone) {
    error = Begin(store, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, "BEGIN IMMEDIATE", isEmpty);
  }
  return error == kErrorNone && isEmpty ? Run(kSchema) : error;
}

ErrorCode FindChild(sqlite3* database, sqlite3_int64 parent, const StoredName& name, bool& found, sqlite3_int64& id) {
  Statement query(database, "SELECT id FROM key WHERE parent = ? AND folded = ?");
  found = query.Number(parent).Text(name.folded).Row();
  if (found) {
    id = query.NumberAt(0);
  }
  return query.Error();
}

sqlite3_int64 RootId(const StoredKey& key) { return key.root + 1; }

ErrorCode Transaction::Find(const StoredKey& key, ErrorCode missing, sqlite3_int64& id) const {
  id = RootId(key);
  for (const StoredName& name : key.names) {
    bool found = false;
    if (const ErrorCode error = FindChild(m_database, id, name, found, id); error != kErrorNone || !found) {
      return error != kErrorNone ? error : missing;
    }
  }
  return kErrorNone;
}

// The key and its transaction for what only reads; missing when there is no such key.
ErrorCode BeginReadingKey(Transaction& transaction, const std::string& store, const StoredKey& key, ErrorCode missing,
                          bool& exists, sqlite3_int64& id) {
  const ErrorCode error = transaction.BeginReading(store, exists);
  if (error != kErrorNone) {
    return error;
  }
  if (!exists) {
    return key.names.empty() ? kErrorNone : missing;
  }
  return transaction.Find(key, missing, id);
}

// The columns type, length(data) and data of a row. The data are fetched only when they fit.
ErrorCode TakeValue(Statement& row, std::uint32_t& type, std::span<unsigned char> data, std::uint32_t& size) {
  const auto needed = static_cast<std::uint32_t>(row.NumberAt(1));
  type = static_cast<std::uint32_t>(row.NumberAt(0));
  if (data.data() != nullptr && needed <= data.size()) {
    const auto bytes = row.BytesAt(2);
    if (bytes.size() != needed) {
      return kErrorRegistryDamaged;  // no blob
    }
    if (needed > 0) {
      std::memcpy(data.data(), bytes.data(), bytes.size());
    }
  }
  size = needed;
  return data.data() == nullptr || needed <= data.size() ? kErrorNone : kErrorMoreData;
}

}  // namespace

ErrorCode LookUpKey(const std::string& store, const StoredKey& key) {
  Transaction transaction;
  bool exists = false;
  sqlite3_int64 id = 0;
  return BeginReadingKey(transaction, store, key, kErrorFileNotFound, exists, id);
}

ErrorCode CreateStoredKey(const std::string& store, const StoredKey& key, bool& created) {
  Transaction transaction;
  ErrorCode error = transaction.BeginWriting(store);
  bool isNew = false;
  sqlite3_int64 id = RootId(key);
  for (const StoredName& name : key.names) {
    if (error != kErrorNone) {
      break;
    }
    const sqlite3_int64 parent = id;
    bool found = false;
    error = FindChild(transaction.Database(), parent, name, found, id);
    if (error == kErrorNone && !found) {
      isNew = true;
      Statement insert(transaction.Database(), "INSERT INTO key (parent, folded, name) VALUES (?, ?, ?)");
      error = insert.Number(parent).Text(name.folded).Text(name.given).Run();
      id = sqlite3_last_insert_rowid(transaction.Database());
    }
  }
  if (error == kErrorNone) {
    error = transaction.Commit();
  }
  if (error == kErrorNone) {
    created = isNew;
  }
  return error;
}

ErrorCode ReadStoredValue(const std::string& store, const StoredKey& key, const StoredName& name, std::uint32_t& type,
                          std::span<unsigned char> data, std::uint32_t& size) {
  Transaction transaction;
  bool exists = false;
  sqlite3_int64 id = 0;
  const ErrorCode error = BeginReadingKey(transaction, store, key, kErrorKeyDeleted, exists, id);
  if (error != kErrorNone || !exists) {
    return error != kErrorNone ? error : kErrorFileNotFound;
  }
  Statement query(transaction.Database(), "SELECT type, length(data), data FROM value WHERE key = ? AND folded = ?");
  if (query.Number(id).Text(name.folded).Row()) {
    return TakeValue(query, type, data, size);
  }
  return query.Error() != kErrorNone ? query.Error() : kErrorFileNotFound;
}

ErrorCode WriteStoredValue(const std::string& store, const StoredKey& key, const StoredName& name, std::uint32_t type,
                           std::span<const unsigned char> data) {
  Transaction transaction;
  sqlite3_int64 id = 0;
  ErrorCode error = transaction.BeginWriting(store);
  if (error == kErrorNone) {
    error = transaction.Find(key, kErrorKeyDeleted, id);
  }
  if (error == kErrorNone) {
    Statement write(transaction.Database(),
                    "INSERT INTO value (key, folded, name, type, data) VALUES (?, ?, ?, ?, ?)"
                    " ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data");
    error = write.Number(id).Text(name.folded).Text(name.given).Number(type).Bytes(data).Run();
  }
  return error == kErrorNone ? transaction.Commit() : error;
}

ErrorCode DeleteStoredValue(const std::string& store, const StoredKey& key, const StoredName& name) {
  // Looked for first: deleting nothing neither creates a store nor asks for the right to write.
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  ErrorCode error = ReadStoredValue(store, key, name, type, {}, size);
  if (error != kErrorNone) {
    return error;
  }
  Transaction transaction;
  sqlite3_int64 id = 0;
  error = transaction.BeginWriting(store);
  if (error == kErrorNone) {
    error = transaction.Find(key, kErrorKeyDeleted, id);
  }
  if (error == kErrorNone) {
    Statement removal(transaction.Database(), "DELETE FROM value WHERE key = ? AND folded = ?");
    error = removal.Number(id).Text(name.folded).Run();
  }
  if (error == kErrorNone && sqlite3_changes(transaction.Database()) == 0) {
    error = kErrorFileNotFound;  // somebody was quicker
  }
  return error == kErrorNone ? transaction.Commit() : error;
}

ErrorCode ReadValueAt(const std::string& store, const StoredKey& key, std::uint32_t index, Text& name, std::uint32_t& type,
                      std::span<unsigned char> data, std::uint32_t& size) {
  Transaction transaction;
  bool exists = false;
  sqlite3_int64 id = 0;
  const ErrorCode error = BeginReadingKey(transaction, store, key, kErrorKeyDeleted, exists, id);
  if (error != kErrorNone || !exists) {
    return error != kErrorNone ? error : kErrorNoMoreItems;
  }
  Statement query(transaction.Database(),
                  "SELECT type, length(data), data, name FROM value WHERE key = ? ORDER BY id LIMIT 1 OFFSET ?");
  if (query.Number(id).Number(index).Row()) {
    name = query.NameAt(3);
    return TakeValue(query, type, data, size);
  }
  return query.Error() != kErrorNone ? query.Error() : kErrorNoMoreItems;
}

ErrorCode ReadSubkeyAt(const std::string& store, const StoredKey& key, std::uint32_t index, Text& name) {
  Transaction transaction;
  bool exists = false;
  sqlite3_int64 id = 0;
  const ErrorCode error = BeginReadingKey(transaction, store, key, kErrorKeyDeleted, exists, id);
  if (error != kErrorNone || !exists) {
    return error != kErrorNone ? error : kErrorNoMoreItems;
  }
  Statement query(transaction.Database(), "SELECT name FROM key WHERE parent = ? ORDER BY folded LIMIT 1 OFFSET ?");
  if (query.Number(id).Number(index).Row()) {
    name = query.NameAt(0);
    return kErrorNone;
  }
  return query.Error() != kErrorNone ? query.Error() : kErrorNoMoreItems;
}

}  // namespace qxv::os

// md5_context.h - what implements CQXVMD5Ctx.
#pragma once

#include "digest/md5.h"
#include "os/file.h"
#include "qxv/md5.h"

#include <cstdint>
#include <memory>

class CQXVMD5CtxImpl : public CQXVMD5Ctx {
 public:
  CQXVMD5CtxImpl();
  ~CQXVMD5CtxImpl() override;

  void Initialize(int interruption, CQXString folder, CQXString id) override;
  void Update(const unsigned char* data, unsigned int length) override;
  void Final(unsigned char digest[qxv::kMd5DigestSize]) override;
  CQXString GetFinalString() override;
  int SaveContext(QXUInt64 value) override;
  QXUInt64 GetContextValue() override;

 private:
  static constexpr std::uint32_t kRecordSize = 8 + 16 + qxv::kMd5BlockSize + 8;  // bit count, state, input block, caller's value

  bool Store(QXUInt64 value);
  bool Load();

  qxv::Md5 m_md5;
  int m_interruption = 0;
  CQXString m_path;
  qxv::os::File m_file;  // open from the first store to Final
  std::unique_ptr<unsigned char[]> m_record;
  std::uint32_t m_recordSize = kRecordSize;
  QXUInt64 m_resumeValue = 0;
};

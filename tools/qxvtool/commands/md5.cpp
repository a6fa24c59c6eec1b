// md5.cpp - qxvtool md5: digests of files, as they are read shown at the terminal, and taken up again after an interruption.
// With --resume the state is saved once a second and at Ctrl-C. Beside it stands how far the file was read, and a mark of the
// file, so that no other one is taken for it.

#include "qxv/md5.h"

#include "qxv/crc.h"
#include "qxv/interop.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/console.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/progress.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using tool::Value;

constexpr std::size_t kPiece = 1 << 20;

struct Request {
  std::vector<std::string> files;
  std::string resume;
  std::string folder = ".";
  std::string expected;
  double mostMebibytes = 0;  // a second; 0: as many as there come
};

// The value that is saved with a digest: bytes read, and a mark of the file that is never 0.

std::uint64_t MarkOf(const std::string& path, std::uint64_t size) {
  const std::string text = tool::NameOf(path) + ' ' + std::to_string(size);
  const auto* first = reinterpret_cast<const unsigned char*>(text.data());
  return (QXVCalculateCRC(first, first + text.size()) & 0xFFFF) | 1;
}

std::uint64_t SavedValue(std::uint64_t position, std::uint64_t mark) { return position << 16 | mark; }

// Waits where reading would be faster than was asked for.
class Pace {
 public:
  explicit Pace(double mostMebibytes) : m_bytesPerSecond(mostMebibytes * 1024 * 1024), m_start(Clock::now()) {}

  void Wait(std::size_t bytes) {
    m_bytes += static_cast<double>(bytes);
    if (m_bytesPerSecond > 0) {
      std::this_thread::sleep_until(
          m_start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(m_bytes / m_bytesPerSecond)));
    }
  }

 private:
  double m_bytesPerSecond;
  double m_bytes = 0;
  Clock::time_point m_start;
};

// A digest that may have begun in an earlier run.
class Digest {
 public:
  Digest(const Request& request, const std::string& id, const std::string& path, std::uint64_t size)
      : m_md5(QXV_ConstructMD5()), m_mark(MarkOf(path, size)), m_isSaved(!id.empty()) {
    if (!m_isSaved) {
      return;
    }
    const std::string folder = tool::AsFolder(request.folder), state = folder + id + ".MD5frag";
    const bool isThere = tool::Exists(state) && tool::InputFile(state).Size() > 0;
    m_md5->Initialize(1 /*interruption*/, tool::Wide(folder), tool::Wide(id));
    const std::uint64_t value = m_md5->GetContextValue();
    m_position = value >> 16;
    if (isThere && ((value & 0xFFFF) != m_mark || m_position > size)) {
      throw tool::Failure(
          state, "holds the state of another file than " + path + ", or of one that has changed; remove it to begin anew");
    }
  }

  std::uint64_t Position() const { return m_position; }
  bool IsSaved() const { return m_isSaved; }

  void Add(const unsigned char* bytes, std::size_t count) {
    m_md5->Update(bytes, static_cast<unsigned int>(count));
    m_position += count;
  }

  bool Save() { return m_isSaved && m_md5->SaveContext(SavedValue(m_position, m_mark)) != 0; }
  std::string Final() { return tool::Narrow(m_md5->GetFinalString()); }

 private:
  qxv::Owned<CQXVMD5Ctx> m_md5;
  std::uint64_t m_mark;
  std::uint64_t m_position = 0;
  bool m_isSaved;
};

[[noreturn]] void Stop(const std::string& path, Digest& digest, std::uint64_t size) {
  const double share = size == 0 ? 1 : static_cast<double>(digest.Position()) / static_cast<double>(size);
  const std::string where = "interrupted at " + std::to_string(static_cast<int>(share * 100)) + " %; ";
  if (!digest.IsSaved()) {
    throw tool::Failure(path, where + "with --resume ID it could have been taken up again");
  }
  throw tool::Failure(path, where + (digest.Save() ? "the same command takes it up again" : "the state could not be saved"));
}

std::string DigestOf(const Request& request, const std::string& id, const std::string& path) {
  tool::InputFile file(path);
  Digest digest(request, id, path, file.Size());
  file.Seek(digest.Position());
  tool::Progress progress(path, file.Size(), digest.Position());
  Pace pace(request.mostMebibytes);
  std::vector<unsigned char> piece(request.mostMebibytes > 0 ? kPiece / 16 : kPiece);
  auto saved = Clock::now();
  for (std::size_t count; (count = file.Read(piece)) > 0;) {
    digest.Add(piece.data(), count);
    progress.Show(digest.Position());
    if (tool::Interrupted()) {
      Stop(path, digest, file.Size());
    }
    if (Clock::now() - saved >= std::chrono::seconds(1)) {
      (void)digest.Save();
      saved = Clock::now();
    }
    pace.Wait(count);
  }
  return digest.Final();
}

void CheckRequest(const Request& request) {
  if (request.resume.find_first_of("/\\:") != std::string::npos || request.resume == "..") {
    throw tool::WrongUse("--resume " + request.resume + ": the id names a file, so it has none of / \\ :");
  }
  const bool isDigest =
      request.expected.size() == 32 && request.expected.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  if (!request.expected.empty() && !isDigest) {
    throw tool::WrongUse("--expect " + request.expected + ": an MD5 is 32 hexadecimal digits");
  }
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

void Run(const Request& request, tool::Context& context) {
  CheckRequest(request);
  const std::string expected = LowerCase(request.expected);
  tool::CatchInterrupt();
  int number = 0;
  const auto answer = [&](const std::string& path) -> Value::Record {
    ++number;
    if (tool::Interrupted()) {
      throw tool::Failure(path, "not begun");
    }
    // Each file has a state of its own: the first under the id itself.
    const std::string id = request.resume.empty() || number == 1 ? request.resume : request.resume + '.' + std::to_string(number);
    const std::string digest = DigestOf(request, id, path);
    if (!expected.empty() && digest != expected) {
      throw tool::Failure(path, "has the MD5 " + digest + ", not " + expected);
    }
    return {{"md5", digest}};
  };
  const auto text = [](const std::string& path, const Value::Record& record) {
    return record.front().value.Plain() + "  " + path + '\n';
  };
  context.AnswerEach("file", request.files, answer, text);
}

}  // namespace

void tool::AddMd5(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "md5", "MD5 digests of files, also over an interruption",
                                 "  qxvtool md5 *.mxf\n"
                                 "  qxvtool md5 clip.mxf --resume clip        Ctrl-C; the same command goes on where it was\n"
                                 "  qxvtool md5 clip.mxf --expect 900150983cd24fb0d6963f7d28e17f72\n"
                                 "  qxvtool md5 clip.mxf --rate 50            leaves the disk to others, too\n"
                                 "The lines are those of md5sum, which checks them with md5sum -c.");
  command->add_option("FILE", request->files, "Files of any size")->required();
  command->add_option("--resume", request->resume, "Keep the state in the file ID.MD5frag until the digest is made")
      ->type_name("ID");
  command->add_option("--folder", request->folder, "The folder of that file")->capture_default_str();
  command->add_option("--expect", request->expected, "The digest that it must be");
  command->add_option("--rate", request->mostMebibytes, "Read no more MiB a second than this")->check(CLI::PositiveNumber);
  AddJson(command, context);
  OnCall(command, request, context, Run);
}

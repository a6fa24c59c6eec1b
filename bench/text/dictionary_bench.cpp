// dictionary_bench.cpp - loading and looking up 50,000 interface texts beside inih with the standard library's hash map, Abseil's
// hash map, and gettext.

#include "bench/support/ratio.h"
#include "qxv/dictionary.h"
#include "support/temp_folder.h"
#include "text/dictionary_set.h"

#include <absl/container/flat_hash_map.h>
#include <ini.h>
#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using support::Text;

constexpr std::size_t kEntries = 50'000;

using Entries = std::vector<std::pair<std::string, std::string>>;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// Texts of 10 to 50 letters, as menus and messages have them, by their number unique.
const Entries& Texts() {
  static const Entries entries = [] {
    static constexpr const char* kWords[] = {"open",    "import",    "clip",    "track", "the selected", "from",
                                             "archive", "cannot be", "written", "audio", "of frame",     "render",
                                             "again",   "range",     "to disk", "?"};
    std::mt19937 random(5);
    Entries made;
    for (std::size_t i = 0; i < kEntries; ++i) {
      std::string key = std::to_string(i);
      std::string value = std::to_string(i);
      for (auto words = 1 + random() % 5; words != 0; --words) {
        key += std::string(" ") + kWords[random() % 16];
        value += std::string(" ") + kWords[random() % 16];
      }
      made.emplace_back(std::move(key), std::move(value));
    }
    std::shuffle(made.begin(), made.end(), random);
    return made;
  }();
  return entries;
}

std::u16string Wide(const std::string& text) { return {text.begin(), text.end()}; }

// A catalogue of gettext: two tables of lengths and places, sorted by the text, and a hash table.
std::string Catalogue() {
  Entries sorted = Texts();
  sorted.emplace_back("", "Content-Type: text/plain; charset=UTF-8\n");
  std::sort(sorted.begin(), sorted.end());
  const auto count = static_cast<std::uint32_t>(sorted.size());
  const auto isPrime = [](std::uint32_t number) {
    for (std::uint32_t divisor = 3; divisor * divisor <= number; divisor += 2) {
      if (number % divisor == 0) {
        return false;
      }
    }
    return true;
  };
  std::uint32_t hashSize = (count * 4 / 3) | 1;
  while (!isPrime(hashSize)) {
    hashSize += 2;
  }
  constexpr std::uint32_t kHeader = 7;
  std::vector<std::uint32_t> words(kHeader + 4 * std::size_t{count} + hashSize);
  const std::uint32_t header[kHeader] = {
      0x950412DE, 0, count, kHeader * 4, kHeader * 4 + count * 8, hashSize, kHeader * 4 + count * 16};
  std::copy(std::begin(header), std::end(header), words.begin());
  std::string texts;
  const auto place = [&](std::size_t word, const std::string& text) {
    words[word] = static_cast<std::uint32_t>(text.size());
    words[word + 1] = static_cast<std::uint32_t>(words.size() * 4 + texts.size());
    texts += text;
    texts += '\0';
  };
  for (std::uint32_t i = 0; i < count; ++i) {
    place(kHeader + 2 * i, sorted[i].first);
    place(kHeader + 2 * (count + i), sorted[i].second);
    std::uint32_t hash = 0;
    for (const char letter : sorted[i].first) {
      hash = (hash << 4) + static_cast<unsigned char>(letter);
      hash = (hash ^ (hash & 0xF0000000) >> 24) & 0x0FFFFFFF;
    }
    std::uint32_t slot = hash % hashSize;
    while (words[kHeader + 4 * count + slot] != 0) {
      slot = (slot + 1 + hash % (hashSize - 2)) % hashSize;
    }
    words[kHeader + 4 * count + slot] = i + 1;
  }
  return std::string(reinterpret_cast<const char*>(words.data()), words.size() * 4) + texts;
}

/// The same texts as files for us, for inih and for gettext.
struct Files {
  Files() {
    std::string dictionary, ini;
    for (const auto& [key, value] : Texts()) {
      dictionary += "[" + key + "]=" + value + "\r\n";
      ini += key + "=" + value + "\r\n";
    }
    std::filesystem::create_directories(folder.Native() / "ours");
    std::filesystem::create_directories(folder.Native() / "xx/LC_MESSAGES");
    Require(support::WriteBytes(folder.File(QXT("ours\\texts.ini")), dictionary));
    Require(support::WriteBytes(folder.File(QXT("peer.ini")), "[texts]\n" + ini));
    Require(support::WriteBytes(folder.File(QXT("xx\\LC_MESSAGES\\texts.mo")), Catalogue()));
  }

  support::TempFolder folder;
  CQXString ours{folder.File(QXT("ours\\")).c_str()};
  std::string peer = (folder.Native() / "peer.ini").string();
};

const Files& TheFiles() {
  static const Files files;
  return files;
}

using StandardMap = std::unordered_map<std::string, std::string>;

int StoreEntry(void* map, const char* /*section*/, const char* name, const char* value) {
  (*static_cast<StandardMap*>(map))[name] = value;
  return 1;
}

void LoadOurs() {
  Require(QXVLoadDictionarys(TheFiles().ours) == 0);
  QXVReleaseDictionarys();
}

void LoadPeer() {
  StandardMap map;
  Require(::ini_parse(TheFiles().peer.c_str(), StoreEntry, &map) == 0 && map.size() == kEntries);
}

// Ours and the peers' look-ups of the same texts, in an order of their own.

template <typename Key, typename Make>
std::shared_ptr<const std::vector<Key>> Questions(std::size_t count, Make make) {
  std::vector<std::size_t> order(kEntries);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::shuffle(order.begin(), order.end(), std::mt19937(6));
  auto questions = std::make_shared<std::vector<Key>>();
  questions->reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    questions->push_back(make(Texts()[order[i]].first));
  }
  return questions;
}

/// What applications call: the answer is a text of its own.
bench::Turn TranslateOurs(std::size_t count) {
  return [count, questions = std::shared_ptr<const std::vector<CQXString>>()]() mutable {
    if (questions == nullptr) {
      questions = Questions<CQXString>(count, [](const std::string& text) { return CQXString(Wide(text).c_str()); });
      Require(QXVLoadDictionarys(TheFiles().ours) == 0);
    }
    for (const CQXString& question : *questions) {
      benchmark::DoNotOptimize(QXVTranslate(question, 0));
    }
  };
}

/// The look-up alone: where the answer stands.
bench::Turn FindOurs(std::size_t count) {
  static CQXVDictionaryRoot root;
  return [count, questions = std::shared_ptr<const std::vector<std::u16string>>()]() mutable {
    if (questions == nullptr) {
      questions = Questions<std::u16string>(count, Wide);
      Require(!root.Dictionaries().empty() || root.Load(TheFiles().ours) == 0);
    }
    for (const std::u16string& question : *questions) {
      benchmark::DoNotOptimize(root.Translate(question, 0));
    }
  };
}

bench::Turn AskAbseil(std::size_t count, bool copied) {
  static const auto map = [] {
    absl::flat_hash_map<std::u16string, std::u16string> made;
    for (const auto& [key, value] : Texts()) {
      made[Wide(key)] = Wide(value);
    }
    return made;
  }();
  return [count, copied, questions = std::shared_ptr<const std::vector<std::u16string>>()]() mutable {
    if (questions == nullptr) {
      questions = Questions<std::u16string>(count, Wide);
    }
    for (const std::u16string& question : *questions) {
      const std::u16string& found = map.find(question)->second;
      if (copied) {
        std::u16string answer = found;
        benchmark::DoNotOptimize(answer);
      } else {
        benchmark::DoNotOptimize(std::u16string_view(found));
      }
    }
  };
}

void BindCatalogue() {
  ::setenv("LANGUAGE", "xx", 1 /*overwrite*/);
  Require(std::setlocale(LC_ALL, "C.UTF-8") != nullptr &&
          ::bindtextdomain("texts", TheFiles().folder.Native().c_str()) != nullptr &&
          ::dgettext("texts", Texts()[0].first.c_str()) == Texts()[0].second);
}

bench::Turn AskGettext(std::size_t count) {
  return [count, questions = std::shared_ptr<const std::vector<std::string>>()]() mutable {
    if (questions == nullptr) {
      questions = Questions<std::string>(count, [](const std::string& text) { return text; });
      BindCatalogue();
    }
    for (const std::string& question : *questions) {
      benchmark::DoNotOptimize(::dgettext("texts", question.c_str()));
    }
  };
}

bench::Job FindJob(const char* size, std::size_t count) {
  bench::Job job{"dictionary/look-up", size, FindOurs(count), {}};
  job.peers.push_back({"absl flat_hash_map", AskAbseil(count, false), 0.9});
  job.peers.push_back({"gettext", AskGettext(count), 4});
  return job;
}

bench::Job TranslateJob(const char* size, std::size_t count) {
  bench::Job job{"dictionary/translate", size, TranslateOurs(count), {}};
  job.peers.push_back({"absl, answer copied", AskAbseil(count, true)});
  job.peers.push_back({"gettext", AskGettext(count)});
  return job;
}

const bench::Register kRegistered([] {
  bench::Job load{"dictionary/load", "50,000", LoadOurs, {}, {}, bench::Clock::Wall};
  load.peers.push_back({"inih, unordered_map", LoadPeer, 1});
  return std::vector<bench::Job>{load, FindJob("500 of 50,000", 500), FindJob("all of 50,000", kEntries),
                                 TranslateJob("500 of 50,000", 500), TranslateJob("all of 50,000", kEntries)};
});

}  // namespace

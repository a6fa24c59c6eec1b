// conversion_bench.cpp - strict parsing beside strtod, compact printing beside snprintf, split and join beside the standard
// string. A turn converts every value of its list, so that no branch predictor learns one text by heart.

#include "bench/support/ratio.h"
#include "qxv/conversion.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kValues = 1000;

struct Numbers {
  std::vector<double> values;
  std::vector<std::string> narrow;
  std::vector<CQXString> wide;
};

// Numbers of so many digits before and behind the point, as settings and time codes hold them.
std::shared_ptr<const Numbers> MakeNumbers(int whole, int decimals) {
  auto numbers = std::make_shared<Numbers>();
  std::mt19937_64 random(1);
  for (std::size_t i = 0; i < kValues; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    for (int digit = 0; digit < whole; ++digit) {
      text += static_cast<char>('0' + random() % 10);
    }
    text += decimals > 0 ? "." : "";
    for (int digit = 0; digit < decimals; ++digit) {
      text += static_cast<char>('0' + random() % 10);
    }
    numbers->values.push_back(std::strtod(text.c_str(), nullptr));
    numbers->wide.emplace_back(std::basic_string<QXChar>(text.begin(), text.end()).c_str());
    numbers->narrow.push_back(text);
  }
  return numbers;
}

bench::Job ParseJob(const char* size, int whole, int decimals) {
  const auto numbers = MakeNumbers(whole, decimals);
  const auto ours = [numbers] {
    for (const CQXString& text : numbers->wide) {
      double value = 0;
      benchmark::DoNotOptimize(QXVString2Double(text, value));
      benchmark::DoNotOptimize(value);
    }
  };
  const auto strtod = [numbers] {
    for (const std::string& text : numbers->narrow) {
      benchmark::DoNotOptimize(std::strtod(text.c_str(), nullptr));
    }
  };
  const auto fromChars = [numbers] {
    for (const std::string& text : numbers->narrow) {
      double value = 0;
      (void)std::from_chars(text.data(), text.data() + text.size(), value);
      benchmark::DoNotOptimize(value);
    }
  };
  return {"conversion/parse", size, ours, {{"strtod", strtod, 1.5}, {"std::from_chars", fromChars}}};
}

bench::Job PrintJob(const char* size, int whole, int decimals) {
  const auto numbers = MakeNumbers(whole, decimals);
  const auto ours = [numbers, text = CQXString()]() mutable {
    for (const double value : numbers->values) {
      QXVDouble2String(value, text);
      benchmark::DoNotOptimize(static_cast<const QXChar*>(text));
    }
  };
  const auto print = [numbers] {
    char text[400];
    for (const double value : numbers->values) {
      benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%f", value));
    }
  };
  return {"conversion/print", size, ours, {{"snprintf %f", print, 3.0}}};
}

bench::Job IntJob() {
  const auto numbers = MakeNumbers(9, 0);
  const auto ours = [numbers] {
    for (const CQXString& text : numbers->wide) {
      int value = 0;
      benchmark::DoNotOptimize(QXVString2Int(text, value));
      benchmark::DoNotOptimize(value);
    }
  };
  const auto strtol = [numbers] {
    for (const std::string& text : numbers->narrow) {
      benchmark::DoNotOptimize(std::strtol(text.c_str(), nullptr, 10));
    }
  };
  return {"conversion/parse int", "9 digits", ours, {{"strtol", strtol}}};
}

constexpr std::size_t kFields = 20'000;

bench::Job SplitJob() {
  std::basic_string<QXChar> source;
  for (std::size_t i = 0; i < kFields; ++i) {
    source += QXT("a field of text,");
  }
  const auto ours = [source] {
    CQXArray<CQXString, CQXString&> parts;
    benchmark::DoNotOptimize(QXVStrtoStrArr(QXT(","), source.c_str(), parts));
  };
  // The floor: the same parts as strings of ours, one by one, without any search.
  const auto strings = [] {
    CQXArray<CQXString, CQXString&> parts;
    parts.SetSize(static_cast<QXInt64>(kFields) + 1);
    for (std::size_t i = 0; i < kFields; ++i) {
      parts.GetData()[i] = QXT("a field of text");
    }
    benchmark::DoNotOptimize(parts.GetData());
  };
  return {"conversion/split", "20000 fields", ours, {{"making the strings", strings}}};
}

bench::Job JoinJob() {
  const auto parts = std::make_shared<CQXArray<CQXString, CQXString&>>();
  parts->SetSize(static_cast<QXInt64>(kFields));
  const auto texts = std::make_shared<std::vector<std::basic_string<QXChar>>>(kFields, QXT("a field of text"));
  for (std::size_t i = 0; i < kFields; ++i) {
    parts->GetData()[i] = QXT("a field of text");
  }
  const auto ours = [parts] { benchmark::DoNotOptimize(QXVStrArrtoStr(QXT(","), *parts)); };
  const auto append = [texts] {
    std::basic_string<QXChar> joined;
    for (const auto& text : *texts) {
      joined += text;
      joined += QXT(",");
    }
    benchmark::DoNotOptimize(joined.data());
  };
  return {"conversion/join", "20000 fields", ours, {{"std::u16string append", append}}};
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{ParseJob("3+2 digits", 3, 2),
                                 ParseJob("5+6 digits", 5, 6),
                                 ParseJob("1+15 digits", 1, 15),
                                 IntJob(),
                                 PrintJob("3+2 digits", 3, 2),
                                 PrintJob("5+6 digits", 5, 6),
                                 PrintJob("1+15 digits", 1, 15),
                                 PrintJob("15+2 digits", 15, 2),
                                 SplitJob(),
                                 JoinJob()};
});

}  // namespace

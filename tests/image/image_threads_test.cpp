// image_threads_test.cpp - readers and writers of several threads at the same time. Each test has a process of its own, so the
// threads also meet in the first use of every library behind the codecs.

#include "image/image_files.h"

#include <gtest/gtest.h>

#include <barrier>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace image_test;

constexpr std::size_t kThreads = 4;
constexpr int kTurns = 6;

// Whether FreeImage is there or not: then the answers to its types are refusals, alike in all threads.
std::vector<support::Text> Pictures(const ImageFolder& folder) {
  const struct {
    const QXChar* name;
    const char* sample;
  } files[] = {
      {QXT("a.png"), "image/24-bit.png"},
      {QXT("b.png"), "image/palette-transparent.png"},
      {QXT("a.tif"), "image/lzw-predictor.tif"},
      {QXT("b.tif"), "image/metadata.tif"},
      {QXT("a.gif"), "image/local-palettes.gif"},
      {QXT("a.jpg"), "jpg/37x21.jpg"},
      {QXT("a.bmp"), "bmp/8-bit.bmp"},
      {QXT("a.tga"), "tga/32-bit-run-length.tga"},
      {QXT("a.pcx"), "pcx/24-bit.pcx"},
      {QXT("a.yuv"), "yuv/10x4.yuv"},
      {QXT("c.tif"), "image/jpeg.tif"},
  };
  std::vector<support::Text> names;
  for (const auto& file : files) {
    names.push_back(folder.Put(file.name, SampleFile(file.sample)));
  }
  return names;
}

// All that a reader tells of a file.
std::string Account(const support::Text& name) {
  const auto reader = ReaderOf(name);
  std::string account;
  const auto add = [&account](const Given& given) { account += std::to_string(given.status) + ' ' + given.bytes + '\n'; };
  const Info info = InfoEx(*reader);
  account += std::to_string(info.record.nWidth) + ' ' + std::to_string(info.record.nFrames) + '\n';
  for (const int frame : {0, 1, 2, 1}) {
    add(ReadRaw(*reader, frame));
    add(ReadAs(*reader, {8, 23, 11, 3}, static_cast<unsigned>(frame)));
    add(ReadAs(*reader, {1, 10, 4, 0}, static_cast<unsigned>(frame)));
  }
  return account;
}

template <class Work>
void RunAtOnce(Work work) {
  std::barrier start(static_cast<std::ptrdiff_t>(kThreads));
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&start, &work, thread] {
      start.arrive_and_wait();
      work(thread);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(ImageThreads, ReadersOfTheSameFiles) {
  const ImageFolder folder;
  const auto names = Pictures(folder);
  std::vector<std::vector<std::string>> accounts(kThreads);
  RunAtOnce([&](std::size_t thread) {
    for (int turn = 0; turn < kTurns; ++turn) {
      for (std::size_t i = 0; i < names.size(); ++i) {
        accounts[thread].push_back(Account(names[(i + thread) % names.size()]));  // each begins with another type
      }
    }
  });
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    for (std::size_t i = 0; i < accounts[thread].size(); ++i) {
      const auto& name = names[(i + thread) % names.size()];
      EXPECT_EQ(accounts[thread][i], Account(name)) << support::Printable(name) << " in thread " << thread;
    }
  }
}

TEST(ImageThreads, WritersOfFilesOfTheirOwn) {
  const ImageFolder folder;
  constexpr const QXChar* kExtensions[] = {QXT(".tga"), QXT(".bmp"), QXT(".pcx"), QXT(".yuv"), QXT(".jpg"), QXT(".gif")};
  const auto nameOf = [](std::size_t thread, const QXChar* extension) {
    return support::Text(1, static_cast<QXChar>(QXT('a') + thread)) + extension;
  };
  const QXVImageInfo target{0, 1, 4, 21, 13, 0, 0};
  const QXVPixelLayout input{8, 11, 7, 1};
  const std::string pixels = MixedPixels((11 * 3 + 1) * 7, 5);
  RunAtOnce([&](std::size_t thread) {
    for (int turn = 0; turn < kTurns; ++turn) {
      for (const QXChar* extension : kExtensions) {
        const auto writer = NewWriter();
        EXPECT_EQ(writer->Create(folder.Name(nameOf(thread, extension)).c_str(), &target), 0);
        EXPECT_EQ(writer->SetInputLayout(&input), 0);
        EXPECT_EQ(writer->WriteFrame(0, reinterpret_cast<const unsigned char*>(pixels.data())), 0);
      }
    }
  });
  for (const QXChar* extension : kExtensions) {
    const std::string first = folder.Get(nameOf(0, extension));
    EXPECT_GT(first.size(), 30u) << support::Printable(extension);
    for (std::size_t thread = 1; thread < kThreads; ++thread) {
      EXPECT_EQ(folder.Get(nameOf(thread, extension)), first) << support::Printable(extension) << " of thread " << thread;
    }
  }
}

}  // namespace

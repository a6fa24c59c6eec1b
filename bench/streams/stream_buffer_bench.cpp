// stream_buffer_bench.cpp - CQXVStreamBufIn beside vectors that grow by their own rules. The ratio asked for is that to both
// usual ways of packing values into a vector of bytes, insert and resize with a copy; a vector of ints, which packs nothing,
// stands beside. The sizes up to 64 MiB show whether time stays in proportion to the number of values.

#include "bench/support/ratio.h"
#include "qxv/stream_buffer.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

void PutInts(int count) {
  CQXVStreamBufIn in;
  for (int i = 0; i < count; ++i) {
    in << i;
  }
  int size = 0;
  benchmark::DoNotOptimize(in.GetBuffer(size));
}

void InsertBytes(int count) {
  std::vector<unsigned char> bytes;
  for (int i = 0; i < count; ++i) {
    unsigned char image[sizeof i];
    std::memcpy(image, &i, sizeof i);
    bytes.insert(bytes.end(), image, image + sizeof image);
  }
  benchmark::DoNotOptimize(bytes.data());
}

void ResizeAndCopy(int count) {
  std::vector<unsigned char> bytes;
  for (int i = 0; i < count; ++i) {
    const std::size_t place = bytes.size();
    bytes.resize(place + sizeof i);
    std::memcpy(bytes.data() + place, &i, sizeof i);
  }
  benchmark::DoNotOptimize(bytes.data());
}

void PushInts(int count) {
  std::vector<int> ints;
  for (int i = 0; i < count; ++i) {
    ints.push_back(i);
  }
  benchmark::DoNotOptimize(ints.data());
}

bench::Job PutJob(const char* size, int count, double must) {
  bench::Job job{"streams/put ints", size, [count] { PutInts(count); }, {}};
  job.peers.push_back({"vector<byte>::insert", [count] { InsertBytes(count); }, must});
  job.peers.push_back({"vector<byte> resize, memcpy", [count] { ResizeAndCopy(count); }, must});
  job.peers.push_back({"vector<int>::push_back", [count] { PushInts(count); }});
  return job;
}

bench::Job TakeJob() {
  const auto block = std::make_shared<std::vector<int>>(1000000, 7);
  bench::Job job{"streams/take ints",
                 "1 M",
                 [block] {
                   CQXVStreamBufOut out(reinterpret_cast<const unsigned char*>(block->data()), 4000000);
                   int sum = 0;
                   for (int i = 0; i < 1000000; ++i) {
                     int value = 0;
                     out >> value;
                     sum ^= value;
                   }
                   benchmark::DoNotOptimize(sum);
                 },
                 {}};
  job.peers.push_back({"memcpy each", [block] {
                         const auto* place = reinterpret_cast<const unsigned char*>(block->data());
                         int sum = 0;
                         for (int i = 0; i < 1000000; ++i) {
                           int value = 0;
                           std::memcpy(&value, place + 4 * i, sizeof value);
                           benchmark::DoNotOptimize(value);
                           sum ^= value;
                         }
                         benchmark::DoNotOptimize(sum);
                       }});
  return job;
}

bench::Job TextJob() {
  const auto text = std::make_shared<CQXString>(std::basic_string<QXChar>(1000, QXT('a')).c_str());
  bench::Job job{"streams/put texts",
                 "1,000 x 1,000",
                 [text] {
                   CQXVStreamBufIn in;
                   for (int i = 0; i < 1000; ++i) {
                     in << *text;
                   }
                   int size = 0;
                   benchmark::DoNotOptimize(in.GetBuffer(size));
                 },
                 {}};
  job.peers.push_back({"vector<byte>::insert", [text] {
                         std::vector<unsigned char> bytes;
                         for (int i = 0; i < 1000; ++i) {
                           const int length = text->GetLength();
                           const auto* count = reinterpret_cast<const unsigned char*>(&length);
                           bytes.insert(bytes.end(), count, count + sizeof length);
                           const auto* units = reinterpret_cast<const unsigned char*>(static_cast<const QXChar*>(*text));
                           bytes.insert(bytes.end(), units, units + static_cast<std::size_t>(length) * sizeof(QXChar));
                         }
                         benchmark::DoNotOptimize(bytes.data());
                       }});
  return job;
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{PutJob("1 k", 1000, 0),
                                 PutJob("1 M", 1000000, 1.5),
                                 PutJob("4 M (16 MiB)", 4 << 20, 1.5),
                                 PutJob("16 M (64 MiB)", 16 << 20, 1.5),
                                 TakeJob(),
                                 TextJob()};
});

}  // namespace

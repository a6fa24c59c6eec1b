// streams.cpp - values in blocks, and the queue of samples.

#include "parity/trial.h"

#include "qxv/float_buffer.h"
#include "qxv/stream_buffer.h"

#include <type_traits>
#include <vector>

namespace parity {

namespace {

struct OpenBlock : CQXVStreamBufIn {
  using CQXVStreamBufIn::Grow;
};
struct OpenQueue : CQXVFloatBuffer {
  using CQXVFloatBuffer::Grow;
};

SYSTEMTIME Moment(Trial& t) {
  return {static_cast<WORD>(t.Between(1900, 2100)),
          static_cast<WORD>(t.Between(0, 13)),
          0,
          static_cast<WORD>(t.Between(0, 32)),
          static_cast<WORD>(t.Between(0, 24)),
          static_cast<WORD>(t.Between(0, 60)),
          static_cast<WORD>(t.Between(0, 60)),
          0};
}

void PutNumbers(Trial& t, CQXVStreamBufIn& in) {
  in << static_cast<char>(t.Whole()) << static_cast<unsigned char>(t.Whole()) << static_cast<short>(t.Whole())
     << static_cast<unsigned short>(t.Whole()) << static_cast<QXChar>(t.Whole()) << t.Whole() << static_cast<unsigned>(t.Whole())
     << long{t.Whole()} << static_cast<unsigned long>(t.Whole()) << t.Long() << static_cast<QXUInt64>(t.Long()) << t.Float()
     << t.Double();
}

template <class Value>
void TakeOne(Trial& t, CQXVStreamBufOut& out) {
  Value value{};
  out.look(value);
  out >> value;
  t << value;
}

void TakeNumbers(Trial& t, CQXVStreamBufOut& out) {
  TakeOne<char>(t, out);
  TakeOne<unsigned char>(t, out);
  TakeOne<short>(t, out);
  TakeOne<unsigned short>(t, out);
  TakeOne<QXChar>(t, out);
  TakeOne<int>(t, out);
  TakeOne<unsigned>(t, out);
  TakeOne<long>(t, out);
  TakeOne<unsigned long>(t, out);
  TakeOne<QXInt64>(t, out);
  TakeOne<QXUInt64>(t, out);
  TakeOne<float>(t, out);
  TakeOne<double>(t, out);
}

void Blocks(Trial& t) {
  t.Next();
  OpenBlock in;
  PutNumbers(t, in);
  const FILETIME file{static_cast<DWORD>(t.Bits()), static_cast<DWORD>(t.Bits())};
  const GUID id{static_cast<DWORD>(t.Bits()), 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
  const SYSTEMTIME moment = Moment(t);
  in << file << id << moment << COleDateTime(moment) << CQXString(t.Word(30).c_str()) << CString(t.Word(30).c_str());
  const std::string bytes = t.Bytes(t.Below(20) == 0 ? 4000 : 30);
  in.in(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
  in.Set(t.Between(-1, 20), 77);
  in.Grow();
  in.Grow(t.Between(-1, 50));
  int size = 0;
  const unsigned char* block = in.GetBuffer(size);
  t.Raw(block, static_cast<std::size_t>(size)) << in.GetPos();

  const CQXVStreamBufOut whole(block, size);
  CQXVStreamBufOut out(whole);
  out = whole;
  TakeNumbers(t, out);
  FILETIME fileBack{};
  GUID idBack{};
  SYSTEMTIME momentBack{};
  COleDateTime date;
  CQXString text;
  CString other;
  out >> fileBack >> idBack >> momentBack;
  out.look(date);
  out >> date;
  out.look(text);
  out >> text;
  out.look(other);
  out >> other;
  t << fileBack.dwHighDateTime << idBack.Data1 << momentBack.wYear << date.m_dt << date.GetStatus() << text << other;
  std::vector<unsigned char> room(bytes.size() + 1);
  int count = 0;
  out.out(nullptr, count);
  out.out(room.data(), count);
  t.Raw(room.data(), static_cast<std::size_t>(count)) << out.GetPos();
}

void Queue(Trial& t) {
  OpenQueue queue;
  for (int i = 0; i < 200; ++i) {
    t.Next();
    std::vector<float> values(static_cast<std::size_t>(t.Below(900)));
    for (float& value : values) {
      value = static_cast<float>(t.Between(-99, 99));
    }
    queue.PutData(values.data(), static_cast<int>(values.size()));
    std::vector<float> taken(900, 7.0F);
    t << queue.GetData(taken.data(), t.Below(900)) << queue.GetDataLen();
    for (const float value : taken) {
      t << value;
    }
    if (t.Below(50) == 0) {
      queue.RemoveAll();
    }
  }
  queue.Grow(10);
  t << queue.GetDataLen();
}

// Copies share what they were made of, and only one of the two may be destroyed: the other ones stay.
void SharingCopies(Trial& t) {
  t.Next();
  alignas(CQXVStreamBufIn) static unsigned char block[sizeof(CQXVStreamBufIn)];
  alignas(CQXVFloatBuffer) static unsigned char queue[2 * sizeof(CQXVFloatBuffer)];
  OpenBlock in;
  in << 5;
  t << (new (block) CQXVStreamBufIn(in))->GetPos();
  OpenQueue values;
  const float one = 1;
  values.PutData(&one, 1);
  auto* copy = new (queue) CQXVFloatBuffer(values);
  *copy = values;
  t << copy->GetDataLen();
}

}  // namespace

void RunStreams(Trial& t) {
  for (int i = 0; i < 3000; ++i) {
    Blocks(t);
  }
  Queue(t);
  SharingCopies(t);
}

}  // namespace parity

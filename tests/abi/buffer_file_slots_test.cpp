// buffer_file_slots_test.cpp - the virtual slots of CQXVBufferFileRW: frozen, the same on both systems.
// Applications call through the slots, so an overload that moved would be called for another one.

#include "qxv/buffer_file.h"

#include "abi/slots.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

using abi_test::EntryOf;
using File = CQXVBufferFileRW;

// Slots 0 and 1 are the two forms of the destructor.
const struct {
  int slot;
  const char* operation;
  int found;
} kSlots[] = {
    {2, "Reset", EntryOf(&File::Reset)},
    {3, "Open by name", EntryOf<int (File::*)(const QXChar*, int, unsigned int)>(&File::Open)},
    {4, "Open a stream", EntryOf<int (File::*)(std::FILE*, int, unsigned int)>(&File::Open)},
    {5, "Open a handle", EntryOf<int (File::*)(HANDLE, int, unsigned int)>(&File::Open)},
    {6, "Open a host file", EntryOf<int (File::*)(CFile*, int, unsigned int)>(&File::Open)},
    {7, "Close", EntryOf(&File::Close)},
    {8, "Seek", EntryOf(&File::Seek)},
    {9, "Read CArray<SYSTEMTIME>", EntryOf<unsigned int (File::*)(CArray<SYSTEMTIME>&)>(&File::Read)},
    {10, "Read SYSTEMTIME", EntryOf<unsigned int (File::*)(SYSTEMTIME&)>(&File::Read)},
    {11, "Read array of CQXString", EntryOf<unsigned int (File::*)(CQXArray<CQXString, CQXString&>&)>(&File::Read)},
    {12, "Read array of CRect", EntryOf<unsigned int (File::*)(CQXArray<CRect, CRect&>&)>(&File::Read)},
    {13, "Read array of FILETIME", EntryOf<unsigned int (File::*)(CQXArray<FILETIME, FILETIME&>&)>(&File::Read)},
    {14, "Read array of CPoint", EntryOf<unsigned int (File::*)(CQXArray<CPoint, CPoint&>&)>(&File::Read)},
    {15, "Read array of GUID", EntryOf<unsigned int (File::*)(CQXArray<GUID, GUID&>&)>(&File::Read)},
    {16, "Read array of QXChar", EntryOf<unsigned int (File::*)(CQXArray<QXChar, QXChar&>&)>(&File::Read)},
    {17, "Read array of double", EntryOf<unsigned int (File::*)(CQXArray<double, double&>&)>(&File::Read)},
    {18, "Read array of float", EntryOf<unsigned int (File::*)(CQXArray<float, float&>&)>(&File::Read)},
    {19, "Read array of QXInt64", EntryOf<unsigned int (File::*)(CQXArray<QXInt64, QXInt64&>&)>(&File::Read)},
    {20, "Read array of QXUInt64", EntryOf<unsigned int (File::*)(CQXArray<QXUInt64, QXUInt64&>&)>(&File::Read)},
    {21, "Read array of int", EntryOf<unsigned int (File::*)(CQXArray<int, int&>&)>(&File::Read)},
    {22, "Read array of unsigned int", EntryOf<unsigned int (File::*)(CQXArray<unsigned int, unsigned int&>&)>(&File::Read)},
    {23, "Read array of short", EntryOf<unsigned int (File::*)(CQXArray<short, short&>&)>(&File::Read)},
    {24, "Read array of unsigned short",
     EntryOf<unsigned int (File::*)(CQXArray<unsigned short, unsigned short&>&)>(&File::Read)},
    {25, "Read array of char", EntryOf<unsigned int (File::*)(CQXArray<char, char&>&)>(&File::Read)},
    {26, "Read array of unsigned char", EntryOf<unsigned int (File::*)(CQXArray<unsigned char, unsigned char&>&)>(&File::Read)},
    {27, "Read raw bytes", EntryOf<unsigned int (File::*)(unsigned char*, unsigned int)>(&File::Read)},
    {28, "Read CQXString", EntryOf<unsigned int (File::*)(CQXString&)>(&File::Read)},
    {29, "Read CRect", EntryOf<unsigned int (File::*)(CRect&)>(&File::Read)},
    {30, "Read FILETIME", EntryOf<unsigned int (File::*)(FILETIME&)>(&File::Read)},
    {31, "Read CPoint", EntryOf<unsigned int (File::*)(CPoint&)>(&File::Read)},
    {32, "Read GUID", EntryOf<unsigned int (File::*)(GUID&)>(&File::Read)},
    {33, "Read QXChar", EntryOf<unsigned int (File::*)(QXChar&)>(&File::Read)},
    {34, "Read double", EntryOf<unsigned int (File::*)(double&)>(&File::Read)},
    {35, "Read float", EntryOf<unsigned int (File::*)(float&)>(&File::Read)},
    {36, "Read QXInt64", EntryOf<unsigned int (File::*)(QXInt64&)>(&File::Read)},
    {37, "Read QXUInt64", EntryOf<unsigned int (File::*)(QXUInt64&)>(&File::Read)},
    {38, "Read long", EntryOf<unsigned int (File::*)(long&)>(&File::Read)},
    {39, "Read unsigned long", EntryOf<unsigned int (File::*)(unsigned long&)>(&File::Read)},
    {40, "Read int", EntryOf<unsigned int (File::*)(int&)>(&File::Read)},
    {41, "Read unsigned int", EntryOf<unsigned int (File::*)(unsigned int&)>(&File::Read)},
    {42, "Read short", EntryOf<unsigned int (File::*)(short&)>(&File::Read)},
    {43, "Read unsigned short", EntryOf<unsigned int (File::*)(unsigned short&)>(&File::Read)},
    {44, "Read char", EntryOf<unsigned int (File::*)(char&)>(&File::Read)},
    {45, "Read unsigned char", EntryOf<unsigned int (File::*)(unsigned char&)>(&File::Read)},
    {46, "Write CArray<SYSTEMTIME>", EntryOf<unsigned int (File::*)(const CArray<SYSTEMTIME>&)>(&File::Write)},
    {47, "Write SYSTEMTIME", EntryOf<unsigned int (File::*)(const SYSTEMTIME&)>(&File::Write)},
    {48, "Write array of CQXString", EntryOf<unsigned int (File::*)(const CQXArray<CQXString, CQXString&>&)>(&File::Write)},
    {49, "Write array of CRect", EntryOf<unsigned int (File::*)(const CQXArray<CRect, CRect&>&)>(&File::Write)},
    {50, "Write array of FILETIME", EntryOf<unsigned int (File::*)(const CQXArray<FILETIME, FILETIME&>&)>(&File::Write)},
    {51, "Write array of CPoint", EntryOf<unsigned int (File::*)(const CQXArray<CPoint, CPoint&>&)>(&File::Write)},
    {52, "Write array of GUID", EntryOf<unsigned int (File::*)(const CQXArray<GUID, GUID&>&)>(&File::Write)},
    {53, "Write array of QXChar", EntryOf<unsigned int (File::*)(const CQXArray<QXChar, QXChar&>&)>(&File::Write)},
    {54, "Write array of double", EntryOf<unsigned int (File::*)(const CQXArray<double, double&>&)>(&File::Write)},
    {55, "Write array of float", EntryOf<unsigned int (File::*)(const CQXArray<float, float&>&)>(&File::Write)},
    {56, "Write array of QXInt64", EntryOf<unsigned int (File::*)(const CQXArray<QXInt64, QXInt64&>&)>(&File::Write)},
    {57, "Write array of QXUInt64", EntryOf<unsigned int (File::*)(const CQXArray<QXUInt64, QXUInt64&>&)>(&File::Write)},
    {58, "Write array of int", EntryOf<unsigned int (File::*)(const CQXArray<int, int&>&)>(&File::Write)},
    {59, "Write array of unsigned int",
     EntryOf<unsigned int (File::*)(const CQXArray<unsigned int, unsigned int&>&)>(&File::Write)},
    {60, "Write array of short", EntryOf<unsigned int (File::*)(const CQXArray<short, short&>&)>(&File::Write)},
    {61, "Write array of unsigned short",
     EntryOf<unsigned int (File::*)(const CQXArray<unsigned short, unsigned short&>&)>(&File::Write)},
    {62, "Write array of char", EntryOf<unsigned int (File::*)(const CQXArray<char, char&>&)>(&File::Write)},
    {63, "Write array of unsigned char",
     EntryOf<unsigned int (File::*)(const CQXArray<unsigned char, unsigned char&>&)>(&File::Write)},
    {64, "Write raw bytes", EntryOf<unsigned int (File::*)(const unsigned char*, unsigned int)>(&File::Write)},
    {65, "Write CQXString", EntryOf<unsigned int (File::*)(const CQXString&)>(&File::Write)},
    {66, "Write CRect", EntryOf<unsigned int (File::*)(const CRect&)>(&File::Write)},
    {67, "Write FILETIME", EntryOf<unsigned int (File::*)(const FILETIME&)>(&File::Write)},
    {68, "Write CPoint", EntryOf<unsigned int (File::*)(const CPoint&)>(&File::Write)},
    {69, "Write GUID", EntryOf<unsigned int (File::*)(const GUID&)>(&File::Write)},
    {70, "Write QXChar", EntryOf<unsigned int (File::*)(const QXChar&)>(&File::Write)},
    {71, "Write double", EntryOf<unsigned int (File::*)(const double&)>(&File::Write)},
    {72, "Write float", EntryOf<unsigned int (File::*)(const float&)>(&File::Write)},
    {73, "Write QXInt64", EntryOf<unsigned int (File::*)(const QXInt64&)>(&File::Write)},
    {74, "Write QXUInt64", EntryOf<unsigned int (File::*)(const QXUInt64&)>(&File::Write)},
    {75, "Write long", EntryOf<unsigned int (File::*)(const long&)>(&File::Write)},
    {76, "Write unsigned long", EntryOf<unsigned int (File::*)(const unsigned long&)>(&File::Write)},
    {77, "Write int", EntryOf<unsigned int (File::*)(const int&)>(&File::Write)},
    {78, "Write unsigned int", EntryOf<unsigned int (File::*)(const unsigned int&)>(&File::Write)},
    {79, "Write short", EntryOf<unsigned int (File::*)(const short&)>(&File::Write)},
    {80, "Write unsigned short", EntryOf<unsigned int (File::*)(const unsigned short&)>(&File::Write)},
    {81, "Write char", EntryOf<unsigned int (File::*)(const char&)>(&File::Write)},
    {82, "Write unsigned char", EntryOf<unsigned int (File::*)(const unsigned char&)>(&File::Write)},
};

TEST(BufferFileSlots, EveryOperationStandsInItsSlot) {
  for (const auto& row : kSlots) {
    EXPECT_EQ(row.found, row.slot) << row.operation;
  }
  EXPECT_EQ(sizeof kSlots / sizeof *kSlots, 81u);
}

// What an application's compiled call does.
template <class Result, class... Arguments>
Result CallSlot(File* file, std::size_t slot, Arguments... arguments) {
  void* const* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(file), sizeof table);
  return reinterpret_cast<Result (*)(File*, Arguments...)>(table[slot])(file, arguments...);
}

TEST(BufferFileSlots, CallsThroughTheTableReachTheirOperations) {
  const support::TempFolder folder;
  const support::Text name = folder.File(QXT("a.bin"));
  File* file = QXV_ConstructBufferFileRW();
  const int number = 0x44434241;
  const short two = 0x4645;
  const QX_GUID id = {0x31303030, 0x3232, 0x3333, {'4', '4', '4', '4', '5', '5', '5', '5'}};
  EXPECT_EQ(CallSlot<int>(file, 2), 0);
  EXPECT_EQ((CallSlot<int, const QXChar*, int, unsigned int>(file, 3, name.c_str(), 0, 1024)), 1);
  EXPECT_EQ((CallSlot<unsigned int, const int*>(file, 77, &number)), 4u);
  EXPECT_EQ((CallSlot<unsigned int, const short*>(file, 79, &two)), 2u);
  EXPECT_EQ((CallSlot<unsigned int, const QX_GUID*>(file, 69, &id)), 16u);
  EXPECT_EQ((CallSlot<int, QXInt64, unsigned int>(file, 8, 0, 0)), 1);
  EXPECT_EQ((CallSlot<int, QXInt64, unsigned int>(file, 8, 0, 2)), 1);
  EXPECT_EQ(CallSlot<int>(file, 7), 1);
  EXPECT_EQ(support::ReadBytes(name), "ABCDEF0001223344445555");
  EXPECT_EQ((CallSlot<int, const QXChar*, int, unsigned int>(file, 3, name.c_str(), 1, 1024)), 1);
  int readNumber = 0;
  unsigned char last[4] = {};
  EXPECT_EQ((CallSlot<unsigned int, int*>(file, 40, &readNumber)), 4u);
  EXPECT_EQ(readNumber, number);
  EXPECT_EQ((CallSlot<unsigned int, unsigned char*, unsigned int>(file, 27, last, 4)), 4u);
  EXPECT_EQ(std::memcmp(last, "EF00", 4), 0);
  CallSlot<void>(file, 1);  // the destructor that also frees
}

}  // namespace

// layout_test.cpp - sizes, offsets and values of the interface's records: frozen, and the same bytes on both systems.
// One block a header. What can be known to the compiler is asserted there; the tests look at bytes and run-time values.

#include "jpeg_codec/jpeg_codec.h"
#include "netpath/net_path_exchange.h"
#include "qxv/array.h"
#include "qxv/crc.h"
#include "qxv/float_buffer.h"
#include "qxv/guid.h"
#include "qxv/image.h"
#include "qxv/module.h"
#include "qxv/registry.h"
#include "qxv/string.h"
#include "qxv/trace.h"
#include "qxv/types.h"
#include "qxv/vector2.h"
#include "qxv/vector3.h"
#include "qxv/xml.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

namespace {

// The record's bytes as the interface hands them to files and to other modules.
template <typename Record, std::size_t size>
bool SameBytes(const Record& record, const unsigned char (&expected)[size]) {
  static_assert(sizeof(Record) == size && std::is_trivially_copyable_v<Record>);
  return std::memcmp(&record, expected, size) == 0;
}

// ---- types.h: characters and integers

static_assert(sizeof(QXChar) == 2 && std::numeric_limits<QXChar>::digits == 16 && !std::numeric_limits<QXChar>::is_signed);
static_assert(std::is_same_v<decltype(QXT("a")), const QXChar (&)[2]>);
static_assert(sizeof(QXInt64) == 8 && std::is_signed_v<QXInt64> && std::is_same_v<QXInt64, long long>);
static_assert(sizeof(QXUInt64) == 8 && std::is_unsigned_v<QXUInt64> && std::is_same_v<QXUInt64, unsigned long long>);
static_assert(sizeof(BYTE) == 1 && std::is_unsigned_v<BYTE>);
static_assert(sizeof(WORD) == 2 && std::is_unsigned_v<WORD>);
static_assert(sizeof(DWORD) == 4 && std::is_unsigned_v<DWORD>);
static_assert(sizeof(HRESULT) == 4 && std::is_signed_v<HRESULT>);

TEST(TypesLayout, ATextIsUtf16InThisMachinesOrder) {
  const QXChar text[3] = {QXT('A'), QXT('\u4E2D'), 0};
  const unsigned char expected[] = {0x41, 0x00, 0x2D, 0x4E, 0x00, 0x00};
  EXPECT_EQ(std::memcmp(text, expected, sizeof expected), 0);
  EXPECT_EQ(sizeof(QXT("\U0001F3B5")), 6u) << "a character above 0xFFFF is a pair of units, then the closing zero";
}

TEST(TypesLayout, TheHighestCharacterIsPositive) {
  EXPECT_EQ(static_cast<int>(std::numeric_limits<QXChar>::max()), 65535);
  EXPECT_EQ(static_cast<int>(static_cast<QXChar>(-1)), 65535);
}

// ---- types.h: handles and registry roots

static_assert(sizeof(HANDLE) == 8 && std::is_same_v<HANDLE, void*>);
static_assert(sizeof(HKEY) == 8 && std::is_pointer_v<HKEY>);  // NOLINT(bugprone-sizeof-expression): the pointer's own size

TEST(TypesLayout, RegistryRootsAreSignExtended32BitNumbers) {
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(HKEY_CLASSES_ROOT), 0xFFFFFFFF80000000u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(HKEY_CURRENT_USER), 0xFFFFFFFF80000001u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(HKEY_LOCAL_MACHINE), 0xFFFFFFFF80000002u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(HKEY_USERS), 0xFFFFFFFF80000003u);
}

TEST(TypesLayout, TheInvalidHandleHasAllBitsSet) {
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(INVALID_HANDLE_VALUE), 0xFFFFFFFFFFFFFFFFu);
}

// ---- types.h: GUID

static_assert(sizeof(GUID) == 16 && alignof(GUID) == 4);
static_assert(offsetof(GUID, Data1) == 0 && sizeof(GUID::Data1) == 4);
static_assert(offsetof(GUID, Data2) == 4 && sizeof(GUID::Data2) == 2);
static_assert(offsetof(GUID, Data3) == 6 && sizeof(GUID::Data3) == 2);
static_assert(offsetof(GUID, Data4) == 8 && sizeof(GUID::Data4) == 8);

TEST(TypesLayout, AGuidIsThreeNumbersThenEightBytes) {
  const GUID guid = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_TRUE(SameBytes(guid, {0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 1, 2, 3, 4, 5, 6, 7, 8}));
}

// ---- types.h: FILETIME, SYSTEMTIME

static_assert(sizeof(FILETIME) == 8 && alignof(FILETIME) == 4);
static_assert(offsetof(FILETIME, dwLowDateTime) == 0 && offsetof(FILETIME, dwHighDateTime) == 4);

static_assert(sizeof(SYSTEMTIME) == 16 && alignof(SYSTEMTIME) == 2);
static_assert(offsetof(SYSTEMTIME, wYear) == 0 && offsetof(SYSTEMTIME, wMonth) == 2);
static_assert(offsetof(SYSTEMTIME, wDayOfWeek) == 4 && offsetof(SYSTEMTIME, wDay) == 6);
static_assert(offsetof(SYSTEMTIME, wHour) == 8 && offsetof(SYSTEMTIME, wMinute) == 10);
static_assert(offsetof(SYSTEMTIME, wSecond) == 12 && offsetof(SYSTEMTIME, wMilliseconds) == 14);

TEST(TypesLayout, AFileTimeHasItsLowHalfFirst) {
  const FILETIME time = {0x04030201, 0x08070605};
  EXPECT_TRUE(SameBytes(time, {1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(TypesLayout, ASystemTimeIsEightWords) {
  const SYSTEMTIME time = {2024, 2, 4, 29, 23, 59, 58, 999};  // Thursday, 29 February 2024
  EXPECT_TRUE(SameBytes(time, {0xE8, 0x07, 2, 0, 4, 0, 29, 0, 23, 0, 59, 0, 58, 0, 0xE7, 0x03}));
}

// ---- types.h: tWAVEFORMATEX

static_assert(sizeof(tWAVEFORMATEX) == 18 && alignof(tWAVEFORMATEX) == 1 && std::is_same_v<tWAVEFORMATEX, WAVEFORMATEX>);
static_assert(offsetof(tWAVEFORMATEX, wFormatTag) == 0 && offsetof(tWAVEFORMATEX, nChannels) == 2);
static_assert(offsetof(tWAVEFORMATEX, nSamplesPerSec) == 4 && offsetof(tWAVEFORMATEX, nAvgBytesPerSec) == 8);
static_assert(offsetof(tWAVEFORMATEX, nBlockAlign) == 12 && offsetof(tWAVEFORMATEX, wBitsPerSample) == 14);
static_assert(offsetof(tWAVEFORMATEX, cbSize) == 16);

TEST(TypesLayout, AWaveFormatIs18BytesWithoutGaps) {
  const tWAVEFORMATEX format = {1, 2, 44100, 176400, 4, 16, 0};
  EXPECT_TRUE(SameBytes(format, {1, 0, 2, 0, 0x44, 0xAC, 0, 0, 0x10, 0xB1, 0x02, 0, 4, 0, 16, 0, 0, 0}));
}

// ---- string.h: one pointer

static_assert(sizeof(CQXString) == sizeof(void*) && std::is_standard_layout_v<CQXString>);

TEST(StringLayout, TheObjectIsThePointerToItsText) {
  const CQXString text(QXT("abc"));
  const QXChar* pointer = nullptr;
  std::memcpy(&pointer, static_cast<const void*>(&text), sizeof pointer);
  EXPECT_EQ(pointer, static_cast<const QXChar*>(text));
}

// ---- array.h: data pointer, size, allocated count, grow-by

static_assert(sizeof(CQXArray<CQXString, CQXString&>) == 32 && std::is_standard_layout_v<CQXArray<CQXString, CQXString&>>);

TEST(ArrayLayout, DataPointerThenSizeAllocatedCountAndGrowBy) {
  CQXArray<int, int> array;
  array.SetGrowBy(7);
  array.SetSize(3);
  struct {
    const int* data;
    std::int64_t size, allocated, growBy;
  } fields;
  static_assert(sizeof fields == sizeof array);
  std::memcpy(&fields, static_cast<const void*>(&array), sizeof fields);
  EXPECT_EQ(fields.data, array.GetData());
  EXPECT_EQ(fields.size, 3);
  EXPECT_EQ(fields.allocated, 7);
  EXPECT_EQ(fields.growBy, 7);
}

// ---- guid.h: as the system's GUID

static_assert(sizeof(QX_GUID) == 16 && alignof(QX_GUID) == 4);
static_assert(offsetof(QX_GUID, Data1) == 0 && offsetof(QX_GUID, Data2) == 4);
static_assert(offsetof(QX_GUID, Data3) == 6 && offsetof(QX_GUID, Data4) == 8);
static_assert(sizeof(EQXV_CREATEGUIDMETHOD) == 4);

// ---- float_buffer.h: virtual table, ring, read index, count, capacity

static_assert(sizeof(CQXVFloatBuffer) == 32 && std::has_virtual_destructor_v<CQXVFloatBuffer>);

// ---- vector2.h, vector3.h: coordinates in order, behind a virtual table in space

static_assert(sizeof(CQXVVector2) == 16 && !std::is_polymorphic_v<CQXVVector2>);
static_assert(offsetof(CQXVVector2, x) == 0 && offsetof(CQXVVector2, y) == 8);
static_assert(sizeof(CQXVVector3) == 32 && std::has_virtual_destructor_v<CQXVVector3>);
static_assert(EQXV_2DPOSITION_PARALLEL == 1 && EQXV_2DPOSITION_INTERSECTING == 2 && EQXV_2DPOSITION_COINCIDENT == 3);
static_assert(EQXV_3DPOSITION_PARALLEL == 1 && EQXV_3DPOSITION_INTERSECTING == 2 && EQXV_3DPOSITION_SKEW == 3 &&
              EQXV_3DPOSITION_COINCIDENT == 4);

TEST(Vector3Layout, CoordinatesFollowTheVirtualTable) {
  const CQXVVector3 v(1, 2, 3);
  double coordinates[3];
  std::memcpy(coordinates, reinterpret_cast<const unsigned char*>(&v) + sizeof(void*), sizeof coordinates);
  EXPECT_EQ(coordinates[0], 1);
  EXPECT_EQ(coordinates[1], 2);
  EXPECT_EQ(coordinates[2], 3);
}

// ---- image.h: records of 32-bit numbers; codes

static_assert(sizeof(QXVImageInfo) == 28 && alignof(QXVImageInfo) == 4);
static_assert(offsetof(QXVImageInfo, nType) == 0 && offsetof(QXVImageInfo, nFrames) == 4);
static_assert(offsetof(QXVImageInfo, nPixelLayout) == 8 && offsetof(QXVImageInfo, nWidth) == 12);
static_assert(offsetof(QXVImageInfo, nHeight) == 16 && offsetof(QXVImageInfo, nPadding) == 20);
static_assert(offsetof(QXVImageInfo, nFrameTime) == 24);
static_assert(sizeof(QXVPixelLayout) == 16 && alignof(QXVPixelLayout) == 4);
static_assert(offsetof(QXVPixelLayout, nPixelLayout) == 0 && offsetof(QXVPixelLayout, nWidth) == 4);
static_assert(offsetof(QXVPixelLayout, nHeight) == 8 && offsetof(QXVPixelLayout, nPadding) == 12);
static_assert(QXV_LAYOUT_BGRA == 1 && QXV_LAYOUT_BGR == 4 && QXV_LAYOUT_YUV == 8 && QXV_LAYOUT_VUY == 0x02000000 &&
              QXV_LAYOUT_RGB == 0x40000000);
static_assert(QXV_IMAGE_TYPE_OTHER == 0 && QXV_IMAGE_TYPE_TGA == 1 && QXV_IMAGE_TYPE_BMP == 2 && QXV_IMAGE_TYPE_TIF == 3 &&
              QXV_IMAGE_TYPE_GIF == 4 && QXV_IMAGE_TYPE_PCX == 5 && QXV_IMAGE_TYPE_YUV == 6 && QXV_IMAGE_TYPE_JPG == 7 &&
              QXV_IMAGE_TYPE_PNG == 8);
static_assert(QXV_IMAGE_STATUS_OK == 0 && QXV_IMAGE_STATUS_FOREIGN == -1);
static_assert(QXV_IMAGE_STATUS_BAD_ARGUMENT == -1990190575);  // 0x89601A11
static_assert(QXV_IMAGE_STATUS_NOT_FOUND == -1990190574);
static_assert(QXV_IMAGE_STATUS_UNSUPPORTED == -1990190573);
static_assert(QXV_IMAGE_STATUS_CANNOT_CREATE == -1990190572);
static_assert(QXV_IMAGE_STATUS_CANNOT_READ == -1990190571);
static_assert(QXV_IMAGE_STATUS_BAD_DATA == -1990190570);
static_assert(QXV_IMAGE_STATUS_NO_PIXEL_SIZE == -1990190569);
static_assert(QXV_IMAGE_STATUS_NULL_PIXELS == -1990190319);  // 0x89601B11

// ---- module.h: the base of all interfaces; the destructor takes the first two slots of the virtual table in this ABI

static_assert(sizeof(CQXVObject) == sizeof(void*) && std::has_virtual_destructor_v<CQXVObject>);
static_assert(sizeof(CMyCritialSection) == sizeof(void*));

TEST(ObjectLayout, TheDestructorStandsInTheFirstSlots) {
  struct Probe : CQXVObject {
    explicit Probe(int& order) : m_order(order) {}
    ~Probe() override { m_order = 1; }
    int& m_order;
  };
  int destroyed = 0;
  auto* probe = new Probe(destroyed);
  using Deleting = void (*)(void*);
  void** table = *reinterpret_cast<void***>(probe);
  reinterpret_cast<Deleting>(table[1])(probe);  // 0 destroys, 1 destroys and frees
  EXPECT_EQ(destroyed, 1);
}

// ---- registry.h: virtual table, key handle; only the destructor is virtual

static_assert(sizeof(CQXVRegister) == 16 && std::has_virtual_destructor_v<CQXVRegister>);

TEST(RegisterLayout, ANewOneHasNoKeyBehindItsVirtualTable) {
  const CQXVRegister subject;
  struct {
    const void* table;
    HKEY key;
  } fields;
  static_assert(sizeof fields == sizeof subject);
  std::memcpy(&fields, static_cast<const void*>(&subject), sizeof fields);
  EXPECT_EQ(fields.key, nullptr);
}

// ---- the table of network paths: what an exchange holds, in its order behind the virtual table

static_assert(sizeof(qxv::SNetPathItem) == 24 && std::is_standard_layout_v<qxv::SNetPathItem>);
static_assert(offsetof(qxv::SNetPathItem, NamePath) == 0 && offsetof(qxv::SNetPathItem, IPPath) == 8);
static_assert(offsetof(qxv::SNetPathItem, LocalPath) == 16);

TEST(NetPathLayout, FlagItemsHostAndSpecialDrivesFollowTheVirtualTable) {
  const qxv::CQXNetPathExchange exchange;
  const auto offset = [&](const void* member) {
    return static_cast<const char*>(member) - reinterpret_cast<const char*>(&exchange);
  };
  EXPECT_EQ(offset(&exchange.initialised), 8);
  EXPECT_EQ(sizeof exchange.initialised, 4u);
  EXPECT_EQ(offset(&exchange.items), 16);
  EXPECT_EQ(offset(&exchange.hostPrefix), 16 + static_cast<int>(sizeof exchange.items));
  EXPECT_EQ(offset(&exchange.specialDrives), 24 + static_cast<int>(sizeof exchange.items));
}

// ---- trace.h: name, number; the threshold is one signed 32-bit word outside

static_assert(sizeof(CQXVTraceInner) == 16 && !std::is_polymorphic_v<CQXVTraceInner>);
static_assert(std::is_same_v<decltype(CQXVTraceInner::m_nLevel), int> && sizeof(int) == 4);

TEST(TraceLayout, NameThenNumber) {
  const CQXVTraceInner trace(QXT("ab"), -7);
  struct {
    const QXChar* name;
    std::int32_t number;
    std::int32_t padding;
  } fields;
  static_assert(sizeof fields == sizeof trace);
  std::memcpy(&fields, static_cast<const void*>(&trace), sizeof fields);
  EXPECT_EQ(std::basic_string<QXChar>(fields.name), QXT("ab"));
  EXPECT_EQ(fields.number, -7);
}

// ---- xml.h: a table of virtual functions, then the members in their order

static_assert(std::is_same_v<decltype(CQXVXmlNode::m_arrAtt), CQXArray<CQXVXmlAtt*, CQXVXmlAtt*>>);
static_assert(std::is_same_v<decltype(CQXVXmlNode::m_arrNode), CQXArray<CQXVXmlNode*, CQXVXmlNode*>>);
static_assert(sizeof(CQXVXmlAtt) == 8 + 2 * 8 && std::has_virtual_destructor_v<CQXVXmlAtt>);
static_assert(sizeof(CQXVXmlNode) == 8 + 8 + 2 * 32 && std::has_virtual_destructor_v<CQXVXmlNode>);

template <class Object, class Member>
std::ptrdiff_t PlaceOf(const Object& object, const Member& member) {
  return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&object);
}

TEST(XmlLayout, MembersStandBehindTheTable) {
  const CQXVXmlAtt attribute;
  EXPECT_EQ(PlaceOf(attribute, attribute.m_strName), 8);
  EXPECT_EQ(PlaceOf(attribute, attribute.m_strValue), 16);
  const CQXVXmlNode node;
  EXPECT_EQ(PlaceOf(node, node.m_strName), 8);
  EXPECT_EQ(PlaceOf(node, node.m_arrAtt), 16);
  EXPECT_EQ(PlaceOf(node, node.m_arrNode), 48);
}

// ---- jpeg_codec.h: the records that a codec library in its place must know too

static_assert(sizeof(QXVJpegStream) == 24 && offsetof(QXVJpegStream, length) == 0 && sizeof(QXVJpegStream::length) == 4);
static_assert(offsetof(QXVJpegStream, data) == 8);
static_assert(sizeof(QXVJpegImage) == 1048 && offsetof(QXVJpegImage, pixels) == 0);
static_assert(offsetof(QXVJpegImage, format) == 1032 && sizeof(QXVJpegImage::format) == 2);
static_assert(offsetof(QXVJpegImage, width) == 1036 && sizeof(QXVJpegImage::width) == 4);
static_assert(offsetof(QXVJpegImage, height) == 1040 && sizeof(QXVJpegImage::height) == 4);
static_assert(sizeof(QXVJpegParameters) == 16 && offsetof(QXVJpegParameters, quality) == 0);

}  // namespace

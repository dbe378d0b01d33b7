#include "basicInterface/simpleType.h"

#include <iterator>

namespace ied {

namespace {

using D = Data;
using T = TypeSpecification;

constexpr u16 stamp = sizeof(TimeStamp);

// clang-format off
constexpr SimpleType table[] = {
    // stored           place width bits kind              max  capacity answer             size estimate
    {Stored::boolean,        1, 1,  0, D::boolean,         0,    0, T::boolean,         0,        3}, // BOOLEAN
    {Stored::doublePoint,    1, 1,  2, D::bitString,       0,    1, T::bitString,       2,        4}, // Dbpos, Check
    {Stored::bits8,          1, 1,  5, D::bitString,       0,    1, T::bitString,      -5,        4}, // 5-bit string
    {Stored::bits8,          1, 1,  6, D::bitString,       0,    1, T::bitString,      -6,        4}, // TrgOps
    {Stored::bits16,         2, 2, 10, D::bitString,       0,    2, T::bitString,     -10,        5}, // OptFlds
    {Stored::bits16,         2, 2, 13, D::bitString,       0,    2, T::bitString,     -13,        5}, // Quality
    {Stored::signedInt,      1, 1,  0, D::integer,         0,    0, T::integer,         8,        3}, // INT8
    {Stored::signedInt,      2, 2,  0, D::integer,         0,    0, T::integer,        16,        4}, // INT16
    {Stored::signedInt,      4, 4,  0, D::integer,         0,    0, T::integer,        32,        6}, // INT32
    {Stored::unsignedInt,    1, 1,  0, D::unsignedInt,     0,    0, T::unsignedInt,     8,        3}, // INT8U
    {Stored::unsignedInt,    2, 2,  0, D::unsignedInt,     0,    0, T::unsignedInt,    16,        4}, // INT16U
    {Stored::unsignedInt,    4, 4,  0, D::unsignedInt,     0,    0, T::unsignedInt,    32,        6}, // INT32U
    {Stored::float32,        4, 4,  0, D::floatingPoint,   0,    5, T::floatingPoint,   0,        7}, // FLOAT32
    {Stored::octets,         7, 6,  0, D::octetString,     6,    6, T::octetString,     6,        8}, // Octet6
    {Stored::octets,         9, 8,  0, D::octetString,     8,    8, T::octetString,     8,       10}, // Octet8
    {Stored::text,          65, 0,  0, D::octetString,    64,   65, T::octetString,   -64,        2}, // Octet64
    {Stored::text,          33, 0,  0, D::visibleString,  32,   33, T::visibleString, -32,        2}, // VisString32
    {Stored::text,          65, 0,  0, D::visibleString,  64,   65, T::visibleString, -64,        2}, // VisString64
    {Stored::text,          66, 0,  0, D::visibleString,  65,   66, T::visibleString, -65,        2}, // VisString65
    {Stored::text,         256, 0,  0, D::visibleString, 255,  256, T::visibleString,-255,        2}, // VisString255
    {Stored::text,         256, 0,  0, D::mMSString,       0, 1024, T::mMSString,    -255,        2}, // Unicode255
    {Stored::utcTime,    stamp, 0,  0, D::utcTime,         0,    8, T::utcTime,         0,       10}, // Timestamp
    {Stored::entryTime,  stamp, 0,  0, D::binaryTime,      0,    6, T::binaryTime,      1,        8}, // EntryTime, with date
    {Stored::enumeration,    1, 1,  0, D::integer,         0,    0, T::integer,         8,        3}, // Enum
};
constexpr SimpleType noType =
    {Stored::none,           1, 0,  0, D::boolean,         0,    0, T::utcTime,         0,        3};
// clang-format on

static_assert(std::size(table) == TypeEnum - TypeBoolean + 1);

} // namespace

const SimpleType &simpleType(u8 type) {
    return type >= TypeBoolean && type <= TypeEnum ? table[type - TypeBoolean] : noType;
}

} // namespace ied

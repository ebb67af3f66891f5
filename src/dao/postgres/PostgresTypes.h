// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace dao {

// The numbers by which the server names its own types.
enum PostgresType : unsigned {
    UnknownType = 0,
    BoolType = 16,
    ByteaType = 17,
    BigintType = 20,
    SmallintType = 21,
    IntegerType = 23,
    RealType = 700,
    DoubleType = 701,
    NumericType = 1700,
};

} // namespace dao

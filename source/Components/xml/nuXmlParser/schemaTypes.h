#pragma once

#include <cstdint>
#include <string_view>

#include "common/dataTypes.h"
#include "nuXmlParser/chars.h"

/// \file
/// The names of XML Schema's built-in types ("int", "dateTime") and the types of values that they
/// stand for. Names are written exactly as XML Schema Datatypes has them; "stringArray" and
/// "intArray" are additions.
///
/// Deliberate: reading is not the inverse of writing. A double is written as "double", and "double"
/// is read as the currency type, with four decimals; a currency is written as "double" as well.
/// "float" and "decimal" are read as double. "date" and "time" are read as the one date type, which
/// is written as "dateTime".

/// The name of a data type. Throws host::Exception for one without a name.
NUXML_API NuXmlString NuDataTypeToSchemaType(TNuDataType type);

/// The name of the type of a variant's value. Throws host::Exception for an empty variant and null.
NUXML_API NuXmlString NuSchemaType(const host::Variant& value);

/// "short" for every code.
///
/// Deliberate: the code itself is taken for a value, a 16-bit integer, and that is what is named.
/// Use NuDataTypeToSchemaType(NuVarTypeToDataType(type)) for the name of a type code.
NUXML_API NuXmlString NuVariantTypeToSchemaType(host::VarType type);

/// The name of the type of a data set's field, given by its ordinal: 1 string, 2 16-bit integer,
/// 3 integer, 4 word, 5 boolean, 6 float, 7 currency, 8 BCD, 9 date, 10 time, 11 date and time,
/// 14 automatic number, 16 memo, 24 wide string, 25 64-bit integer. Throws host::Exception for
/// every other.
///
/// Deliberate: a 64-bit integer is named "int", so readers have to take "int" for such fields.
NUXML_API NuXmlString NuFieldTypeToSchemaType(std::int32_t fieldType);

/// The variant type code that a name stands for; 0 (empty) for an empty name.
///
/// Letter case does not matter, nor does what stands before the first ":". For a name that is not
/// known the result is 0, or host::Exception is thrown when `raiseOnUnknown` is set.
NUXML_API host::VarType NuSchemaTypeToVariantType(std::u16string_view name, bool raiseOnUnknown);

/// The data type that a name stands for, by way of the variant type code; fails as that does.
NUXML_API TNuDataType NuSchemaTypeToDataType(std::u16string_view name, bool raiseOnUnknown);

#pragma once

#include "host/runtime/dataSet.h"

class TNuDOMElement;

/// \file
/// The records of data sets as elements and back:
/// ```
/// <rows><row><id type="int">7</id><name type="string">Ann</name><born
/// nil="true"></born></row></rows>
/// ```
/// The attributes type and nil have the prefix of XML Schema instances where that namespace is
/// declared, on the element or around it, and types the one of XML Schema; else they have none.
///
/// A data set must leave the tree alone while it is asked and filled.

/// Puts an element "row" into `rows` for every record, behind what is there, and into that an
/// element for each field, named like the field, with the type of the field; without a value it has
/// nil="true". Goes through the data set from its first record to its last.
///
/// Throws host::Exception, before anything is changed, for a field whose name no element can have
/// and for a type that has no name in XML Schema (NuFieldTypeToSchemaType), and whatever the data
/// set throws.
///
/// Deliberate: a field of 64-bit integers has the type "int", as all integer fields of data sets.
NUXML_API void NuSerialize(host::IDataSet& data, TNuDOMElement& rows);

/// Appends a record for every child element "row". Its child elements are the values of the fields
/// of their local names, letter case of ASCII ignored; others are passed over, and fields that do
/// not occur are null. What a text means depends on the field and not on the type attribute; an
/// element with nil="true" is null, and so is an empty one unless the field is text.
///
/// Throws host::EConvertError for a text that is no value of its field, with the field and the
/// number of the record, counted from 1; the records before it stay appended. Throws whatever the
/// data set throws.
NUXML_API void NuDeserialize(TNuDOMElement& rows, host::IDataSet& data);

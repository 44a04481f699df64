#pragma once

/// \file
/// The records of a document of any size, by one worker or many: everything of the unit.

#include "nuXmlRecords/recordColumns.h"
#include "nuXmlRecords/recordGuess.h"
#include "nuXmlRecords/recordIndex.h"
#include "nuXmlRecords/recordReader.h"
#include "nuXmlRecords/recordShare.h"

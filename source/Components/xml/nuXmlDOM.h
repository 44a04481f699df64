#pragma once

/// \file
/// The document tree: everything of the unit.

#include "nuXmlDOM/core/document.h"
#include "nuXmlDOM/core/domErrors.h"
#include "nuXmlDOM/core/domString.h"
#include "nuXmlDOM/core/implementation.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/face/interfaces.h"
#include "nuXmlDOM/load/loadReport.h"
#include "nuXmlDOM/load/loading.h"
#include "nuXmlDOM/load/saxToDomHandler.h"
#include "nuXmlDOM/path/path.h"
#include "nuXmlDOM/write/formatting.h"

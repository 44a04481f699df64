#include "nuXmlParser/valueArgument.h"

#include "common/utf8.h"
#include "host/runtime/numberText.h"
#include "nuXmlParser/dateTimeText.h"

void TNuValue::write(std::int64_t number) { widen(host::NumberText(number).view()); }

void TNuValue::write(std::uint64_t number) { widen(host::NumberText(number).view()); }

void TNuValue::write(double number) { widen(host::NumberText(number).view()); }

void TNuValue::write(float number) { widen(host::NumberText(number).view()); }

void TNuValue::write(bool value) { widen(value ? "true" : "false"); }

void TNuValue::write(host::TDateTime moment) { widen(NuToUtf8(NuDateTimeToXML(moment))); }

// A long list of records: written one by one, and read one by one, so that neither needs more
// memory than a single record.

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "common/utf8.h"
#include "host/runtime/fileStream.h"
#include "nuObj2Xml.h"

class TReading : public host::Published<TReading> {
public:
    std::int64_t Time = 0;
    std::u16string Station;
    std::optional<double> Temperature;

    static constexpr auto published = host::publish<TReading>(
        u"TReading", host::prop<&TReading::Time>(), host::prop<&TReading::Station>(),
        host::prop<&TReading::Temperature>());
};

int main() {
    const auto file = std::filesystem::temp_directory_path() / "nuxml-records-example.xml";
    {
        host::TFileStream stream(file, host::fmCreate);
        nu::ObjectWriter out(stream, u"readings");
        TReading reading;
        for (int hour = 0; hour < 20'000; ++hour) {
            reading.Time = 1'700'000'000 + hour * 3600;
            reading.Station = hour % 2 == 0 ? u"Tromsø" : u"Bergen";
            reading.Temperature = hour % 1000 == 7 ? std::nullopt : std::optional(hour % 30 - 7.5);
            out.Write(reading);
        }
        out.Close();
    }

    double highest = -100;
    std::u16string warmest;
    int missing = 0;
    host::TFileStream stream(file, host::fmOpenRead);
    const std::size_t count = nu::ReadObjects<TReading>(
        stream, u"readings/Reading", [&](std::unique_ptr<TReading> reading) {
            if (!reading->Temperature) {
                ++missing;
            } else if (*reading->Temperature > highest) {
                highest = *reading->Temperature;
                warmest = reading->Station;
            }
        });
    std::cout << NuToUtf8(warmest) << ": " << highest << '\n';
    std::cout << count << " readings, " << missing << " without a temperature\n";

    // It is enough to see the first that matters: false ends the reading.
    stream.SetPosition(0);
    nu::ReadObjects<TReading>(stream, u"Reading", [](std::unique_ptr<TReading> reading) {
        const bool isFound = !reading->Temperature;
        if (isFound) {
            std::cout << "First gap: " << reading->Time << '\n';
        }
        return !isFound;
    });
    std::filesystem::remove(file);
}

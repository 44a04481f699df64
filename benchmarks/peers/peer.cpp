#include "peers/peer.h"

#include <algorithm>

namespace bench {

namespace {

std::vector<Reader>& registeredReaders() {
    static std::vector<Reader> list;
    return list;
}

std::vector<Converter>& registeredConverters() {
    static std::vector<Converter> list;
    return list;
}

template <typename Entry> std::vector<Entry> oursFirst(std::vector<Entry> list) {
    std::sort(list.begin(), list.end(), [](const Entry& left, const Entry& right) {
        const bool leftIsOurs = left.name.starts_with(oursName);
        const bool rightIsOurs = right.name.starts_with(oursName);
        return leftIsOurs != rightIsOurs ? leftIsOurs : left.name < right.name;
    });
    return list;
}

} // namespace

std::vector<Reader> readers() { return oursFirst(registeredReaders()); }
std::vector<Converter> converters() { return oursFirst(registeredConverters()); }

bool addReader(Reader reader) {
    registeredReaders().push_back(std::move(reader));
    return true;
}

bool addConverter(Converter converter) {
    registeredConverters().push_back(std::move(converter));
    return true;
}

} // namespace bench

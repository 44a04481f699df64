#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/tracking.hpp>
#include <boost/serialization/vector.hpp>
#include <sstream>

#include "objects/sides.h"

namespace bench {

namespace {

struct Codec {
    template <class Value> static std::string write(const Value& value) {
        std::ostringstream stream;
        {
            boost::archive::xml_oarchive archive(stream);
            archive << boost::serialization::make_nvp("value", value);
        }
        return std::move(stream).str();
    }
    template <class Value> static void read(const std::string& xml, Value& value) {
        std::istringstream stream(xml);
        boost::archive::xml_iarchive archive(stream);
        archive >> boost::serialization::make_nvp("value", value);
    }
};

} // namespace

template <class Archive> void serialize(Archive& archive, Record& record, unsigned /*version*/) {
    using boost::serialization::make_nvp;
    archive& make_nvp("Number", record.number) & make_nvp("Name", record.name) &
        make_nvp("Weight", record.weight) & make_nvp("Stamp", record.stamp) &
        make_nvp("Active", record.isActive) & make_nvp("Color", record.color) &
        make_nvp("Note", record.note) & make_nvp("Ratio", record.ratio);
}

template <class Archive> void serialize(Archive& archive, Note& note, unsigned /*version*/) {
    archive& boost::serialization::make_nvp("Text", note.text);
}

const ObjectLibrary boostSide = libraryOf<Codec>("boost");

} // namespace bench

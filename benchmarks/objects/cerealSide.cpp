#include <cereal/archives/xml.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#include <sstream>

#include "objects/sides.h"

namespace bench {

namespace {

struct Codec {
    template <class Value> static std::string write(const Value& value) {
        std::ostringstream stream;
        {
            cereal::XMLOutputArchive archive(stream);
            archive(cereal::make_nvp("value", value));
        }
        return std::move(stream).str();
    }
    template <class Value> static void read(const std::string& xml, Value& value) {
        std::istringstream stream(xml);
        cereal::XMLInputArchive archive(stream);
        archive(cereal::make_nvp("value", value));
    }
};

} // namespace

template <class Archive> void serialize(Archive& archive, Record& record) {
    archive(cereal::make_nvp("Number", record.number), cereal::make_nvp("Name", record.name),
            cereal::make_nvp("Weight", record.weight), cereal::make_nvp("Stamp", record.stamp),
            cereal::make_nvp("Active", record.isActive), cereal::make_nvp("Color", record.color),
            cereal::make_nvp("Note", record.note), cereal::make_nvp("Ratio", record.ratio));
}

template <class Archive> void serialize(Archive& archive, Note& note) {
    archive(cereal::make_nvp("Text", note.text));
}

const ObjectLibrary cerealSide = libraryOf<Codec>("cereal");

} // namespace bench

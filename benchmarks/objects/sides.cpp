#include "objects/sides.h"

namespace bench {

std::vector<ObjectLibrary> objectLibraries() {
    return {
        nuxmlSide,   nuxmlCheckedSide,
#ifdef NUXML_HAS_CEREAL
        cerealSide,
#endif
#ifdef NUXML_HAS_BOOST
        boostSide,
#endif
#ifdef NUXML_HAS_PUGIXML
        pugixmlSide,
#endif
    };
}

} // namespace bench

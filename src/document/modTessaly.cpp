#include "document/modTessaly.h"

namespace tessaly::modTessaly {

bool convertToPlain(const std::shared_ptr<Tolmek>& objTolmek, std::u16string& strText) {
    return require(objTolmek).convertText(kindMarkup, kindPlain, strText, true);
}

bool convertToMarkup(const std::shared_ptr<Tolmek>& objTolmek, std::u16string& strText,
                     bool bStrict) {
    return require(objTolmek).convertText(kindPlain, kindMarkup, strText, bStrict);
}

} // namespace tessaly::modTessaly

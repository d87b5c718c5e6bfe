#include "ravikit/encoding/Decoder.h"

#include "ravikit/encoding/Declared.h"
#include "ravikit/encoding/SystemDecoder.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace ravikit {
namespace {

/// What tools write under a name, or under one that the system does not know: the encoding with
/// the letters that its makers added later.
struct Wider {
    std::u16string_view name; ///< in small letters
    const char* encoding;
};
constexpr std::array widerEncodings{
    Wider{u"shift_jis", "CP932"},    Wider{u"shift-jis", "CP932"},
    Wider{u"sjis", "CP932"},         Wider{u"x-sjis", "CP932"},
    Wider{u"ms_kanji", "CP932"},     Wider{u"euc-jp", "EUC-JP-MS"},
    Wider{u"x-euc-jp", "EUC-JP-MS"}, Wider{u"gb2312", "GB18030"},
    Wider{u"gb_2312-80", "GB18030"}, Wider{u"gbk", "GB18030"},
    Wider{u"x-gbk", "GB18030"},      Wider{u"euc-cn", "GB18030"},
    Wider{u"euc-kr", "CP949"},       Wider{u"ks_c_5601-1987", "CP949"},
    Wider{u"big5", "BIG5-HKSCS"},    Wider{u"x-x-big5", "BIG5-HKSCS"}};

/// The system's names for what `name` may mean, the best first.
std::vector<std::string> meaningsOf(std::u16string_view name) {
    constexpr std::size_t longest = 40;
    if (!isEncodingName(name) || name.size() > longest) {
        return {};
    }
    std::vector<std::string> meanings{std::string(name.begin(), name.end())};
    const std::u16string lower = asciiLowerCase(name);
    for (const Wider& wider : widerEncodings) {
        if (wider.name == lower) {
            meanings.emplace_back(wider.encoding);
        }
    }
    return meanings;
}

} // namespace

bool isKnownEncoding(std::u16string_view name) {
    if (isUtf8Name(name) || meansWindows1252(name)) {
        return true;
    }
    const std::vector<std::string> meanings = meaningsOf(name);
    return std::any_of(meanings.begin(), meanings.end(), systemKnows);
}

std::optional<Decoded> decodeDeclared(std::string_view bytes, std::u16string_view name,
                                      std::size_t* good) {
    for (const std::string& meaning : meaningsOf(name)) {
        std::size_t count = 0;
        auto text = decodeBySystem(bytes, meaning, &count);
        if (good != nullptr) {
            *good = std::max(*good, count);
        }
        if (text && declaredName(*text) == name) {
            return Decoded{*std::move(text), meaning};
        }
    }
    return std::nullopt;
}

} // namespace ravikit

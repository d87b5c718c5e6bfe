#include "ravikit/ByteEncoding.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string>

#include <iconv.h>

namespace ravikit {
namespace {

/// What the system knows of an encoding.
class Converter {
public:
    explicit Converter(const std::string& name)
        : m_handle(iconv_open("UTF-16LE", name.c_str())) {}
    ~Converter() {
        if (good()) {
            iconv_close(m_handle);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    Converter(Converter&&) = delete;
    Converter& operator=(Converter&&) = delete;

    // iconv_open tells a failure by the handle that is all ones.
    bool good() const { return reinterpret_cast<std::intptr_t>(m_handle) != -1; }

    /// The character of one byte, or 0 if there is none. None if the byte is only a part of one,
    /// or if it stands for more.
    std::optional<char16_t> decode(unsigned char byte) {
        auto in = static_cast<char>(byte);
        std::array<unsigned char, 8> out{};
        char* inAt = &in;
        auto* outAt = reinterpret_cast<char*>(out.data());
        std::size_t inLeft = 1;
        std::size_t outLeft = out.size();
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_handle, &inAt, &inLeft, &outAt, &outLeft) == static_cast<std::size_t>(-1)) {
            return errno == EILSEQ ? std::optional<char16_t>(0) : std::nullopt;
        }
        if (out.size() - outLeft != 2) {
            return std::nullopt;
        }
        return static_cast<char16_t>(out[0] | out[1] << 8);
    }

private:
    iconv_t m_handle;
};

bool isNameOfEncoding(std::u16string_view name) {
    constexpr std::size_t longest = 40;
    return !name.empty() && name.size() <= longest &&
           std::all_of(name.begin(), name.end(), [](char16_t c) {
               return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
                      (c >= u'0' && c <= u'9') || c == u'-' || c == u'_' || c == u'.' || c == u':';
           });
}

} // namespace

std::optional<ByteEncoding> byteEncoding(std::u16string_view name) {
    if (!isNameOfEncoding(name)) {
        return std::nullopt;
    }
    std::string ascii;
    for (const char16_t c : name) {
        ascii.push_back(static_cast<char>(c));
    }
    Converter converter(ascii);
    if (!converter.good()) {
        return std::nullopt;
    }
    ByteEncoding encoding{};
    for (std::size_t byte = 0; byte < encoding.size(); ++byte) {
        const auto c = converter.decode(static_cast<unsigned char>(byte));
        if (!c || (byte < 0x80 && *c != byte)) {
            return std::nullopt;
        }
        encoding[byte] = *c == 0 ? static_cast<char16_t>(byte) : *c;
    }
    return encoding;
}

} // namespace ravikit

#include "ravikit/encoding/SystemDecoder.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <iconv.h>

namespace ravikit {
namespace {

class Converter {
public:
    explicit Converter(const std::string& name)
        : m_handle(iconv_open("UTF-16LE", name.c_str())) {}
    ~Converter() {
        if (isGood()) {
            iconv_close(m_handle);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    Converter(Converter&&) = delete;
    Converter& operator=(Converter&&) = delete;

    // iconv_open reports a failure by the handle that is all ones.
    bool isGood() const { return reinterpret_cast<std::intptr_t>(m_handle) != -1; }

    /// Appends the text of `bytes`, and gives how many of them could be decoded.
    std::size_t decode(std::string_view bytes, std::u16string& text) {
        char* in = const_cast<char*>(bytes.data()); // which iconv does not write to
        std::size_t left = bytes.size();
        // What is kept back for a character that may go on comes out with a last call.
        while (run(&in, &left, text)) {
        }
        if (left == 0) {
            while (run(nullptr, nullptr, text)) {
            }
        }
        return bytes.size() - left;
    }

private:
    /// True if there was no room for all.
    bool run(char** in, std::size_t* left, std::u16string& text) {
        std::array<char, 8192> out;
        char* at = out.data();
        std::size_t room = out.size();
        const std::size_t result = iconv(m_handle, in, left, &at, &room);
        const bool isFull = result == static_cast<std::size_t>(-1) && errno == E2BIG;
        for (const char* unit = out.data(); unit != at; unit += 2) {
            text.push_back(static_cast<char16_t>(static_cast<unsigned char>(unit[0]) |
                                                 static_cast<unsigned char>(unit[1]) << 8));
        }
        return isFull;
    }

    iconv_t m_handle;
};

} // namespace

bool systemKnows(const std::string& name) {
    return Converter(name).isGood();
}

std::optional<std::u16string> decodeBySystem(std::string_view bytes, const std::string& name,
                                             std::size_t* good) {
    Converter converter(name);
    std::u16string text;
    const std::size_t count = converter.isGood() ? converter.decode(bytes, text) : 0;
    if (good != nullptr) {
        *good = count;
    }
    if (!converter.isGood() || count != bytes.size()) {
        return std::nullopt;
    }
    return text;
}

} // namespace ravikit

#pragma once

#include <iconv.h>

#include <optional>
#include <string>

namespace support {

/// The C library's converter to UTF-16, as strict as ours has to be.
class Iconv {
public:
    explicit Iconv(const char* from)
        : m_converter(iconv_open("UTF-16LE", from)) {}
    ~Iconv() { iconv_close(m_converter); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    std::optional<std::u16string> operator()(std::string bytes) const {
        std::u16string text(bytes.size() + 1, u'\0');
        char* in = bytes.data();
        std::size_t inLeft = bytes.size();
        char* out = reinterpret_cast<char*>(text.data());
        std::size_t outLeft = text.size() * 2;
        iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
            return std::nullopt;
        }
        text.resize(text.size() - outLeft / 2);
        return text;
    }

private:
    iconv_t m_converter;
};

} // namespace support

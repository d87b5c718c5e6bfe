#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// The person in front of a terminal. What they are shown goes to one descriptor, what they answer
/// comes from another; both stay open as long as this object is in use.
class Terminal {
public:
    /// `left`, if it is a descriptor: once it can be read, the person has left, and each line that
    /// is asked for is the end of the input.
    Terminal(int input, int output, int left = -1)
        : m_input(input)
        , m_output(output)
        , m_left(left) {}

    /// True if both descriptors are a terminal, so that there is somebody to ask.
    bool isAttended() const;

    /// Shows `text`, with control characters made harmless.
    void say(std::u16string_view text) const;

    /// The next line typed, without its end; none at the end of the input.
    std::optional<std::u16string> readLine() const;

private:
    bool hasLeft() const;

    int m_input;
    int m_output;
    int m_left;
};

} // namespace tessaly

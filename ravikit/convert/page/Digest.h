#pragma once

#include "ravikit/convert/page/Hash.h"
#include "ravikit/html/PageTags.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace ravikit {

/// Digests of the elements of a page, computed over its parse while it is walked in order: an
/// element's covers its tag, its alignment and styling as far as they count, its text and the
/// digests of its children. Blanks count as one, and not at all at the edge of a block; inside
/// `pre` each counts, but for line ends right after the tag. In how many pieces a text comes makes
/// no difference.
class Digest {
public:
    void open(PageTag tag, std::uint32_t style) {
        const bool block = isBlockTag(tag);
        if (!m_frames.empty()) {
            beforeChild(block);
        }
        const bool pre = tag == PageTag::Pre || (!m_frames.empty() && m_frames.back().pre);
        m_frames.push_back({.hash = static_cast<std::uint64_t>(tag) << 32 | (style + 1),
                            .block = block,
                            .edge = block || tag == PageTag::Pre,
                            .pre = pre});
    }

    void text(std::u16string_view text);

    /// Ends the innermost element and gives its digest.
    std::uint64_t close() {
        Frame& frame = m_frames.back();
        if (frame.space && !frame.block) {
            frame.unit(u' ');
        }
        frame.flush();
        const std::uint64_t digest = (frame.hash ^ frame.hash >> 31) * 0x9E3779B97F4A7C15U;
        const bool block = frame.block;
        m_frames.pop_back();
        if (!m_frames.empty()) {
            m_frames.back().word(digest);
            m_frames.back().edge = block && !m_frames.back().pre;
        }
        return digest;
    }

    std::size_t depth() const { return m_frames.size(); }

private:
    struct Frame {
        std::uint64_t hash = 0;
        std::uint64_t waiting = 0; ///< up to four units that are not in the hash yet
        std::uint32_t count = 0;
        bool block = false;
        bool edge = false;  ///< blanks here don't count
        bool space = false; ///< there were blanks, which count if something follows
        bool pre = false;

        void word(std::uint64_t word) {
            flush();
            mix(word);
        }
        void unit(char16_t c) {
            waiting |= std::uint64_t{c} << (16 * count);
            if (++count == 4) {
                mix(waiting);
                waiting = count = 0;
            }
        }
        void units(const char16_t* at, const char16_t* end) {
            for (; at != end && count != 0; ++at) {
                unit(*at);
            }
            for (; end - at >= 4; at += 4) {
                mix(fourUnits(at));
            }
            for (; at != end; ++at) {
                unit(*at);
            }
        }
        void flush() {
            if (count != 0) {
                mix(waiting ^ std::uint64_t{count} << 60);
                waiting = count = 0;
            }
        }
        void mix(std::uint64_t word) { hash = mixed(hash, word); }
    };

    void beforeChild(bool block) {
        Frame& frame = m_frames.back();
        if (frame.space && !block) {
            frame.unit(u' ');
        }
        frame.space = false;
    }

    static void exactText(Frame& frame, std::u16string_view text);

    std::vector<Frame> m_frames;
};

} // namespace ravikit

#pragma once

#include "util/Value.h"

#include <string>
#include <utility>

namespace tessaly {

/// One formatting command of the catalogue. A picture is known by its name in the picture store, or
/// by whatever else a caller puts there. One setter takes values and objects alike: a Value that
/// holds an object is a reference to it, any other Value is copied.
class clWMLFormat : public Object {
public:
    void iconResSmall(Value value) { mvarIconResSmall = std::move(value); }
    Value iconResSmall() const { return mvarIconResSmall; }

    void iconRes(Value value) { mvarIconRes = std::move(value); }
    Value iconRes() const { return mvarIconRes; }

    /// The one-line description.
    void ToolTiptext(std::u16string text) { mvarToolTiptext = std::move(text); }
    std::u16string ToolTiptext() const { return mvarToolTiptext; }

    /// The display name.
    void Caption(std::u16string text) { mvarCaption = std::move(text); }
    std::u16string Caption() const { return mvarCaption; }

private:
    std::u16string mvarCaption;
    std::u16string mvarToolTiptext;
    Value mvarIconRes;
    Value mvarIconResSmall;
};

} // namespace tessaly

#pragma once

#include "format/clWMLFormat.h"
#include "util/KeyedList.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// An ordered list of formatting commands with optional keys; see KeyedList for the failures.
class colWMLFormats : public Object {
public:
    /// Appends a new record, under `sKey` if that is not empty.
    virtual std::shared_ptr<clWMLFormat> Add(const std::u16string& Caption,
                                             const std::u16string& ToolTiptext,
                                             const Value& iconRes, const Value& iconResSmall,
                                             const std::u16string& sKey = {});

    /// By position from 1 or by key.
    virtual std::shared_ptr<clWMLFormat> Item(const Value& vntIndexKey) const;
    virtual std::int32_t Count() const;
    virtual void Remove(const Value& vntIndexKey);
    /// The list as it stands now, for a walk that later changes do not disturb.
    virtual std::vector<std::shared_ptr<clWMLFormat>> NewEnum() const;

private:
    KeyedList<clWMLFormat> m_Col;
};

} // namespace tessaly

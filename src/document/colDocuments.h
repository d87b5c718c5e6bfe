#pragma once

#include "document/WirelessDocument.h"
#include "util/KeyedList.h"
#include "util/Object.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessaly {

/// A project's documents in the order of their adding, each under its name as key, and the one
/// place where documents are built. A project makes it; see KeyedList for the failures.
class colDocuments : public Object {
public:
    /// Builds a dcWML document from a deck's text and puts it in the list, under `sKey` if that is
    /// not empty, else under `strDocName`. `strContent` comes back as the text that the document
    /// holds. `wb` and `rtb` are not used: a document gets these controls from the host. `Listbar`
    /// takes a ListBarControl, `Ravik` a tessaly::Ravik. A key that is taken fails with KeyInUse.
    virtual std::shared_ptr<WirelessDocument>
    Add(const std::u16string& strAppPath, const std::u16string& strDocName,
        std::u16string& strContent, const ObjectRef& wb, const ObjectRef& rtb,
        const ObjectRef& Listbar, const ObjectRef& Ravik, const std::u16string& sKey = {});

    /// By position from 1 or by key.
    virtual std::shared_ptr<WirelessDocument> Item(const Value& vntIndexKey) const;
    virtual std::int32_t Count() const;
    virtual void Remove(const Value& vntIndexKey);
    /// The list as it stands now, for a walk that later changes do not disturb.
    virtual std::vector<std::shared_ptr<WirelessDocument>> NewEnum() const;
    virtual void Clear();

private:
    friend class clProject;
    colDocuments() = default;

    KeyedList<WirelessDocument> m_Col;
};

} // namespace tessaly

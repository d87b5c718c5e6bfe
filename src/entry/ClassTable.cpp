#include "entry/ClassTable.h"

#include "document/WirelessDocument.h"
#include "document/clWMLEventProxy.h"
#include "format/clWMLFormat.h"
#include "format/colWMLFormats.h"
#include "project/clProject.h"

namespace tessaly {

namespace {

template <class T>
ObjectRef makeNew() {
    return std::make_shared<T>();
}

constexpr ObjectRef (*notCreatable)() = nullptr;

constexpr ClassRecord table[] = {
    {"Tessaly.clProject", "dc58f52f-bfe7-4884-97bf-b5bd421b90db", makeNew<clProject>},
    {"Tessaly.WirelessDocument", "903fd637-1b90-47e3-be96-64195aabd613", makeNew<WirelessDocument>},
    {"Tessaly.clWMLFormat", "b6ba2a47-2161-47d7-ab80-da5a313929ab", makeNew<clWMLFormat>},
    {"Tessaly.colWMLFormats", "ac6fb813-2a41-45fd-8c0b-ffd300e8a396", makeNew<colWMLFormats>},
    {"Tessaly.clWMLEventProxy", "c4cbf14f-b85a-42ac-ba50-1f182f9f7e2d", makeNew<clWMLEventProxy>},
    {"Tessaly.colDocuments", "836cca9b-6202-44a0-890e-c2511540bc20", notCreatable},
    {"Tessaly.IDisplay", "c9ace362-d4eb-44ad-8886-22cb61b0b647", notCreatable},
    {"Tessaly.cWMLDisplay", "02695d31-0508-45f7-adea-251407fb0b58", notCreatable},
    {"Tessaly.IFormat", "d499acf6-6068-4589-8183-46e0e4bd3476", notCreatable},
    {"Tessaly.cWMLFormat", "83d040eb-67df-459d-b986-28b51387b779", notCreatable},
    {"Tessaly.IValidate", "50381690-4902-456d-a5bd-63dc8960351c", notCreatable},
    {"Tessaly.cWMLValidate", "53438dc5-83c4-4cf7-bf3a-f0bbaa943326", notCreatable},
};

} // namespace

std::span<const ClassRecord> publicClasses() {
    return table;
}

} // namespace tessaly

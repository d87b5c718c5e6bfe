#include "naming/FileExistsLayout.h"

#include "external/Platform.h"
#include "naming/WarningPicture.h"

namespace tessaly {

FormLayout fileExistsLayout() {
    using enum FormControlKind;
    FormLayout layout{defaultCaption, 6480, 1170, {}};
    layout.controls = {
        {u"Picture1", Picture, 120, 120, 495, 495, u"", u"", warningPicture()},
        {u"lblReason", Label, 960, 120, 5415, 495, u"", u"", nullptr},
        // Stands on the same spot as cmdOk; the two are never visible together.
        {u"cmdYes", Button, 3600, 720, 855, 375, u"Yes",
         u"Clicking \"yes\" will overwrite the existing file.", nullptr},
        {u"cmdNo", Button, 4560, 720, 855, 375, u"No",
         u"Clicking \"no\" gives you the opportunity to select a different file name.", nullptr},
        {u"txtName", TextBox, 1200, 720, 2295, 285, u"", u"", nullptr},
        {u"lblEnterNewName", Label, 120, 720, 975, 255, u"New Name:", u"", nullptr},
        {u"cmdOk", Button, 3600, 720, 855, 375, u"OK",
         u"Clicking \"ok\" will set the file name equal to the name entered.", nullptr},
        {u"cmdCancel", Button, 5520, 720, 855, 375, u"Cancel",
         u"Clicking \"cancel\" will cancel the complete operation.", nullptr},
    };
    return layout;
}

} // namespace tessaly

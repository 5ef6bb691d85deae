// A picker as assistive technology knows it: a button that has a popup, with the open list as its child. Qt
// leaves windows out of what is below a widget, and popups out of what is below the application.
#pragma once

namespace orlix {

class PickerButton;

namespace picker_accessibility {

/// Lets Qt find the interfaces of pickers and their lists; to be called before one is shown, any number of
/// times.
void install();

/// Tells that the list of `picker` was opened or closed.
void tellExpanded(PickerButton& picker);

}  // namespace picker_accessibility
}  // namespace orlix

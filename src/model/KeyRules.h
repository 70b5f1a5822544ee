#pragma once
// The keyboard rules of the main window's text boxes: the key-down filter, the
// character filter and the selection of the whole text, and which box has which.
#include <QString>

namespace steward {

struct TextBoxKeyRules {
    bool selectOnFocus = false;   ///< the whole text is selected when the box gets the focus
    bool keyDownFilter = false;   ///< keyDownPasses() decides on the key
    bool characterFilter = false; ///< characterPasses() decides on the character
    bool selectOnChange = false;  ///< the whole text is selected after every change
};

/// The rules of a text box by its field name (without index); none for other names.
TextBoxKeyRules textBoxKeyRules(const QString& fieldName);

/// The key-down filter on a Qt key code: Backspace and the digit keys of the main
/// block pass; the keypad's digits, cursor keys, Delete and every other key don't.
bool keyDownPasses(int qtKey, bool keypad);

/// The character filter on a character code: 8 (backspace) and 40 to 57 pass, which
/// lets "(", ")", "*", "+", ",", "-", "." and "/" through beside the digits.
bool characterPasses(int code);

/// True when the key press gives a character (its text), as the window's key-press
/// event sees it: Delete, Tab and keys without text give none.
bool keyGivesCharacter(const QString& text);

} // namespace steward

#pragma once
// The one seam through which logic talks to the user: message boxes, file dialogs,
// the mouse pointer and the running of pending window events. The windows implement
// it with QMessageBox and QFileDialog; tests implement it with a scripted fake.
#include <QString>

#include <optional>

namespace steward {

enum class Icon { None, Information, Exclamation, Critical, Question };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };
enum class Answer { Ok, Cancel, Yes, No, Retry, Abort, Ignore };

struct MessageBoxRequest {
    QString text;
    QString title;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    int defaultButton = 0; ///< 0 is the first button of the set, 1 the second, 2 the third
    bool systemModal = false;
};

/// The properties of a file dialog, named as the program's file dialog class names them.
struct FileDialogState {
    QString DefaultExt;
    QString DialogTitle;
    QString FileName;
    QString FileTitle;
    QString Filter; ///< description and pattern pairs, all separated by "|"
    int FilterIndex = 0;
    int Flags = 0;
    int hWndParent = 0;
    QString InitialDir;
    int MaxFileSize = 260;
};

/// Mouse pointer values as the program uses them.
namespace pointer {
inline constexpr int Default = 0;
inline constexpr int Hourglass = 11;
} // namespace pointer

class Prompts {
public:
    virtual ~Prompts() = default;

    virtual Answer messageBox(const MessageBoxRequest& request) = 0;

    /// Shows the open (open == true) or save dialog. On a choice fills FileName with the
    /// whole path and FileTitle with the name alone and returns true; on cancel touches
    /// neither and returns false.
    virtual bool fileDialog(FileDialogState& state, bool open) = 0;

    /// The pointer in force on the screen, and setting it (pointer::Default restores).
    virtual int screenPointer() const = 0;
    virtual void setScreenPointer(int value) = 0;

    /// Lets pending window events run.
    virtual void processEvents() = 0;
    /// Asks for a line of text in an input dialog with the title and label, offering
    /// text; none when the user cancels. Where nobody can be asked, none.
    virtual std::optional<QString> askText(const QString& title, const QString& label, const QString& text)
    {
        Q_UNUSED(title);
        Q_UNUSED(label);
        Q_UNUSED(text);
        return std::nullopt;
    }

    // Shorthands for the common boxes.
    Answer message(const QString& text, const QString& title, Icon icon, Buttons buttons = Buttons::Ok,
                   int defaultButton = 0)
    {
        return messageBox({text, title, icon, buttons, defaultButton, false});
    }
};

} // namespace steward

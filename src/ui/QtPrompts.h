#pragma once
// The prompts seam on real windows: QMessageBox, QFileDialog, the override cursor.
#include "platform/Prompts.h"
#include "platform/System.h"

#include <QPointer>
#include <QWidget>

namespace steward {

class QtPrompts final : public Prompts {
public:
    Answer messageBox(const MessageBoxRequest& request) override;
    bool fileDialog(FileDialogState& state, bool open) override;
    int screenPointer() const override;
    void setScreenPointer(int value) override;
    void processEvents() override;
    std::optional<QString> askText(const QString& title, const QString& label, const QString& text) override;

    /// The window that owns the boxes and dialogs when no other window asks: the main
    /// window while it lives.
    void setOwner(QWidget* owner) { m_owner = owner; }
    QWidget* owner() const { return m_owner; }

    /// The window that a box or file dialog shown now opens above: the modal dialog in
    /// front, else the innermost asking window that is shown, else the program's active
    /// window, else the owner.
    QWidget* boxParent() const;

private:
    QPointer<QWidget> m_owner;
    int m_pointer = pointer::Default;
};

/// While it lives, the boxes and file dialogs of the prompts open above window: a window
/// marks itself so around the work that its buttons start. Asking windows nest.
class AskingWindow {
public:
    explicit AskingWindow(QWidget* window);
    ~AskingWindow();
    AskingWindow(const AskingWindow&) = delete;
    AskingWindow& operator=(const AskingWindow&) = delete;

private:
    QPointer<QWidget> m_window;
};

/// The file that an open dialog chose. The desktop's own dialog appends the default
/// extension to every name without a dot, also to an existing file such as a server
/// binary without extension; the file as the user picked it wins when only it exists.
QString openedFile(const QString& selected, const QString& defaultExt);

class QtBeeper final : public Beeper {
public:
    void beep() override;
};

} // namespace steward
